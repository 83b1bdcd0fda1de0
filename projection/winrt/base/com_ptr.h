// winrt::com_ptr: the owner of an interface of classic COM, of a binary interface, or of an implementation.
#pragma once
#include "winrt/base/object.h"

namespace winrt
{

template <typename T>
struct com_ptr
{
    using type = typename impl::abi<T>::type;

    com_ptr(std::nullptr_t = nullptr) noexcept {}
    com_ptr(void* object, take_ownership_from_abi_t) noexcept : m_object(static_cast<type*>(object)) {}
    com_ptr(type* object, take_ownership_from_abi_t) noexcept
        requires(!std::is_void_v<type>)
        : m_object(object)
    {
    }
    com_ptr(com_ptr const& other) noexcept : m_object(other.m_object) { add_reference(); }
    com_ptr(com_ptr&& other) noexcept : m_object(other.detach()) {}
    template <typename U>
        requires std::is_convertible_v<typename com_ptr<U>::type*, type*>
    com_ptr(com_ptr<U> const& other) noexcept : m_object(other.get())
    {
        add_reference();
    }
    template <typename U>
        requires std::is_convertible_v<typename com_ptr<U>::type*, type*>
    com_ptr(com_ptr<U>&& other) noexcept : m_object(other.detach())
    {
    }
    ~com_ptr() noexcept { release(); }
    com_ptr& operator=(com_ptr const& other) noexcept
    {
        com_ptr copy(other);
        swap(*this, copy);
        return *this;
    }
    com_ptr& operator=(com_ptr&& other) noexcept
    {
        com_ptr moved(std::move(other));
        swap(*this, moved);
        return *this;
    }
    com_ptr& operator=(std::nullptr_t) noexcept
    {
        release();
        return *this;
    }

    explicit operator bool() const noexcept { return m_object != nullptr; }
    type* operator->() const noexcept { return m_object; }
    type& operator*() const noexcept { return *m_object; }
    type* get() const noexcept { return m_object; }
    type** put() noexcept
    {
        release();
        return &m_object;
    }
    void** put_void() noexcept { return reinterpret_cast<void**>(put()); }
    void attach(type* object) noexcept
    {
        release();
        m_object = object;
    }
    type* detach() noexcept { return std::exchange(m_object, nullptr); }
    void copy_from(type* object) noexcept
    {
        com_ptr copy;
        copy.m_object = object;
        copy.add_reference();
        swap(*this, copy);
    }
    void copy_to(type** object) const noexcept
    {
        add_reference();
        *object = m_object;
    }

    template <typename To>
    impl::com_ref<To> as() const
    {
        if (!m_object)
        {
            return nullptr;
        }
        void* result = nullptr;
        check_hresult(as(guid_of<To>(), &result));
        return {result, take_ownership_from_abi};
    }
    template <typename To>
    impl::com_ref<To> try_as() const noexcept
    {
        if (!m_object)
        {
            return nullptr;
        }
        void* result = nullptr;
        as(guid_of<To>(), &result);
        return {result, take_ownership_from_abi};
    }
    hresult as(guid const& id, void** result) const noexcept { return m_object->QueryInterface(id, result); }

    // Calls a function of the system that returns an interface: capture(function, arguments...) appends id and place.
    template <typename F, typename... Arguments>
    void capture(F function, Arguments&&... arguments)
    {
        check_hresult(function(std::forward<Arguments>(arguments)..., guid_of<T>(), put_void()));
    }
    template <typename F, typename... Arguments>
    bool try_capture(F function, Arguments&&... arguments)
    {
        return function(std::forward<Arguments>(arguments)..., guid_of<T>(), put_void()) >= 0;
    }

    friend void swap(com_ptr& left, com_ptr& right) noexcept { std::swap(left.m_object, right.m_object); }
    friend bool operator==(com_ptr const& left, com_ptr const& right) noexcept
    {
        return left.m_object == right.m_object;
    }

  private:
    void add_reference() const noexcept
    {
        if (m_object)
        {
            m_object->AddRef();
        }
    }
    void release() noexcept
    {
        if (auto* object = std::exchange(m_object, nullptr))
        {
            object->Release();
        }
        // The analyzer does not see that Release, behind virtual calls, frees what is counted.
    } // NOLINT(clang-analyzer-cplusplus.NewDeleteLeaks)

    type* m_object{};
};

template <typename T>
auto get_abi(com_ptr<T> const& object) noexcept
{
    return object.get();
}

template <typename T>
void** put_abi(com_ptr<T>& object) noexcept
{
    return object.put_void();
}

} // namespace winrt
