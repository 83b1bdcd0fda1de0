#include "doctor/live/Sentences.h"

#include "utils/Utf8.h"

#include <cctype>

namespace doctor
{

std::string Narrow(std::wstring_view text)
{
    return zant::ToUtf8(text).value_or("");
}

std::string SentenceOf(std::wstring_view text)
{
    auto sentence = Narrow(text);
    if (!sentence.empty())
    {
        sentence[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(sentence[0])));
        sentence += '.';
    }
    return sentence;
}

std::string TimeText(std::chrono::milliseconds time)
{
    auto const count = time.count();
    if (count % 1000 == 0)
    {
        return std::to_string(count / 1000) + " s";
    }
    auto const tenth = "." + std::to_string(count / 100 % 10) + " s";
    return count < 1000 ? std::to_string(count) + " ms" : std::to_string(count / 1000) + tenth;
}

} // namespace doctor
