#include "doctor/cli/Commands.h"

#include "utils/Utf8.h"

namespace doctor
{

std::vector<std::filesystem::path> PathsOf(std::vector<std::string> const& texts)
{
    std::vector<std::filesystem::path> paths;
    paths.reserve(texts.size());
    for (auto const& text : texts)
    {
        paths.emplace_back(zant::ToWide(text).value_or(L""));
    }
    return paths;
}

} // namespace doctor
