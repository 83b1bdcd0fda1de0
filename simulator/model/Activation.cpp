#include "simulator/model/Activation.h"

#include <array>
#include <string_view>

namespace sim
{

namespace
{

struct KindName
{
    std::wstring_view name;
    std::wstring_view argumentName;
};

constexpr std::array kindNames = {KindName{L"launch", L"arguments"}, KindName{L"protocol", L"uri"},
                                  KindName{L"suspend", L""}};

KindName const& NameOf(ActivationKind kind)
{
    return kindNames[static_cast<std::size_t>(kind)];
}

} // namespace

std::vector<std::wstring> Activation::Details() const
{
    auto const& name = NameOf(kind);
    std::vector<std::wstring> details = {L"kind=" + std::wstring(name.name)};
    if (!argument.empty())
    {
        details.push_back(std::wstring(name.argumentName) + L"=" + argument);
    }
    return details;
}

std::vector<std::wstring> Activation::Words() const
{
    return {id, std::wstring(NameOf(kind).name), argument};
}

std::optional<Activation> Activation::FromWords(std::vector<std::wstring> const& words)
{
    for (std::size_t i = 0; words.size() == 3 && i < kindNames.size(); ++i)
    {
        if (kindNames[i].name == words[1])
        {
            return Activation{words[0], static_cast<ActivationKind>(i), words[2]};
        }
    }
    return std::nullopt;
}

} // namespace sim
