#pragma once
#include "simulator/protocol/Event.h"

#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace sim
{

enum class Colour
{
    No,
    Yes // with a terminal's escape sequences
};

// The output for people: the steps, the platform's events and the app's log, merged in the order of their times. They
// reach this process on different ways, so each is held back for a moment in case an earlier one follows.
class Timeline
{
  public:
    enum class Source
    {
        Step,
        Event,
        Desktop,
        Helper,
        Log
    };

    struct Item
    {
        Moment time;
        Source source;
        std::wstring text;
        std::optional<Event> event{}; // what the text tells
    };

    Timeline(std::function<void(std::wstring_view)> write, Colour colour);

    void Add(Item item);

    // Shows what is so old that nothing earlier will follow.
    void ShowSettled();

    void ShowAll();

    static constexpr unsigned holdMilliseconds = 100;

    // In the order of their times.
    std::span<Item const> Shown() const { return m_shown; }

  private:
    void ShowUntil(Moment time);

    std::function<void(std::wstring_view)> m_write;
    Colour m_colour;
    Moment m_start;
    std::multimap<Moment, Item> m_held;
    std::vector<Item> m_shown;
};

} // namespace sim
