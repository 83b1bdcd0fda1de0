#pragma once

namespace console
{

// Whether standard output is a console that shows colours, which it is asked to from here on. NO_COLOR in the
// environment declines them; it counts when it is not empty.
bool TakesColours() noexcept;

} // namespace console
