#pragma once
#include <winrt/Windows.UI.Xaml.Interop.h>
#include <winrt/Windows.UI.Xaml.Markup.h>

namespace VelmoNotificationClient
{

// A type as the XAML framework sees it. None of the app's types has members that markup can name, is a collection or
// has a string form.
struct XamlType : winrt::implements<XamlType, winrt::Windows::UI::Xaml::Markup::IXamlType>
{
    using IXamlMember = winrt::Windows::UI::Xaml::Markup::IXamlMember;
    using IXamlType = winrt::Windows::UI::Xaml::Markup::IXamlType;
    using Activate = IInspectable (*)();

    // baseType: null when the framework knows the base itself. activate: null for a type that it must not create.
    XamlType(winrt::hstring fullName, IXamlType baseType, Activate activate);

    IXamlType BaseType() const { return m_baseType; }

    winrt::hstring FullName() const { return m_fullName; }

    winrt::Windows::UI::Xaml::Interop::TypeName UnderlyingType() const;

    bool IsConstructible() const noexcept { return m_activate != nullptr; }

    // Creates an instance. Throws what its constructor throws, and E_NOTIMPL for a type that is not constructible.
    IInspectable ActivateInstance() const;

    bool IsArray() const noexcept { return false; }

    bool IsCollection() const noexcept { return false; }

    bool IsDictionary() const noexcept { return false; }

    bool IsMarkupExtension() const noexcept { return false; }

    bool IsBindable() const noexcept { return false; }

    IXamlMember ContentProperty() const noexcept { return nullptr; }

    IXamlMember GetMember(winrt::hstring const&) const noexcept { return nullptr; }

    IXamlType ItemType() const noexcept { return nullptr; }

    IXamlType KeyType() const noexcept { return nullptr; }

    // Nothing to initialise.
    void RunInitializer() const noexcept {}

    // These throw E_NOTIMPL.
    IInspectable CreateFromString(winrt::hstring const& value) const;
    void AddToVector(IInspectable const& instance, IInspectable const& value) const;
    void AddToMap(IInspectable const& instance, IInspectable const& key, IInspectable const& value) const;

  private:
    winrt::hstring m_fullName;
    IXamlType m_baseType;
    Activate m_activate;
};

} // namespace VelmoNotificationClient
