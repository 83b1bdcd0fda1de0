#include "tests/support/WrappedSystem.h"
#include "utils/NamedMutex.h"

#include <gtest/gtest.h>
#include <string>

using namespace test;
using namespace zant;

namespace
{

// A name of the test's own: all processes of a session see each other's mutexes.
std::wstring OwnName()
{
    return L"CreateOrOpenMutex " + std::to_wstring(GetCurrentProcessId());
}

} // namespace

TEST(CreateOrOpenMutex, CreatesOneWithoutAnOwner)
{
    UniqueHandle holder;
    CreateMutexCall const call([](auto next, SECURITY_ATTRIBUTES* security, BOOL isOwner, wchar_t const* name) {
        EXPECT_EQ(security, nullptr);
        EXPECT_FALSE(isOwner);
        EXPECT_EQ(name, OwnName());
        return next(security, isOwner, name);
    });
    EXPECT_TRUE(CreateOrOpenMutex(holder, OwnName().c_str()));
    EXPECT_TRUE(holder);
}

TEST(CreateOrOpenMutex, LeavesAHolderThatHasOne)
{
    UniqueHandle holder(CreateMutexW(nullptr, FALSE, nullptr));
    auto* const before = holder.Get();
    CreateMutexCall const fault([](auto...) -> HANDLE {
        ADD_FAILURE() << "nothing is to be created";
        return nullptr;
    });
    EXPECT_TRUE(CreateOrOpenMutex(holder, OwnName().c_str()));
    EXPECT_EQ(holder.Get(), before);
}

TEST(CreateOrOpenMutex, OpensWithoutAnyRightWhereCreatingIsDenied)
{
    UniqueHandle const others(CreateMutexW(nullptr, FALSE, OwnName().c_str()));
    CreateMutexCall const denied(Failing(HANDLE(nullptr), ERROR_ACCESS_DENIED));
    int opened = 0;
    OpenMutexCall const open([&](auto next, DWORD access, BOOL inherit, wchar_t const* name) {
        ++opened;
        EXPECT_EQ(access, 0u);
        EXPECT_EQ(name, OwnName());
        return next(access, inherit, name);
    });
    UniqueHandle holder;
    EXPECT_TRUE(CreateOrOpenMutex(holder, OwnName().c_str()));
    EXPECT_TRUE(holder);
    EXPECT_EQ(opened, 1);
}

TEST(CreateOrOpenMutex, FailsWhereNeitherWorks)
{
    CreateMutexCall const denied(Failing(HANDLE(nullptr), ERROR_ACCESS_DENIED));
    OpenMutexCall const missing(Failing(HANDLE(nullptr), ERROR_FILE_NOT_FOUND));
    UniqueHandle holder;
    EXPECT_FALSE(CreateOrOpenMutex(holder, OwnName().c_str()));
    EXPECT_FALSE(holder);
}

TEST(CreateOrOpenMutex, OpensNothingAfterAnyOtherFailure)
{
    UniqueHandle const others(CreateMutexW(nullptr, FALSE, OwnName().c_str()));
    CreateMutexCall const fault(Failing(HANDLE(nullptr), ERROR_INVALID_HANDLE));
    OpenMutexCall const open([](auto...) -> HANDLE {
        ADD_FAILURE() << "nothing is to be opened";
        return nullptr;
    });
    UniqueHandle holder;
    EXPECT_FALSE(CreateOrOpenMutex(holder, OwnName().c_str()));
}
