// winrt::array_view, an array lent for a call, and winrt::com_array, one whose ownership passes with the call.
#pragma once
#include "winrt/base/com_ptr.h"

namespace winrt
{

template <typename T>
struct array_view
{
    using value_type = T;
    using size_type = uint32_t;

    array_view() noexcept = default;
    array_view(T* data, uint32_t size) noexcept : m_data(data), m_size(size) {}
    array_view(T* first, T* last) noexcept : array_view(first, static_cast<uint32_t>(last - first)) {}
    template <typename C>
        requires requires(C& container) {
            { container.data() } -> std::convertible_to<T*>;
            container.size();
        }
    array_view(C& container) noexcept : array_view(container.data(), static_cast<uint32_t>(container.size()))
    {
    }
    template <size_t Size>
    array_view(T (&values)[Size]) noexcept : array_view(values, static_cast<uint32_t>(Size))
    {
    }
    array_view(std::initializer_list<std::remove_const_t<T>> values) noexcept
        requires std::is_const_v<T>
        : array_view(values.begin(), static_cast<uint32_t>(values.size()))
    {
    }

    T* data() const noexcept { return m_data; }
    uint32_t size() const noexcept { return m_size; }
    bool empty() const noexcept { return m_size == 0; }
    T* begin() const noexcept { return m_data; }
    T* end() const noexcept { return m_data + m_size; }
    T& operator[](uint32_t position) const noexcept { return m_data[position]; }

  protected:
    T* m_data{};
    uint32_t m_size{};
};

// Holds the system's task memory, element by element constructed.
template <typename T>
struct com_array : array_view<T>
{
    com_array() noexcept = default;
    explicit com_array(uint32_t size) : com_array(size, T{}) {}
    com_array(uint32_t size, T const& value) : com_array()
    {
        allocate(size);
        std::uninitialized_fill_n(this->m_data, size, value);
        this->m_size = size;
    }
    template <std::forward_iterator Iterator>
    com_array(Iterator first, Iterator last) : com_array()
    {
        auto const size = static_cast<uint32_t>(std::distance(first, last));
        allocate(size);
        std::uninitialized_copy(first, last, this->m_data);
        this->m_size = size;
    }
    com_array(std::initializer_list<T> values) : com_array(values.begin(), values.end()) {}
    explicit com_array(std::vector<T> const& values) : com_array(values.begin(), values.end()) {}
    com_array(void* data, uint32_t size, take_ownership_from_abi_t) noexcept
        : array_view<T>(static_cast<T*>(data), size)
    {
    }
    com_array(com_array&& other) noexcept : array_view<T>(other) { other.forget(); }
    com_array& operator=(com_array&& other) noexcept
    {
        if (this != &other)
        {
            clear();
            array_view<T>::operator=(other);
            other.forget();
        }
        return *this;
    }
    ~com_array() noexcept { clear(); }

    void clear() noexcept
    {
        std::destroy_n(this->m_data, this->m_size);
        impl::os::CoTaskMemFree(this->m_data);
        forget();
    }
    std::pair<uint32_t, T*> detach() noexcept
    {
        std::pair<uint32_t, T*> result(this->m_size, this->m_data);
        forget();
        return result;
    }

  private:
    void allocate(uint32_t size)
    {
        if (size == 0)
        {
            return;
        }
        this->m_data = static_cast<T*>(impl::os::CoTaskMemAlloc(size * sizeof(T)));
        if (!this->m_data)
        {
            throw std::bad_alloc();
        }
    }
    void forget() noexcept
    {
        this->m_data = nullptr;
        this->m_size = 0;
    }
};

} // namespace winrt
