// How a projected type gets at the binary interface behind one of its methods.
#pragma once
#include "winrt/base/binding.h"

namespace winrt::impl
{

// Interface I of an object for the length of one call: the object's own pointer where it is an I already, else the
// result of a query.
template <typename I, typename D>
struct callee
{
    explicit callee(D const& object) : m_interface(object.template try_as<I>())
    {
        if (!m_interface)
        {
            throw hresult_no_interface();
        }
    }
    abi<I>::type* operator->() const noexcept { return static_cast<typename abi<I>::type*>(get_abi(m_interface)); }

  private:
    I m_interface;
};

template <typename I, typename D>
    requires std::is_base_of_v<I, D>
struct callee<I, D>
{
    explicit callee(D const& object) noexcept : m_interface(static_cast<typename abi<I>::type*>(get_abi(object))) {}
    abi<I>::type* operator->() const noexcept { return m_interface; }

  private:
    abi<I>::type* m_interface;
};

template <typename D, typename I>
callee<I, D> self(consume<D, I> const& object)
{
    return callee<I, D>(static_cast<D const&>(object));
}

// The methods of the further interfaces of D, and conversions to them.
template <typename D, typename I>
struct require_one : consume<D, I>
{
    operator I() const noexcept { return static_cast<D const*>(this)->template try_as<I>(); }
};

template <typename D, typename... I>
struct require : require_one<D, I>...
{
};

// Conversions to the classes that D derives from.
template <typename D, typename Base>
struct base_one
{
    operator Base() const noexcept { return static_cast<D const*>(this)->template try_as<Base>(); }
};

template <typename D, typename... Base>
struct base : base_one<D, Base>...
{
};

} // namespace winrt::impl
