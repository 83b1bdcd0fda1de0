#pragma once
#include "simulator/base/Error.h"
#include "simulator/protocol/Fields.h"

#include <cstdint>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

namespace sim
{

// The one encoding of all messages: the fields of a struct one after the other; numbers and enumerators in their
// little-endian representation, a string as the number of its code units and these, a list as the number of its items
// and these, an optional as a flag and its value, a variant as the index of its alternative and the alternative.

// An enumeration that a message carries gives its largest enumerator a second name: Last.
template <typename Enum>
concept Enumeration = std::is_enum_v<Enum> && requires { Enum::Last; };

class Writer
{
  public:
    template <typename Value>
        requires std::is_arithmetic_v<Value> || std::is_enum_v<Value>
    void Add(Value value)
    {
        m_bytes.append(reinterpret_cast<char const*>(&value), sizeof value);
    }

    template <typename Unit>
    void Add(std::basic_string<Unit> const& text)
    {
        AddCount(text.size());
        m_bytes.append(reinterpret_cast<char const*>(text.data()), text.size() * sizeof(Unit));
    }

    template <typename Item>
    void Add(std::vector<Item> const& items)
    {
        AddCount(items.size());
        for (auto const& item : items)
        {
            Add(item);
        }
    }

    template <typename Value>
    void Add(std::optional<Value> const& value)
    {
        Add(value.has_value());
        if (value)
        {
            Add(*value);
        }
    }

    template <typename... Alternatives>
    void Add(std::variant<Alternatives...> const& value)
    {
        AddCount(value.index());
        std::visit([this](auto const& alternative) { this->Add(alternative); }, value);
    }

    template <typename Struct>
        requires std::is_aggregate_v<Struct>
    void Add(Struct const& value)
    {
        std::apply([this](auto const&... fields) { (this->Add(fields), ...); }, FieldsOf(value));
    }

    std::string Take() { return std::move(m_bytes); }

  private:
    void AddCount(std::size_t count) { Add(static_cast<std::uint32_t>(count)); }

    std::string m_bytes;
};

// Throws Error for bytes that Writer does not make.
class Reader
{
  public:
    explicit Reader(std::string_view bytes) : m_rest(bytes) {}

    bool AtEnd() const noexcept { return m_rest.empty(); }

    void Take(bool& value)
    {
        auto const byte = TakeBytes(1)[0];
        if (byte != 0 && byte != 1)
        {
            throw Error(L"a flag in a message is neither set nor clear");
        }
        value = byte == 1;
    }

    template <typename Number>
        requires std::is_arithmetic_v<Number>
    void Take(Number& value)
    {
        // NOLINTNEXTLINE(bugprone-suspicious-stringview-data-usage): the length is the number's own
        std::memcpy(&value, TakeBytes(sizeof value).data(), sizeof value);
    }

    template <Enumeration Enum>
    void Take(Enum& value)
    {
        std::underlying_type_t<Enum> number{};
        Take(number);
        if (number < 0 || number > static_cast<decltype(number)>(Enum::Last))
        {
            throw Error(L"a message has the number " + std::to_wstring(number) + L", which names nothing");
        }
        value = static_cast<Enum>(number);
    }

    template <typename Unit>
    void Take(std::basic_string<Unit>& text)
    {
        auto const length = TakeCount();
        auto const bytes = TakeBytes(length * sizeof(Unit));
        text.resize(length);
        std::memcpy(text.data(), bytes.data(), bytes.size());
    }

    template <typename Item>
    void Take(std::vector<Item>& items)
    {
        for (auto count = TakeCount(); count > 0; --count)
        {
            Take(items.emplace_back());
        }
    }

    template <typename Value>
    void Take(std::optional<Value>& value)
    {
        bool isThere = false;
        Take(isThere);
        if (isThere)
        {
            Take(value.emplace());
        }
    }

    template <typename... Alternatives>
    void Take(std::variant<Alternatives...>& value)
    {
        auto const position = TakeCount();
        if (position >= sizeof...(Alternatives))
        {
            throw Error(L"there is no message number " + std::to_wstring(position));
        }
        std::uint32_t next = 0;
        ((next++ == position ? Take(value.template emplace<Alternatives>()) : void()), ...);
    }

    template <typename Struct>
        requires std::is_aggregate_v<Struct>
    void Take(Struct& value)
    {
        std::apply([this](auto&... fields) { (this->Take(fields), ...); }, FieldsOf(value));
    }

  private:
    std::size_t TakeCount()
    {
        auto count = std::uint32_t();
        Take(count);
        return count;
    }

    std::string_view TakeBytes(std::size_t size)
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

template <typename Message>
std::string Encode(Message const& message)
{
    Writer writer;
    writer.Add(message);
    return writer.Take();
}

// Throws Error for bytes that Encode does not make of a message of that type.
template <typename Message>
Message Decode(std::string_view bytes)
{
    Message message{};
    Reader reader(bytes);
    reader.Take(message);
    if (!reader.AtEnd())
    {
        throw Error(L"a message is longer than its fields");
    }
    return message;
}

} // namespace sim
