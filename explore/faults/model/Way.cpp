#include "explore/faults/model/Way.h"

#include "simulator/protocol/KnownCalls.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <iterator>

namespace explore::faults
{

namespace
{

struct Name
{
    std::string_view text;
    Way::Kind kind;
    bool hasCode = false;
};

constexpr Name names[] = {
    {"now", Way::Kind::Now, true},
    {"null", Way::Kind::Null},
    {"completion", Way::Kind::Completion, true},
    {"cancelled", Way::Kind::Cancelled},
    {"never", Way::Kind::Never},
    {"ended", Way::Kind::Ended},
    {"unheard", Way::Kind::Unheard, true},
    {"status", Way::Kind::Status, true},
    {"helper-closes", Way::Kind::HelperCloses},
    {"helper-dies", Way::Kind::HelperDies},
    {"task-cancelled", Way::Kind::TaskCancelled},
    {"killed", Way::Kind::Killed},
};

} // namespace

std::string NameOf(Way const& way)
{
    auto const* const name = std::ranges::find(names, way.kind, &Name::kind);
    if (name == std::end(names))
    {
        return "ordinary";
    }
    if (!name->hasCode)
    {
        return std::string(name->text);
    }
    char text[40];
    static_cast<void>(
        std::snprintf(text, sizeof text, "%s-%X", std::string(name->text).c_str(), static_cast<unsigned>(way.code)));
    return text;
}

bool IsConcurrent(Way const& way)
{
    switch (way.kind)
    {
    case Way::Kind::Completion:
    case Way::Kind::Cancelled:
    case Way::Kind::Ended:
    case Way::Kind::Status:
    case Way::Kind::HelperCloses:
    case Way::Kind::HelperDies:
    case Way::Kind::TaskCancelled:
        return true;
    default:
        return false;
    }
}

bool Applies(Way const& way, std::wstring_view call)
{
    auto const* const known = std::ranges::find(sim::knownCalls, call, &sim::KnownCall::name);
    auto const gives = known == std::end(sim::knownCalls) ? sim::Gives::NoObject : known->gives;
    switch (way.kind)
    {
    case Way::Kind::Null:
        return gives != sim::Gives::NoObject;
    case Way::Kind::Completion:
    case Way::Kind::Cancelled:
    case Way::Kind::Never:
    case Way::Kind::Ended:
    case Way::Kind::Unheard:
        return gives == sim::Gives::Operation || gives == sim::Gives::StatusOperation;
    case Way::Kind::Status:
        return gives == sim::Gives::StatusOperation;
    default:
        return true;
    }
}

std::optional<Way> WayOf(std::string_view text)
{
    for (auto const& name : names)
    {
        if (!name.hasCode && text == name.text)
        {
            return Way{name.kind};
        }
        if (name.hasCode && text.starts_with(name.text) && text.substr(name.text.size()).starts_with('-'))
        {
            auto const digits = text.substr(name.text.size() + 1);
            std::uint32_t code = 0;
            auto const [rest, error] = std::from_chars(digits.data(), digits.data() + digits.size(), code, 16);
            return error == std::errc() && rest == digits.data() + digits.size()
                       ? std::optional(Way{name.kind, static_cast<std::int32_t>(code)})
                       : std::nullopt;
        }
    }
    return std::nullopt;
}

} // namespace explore::faults
