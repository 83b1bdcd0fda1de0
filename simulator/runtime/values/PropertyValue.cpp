#include "simulator/runtime/Factory.h"
#include "simulator/runtime/values/ArrayValue.h"

namespace sim
{

namespace
{

// Makes objects of values.
struct PropertyValueFactory : Implements<PropertyValueFactory, IActivationFactory, Foundation::IPropertyValueStatics>
{
    IInspectable CreateString(winrt::hstring const& value) const
    {
        return InjectFault(L"PropertyValue.CreateString") ? nullptr : Default(value);
    }

    // The other members, which differ in the type of their argument alone.
    static IInspectable Default() { return nullptr; }

    static IInspectable Default(IInspectable const& value) { return value; }

    template <typename T>
    static IInspectable Default(T const& value)
    {
        return winrt::make<winrt::impl::reference<T>>(value);
    }

    template <typename T>
    static IInspectable Default(winrt::array_view<T const> const& values)
    {
        return winrt::make<ArrayValue<T>>(winrt::com_array<T>(values.begin(), values.end()));
    }
};

} // namespace

IInspectable MakePropertyValueFactory()
{
    return winrt::make<PropertyValueFactory>();
}

} // namespace sim
