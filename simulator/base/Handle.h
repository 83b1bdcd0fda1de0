#pragma once
#include <utility>
#include <windows.h>

namespace sim
{

// Owns a Win32 handle that CloseHandle closes. INVALID_HANDLE_VALUE counts as none.
class Handle
{
  public:
    Handle() noexcept = default;

    explicit Handle(HANDLE value) noexcept : m_value(value == INVALID_HANDLE_VALUE ? nullptr : value) {}

    Handle(Handle const&) = delete;

    Handle(Handle&& other) noexcept : m_value(std::exchange(other.m_value, nullptr)) {}

    Handle& operator=(Handle const&) = delete;

    Handle& operator=(Handle&& other) noexcept
    {
        std::swap(m_value, other.m_value);
        return *this;
    }

    ~Handle()
    {
        if (m_value)
        {
            CloseHandle(m_value);
        }
    }

    explicit operator bool() const noexcept { return m_value != nullptr; }

    HANDLE Get() const noexcept { return m_value; }

  private:
    HANDLE m_value = nullptr;
};

} // namespace sim
