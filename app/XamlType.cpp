#include "app/XamlType.h"

using namespace winrt::Windows::UI::Xaml::Interop;

namespace VelmoNotificationClient
{

XamlType::XamlType(winrt::hstring fullName, IXamlType baseType, Activate activate)
    : m_fullName(std::move(fullName)), m_baseType(std::move(baseType)), m_activate(activate)
{
}

TypeName XamlType::UnderlyingType() const
{
    return {m_fullName, TypeKind::Metadata};
}

winrt::Windows::Foundation::IInspectable XamlType::ActivateInstance() const
{
    return m_activate ? m_activate() : throw winrt::hresult_not_implemented();
}

winrt::Windows::Foundation::IInspectable XamlType::CreateFromString(winrt::hstring const&) const
{
    throw winrt::hresult_not_implemented();
}

void XamlType::AddToVector(IInspectable const&, IInspectable const&) const
{
    throw winrt::hresult_not_implemented();
}

void XamlType::AddToMap(IInspectable const&, IInspectable const&, IInspectable const&) const
{
    throw winrt::hresult_not_implemented();
}

} // namespace VelmoNotificationClient
