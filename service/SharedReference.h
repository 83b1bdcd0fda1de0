#pragma once
#include <atomic>
#include <memory>

namespace VelmoNotificationClient
{

// A reference to a platform object, read and replaced by any thread at any time. No lock orders the threads: whoever
// reads gets what stands there at that moment, with a reference of its own, so that the object outlives the call made
// on it even when the field is replaced meanwhile.
template <typename T>
class SharedReference
{
  public:
    // Null when there is none.
    T Get() const noexcept
    {
        auto const value = m_value.load();
        return value ? *value : T(nullptr);
    }

    // What stood there before is released.
    void Set(T const& value) { m_value.store(value ? std::make_shared<T const>(value) : nullptr); }

  private:
    std::atomic<std::shared_ptr<T const>> m_value;
};

} // namespace VelmoNotificationClient
