#include "explore/kill/Story.h"

#include "logging/RotationLimit.h"

namespace explore::kill
{

namespace
{

std::u16string OldLine(std::u16string_view message)
{
    return u"01/05/24 09:30:12:045 | [INFO] |  | ZEB | ZEB | ZEBMain |  | ZEB | 9 | " + std::u16string(message);
}

std::string BytesOf(std::u16string const& line)
{
    auto const ended = line + u"\r\n";
    return {reinterpret_cast<char const*>(ended.data()), ended.size() * sizeof(char16_t)};
}

} // namespace

std::vector<Story> const& Stories()
{
    static std::vector<Story> const stories = {
        {"start", LogBefore::None, Request::Launch},
        {"line", LogBefore::Short, Request::OpenUri},
        {"rotation", LogBefore::AtLimit, Request::OpenUri},
        {"registration",
         LogBefore::Short,
         Request::Register,
         {u"AppService Closed", u"RegisterBkgServices deferral complete",
          u"Inside RegsiterBackgroundtasks, task executed no exception seen",
          u"Inside OnTaskCanceled VelmoNotificationClient UwpNotificationAppService::OnTaskCanceled deferral complete"}},
    };
    return stories;
}

OldLog OldLogOf(LogBefore log)
{
    if (log == LogBefore::None)
    {
        return {};
    }
    OldLog old{.lines = {OldLine(u"an old line"), OldLine(u"the last old line")}};
    old.begin = "\xFF\xFE" + BytesOf(old.lines.front());
    old.end = BytesOf(old.lines.back());
    old.size =
        log == LogBefore::AtLimit ? zant::RotationLimit(zant::LogLevel::Info) : old.begin.size() + old.end.size();
    return old;
}

} // namespace explore::kill
