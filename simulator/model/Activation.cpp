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
    std::size_t moreCount = 0;
};

constexpr std::array kindNames = {
    KindName{L"launch", L"arguments"}, KindName{L"protocol", L"uri"},        KindName{L"suspend", L""},
    KindName{L"app-service", L"", 4},  KindName{L"background-task", L"", 5}, KindName{L"page", L"class"}};
constexpr std::size_t nameInMore = 2; // of the app service or the task

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
    if (more.size() > nameInMore)
    {
        details.push_back(L"name=" + more[nameInMore]);
    }
    return details;
}

std::vector<std::wstring> Activation::Words() const
{
    std::vector<std::wstring> words = {id, std::wstring(NameOf(kind).name), argument};
    words.insert(words.end(), more.begin(), more.end());
    return words;
}

std::optional<Activation> Activation::FromWords(std::vector<std::wstring> const& words)
{
    constexpr std::size_t fewestWords = 3;
    for (std::size_t i = 0; words.size() >= fewestWords && i < kindNames.size(); ++i)
    {
        if (kindNames[i].name == words[1] && words.size() == fewestWords + kindNames[i].moreCount)
        {
            return Activation{
                words[0], static_cast<ActivationKind>(i), words[2], {words.begin() + fewestWords, words.end()}};
        }
    }
    return std::nullopt;
}

} // namespace sim
