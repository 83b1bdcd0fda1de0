#include "doctor/show/LineFormat.h"

#include "doctor/base/Column.h"
#include "doctor/base/Json.h"
#include "doctor/base/SystemText.h"
#include "doctor/log/ChannelUri.h"
#include "doctor/log/Utf8.h"

namespace doctor
{

namespace
{

constexpr std::string_view faint = "\x1b[2m";

// Empty for what is shown in the terminal's own colour.
std::string_view ColourOf(zant::LogLevel level)
{
    using enum zant::LogLevel;
    if (level >= Error)
    {
        return "\x1b[31m";
    }
    if (level >= Warn)
    {
        return "\x1b[33m";
    }
    return level >= Info ? "" : faint;
}

std::string LineText(LogLine const& line, std::string_view message)
{
    return TimeText(line.time) + " " + Column(LevelText(line.level), 6) + Column(std::to_string(line.thread), 6) +
           Column(line.category, 11) + std::string(message);
}

std::string EntryJson(Entry const& entry, std::filesystem::path const& file, std::string_view message)
{
    Json object;
    if (entry.line)
    {
        auto const& line = *entry.line;
        object["time"] = TimeText(line.time);
        object["level"] = LevelText(line.level);
        object["thread"] = line.thread;
        object["product"] = line.product;
        object["component"] = line.component;
        object["category"] = line.category;
        object["detail"] = line.detail;
        object["origin"] = line.origin;
    }
    object["message"] = message;
    object["file"] = PathText(file);
    object["line"] = entry.raw.number;
    if (entry.raw.isDamaged)
    {
        object["damaged"] = true;
    }
    return JsonText(object);
}

} // namespace

std::string FormatEntry(Entry const& entry, std::filesystem::path const& file, LineFormat const& format)
{
    auto const whole = entry.line ? entry.line->message : entry.raw.text;
    auto const message = format.hasFullUris ? std::string(whole) : WithShortUris(whole);
    if (format.form == Form::Json)
    {
        return EntryJson(entry, file, message);
    }
    auto const text = WithoutControls(entry.line ? LineText(*entry.line, message) : message);
    auto const colour = entry.line ? ColourOf(entry.line->level) : faint;
    return format.form == Form::Coloured && !colour.empty() ? std::string(colour) + text + "\x1b[0m" : text;
}

} // namespace doctor
