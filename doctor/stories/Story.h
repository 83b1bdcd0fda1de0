#pragma once
#include "doctor/stories/Line.h"
#include "doctor/stories/Stage.h"

#include <array>
#include <chrono>
#include <span>
#include <string_view>

namespace doctor
{

// What something means to the person who reads about it. Whole sentences.
struct Meaning
{
    std::string_view what{};
    std::string_view cause{};  // what usually causes it
    std::string_view advice{}; // what to do next
};

// Which lane of a timeline shows the story.
enum class StoryKind
{
    Process,
    Activation,
    Task,
    Launch,
    Connection,
    Request,
    Channel,
    Registration,
    Step // part of another story; a timeline leaves it out
};

// Where the line stands that ends a story.
enum class Scope
{
    Thread, // on the thread that began it
    Process // on any thread of its process
};

struct StoryEnd
{
    Line line = Line::Other;
    Result result = Result::Worked; // NotSeen: says nothing about the stage, which another story counts
    Meaning meaning{};              // of a failure
};

// Something that the app begins with one line and ends with another.
struct Story
{
    static constexpr std::size_t mostEnds = 6;

    std::string_view name; // "launch for a push"
    StoryKind kind;
    Stage stage;
    Scope scope;
    Line begin;
    std::array<StoryEnd, mostEnds> ends; // up to the first without a line

    // How long it may take. Zero: any time, and its end may be missing.
    std::chrono::seconds limit{};

    // The app writes one of the ends within the limit as long as its process lives.
    bool isCertain = false;

    // No end within the limit.
    Meaning absent{};
};

// All of them.
std::span<Story const> Stories();

// The story ends in a line? Its end, or null.
StoryEnd const* EndOf(Story const& story, Line line);

} // namespace doctor
