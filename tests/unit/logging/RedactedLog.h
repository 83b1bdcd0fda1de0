#pragma once
#include "tests/unit/logging/LogTargetDefaultTest.h"

namespace test
{

inline std::wstring const notice = L"Found access/device token. Log skipped.";

// A secret that must stay out of the log, and messages with it.
inline std::wstring const secret = L"aSecretThatNobodyMaySee";
inline std::wstring const token = L"eyJhbGciOiJub25lIn0.eyJ" + secret + L".c2ln";
inline std::wstring const element = L"<ProxyPassword>" + secret + L"</ProxyPassword>";
inline std::wstring const maskedElement = L"<ProxyPassword>****</ProxyPassword>";

// Complete logs, whose files are searched byte by byte.
class RedactedLog : public LogTargetDefaultTest
{
  protected:
    // Whether the log, or another file in its folder, contains a string in UTF-16 or UTF-8.
    bool AnyFileHolds(std::wstring const& text);

    // The messages of the log's lines, and their columns.
    std::vector<std::wstring> Messages() const { return MessagesIn(LogPath()); }
    std::vector<std::vector<std::wstring>> Lines() const;
};

} // namespace test
