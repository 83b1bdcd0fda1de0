#pragma once
#include "logging/LogTargetBase.h"

#include <array>
#include <optional>
#include <string>
#include <vector>

namespace test
{

// One call of a target's Log. Narrow strings are converted; null ones are nullopt.
struct RecordedCall
{
    bool operator==(RecordedCall const&) const = default;

    bool wide = true;
    zant::LogLevel level = zant::LogLevel::None;
    std::array<std::wstring, 4> fields;
    std::optional<std::wstring> detail;
    std::optional<std::wstring> origin;
    std::wstring message; // formatted
    bool hadArguments = true;
    std::uint64_t time = 0;
    bool lockFlag = true;
};

// Records the calls of Log.
class RecordingTarget : public zant::LogTargetBase
{
  public:
    explicit RecordingTarget(wchar_t const* ownGroup);

    bool OpenFile(zant::UniqueHandle& handle) override;
    bool Open() override;
    bool Close() override;
    bool Log(zant::LogLevel level, wchar_t const* reserved, wchar_t const* product, wchar_t const* component,
             wchar_t const* category, char const* detail, char const* origin, char const* format, va_list arguments,
             std::uint64_t time, bool lockFlag) noexcept override;
    bool Log(zant::LogLevel level, wchar_t const* reserved, wchar_t const* product, wchar_t const* component,
             wchar_t const* category, wchar_t const* detail, wchar_t const* origin, wchar_t const* format,
             va_list arguments, std::uint64_t time, bool lockFlag) noexcept override;
    void LogHeader(zant::LogLevel level, wchar_t const* reserved, wchar_t const* product, wchar_t const* component,
                   wchar_t const* category, zant::LogHeaderText const* header, bool lockFlag) override;

    std::vector<RecordedCall> calls;
    bool result = true; // what Log returns
};

} // namespace test
