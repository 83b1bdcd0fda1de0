#include "explore/harness/Report.h"

#include <cstdio>

namespace explore
{

namespace
{

constexpr std::chrono::seconds betweenProgress{10};

double InSeconds(std::chrono::steady_clock::duration time)
{
    return std::chrono::duration<double>(time).count();
}

void Print(std::string const& title, Tally const& tally)
{
    if (tally.Entries().empty())
    {
        return;
    }
    std::printf("\n%s\n", title.c_str());
    for (auto const& [text, entry] : tally.Entries())
    {
        std::printf("  %10llu  %s  (%s)\n", static_cast<unsigned long long>(entry.plays), text.c_str(),
                    TextOf(entry.shortest).c_str());
    }
}

} // namespace

Report::Report(std::string subject, std::uint64_t seed)
    : m_subject(std::move(subject)), m_seed(seed), m_nextProgress(m_started + betweenProgress)
{
}

void Report::Played(PlayId const& play, std::string const& outcome)
{
    ++m_plays;
    m_outcomes.Count(outcome, play);
    if (auto const now = Clock::now(); now >= m_nextProgress)
    {
        m_nextProgress = now + betweenProgress;
        auto const goal = m_expected == 0 ? std::string() : " until " + std::to_string(m_expected);
        std::printf("  %s%s, at %s\n", Figures().c_str(), goal.c_str(), TextOf(play).c_str());
        static_cast<void>(std::fflush(stdout));
    }
}

void Report::Found(std::string const& kind, PlayId const& play, std::string const& what)
{
    if (!HasFound(kind))
    {
        std::printf("\nfound: %s\n  %s\n  ./dev explore %s --replay %s\n", kind.c_str(), what.c_str(),
                    m_subject.c_str(), TextOf(play).c_str());
        static_cast<void>(std::fflush(stdout));
    }
    m_found.Count(kind, play);
}

std::string Report::Figures() const
{
    auto text = std::to_string(m_plays + m_leftOff) + " plays, ";
    if (m_leftOff > 0)
    {
        text += std::to_string(m_leftOff) + " of them left off at a state seen before, ";
    }
    if (!m_states.empty())
    {
        text += std::to_string(m_states.size()) + " distinct states, ";
    }
    char time[20];
    static_cast<void>(std::snprintf(time, sizeof time, "%.1f s", InSeconds(Elapsed())));
    return text + std::to_string(m_outcomes.Entries().size()) + " outcomes in " + time;
}

int Report::Conclude() const
{
    Print("outcomes, with the first of the shortest plays", m_outcomes);
    Print("lost by the rules", m_losses);
    Print("found", m_found);
    std::printf("\nexplore %s: %s, seed %llu; kinds of deviations found: %zu\n", m_subject.c_str(), Figures().c_str(),
                static_cast<unsigned long long>(m_seed), m_found.Entries().size());
    static_cast<void>(std::fflush(stdout));
    return m_found.Entries().empty() ? 0 : 1;
}

} // namespace explore
