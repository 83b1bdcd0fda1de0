#include "logging/LogTargetDefault.h"
#include "logging/Logger.h"

#include <cstring>
#include <gtest/gtest.h>
#include <numeric>
#include <vector>

using namespace zant;

namespace
{

// A pointer to a virtual member function holds, by this compiler's C++ ABI, 1 plus the offset of its entry in the table
// of virtual functions.
template <typename Member>
std::size_t Entry(Member member)
{
    std::uintptr_t word = 0;
    std::memcpy(&word, &member, sizeof word);
    return word % 2 == 1 ? (word - 1) / sizeof(void*) : SIZE_MAX;
}

std::vector<std::size_t> UpTo(std::size_t count)
{
    std::vector<std::size_t> entries(count);
    std::iota(entries.begin(), entries.end(), 0u);
    return entries;
}

template <typename L, typename C>
using Plain = std::uint64_t (L::*)(C const*, ...);
template <typename L, typename C>
using Detailed = std::uint64_t (L::*)(C const*, C const*, ...);
template <typename L, typename C>
using Scoped = Detailed<L, C>;
template <typename L, typename C>
using ScopedDetailed = std::uint64_t (L::*)(C const*, C const*, C const*, ...);
template <typename L, typename C>
using General = std::uint64_t (L::*)(LogLevel, C const*, C const*, C const*, ...);
template <typename L, typename C>
using List = std::uint64_t (L::*)(LogLevel, C const*, C const*, C const*, va_list);

template <typename L>
std::vector<std::size_t> LoggerEntries()
{
    return {
        Entry<Plain<L, char>>(&L::Trace),
        Entry<Plain<L, wchar_t>>(&L::Trace),
        Entry<Plain<L, char>>(&L::Debug),
        Entry<Plain<L, wchar_t>>(&L::Debug),
        Entry<Plain<L, char>>(&L::Info),
        Entry<Plain<L, wchar_t>>(&L::Info),
        Entry<Detailed<L, char>>(&L::Warn),
        Entry<Detailed<L, wchar_t>>(&L::Warn),
        Entry<Detailed<L, char>>(&L::Error),
        Entry<Detailed<L, wchar_t>>(&L::Error),
        Entry<Detailed<L, char>>(&L::Fatal),
        Entry<Detailed<L, wchar_t>>(&L::Fatal),
        Entry<General<L, char>>(&L::Log),
        Entry<General<L, wchar_t>>(&L::Log),
        Entry<List<L, char>>(&L::LogV),
        Entry<List<L, wchar_t>>(&L::LogV),
        Entry<Scoped<L, char>>(&L::TraceIn),
        Entry<Scoped<L, wchar_t>>(&L::TraceIn),
        Entry<Scoped<L, char>>(&L::DebugIn),
        Entry<Scoped<L, wchar_t>>(&L::DebugIn),
        Entry<Scoped<L, char>>(&L::InfoIn),
        Entry<Scoped<L, wchar_t>>(&L::InfoIn),
        Entry<ScopedDetailed<L, char>>(&L::WarnIn),
        Entry<ScopedDetailed<L, wchar_t>>(&L::WarnIn),
        Entry<ScopedDetailed<L, char>>(&L::ErrorIn),
        Entry<ScopedDetailed<L, wchar_t>>(&L::ErrorIn),
        Entry<ScopedDetailed<L, char>>(&L::FatalIn),
        Entry<ScopedDetailed<L, wchar_t>>(&L::FatalIn),
    };
}

template <typename T, typename C>
using TargetLog = bool (T::*)(LogLevel, wchar_t const*, wchar_t const*, wchar_t const*, wchar_t const*, C const*,
                              C const*, C const*, va_list, std::uint64_t, bool) noexcept;

template <typename T>
std::vector<std::size_t> TargetEntries()
{
    return {Entry(&T::OpenFile),
            Entry(&T::Open),
            Entry(&T::Close),
            Entry<TargetLog<T, char>>(&T::Log),
            Entry<TargetLog<T, wchar_t>>(&T::Log),
            Entry(&T::LogHeader)};
}

// Destroys and frees an object through an entry of its table.
void CallDeletingDestructor(void* object, std::size_t entry)
{
    void** table = nullptr;
    std::memcpy(&table, object, sizeof table);
    reinterpret_cast<void (*)(void*)>(table[entry])(object);
}

struct MarkingLogger : Logger
{
    explicit MarkingLogger(bool& destroyed) : m_destroyed(destroyed) {}

    ~MarkingLogger() override { m_destroyed = true; }

    bool& m_destroyed;
};

struct MarkingTarget : LogTargetDefault
{
    explicit MarkingTarget(bool& destroyed) : m_destroyed(destroyed) {}

    ~MarkingTarget() override { m_destroyed = true; }

    bool& m_destroyed;
};

} // namespace

TEST(SlotOrder, TheOperationsOfALoggerStandInTheirSlots)
{
    EXPECT_EQ(LoggerEntries<AbstractLogger>(), UpTo(28));
    EXPECT_EQ(LoggerEntries<Logger>(), UpTo(28));
}

// The destructor takes two entries: the first destroys, the second frees too.
TEST(SlotOrder, TheDestructorOfALoggerFollowsItsOperations)
{
    bool destroyed = false;
    CallDeletingDestructor(new MarkingLogger(destroyed), 28 + 1);
    EXPECT_TRUE(destroyed);
}

// Slots 0 and 2 to 6; the two entries of the destructor, slot 1, shift what follows by one.
TEST(SlotOrder, TheOperationsOfATargetStandInTheirSlots)
{
    std::vector<std::size_t> const expected = {0, 2 + 1, 3 + 1, 4 + 1, 5 + 1, 6 + 1};
    EXPECT_EQ(TargetEntries<LogTargetBase>(), expected);
    EXPECT_EQ(TargetEntries<LogTargetDefault>(), expected);
}

TEST(SlotOrder, RawWritesFollowTheOperationsOfTheBase)
{
    EXPECT_EQ(Entry<bool (LogTargetDefault::*)(char const*) noexcept>(&LogTargetDefault::WriteRaw), 7u + 1);
    EXPECT_EQ(Entry<bool (LogTargetDefault::*)(wchar_t const*) noexcept>(&LogTargetDefault::WriteRaw), 8u + 1);
}

TEST(SlotOrder, TheDestructorOfATargetIsItsSecondSlot)
{
    bool destroyed = false;
    CallDeletingDestructor(new MarkingTarget(destroyed), 1 + 1);
    EXPECT_TRUE(destroyed);
}
