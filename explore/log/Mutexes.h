#pragma once
#include "explore/harness/Hash.h"
#include "explore/harness/Turn.h"

#include <map>
#include <memory>
#include <optional>
#include <string>

namespace explore
{

// A mutex that processes know by its name. Each process has one thread.
struct Mutex
{
    std::optional<ProcessNumber> owner = {};
    unsigned depth = 0; // how often its owner has acquired it
    bool isAbandoned = false;

    bool IsFreeFor(ProcessNumber process) const { return !owner || *owner == process; }

    // Of a free one. True: its last owner ended without releasing it.
    bool Acquire(ProcessNumber process)
    {
        owner = process;
        ++depth;
        return std::exchange(isAbandoned, false);
    }

    // False: the process does not own it.
    bool Release(ProcessNumber process)
    {
        if (owner != process)
        {
            return false;
        }
        if (--depth == 0)
        {
            owner.reset();
        }
        return true;
    }

    // The process ends.
    void Abandon(ProcessNumber process)
    {
        if (owner == process)
        {
            owner.reset();
            depth = 0;
            isAbandoned = true;
        }
    }
};

// The named mutexes. One is gone with its last handle.
class Mutexes
{
  public:
    // Creates or opens it; `existed` says which.
    std::shared_ptr<Mutex> Create(std::wstring const& name, bool& existed)
    {
        auto mutex = Find(name);
        existed = mutex != nullptr;
        if (!existed)
        {
            mutex = std::make_shared<Mutex>();
            m_named[name] = mutex;
        }
        return mutex;
    }

    // Null: there is none.
    std::shared_ptr<Mutex> Find(std::wstring const& name) const
    {
        auto const found = m_named.find(name);
        return found != m_named.end() ? found->second.lock() : nullptr;
    }

    template <typename Function>
    void ForEach(Function function) const
    {
        for (auto const& [name, mutex] : m_named)
        {
            if (auto const alive = mutex.lock())
            {
                function(*alive);
            }
        }
    }

    std::uint64_t StateHash() const
    {
        Hash hash;
        for (auto const& [name, mutex] : m_named)
        {
            auto const alive = mutex.lock();
            hash.Add(alive == nullptr ? 0 : StateOf(*alive));
        }
        return hash.Value();
    }

  private:
    static unsigned StateOf(Mutex const& mutex)
    {
        return 1 + mutex.depth + (mutex.isAbandoned ? 0x100u : 0u) + (mutex.owner ? (*mutex.owner + 1u) << 16 : 0u);
    }

    std::map<std::wstring, std::weak_ptr<Mutex>> m_named;
};

} // namespace explore
