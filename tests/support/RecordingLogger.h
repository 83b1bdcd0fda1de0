#pragma once
#include "logging/LogTargetRegistry.h"
#include "logging/Logger.h"
#include "tests/support/RecordingTarget.h"
#include "utils/UtilsLog.h"

#include <tuple>

namespace test
{

// Receives the utilities' lines through the logger while it exists. The process-wide registry keeps its target, so all
// objects of the class share one.
class RecordingLogger
{
  public:
    // level, detail, origin, message
    using Line = std::tuple<zant::LogLevel, std::wstring, std::wstring, std::wstring>;

    RecordingLogger()
    {
        zant::GetLogTargetRegistry().Register(s_target);
        s_target.calls.clear();
        zant::g_utilsLogger = &m_logger;
    }

    RecordingLogger(RecordingLogger const&) = delete;
    RecordingLogger& operator=(RecordingLogger const&) = delete;

    ~RecordingLogger() { zant::g_utilsLogger = nullptr; }

    std::vector<Line> Lines() const
    {
        std::vector<Line> lines;
        for (auto const& call : s_target.calls)
        {
            lines.emplace_back(call.level, call.detail.value_or(L"null"), call.origin.value_or(L"null"), call.message);
        }
        return lines;
    }

  private:
    static inline RecordingTarget& s_target = *new RecordingTarget(L"ZEB"); // the group that every logger writes to

    zant::Logger m_logger;
};

} // namespace test
