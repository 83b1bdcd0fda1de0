#include "simulator/platform/TaskRegistry.h"

#include "simulator/base/Error.h"

#include <algorithm>

namespace sim
{

namespace
{

using Words = StateFile::Words;

Words WordsOf(RegisteredTask const& task)
{
    return {task.id,
            task.name,
            std::wstring(NameOf(task.trigger)),
            std::to_wstring(task.minutes),
            task.once ? L"once" : L"recurring",
            std::to_wstring(task.due)};
}

RegisteredTask FromWords(Words const& words)
{
    auto const isTimer = words.size() == 6 && words[2] == NameOf(Trigger::Timer);
    if (words.size() != 6 || words[0].empty() || (!isTimer && words[2] != NameOf(Trigger::Push)) ||
        (words[4] != L"once" && words[4] != L"recurring"))
    {
        throw Error(L"it is not ID NAME push|timer MINUTES once|recurring DUE");
    }
    auto const minutes = static_cast<unsigned>(NumberIn(words[3], L"number of minutes", UINT32_MAX));
    if (isTimer && minutes < TaskRegistry::shortestPeriod)
    {
        throw Error(L"a timer of " + words[3] + L" minutes is too short");
    }
    return {words[0],
            words[1],
            isTimer ? Trigger::Timer : Trigger::Push,
            minutes,
            words[4] == L"once",
            NumberIn(words[5], L"time")};
}

} // namespace

TaskRegistry::TaskRegistry(StateFile file) : m_file(std::move(file))
{
    m_file.Read([this](Words const& words) { m_tasks.push_back(FromWords(words)); });
}

void TaskRegistry::Add(RegisteredTask task)
{
    auto tasks = m_tasks;
    tasks.push_back(std::move(task));
    Save(std::move(tasks));
}

void TaskRegistry::Remove(std::wstring const& id)
{
    auto tasks = m_tasks;
    if (std::erase_if(tasks, [&](auto const& task) { return task.id == id; }) > 0)
    {
        Save(std::move(tasks));
    }
}

void TaskRegistry::SetDue(std::wstring const& id, std::int64_t due)
{
    auto tasks = m_tasks;
    for (auto& task : tasks)
    {
        if (task.id == id)
        {
            task.due = due;
        }
    }
    Save(std::move(tasks));
}

void TaskRegistry::Save(std::vector<RegisteredTask> tasks)
{
    std::vector<Words> lines(tasks.size());
    std::ranges::transform(tasks, lines.begin(), WordsOf);
    m_file.Write(lines);
    m_tasks = std::move(tasks);
}

} // namespace sim
