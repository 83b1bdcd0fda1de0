#pragma once
#include "explore/harness/Hash.h"
#include "explore/harness/ProcessMemory.h"
#include "explore/harness/Turn.h"

#include <array>
#include <map>
#include <memory>
#include <utility>
#include <windows.h>

namespace explore
{

// What a handle stands for. Its destruction closes it.
class KernelObject
{
  public:
    KernelObject() = default;
    KernelObject(KernelObject const&) = delete;
    KernelObject& operator=(KernelObject const&) = delete;
    virtual ~KernelObject() = default;
};

// The processes, their handles, and how they make their calls.
class Kernel
{
  public:
    // Returns when the call is to be made; for a wait isReady is true as well by then.
    using Await = std::function<void(std::function<bool()> const& isReady)>;

    static constexpr std::size_t mostProcesses = 8;

    explicit Kernel(Await await) : m_await(std::move(await)) {}

    // Whose calls follow.
    void Switch(ProcessNumber process) noexcept { m_current = process; }
    ProcessNumber Current() const noexcept { return m_current; }

    // Makes a call of the current process when it is its turn.
    template <typename Effect>
    auto Call(char const* name, Effect effect, std::function<bool()> const& isReady = nullptr)
    {
        m_pending[m_current] = name;
        if (m_await)
        {
            m_await(isReady);
        }
        m_pending[m_current] = "(goes on)";
        AsSystem const memory;
        Note(0); // a process knows at least how many calls it has made
        return effect();
    }

    // Within a call: what the process sees of its outcome. All that it does later depends on this alone.
    void Note(std::uint64_t seen) noexcept { m_histories[m_current].Add(seen); }
    void Note(std::string_view seen) noexcept { m_histories[m_current].Add(seen); }

    // The same for its error, which becomes the last one. Whether there is none.
    bool Succeeds(DWORD error) noexcept
    {
        Note(error);
        SetLastError(error);
        return error == ERROR_SUCCESS;
    }

    HANDLE Add(std::shared_ptr<KernelObject> object);

    // Null, with the last error set, for a handle of another kind or none of the current process.
    template <typename Kind>
    Kind* Find(HANDLE handle)
    {
        auto const found = m_handles.find(handle);
        auto* const object = found != m_handles.end() && found->second.owner == m_current
                                 ? dynamic_cast<Kind*>(found->second.object.get())
                                 : nullptr;
        if (object == nullptr)
        {
            Succeeds(ERROR_INVALID_HANDLE);
        }
        return object;
    }

    bool Close(HANDLE handle);
    void CloseAllOf(ProcessNumber process);
    std::size_t HandlesOf(ProcessNumber process) const;

    std::uint64_t StateHash() const;

    // The call that a process is about to make, "(goes on)" where it makes none first.
    char const* PendingOf(ProcessNumber process) const { return m_pending[process]; }

  private:
    struct Handle
    {
        ProcessNumber owner;
        std::shared_ptr<KernelObject> object;
    };

    Await m_await;
    ProcessNumber m_current = 0;
    std::map<HANDLE, Handle> m_handles;
    std::uintptr_t m_lastHandle = 0x1000;
    std::array<Hash, mostProcesses> m_histories;
    std::array<char const*, mostProcesses> m_pending = {};
};

} // namespace explore
