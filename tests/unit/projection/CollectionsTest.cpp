#include "tests/unit/projection/PropertyValues.h"

#include <winrt/Windows.Foundation.Collections.h>
#include <winrt/Windows.Foundation.h>

#include <gtest/gtest.h>
#include <map>

using namespace test;
using namespace winrt;
using namespace Windows::Foundation;
using namespace Windows::Foundation::Collections;

namespace
{

using Object = Windows::Foundation::IInspectable;
using Pair = IKeyValuePair<hstring, Object>;

struct TestPair : implements<TestPair, Pair>
{
    TestPair(hstring key, Object value) : m_key(std::move(key)), m_value(std::move(value)) {}

    hstring Key() const { return m_key; }
    Object Value() const { return m_value; }

  private:
    hstring m_key;
    Object m_value;
};

struct TestIterator : implements<TestIterator, IIterator<Pair>>
{
    explicit TestIterator(std::vector<Pair> pairs) : m_pairs(std::move(pairs)) {}

    Pair Current() const
    {
        if (!HasCurrent())
        {
            throw hresult_out_of_bounds();
        }
        return m_pairs[m_position];
    }
    bool HasCurrent() const { return m_position < m_pairs.size(); }
    bool MoveNext()
    {
        ++m_position;
        return HasCurrent();
    }
    uint32_t GetMany(array_view<Pair> items)
    {
        uint32_t count = 0;
        for (; count < items.size() && HasCurrent(); MoveNext())
        {
            items[count++] = Current();
        }
        return count;
    }

  private:
    std::vector<Pair> m_pairs;
    size_t m_position = 0;
};

struct TestValueSet
    : implements<TestValueSet, IPropertySet, IObservableMap<hstring, Object>, IMap<hstring, Object>, IIterable<Pair>>
{
    Object Lookup(hstring const& key) const
    {
        auto const found = m_values.find(key);
        return found == m_values.end() ? throw hresult_out_of_bounds() : found->second;
    }
    uint32_t Size() const { return static_cast<uint32_t>(m_values.size()); }
    bool HasKey(hstring const& key) const { return m_values.contains(key); }
    IMapView<hstring, Object> GetView() const { throw hresult_not_implemented(); }
    bool Insert(hstring const& key, Object const& value)
    {
        auto const replaced = !m_values.insert_or_assign(key, value).second;
        m_changed(*this, nullptr);
        return replaced;
    }
    void Remove(hstring const& key) { m_values.erase(key); }
    void Clear() { m_values.clear(); }
    event_token MapChanged(MapChangedEventHandler<hstring, Object> const& handler) { return m_changed.add(handler); }
    void MapChanged(event_token token) { m_changed.remove(token); }
    IIterator<Pair> First() const
    {
        std::vector<Pair> pairs;
        for (auto const& [key, value] : m_values)
        {
            pairs.push_back(make<TestPair>(key, value));
        }
        return make<TestIterator>(std::move(pairs));
    }

  private:
    std::map<hstring, Object> m_values;
    winrt::event<MapChangedEventHandler<hstring, Object>> m_changed;
};

struct ValueSetFactory : implements<ValueSetFactory, Windows::Foundation::IActivationFactory>
{
    Object ActivateInstance() const { return make<TestValueSet>(); }
};

struct TestVector : implements<TestVector, IVector<int32_t>>
{
    int32_t GetAt(uint32_t index) const { return m_values.at(index); }
    uint32_t Size() const { return static_cast<uint32_t>(m_values.size()); }
    IVectorView<int32_t> GetView() const { throw hresult_not_implemented(); }
    bool IndexOf(int32_t value, uint32_t& index) const
    {
        auto const found = std::find(m_values.begin(), m_values.end(), value);
        index = static_cast<uint32_t>(found - m_values.begin());
        return found != m_values.end();
    }
    void SetAt(uint32_t index, int32_t value) { m_values.at(index) = value; }
    void InsertAt(uint32_t index, int32_t value) { m_values.insert(m_values.begin() + index, value); }
    void RemoveAt(uint32_t index) { m_values.erase(m_values.begin() + index); }
    void Append(int32_t value) { m_values.push_back(value); }
    void RemoveAtEnd() { m_values.pop_back(); }
    void Clear() { m_values.clear(); }
    uint32_t GetMany(uint32_t start, array_view<int32_t> items) const
    {
        auto const count = std::min(items.size(), Size() - start);
        std::copy_n(m_values.begin() + start, count, items.begin());
        return count;
    }
    void ReplaceAll(array_view<int32_t const> items) { m_values.assign(items.begin(), items.end()); }

  private:
    std::vector<int32_t> m_values;
};

class CollectionsValueSet : public testing::Test
{
  protected:
    CollectionsValueSet()
    {
        platform.Provide(L"Windows.Foundation.PropertyValue", [] { return make<PropertyValues>(); });
        platform.Provide(L"Windows.Foundation.Collections.ValueSet", [] { return make<ValueSetFactory>(); });
    }

    TestPlatform platform;
};

} // namespace

TEST_F(CollectionsValueSet, HaveTheMethodsOfTheirInterfaces)
{
    ValueSet const set;
    EXPECT_FALSE(set.Insert(L"Command", box_value(L"GetChannelUri")));
    EXPECT_TRUE(set.Insert(L"Command", box_value(L"ExitZEB")));
    EXPECT_EQ(unbox_value<hstring>(set.Lookup(L"Command")), L"ExitZEB");
    EXPECT_TRUE(set.HasKey(L"Command"));
    EXPECT_EQ(set.Size(), 1u);
    EXPECT_THROW(set.Lookup(L"Missing"), hresult_out_of_bounds);
    set.Remove(L"Command");
    EXPECT_EQ(set.Size(), 0u);
}

TEST_F(CollectionsValueSet, AreWalkedThrough)
{
    ValueSet const set;
    for (auto const& pair : set)
    {
        ADD_FAILURE() << "empty, yet it has " << to_string(pair.Key());
    }
    set.Insert(L"a", box_value(1));
    set.Insert(L"b", box_value(2));
    std::wstring keys;
    int sum = 0;
    for (auto const& pair : set)
    {
        keys += pair.Key();
        sum += unbox_value<int32_t>(pair.Value());
    }
    EXPECT_EQ(keys, L"ab");
    EXPECT_EQ(sum, 3);
}

TEST_F(CollectionsValueSet, GiveSeveralPairsAtOnce)
{
    ValueSet const set;
    set.Insert(L"a", box_value(1));
    set.Insert(L"b", box_value(2));
    std::vector<Pair> pairs(3);
    EXPECT_EQ(set.First().GetMany(pairs), 2u);
    EXPECT_EQ(pairs[1].Key(), L"b");
    EXPECT_FALSE(pairs[2]);
}

TEST_F(CollectionsValueSet, TellTheirChanges)
{
    ValueSet const set;
    int changes = 0;
    auto const token = set.MapChanged([&](auto&&, auto&&) { ++changes; });
    set.Insert(L"a", nullptr);
    set.MapChanged(token);
    set.Insert(L"b", nullptr);
    EXPECT_EQ(changes, 1);
}

TEST_F(CollectionsValueSet, ConvertToTheirInterfaces)
{
    ValueSet const set;
    IMap<hstring, Object> const map = set;
    map.Insert(L"a", nullptr);
    IPropertySet const properties = set;
    EXPECT_EQ(properties.Size(), 1u);
    EXPECT_EQ(map, set);
}

TEST(CollectionsVector, HasItsMethods)
{
    IVector<int32_t> const vector = make<TestVector>();
    vector.Append(1);
    vector.InsertAt(0, 2);
    vector.SetAt(1, 3);
    EXPECT_EQ(vector.GetAt(1), 3);
    uint32_t index = 9;
    EXPECT_TRUE(vector.IndexOf(3, index));
    EXPECT_EQ(index, 1u);
    EXPECT_THROW(vector.GetAt(5), hresult_out_of_bounds);
    vector.ReplaceAll({4, 5, 6});
    int32_t values[2] = {};
    EXPECT_EQ(vector.GetMany(1, values), 2u);
    EXPECT_EQ(values[1], 6);
    vector.RemoveAt(0);
    vector.RemoveAtEnd();
    EXPECT_EQ(vector.Size(), 1u);
    vector.Clear();
    EXPECT_EQ(vector.Size(), 0u);
}
