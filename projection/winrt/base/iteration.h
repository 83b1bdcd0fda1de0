// Iterators of collections for range-based for.
#pragma once

namespace winrt::impl
{

template <typename D, typename T>
auto consume<D, winrt::Windows::Foundation::Collections::IIterator<T>>::operator++()
{
    if (!MoveNext())
    {
        static_cast<D&>(*this) = nullptr; // the end
    }
    return static_cast<D const&>(*this);
}

template <typename D, typename T>
auto consume<D, winrt::Windows::Foundation::Collections::IIterator<T>>::operator*() const
{
    return Current();
}

} // namespace winrt::impl

namespace winrt::Windows::Foundation::Collections
{

template <typename C>
    requires requires(C const& collection) { collection.First(); }
auto begin(C const& collection)
{
    auto first = collection.First();
    return first.HasCurrent() ? first : nullptr;
}

template <typename C>
    requires requires(C const& collection) { collection.First(); }
auto end(C const& collection) noexcept -> decltype(collection.First())
{
    return nullptr;
}

} // namespace winrt::Windows::Foundation::Collections
