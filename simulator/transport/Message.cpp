#include "simulator/transport/Message.h"

#include "simulator/model/Error.h"

#include <cstdint>
#include <cstring>

namespace sim
{

namespace
{

constexpr std::size_t numberSize = sizeof(std::uint32_t);

void AppendNumber(std::string& bytes, std::size_t value)
{
    auto const number = static_cast<std::uint32_t>(value);
    bytes.append(reinterpret_cast<char const*>(&number), numberSize);
}

// Takes numbers and texts off the front of a message's bytes.
class Reader
{
  public:
    explicit Reader(std::string_view bytes) : m_rest(bytes) {}

    std::uint32_t Number()
    {
        std::uint32_t number = 0;
        std::memcpy(&number, Take(numberSize).data(), numberSize);
        return number;
    }

    std::wstring Text()
    {
        auto const length = Number();
        auto const bytes = Take(length * sizeof(wchar_t));
        std::wstring text(length, L'\0');
        std::memcpy(text.data(), bytes.data(), bytes.size());
        return text;
    }

    bool AtEnd() const { return m_rest.empty(); }

  private:
    std::string_view Take(std::size_t size)
    {
        if (size > m_rest.size())
        {
            throw Error(L"a message ends in the middle");
        }
        auto const taken = m_rest.substr(0, size);
        m_rest.remove_prefix(size);
        return taken;
    }

    std::string_view m_rest;
};

Message Decode(std::string_view bytes)
{
    Reader reader(bytes);
    auto const count = reader.Number();
    Message message;
    for (std::uint32_t i = 0; i < count; ++i)
    {
        message.push_back(reader.Text());
    }
    if (message.empty() || !reader.AtEnd())
    {
        throw Error(L"a message is empty or longer than its texts");
    }
    return message;
}

} // namespace

Message MakeMessage(std::wstring verb, std::vector<std::wstring> const& arguments)
{
    Message message = {std::move(verb)};
    message.insert(message.end(), arguments.begin(), arguments.end());
    return message;
}

bool Fits(Message const& message)
{
    auto size = numberSize;
    for (auto const& text : message)
    {
        size += numberSize + text.size() * sizeof(wchar_t);
    }
    return size <= largestMessage;
}

std::string Encode(Message const& message)
{
    std::string body;
    AppendNumber(body, message.size());
    for (auto const& text : message)
    {
        AppendNumber(body, text.size());
        body.append(reinterpret_cast<char const*>(text.data()), text.size() * sizeof(wchar_t));
    }
    std::string bytes;
    AppendNumber(bytes, body.size());
    return bytes + body;
}

void MessageDecoder::Add(std::string_view bytes)
{
    // What has been taken goes now and not at each message: many small messages in one piece are moved once.
    m_bytes.erase(0, m_start);
    m_start = 0;
    m_bytes += bytes;
}

std::optional<Message> MessageDecoder::Next()
{
    auto const rest = std::string_view(m_bytes).substr(m_start);
    if (rest.size() < numberSize)
    {
        return std::nullopt;
    }
    auto const size = Reader(rest).Number();
    if (size > largestMessage)
    {
        throw Error(L"a message is too large to be one");
    }
    if (rest.size() - numberSize < size)
    {
        return std::nullopt;
    }
    m_start += numberSize + size;
    return Decode(rest.substr(numberSize, size));
}

} // namespace sim
