#pragma once
#include "simulator/protocol/Encoding.h"
#include "simulator/protocol/Messages.h"

#include <gtest/gtest.h>
#include <ostream>
#include <tuple>
#include <type_traits>
#include <vector>

namespace sim
{

// Two messages are equal when they are encoded alike.
template <typename Message>
    requires std::is_aggregate_v<Message>
bool operator==(Message const& left, Message const& right)
{
    return Encode(left) == Encode(right);
}

template <typename Message>
    requires std::is_aggregate_v<Message>
void PrintTo(Message const& message, std::ostream* out)
{
    *out << '{';
    std::apply([&](auto const&... fields) { ((*out << testing::PrintToString(fields) << ' '), ...); },
               FieldsOf(message));
    *out << '}';
}

} // namespace sim

// What a process was sent, in order.
template <typename... Message>
std::vector<sim::ToProcess> Sent(Message const&... messages)
{
    return {sim::ToProcess(messages)...};
}
