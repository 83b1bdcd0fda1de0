#include "simulator/platform/TaskRegistry.h"

#include "simulator/base/Text.h"
#include "simulator/base/WordFile.h"

#include <algorithm>
#include <cwchar>

namespace sim
{

namespace
{

using Words = std::vector<std::wstring>;

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
    return {words[0],
            words[1],
            words[2] == NameOf(Trigger::Timer) ? Trigger::Timer : Trigger::Push,
            ParseNumber(words[3]).value_or(0),
            words[4] == L"once",
            std::wcstoll(words[5].c_str(), nullptr, 10)};
}

} // namespace

TaskRegistry::TaskRegistry(std::wstring file) : m_file(std::move(file))
{
    constexpr std::size_t wordCount = 6;
    for (auto const& words : ReadWordFile(m_file))
    {
        if (words.size() == wordCount)
        {
            m_tasks.push_back(FromWords(words));
        }
    }
}

void TaskRegistry::Add(RegisteredTask task)
{
    auto tasks = m_tasks;
    tasks.push_back(std::move(task));
    Keep(std::move(tasks));
}

void TaskRegistry::Remove(std::wstring const& id)
{
    auto tasks = m_tasks;
    if (std::erase_if(tasks, [&](auto const& task) { return task.id == id; }) > 0)
    {
        Keep(std::move(tasks));
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
    Keep(std::move(tasks));
}

void TaskRegistry::Keep(std::vector<RegisteredTask> tasks)
{
    std::vector<Words> lines(tasks.size());
    std::ranges::transform(tasks, lines.begin(), WordsOf);
    WriteWordFile(m_file, lines);
    m_tasks = std::move(tasks);
}

} // namespace sim
