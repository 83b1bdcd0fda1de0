#include "simulator/log/AppLog.h"

#include "simulator/base/Error.h"
#include "simulator/base/Handle.h"
#include "simulator/package/Package.h"

namespace sim
{

std::wstring AppLogOn(Device const& device)
{
    return device.AppTemporaryFolder(RegisteredPackage(device).FamilyName()) + L"\\Tessaline\\HOV\\KZEB.log";
}

void GrowLogTo(std::wstring const& path, std::uint64_t bytes)
{
    Handle const file(CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                  nullptr, OPEN_EXISTING, 0, nullptr));
    LARGE_INTEGER end;
    end.QuadPart = static_cast<LONGLONG>(bytes);
    if (!file || !SetFilePointerEx(file.Get(), end, nullptr, FILE_BEGIN) || !SetEndOfFile(file.Get()))
    {
        throw Error(L"the log cannot be extended: " + path);
    }
}

bool IsGrowth(std::string_view text)
{
    return !text.empty() && text.find_first_not_of('\0') == text.npos;
}

} // namespace sim
