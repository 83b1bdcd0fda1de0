#include "app/XamlMetaDataProvider.h"

using namespace winrt::Windows::UI::Xaml;

namespace VelmoNotificationClient
{

Markup::IXamlType XamlMetaDataProvider::GetXamlType(Interop::TypeName const& type)
{
    return GetXamlType(type.Name);
}

Markup::IXamlType XamlMetaDataProvider::GetXamlType(winrt::hstring const& fullName)
{
    return TypeInfo().GetXamlTypeByName(fullName);
}

XamlTypeInfoProvider const& XamlMetaDataProvider::TypeInfo()
{
    winrt::slim_lock_guard const guard(m_lock);
    return m_typeInfo ? *m_typeInfo : m_typeInfo.emplace();
}

} // namespace VelmoNotificationClient
