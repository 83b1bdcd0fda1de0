#include "logging/LogTargetDefault.h"
#include "logging/LogTargetRegistry.h"
#include "logging/Logger.h"
#include "tests/support/RecordingTarget.h"

#include <algorithm>
#include <cstring>
#include <gtest/gtest.h>

using namespace test;
using namespace zant;

namespace
{

template <typename... Fields>
bool StandInThisOrder(Fields const&... fields)
{
    std::initializer_list<std::uintptr_t> const addresses = {reinterpret_cast<std::uintptr_t>(&fields)...};
    return std::ranges::is_sorted(addresses, std::ranges::less_equal());
}

} // namespace

// The pointer to the table of virtual functions stands before it.
TEST(FieldOrder, ALoggerBeginsWithItsRegistry)
{
    Logger const logger;
    LogTargetRegistry* registry = nullptr;
    std::memcpy(&registry, reinterpret_cast<char const*>(&logger) + sizeof(void*), sizeof registry);
    EXPECT_EQ(registry, &GetLogTargetRegistry());
    EXPECT_EQ(reinterpret_cast<char const*>(&logger.reserved), reinterpret_cast<char const*>(&logger) + 16);
}

TEST(FieldOrder, ALoggerHoldsItsColumnsAndThenItsGroup)
{
    Logger const logger;
    EXPECT_TRUE(StandInThisOrder(logger.reserved, logger.product, logger.component, logger.category));
    auto const* const behind = reinterpret_cast<char const*>(&logger.category) + sizeof logger.category;
    EXPECT_EQ(*reinterpret_cast<std::wstring const*>(behind), L"ZEB");
}

TEST(FieldOrder, ATargetHoldsItsFieldsInTheOrderOfTheirDeclaration)
{
    RecordingTarget const target(L"");
    EXPECT_TRUE(StandInThisOrder(target.group, target.separator, target.fileName, target.filePath, target.threshold,
                                 target.file, target.enabled, target.isOpen, target.refCount, target.refLock,
                                 target.wideOutput));
}

TEST(FieldOrder, TheFieldsOfTheTargetOfAFileFollowThoseOfItsBase)
{
    LogTargetDefault const target;
    EXPECT_TRUE(StandInThisOrder(target.wideOutput, target.lock, target.storedHeader, target.headerPending,
                                 target.useLock, target.setAsidePath, target.lastCheck, target.lastLine,
                                 target.maskedKeys));
}

TEST(FieldOrder, AHeaderHoldsTitleEntriesClosingAndItsFlag)
{
    LogHeaderText const header;
    EXPECT_TRUE(StandInThisOrder(header.title, header.entries, header.closing, header.merge));
}
