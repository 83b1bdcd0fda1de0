#pragma once
#include "simulator/runtime/Namespaces.h"

#include <vector>
#include <windows.h>
#include <winrt/Windows.Foundation.h>

namespace sim
{

// The number of a type's arrays is the type's own and this.
constexpr auto arrayTypes = static_cast<std::int32_t>(Foundation::PropertyType::UInt8Array) -
                            static_cast<std::int32_t>(Foundation::PropertyType::UInt8);

template <typename T>
constexpr Foundation::PropertyType ArrayTypeOf()
{
    if constexpr (std::is_same_v<T, IInspectable>)
    {
        return Foundation::PropertyType::InspectableArray;
    }
    else
    {
        return static_cast<Foundation::PropertyType>(static_cast<std::int32_t>(winrt::impl::property_type_of<T>()) +
                                                     arrayTypes);
    }
}

// An array as a value. The getters of all other types fail with TYPE_E_TYPEMISMATCH.
template <typename T>
struct ArrayValue : winrt::implements<ArrayValue<T>, Foundation::IReferenceArray<T>, Foundation::IPropertyValue>
{
    explicit ArrayValue(winrt::array_view<T const> values) : m_values(values.begin(), values.end()) {}

    winrt::com_array<T> Value() const { return {m_values.begin(), m_values.end()}; }

    Foundation::PropertyType Type() const noexcept { return ArrayTypeOf<T>(); }

    bool IsNumericScalar() const noexcept { return false; }

    // clang-format off
    std::uint8_t GetUInt8() const { ThrowMismatch(); }
    std::int16_t GetInt16() const { ThrowMismatch(); }
    std::uint16_t GetUInt16() const { ThrowMismatch(); }
    std::int32_t GetInt32() const { ThrowMismatch(); }
    std::uint32_t GetUInt32() const { ThrowMismatch(); }
    std::int64_t GetInt64() const { ThrowMismatch(); }
    std::uint64_t GetUInt64() const { ThrowMismatch(); }
    float GetSingle() const { ThrowMismatch(); }
    double GetDouble() const { ThrowMismatch(); }
    char16_t GetChar16() const { ThrowMismatch(); }
    bool GetBoolean() const { ThrowMismatch(); }
    winrt::hstring GetString() const { ThrowMismatch(); }
    winrt::guid GetGuid() const { ThrowMismatch(); }
    Foundation::DateTime GetDateTime() const { ThrowMismatch(); }
    Foundation::TimeSpan GetTimeSpan() const { ThrowMismatch(); }
    Foundation::Point GetPoint() const { ThrowMismatch(); }
    Foundation::Size GetSize() const { ThrowMismatch(); }
    Foundation::Rect GetRect() const { ThrowMismatch(); }

    void GetUInt8Array(winrt::com_array<std::uint8_t>& values) const { Get(values); }
    void GetInt16Array(winrt::com_array<std::int16_t>& values) const { Get(values); }
    void GetUInt16Array(winrt::com_array<std::uint16_t>& values) const { Get(values); }
    void GetInt32Array(winrt::com_array<std::int32_t>& values) const { Get(values); }
    void GetUInt32Array(winrt::com_array<std::uint32_t>& values) const { Get(values); }
    void GetInt64Array(winrt::com_array<std::int64_t>& values) const { Get(values); }
    void GetUInt64Array(winrt::com_array<std::uint64_t>& values) const { Get(values); }
    void GetSingleArray(winrt::com_array<float>& values) const { Get(values); }
    void GetDoubleArray(winrt::com_array<double>& values) const { Get(values); }
    void GetChar16Array(winrt::com_array<char16_t>& values) const { Get(values); }
    void GetBooleanArray(winrt::com_array<bool>& values) const { Get(values); }
    void GetStringArray(winrt::com_array<winrt::hstring>& values) const { Get(values); }
    void GetInspectableArray(winrt::com_array<IInspectable>& values) const { Get(values); }
    void GetGuidArray(winrt::com_array<winrt::guid>& values) const { Get(values); }
    void GetDateTimeArray(winrt::com_array<Foundation::DateTime>& values) const { Get(values); }
    void GetTimeSpanArray(winrt::com_array<Foundation::TimeSpan>& values) const { Get(values); }
    void GetPointArray(winrt::com_array<Foundation::Point>& values) const { Get(values); }
    void GetSizeArray(winrt::com_array<Foundation::Size>& values) const { Get(values); }
    void GetRectArray(winrt::com_array<Foundation::Rect>& values) const { Get(values); }
    // clang-format on

    // For the platform itself.
    std::vector<T> const& Values() const noexcept { return m_values; }

  private:
    [[noreturn]] static void ThrowMismatch() { throw winrt::hresult_error(TYPE_E_TYPEMISMATCH); }

    template <typename U>
    void Get(winrt::com_array<U>& values) const
    {
        if constexpr (std::is_same_v<T, U>)
        {
            values = Value();
        }
        else
        {
            ThrowMismatch();
        }
    }

    std::vector<T> m_values;
};

} // namespace sim
