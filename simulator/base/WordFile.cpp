#include "simulator/base/WordFile.h"

#include "simulator/base/Error.h"
#include "simulator/base/Files.h"
#include "simulator/base/Text.h"
#include "simulator/base/Words.h"

namespace sim
{

std::wstring ReadWordFile(std::wstring const& path, std::function<void(std::vector<std::wstring> const&)> const& take)
try
{
    std::wstring damage;
    auto const text = FileExists(path) ? ReadText(path) : std::wstring();
    std::wstring_view rest = text;
    for (int number = 1; !rest.empty(); ++number)
    {
        auto const line = TakeLine(rest);
        try
        {
            take(SplitWords(line ? *line : throw Error(L"the file ends in the middle of it")));
        }
        catch (Error const& error)
        {
            damage = L"line " + std::to_wstring(number) + L": " + error.Message();
            rest = line ? rest : std::wstring_view();
        }
    }
    return damage;
}
catch (Error const& error)
{
    return error.Message();
}

void WriteWordFile(std::wstring const& path, std::vector<std::vector<std::wstring>> const& lines)
{
    std::wstring text;
    for (auto const& words : lines)
    {
        text += Joined(words) + L"\r\n";
    }
    ReplaceBytes(path, ToUtf8(text));
}

} // namespace sim
