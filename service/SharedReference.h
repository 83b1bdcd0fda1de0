#pragma once
#include <atomic>
#include <memory>

namespace VelmoNotificationClient
{

// A reference to a platform object that any thread reads and replaces at any time. No lock orders the threads: Get
// returns the current object with a reference of its own, so that the object outlives the call made on it even if the
// field is replaced meanwhile. For static fields: handlers may use it during process exit, so its destruction releases
// nothing.
template <typename T>
class SharedReference
{
  public:
    constexpr SharedReference() noexcept : m_value() {}

    SharedReference(SharedReference const&) = delete;
    SharedReference& operator=(SharedReference const&) = delete;

    // NOLINTNEXTLINE(modernize-use-equals-default): a union's default would be deleted
    ~SharedReference() {}

    // Null when there is none.
    T Get() const noexcept
    {
        auto const value = m_value.load();
        return value ? *value : T(nullptr);
    }

    // Releases the previous object.
    void Set(T const& value) { m_value.store(value ? std::make_shared<T const>(value) : nullptr); }

    // Sets null if this object is the current one.
    void Clear(T const& object) noexcept
    {
        auto held = m_value.load();
        while (held && *held == object && !m_value.compare_exchange_weak(held, nullptr))
        {
        }
    }

  private:
    union {
        std::atomic<std::shared_ptr<T const>> m_value; // never destroyed
    };
};

} // namespace VelmoNotificationClient
