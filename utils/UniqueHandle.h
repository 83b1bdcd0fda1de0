#pragma once
#include <utility>
#include <windows.h>

namespace zant
{

// Owns one kernel handle, or none. Some functions of Windows mark "none" by null, others by INVALID_HANDLE_VALUE; here
// it is always null.
class UniqueHandle
{
  public:
    UniqueHandle() noexcept = default;

    explicit UniqueHandle(HANDLE handle) noexcept : m_handle(handle == INVALID_HANDLE_VALUE ? nullptr : handle) {}

    UniqueHandle(UniqueHandle const&) = delete;

    UniqueHandle(UniqueHandle&& other) noexcept : m_handle(std::exchange(other.m_handle, nullptr)) {}

    UniqueHandle& operator=(UniqueHandle const&) = delete;

    UniqueHandle& operator=(UniqueHandle&& other) noexcept
    {
        if (this != &other)
        {
            Reset();
            m_handle = std::exchange(other.m_handle, nullptr);
        }
        return *this;
    }

    ~UniqueHandle() { Reset(); }

    explicit operator bool() const noexcept { return m_handle != nullptr; }

    HANDLE Get() const noexcept { return m_handle; }

    void Reset() noexcept
    {
        if (auto* const handle = std::exchange(m_handle, nullptr))
        {
            CloseHandle(handle);
        }
    }

  private:
    HANDLE m_handle = nullptr;
};

} // namespace zant
