#pragma once
#include <memory>
#include <windows.h>

namespace sim
{

// Owns a Win32 handle that CloseHandle closes. INVALID_HANDLE_VALUE counts as none.
class Handle
{
  public:
    Handle() noexcept = default;

    explicit Handle(HANDLE value) noexcept : m_value(value == INVALID_HANDLE_VALUE ? nullptr : value) {}

    explicit operator bool() const noexcept { return m_value != nullptr; }

    HANDLE Get() const noexcept { return m_value.get(); }

  private:
    struct Closer
    {
        void operator()(HANDLE value) const noexcept { CloseHandle(value); }
    };

    std::unique_ptr<void, Closer> m_value;
};

} // namespace sim
