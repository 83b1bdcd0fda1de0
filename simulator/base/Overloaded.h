#pragma once

namespace sim
{

// Functions, one for each alternative of a variant, as one visitor.
template <typename... Functions>
struct Overloaded : Functions...
{
    using Functions::operator()...;
};

} // namespace sim
