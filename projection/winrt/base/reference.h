// The object behind a boxed value: answers as IReference<T> and as IPropertyValue.
#pragma once

namespace winrt::impl
{

template <typename T>
consteval Windows::Foundation::PropertyType property_type_of() noexcept
{
    using enum Windows::Foundation::PropertyType;
    // clang-format off
    if constexpr (std::is_same_v<T, uint8_t>) { return UInt8; }
    else if constexpr (std::is_same_v<T, int16_t>) { return Int16; }
    else if constexpr (std::is_same_v<T, uint16_t>) { return UInt16; }
    else if constexpr (std::is_same_v<T, int32_t>) { return Int32; }
    else if constexpr (std::is_same_v<T, uint32_t>) { return UInt32; }
    else if constexpr (std::is_same_v<T, int64_t>) { return Int64; }
    else if constexpr (std::is_same_v<T, uint64_t>) { return UInt64; }
    else if constexpr (std::is_same_v<T, float>) { return Single; }
    else if constexpr (std::is_same_v<T, double>) { return Double; }
    else if constexpr (std::is_same_v<T, char16_t>) { return Char16; }
    else if constexpr (std::is_same_v<T, bool>) { return Boolean; }
    else if constexpr (std::is_same_v<T, hstring>) { return String; }
    else if constexpr (std::is_same_v<T, guid>) { return Guid; }
    else if constexpr (std::is_same_v<T, Windows::Foundation::DateTime>) { return DateTime; }
    else if constexpr (std::is_same_v<T, Windows::Foundation::TimeSpan>) { return TimeSpan; }
    else if constexpr (std::is_same_v<T, Windows::Foundation::Point>) { return Point; }
    else if constexpr (std::is_same_v<T, Windows::Foundation::Size>) { return Size; }
    else if constexpr (std::is_same_v<T, Windows::Foundation::Rect>) { return Rect; }
    else { return OtherType; }
    // clang-format on
}

// A getter for another type than the value's fails: values are not converted.
template <typename T>
struct reference : implements<reference<T>, Windows::Foundation::IReference<T>, Windows::Foundation::IPropertyValue>
{
    explicit reference(T const& value) : m_value(value) {}

    T Value() const { return m_value; }
    Windows::Foundation::PropertyType Type() const noexcept { return property_type_of<T>(); }
    bool IsNumericScalar() const noexcept
    {
        return std::is_arithmetic_v<T> && !std::is_same_v<T, bool> && !std::is_same_v<T, char16_t>;
    }

    uint8_t GetUInt8() const { return value_as<uint8_t>(); }
    int16_t GetInt16() const { return value_as<int16_t>(); }
    uint16_t GetUInt16() const { return value_as<uint16_t>(); }
    int32_t GetInt32() const { return value_as<int32_t>(); }
    uint32_t GetUInt32() const { return value_as<uint32_t>(); }
    int64_t GetInt64() const { return value_as<int64_t>(); }
    uint64_t GetUInt64() const { return value_as<uint64_t>(); }
    float GetSingle() const { return value_as<float>(); }
    double GetDouble() const { return value_as<double>(); }
    char16_t GetChar16() const { return value_as<char16_t>(); }
    bool GetBoolean() const { return value_as<bool>(); }
    hstring GetString() const { return value_as<hstring>(); }
    guid GetGuid() const { return value_as<guid>(); }
    Windows::Foundation::DateTime GetDateTime() const { return value_as<Windows::Foundation::DateTime>(); }
    Windows::Foundation::TimeSpan GetTimeSpan() const { return value_as<Windows::Foundation::TimeSpan>(); }
    Windows::Foundation::Point GetPoint() const { return value_as<Windows::Foundation::Point>(); }
    Windows::Foundation::Size GetSize() const { return value_as<Windows::Foundation::Size>(); }
    Windows::Foundation::Rect GetRect() const { return value_as<Windows::Foundation::Rect>(); }

    void GetUInt8Array(com_array<uint8_t>&) const { throw_mismatch(); }
    void GetInt16Array(com_array<int16_t>&) const { throw_mismatch(); }
    void GetUInt16Array(com_array<uint16_t>&) const { throw_mismatch(); }
    void GetInt32Array(com_array<int32_t>&) const { throw_mismatch(); }
    void GetUInt32Array(com_array<uint32_t>&) const { throw_mismatch(); }
    void GetInt64Array(com_array<int64_t>&) const { throw_mismatch(); }
    void GetUInt64Array(com_array<uint64_t>&) const { throw_mismatch(); }
    void GetSingleArray(com_array<float>&) const { throw_mismatch(); }
    void GetDoubleArray(com_array<double>&) const { throw_mismatch(); }
    void GetChar16Array(com_array<char16_t>&) const { throw_mismatch(); }
    void GetBooleanArray(com_array<bool>&) const { throw_mismatch(); }
    void GetStringArray(com_array<hstring>&) const { throw_mismatch(); }
    void GetInspectableArray(com_array<Windows::Foundation::IInspectable>&) const { throw_mismatch(); }
    void GetGuidArray(com_array<guid>&) const { throw_mismatch(); }
    void GetDateTimeArray(com_array<Windows::Foundation::DateTime>&) const { throw_mismatch(); }
    void GetTimeSpanArray(com_array<Windows::Foundation::TimeSpan>&) const { throw_mismatch(); }
    void GetPointArray(com_array<Windows::Foundation::Point>&) const { throw_mismatch(); }
    void GetSizeArray(com_array<Windows::Foundation::Size>&) const { throw_mismatch(); }
    void GetRectArray(com_array<Windows::Foundation::Rect>&) const { throw_mismatch(); }

  private:
    [[noreturn]] static void throw_mismatch()
    {
        constexpr auto typeMismatch = static_cast<int32_t>(0x80028CA0);
        throw hresult_error(typeMismatch);
    }

    template <typename U>
    U value_as() const
    {
        if constexpr (std::is_same_v<T, U>)
        {
            return m_value;
        }
        else
        {
            throw_mismatch();
        }
    }

    T m_value;
};

} // namespace winrt::impl
