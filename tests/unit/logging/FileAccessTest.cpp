#include "tests/unit/logging/LogFixture.h"

#include "logging/LogPath.h"

#include <ostream>

using namespace test;
using namespace zant;

namespace
{

constexpr DWORD others = FILE_SHARE_READ | FILE_SHARE_WRITE;
constexpr DWORD renamers = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
constexpr DWORD nobody = 0;
constexpr DWORD plain = FILE_ATTRIBUTE_NORMAL;
constexpr DWORD notThroughLinks = FILE_ATTRIBUTE_NORMAL | FILE_FLAG_OPEN_REPARSE_POINT;

// The arguments of an attempt to open a file, successful or not.
struct Opening
{
    bool operator==(Opening const&) const = default;

    friend void PrintTo(Opening const& opening, std::ostream* out)
    {
        *out << testing::PrintToString(opening.name) << std::hex << " access " << opening.access << " share "
             << opening.share << " disposition " << opening.disposition << " flags " << opening.flags;
    }

    std::wstring name;
    DWORD access;
    DWORD share;
    DWORD disposition;
    DWORD flags;
};

// Before a file is written to.
Opening LinkCount(std::wstring const& name)
{
    return {name, GENERIC_READ | GENERIC_WRITE, others, OPEN_EXISTING, plain};
}

// The openings of one call of the target's Open, in their order.
class FileAccess : public LogFixture
{
  protected:
    std::vector<Opening> OpeningsOfOpen()
    {
        LogTargetDefault target;
        Configure(target);
        std::vector<Opening> openings;
        CreateFileCall const open([&](auto next, wchar_t const* path, DWORD access, DWORD share,
                                      SECURITY_ATTRIBUTES* security, DWORD disposition, DWORD flags, HANDLE model) {
            openings.push_back({std::wstring(FileNameOf(path)), access, share, disposition, flags});
            return next(path, access, share, security, disposition, flags, model);
        });
        EXPECT_TRUE(target.Open());
        return openings;
    }

    std::wstring const log = LogName();
    std::wstring const copy = Base() + L" 2024-1-5 09-30-12.log";
};

} // namespace

TEST_F(FileAccess, ToSetAFileAside)
{
    WriteBytes(LogPath(), "plain");
    EXPECT_EQ(OpeningsOfOpen(), (std::vector<Opening>{
                                    {log, GENERIC_READ, renamers, OPEN_EXISTING, plain}, // for its mark
                                    LinkCount(log),
                                    {log, GENERIC_WRITE, others, OPEN_EXISTING, notThroughLinks},
                                    {log, GENERIC_WRITE, others, CREATE_NEW, notThroughLinks},
                                    {L"pvq.trace", GENERIC_READ, renamers, OPEN_EXISTING, plain},
                                    {log, GENERIC_READ, others, OPEN_EXISTING, plain}, // for its size
                                }));
}

TEST_F(FileAccess, ToRotateAFile)
{
    WriteLogOfSize(LogPath(), limit);
    EXPECT_EQ(OpeningsOfOpen(), (std::vector<Opening>{
                                    {log, GENERIC_READ, renamers, OPEN_EXISTING, plain}, // for its mark
                                    LinkCount(log),
                                    {log, GENERIC_WRITE, others, OPEN_EXISTING, notThroughLinks},
                                    {L"pvq.trace", GENERIC_READ, renamers, OPEN_EXISTING, plain},
                                    {log, GENERIC_READ, others, OPEN_EXISTING, plain}, // for its size
                                    LinkCount(copy),
                                    {log, GENERIC_READ | GENERIC_WRITE, others, OPEN_EXISTING, plain}, // to copy it
                                    {copy, GENERIC_WRITE | DELETE, nobody, OPEN_ALWAYS, notThroughLinks},
                                    LinkCount(log),
                                    {log, GENERIC_WRITE, others, TRUNCATE_EXISTING, plain},
                                    {log, GENERIC_READ, renamers, OPEN_EXISTING, plain}, // for its mark
                                    LinkCount(log),
                                    {log, GENERIC_WRITE, others, OPEN_EXISTING, notThroughLinks},
                                }));
}
