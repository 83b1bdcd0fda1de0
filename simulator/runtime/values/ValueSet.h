#pragma once
#include "simulator/runtime/Runtime.h"
#include "simulator/runtime/values/NamedValues.h"

namespace sim
{

// Windows.Foundation.Collections.ValueSet: values by name, in the order in which they were inserted.
struct ValueSet : NamedMap<ValueSet>
{
    using class_type = Collections::ValueSet;

    explicit ValueSet(NamedValues::Entries entries = {}) : NamedMap(std::make_shared<NamedValues>(std::move(entries)))
    {
    }

    // Fails with E_BOUNDS for a missing name.
    IInspectable Lookup(winrt::hstring const& name) const
    {
        if (InjectFault(L"ValueSet.Lookup"))
        {
            return nullptr;
        }
        auto const found = m_values->Find(name);
        return found ? *found : throw winrt::hresult_out_of_bounds();
    }

    bool Insert(winrt::hstring const& name, IInspectable const& value) const
    {
        InjectFault(L"ValueSet.Insert");
        return m_values->Insert(name, value);
    }

    // As Lookup.
    void Remove(winrt::hstring const& name) const
    {
        if (!m_values->Remove(name))
        {
            throw winrt::hresult_out_of_bounds();
        }
    }

    void Clear() const { m_values->Clear(); }
};

} // namespace sim
