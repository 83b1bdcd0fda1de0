#include "doctor/cli/Commands.h"

#include "doctor/base/Error.h"
#include "utils/Utf8.h"

namespace doctor
{

std::filesystem::path OwnLog(std::string const& word, Surroundings const& surroundings)
{
    auto log = word.empty() ? surroundings.ownLog() : PathsOf({word}).front();
    return log.empty() ? throw Error("where the app's log is cannot be told: name its path") : log;
}

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
