#include "simulator/log/AppLog.h"

#include "doctor/base/Error.h"
#include "simulator/base/Error.h"
#include "simulator/base/Handle.h"
#include "simulator/base/Text.h"
#include "simulator/package/Package.h"

namespace sim
{

namespace
{

bool IsGrowth(std::string_view text)
{
    return !text.empty() && text.find_first_not_of('\0') == text.npos;
}

} // namespace

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

void TakeNewLines(doctor::Follower& log, std::function<void(doctor::Entry const&)> const& take)
try
{
    log.TakeNew([&](doctor::Entry const& entry) {
        if (!IsGrowth(entry.raw.text))
        {
            take(entry);
        }
        return true;
    });
}
catch (doctor::Error const& error)
{
    throw Error(FromUtf8(error.what()));
}

// Both are of local time; a line's is counted from 1970.
Moment MomentOf(doctor::LogTime time)
{
    return MomentOf(1970, 1, 1, 0, 0, 0, 0).value_or(0) + time.time_since_epoch().count();
}

doctor::LogTime LogTimeOf(Moment moment)
{
    return doctor::LogTime(std::chrono::milliseconds(moment - MomentOf(doctor::LogTime())));
}

} // namespace sim
