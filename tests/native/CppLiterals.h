#pragma once
#include <algorithm>
#include <cctype>
#include <string>
#include <string_view>
#include <vector>

namespace test
{

// A quote behind it separates digits.
inline bool IsDigit(char character)
{
    return std::isxdigit(static_cast<unsigned char>(character)) != 0;
}

// C++ source without its comments, which are blank. A literal may hold what looks like one.
inline std::string WithoutComments(std::string_view source)
{
    std::string code;
    for (std::size_t at = 0; at < source.size();)
    {
        auto const rest = source.substr(at);
        auto length = std::size_t{1};
        auto isComment = true;
        if (rest.starts_with("//"))
        {
            length = std::min(rest.find('\n'), rest.size());
        }
        else if (rest.starts_with("/*"))
        {
            auto const end = rest.find("*/", 2);
            length = end == rest.npos ? rest.size() : end + 2;
        }
        else
        {
            isComment = false;
            auto const isQuote = rest[0] == '"' || (rest[0] == '\'' && (code.empty() || !IsDigit(code.back())));
            while (isQuote && length < rest.size() && rest[length] != rest[0])
            {
                length += rest[length] == '\\' ? 2 : 1;
            }
            length += isQuote ? 1 : 0;
        }
        code += isComment ? std::string(" ") : std::string(rest.substr(0, length));
        at += length;
    }
    return code;
}

// The string literals of code without comments, wide or not; literals with only blanks between them are one.
inline std::vector<std::string> LiteralsIn(std::string_view code)
{
    std::vector<std::string> literals;
    auto goesOn = false;
    for (std::size_t at = 0; at < code.size(); ++at)
    {
        auto const isPrefix = code.substr(at).starts_with("L\"") || code.substr(at).starts_with("u\"");
        if (code[at] == '\'' && (at == 0 || !IsDigit(code[at - 1])))
        {
            at = code.find('\'', at + (code[at + 1] == '\\' ? 3 : 2));
            goesOn = false;
        }
        else if (code[at] == '"')
        {
            std::string text;
            for (++at; code[at] != '"'; ++at)
            {
                at += code[at] == '\\' ? 1 : 0;
                text += code[at];
            }
            goesOn ? literals.back() += text : literals.emplace_back(text);
            goesOn = true;
        }
        else if (!std::isspace(static_cast<unsigned char>(code[at])) && !isPrefix)
        {
            goesOn = false;
        }
    }
    return literals;
}

} // namespace test
