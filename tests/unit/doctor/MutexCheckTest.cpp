#include "doctor/live/MutexCheck.h"

#include "tests/unit/doctor/LiveSystem.h"
#include "utils/UniqueHandle.h"

#include <gtest/gtest.h>
#include <thread>

using doctor::Result;

namespace
{

constexpr wchar_t containerPath[] = L"AppContainerNamedObjects\\S-1-15-2-1";

std::wstring derivedFor;

HRESULT WINAPI DeriveSidFor(PCWSTR container, PSID* sid)
{
    derivedFor = container;
    SID_IDENTIFIER_AUTHORITY authority = {{0, 0, 0, 0, 0, 15}};
    return AllocateAndInitializeSid(&authority, 2, 2, 1, 0, 0, 0, 0, 0, 0, sid) ? S_OK : E_FAIL;
}

HRESULT WINAPI DeriveNone(PCWSTR, PSID*)
{
    return E_INVALIDARG;
}

BOOL WINAPI ObjectPath(HANDLE, PSID sid, ULONG length, LPWSTR path, PULONG)
{
    std::wstring_view const text = containerPath;
    return IsValidSid(sid) && length > text.size() && text.copy(path, text.size()) != 0;
}

BOOL WINAPI NoObjectPath(HANDLE, PSID, ULONG, LPWSTR, PULONG)
{
    return FALSE;
}

// The mutex of real apps may be in use meanwhile: the test has one of its own, under a name of its choice.
class MutexCheck : public testing::Test
{
  protected:
    void HaveContainer()
    {
        m_functions.Set("DeriveAppContainerSidFromAppContainerName", &DeriveSidFor);
        m_functions.Set("GetAppContainerNamedObjectPath", &ObjectPath);
    }

    doctor::Finding Look(bool appRuns)
    {
        m_asked.clear();
        auto finding = doctor::MutexFinding(L"family", appRuns);
        EXPECT_EQ(finding.stage, doctor::Stage::StartUp);
        return finding;
    }

    test::SystemFunctions m_functions;
    test::SessionIdCall m_session{[](auto, DWORD, DWORD* session) {
        *session = 3;
        return TRUE;
    }};
    zant::UniqueHandle m_mutex{CreateMutexW(nullptr, FALSE, nullptr)};
    std::wstring m_name = L"KZEB.log"; // where it is
    std::vector<std::wstring> m_asked;
    test::OpenMutexCall m_open{[this](auto, DWORD access, BOOL, LPCWSTR name) -> HANDLE {
        EXPECT_EQ(access, static_cast<DWORD>(SYNCHRONIZE));
        m_asked.emplace_back(name);
        HANDLE copy = nullptr;
        if (name == m_name)
        {
            DuplicateHandle(GetCurrentProcess(), m_mutex.Get(), GetCurrentProcess(), &copy, SYNCHRONIZE, FALSE, 0);
        }
        SetLastError(copy == nullptr ? ERROR_FILE_NOT_FOUND : ERROR_SUCCESS);
        return copy;
    }};
};

} // namespace

TEST_F(MutexCheck, LooksInTheAppsContainerFirst)
{
    HaveContainer();
    auto const inContainer = std::wstring(containerPath) + L"\\KZEB.log";
    EXPECT_EQ(doctor::MutexNames(L"family"),
              (std::vector<std::wstring>{inContainer, L"Session\\3\\" + inContainer, L"KZEB.log"}));
    EXPECT_EQ(derivedFor, L"family");
    m_name = inContainer;
    EXPECT_EQ(Look(true).what, "The log's mutex is free.");
    EXPECT_EQ(m_asked, std::vector<std::wstring>{inContainer});
}

TEST_F(MutexCheck, LooksForThePlainNameWhereThereAreNoContainers)
{
    auto const plain = std::vector<std::wstring>{L"KZEB.log"};
    EXPECT_EQ(doctor::MutexNames(L"family"), plain);
    HaveContainer();
    m_functions.Set("DeriveAppContainerSidFromAppContainerName", &DeriveNone);
    EXPECT_EQ(doctor::MutexNames(L"family"), plain);
    HaveContainer();
    m_functions.Set("GetAppContainerNamedObjectPath", &NoObjectPath);
    EXPECT_EQ(doctor::MutexNames(L"family"), plain);
}

TEST_F(MutexCheck, GoesWithoutTheSessionsNumber)
{
    HaveContainer();
    test::SessionIdCall const failing(test::Failing(FALSE, ERROR_INVALID_PARAMETER));
    EXPECT_EQ(doctor::MutexNames(L"family").size(), 2u);
}

TEST_F(MutexCheck, FindsAFreeMutexAndLeavesItFree)
{
    auto const finding = Look(true);
    EXPECT_EQ(finding.result, Result::Worked);
    EXPECT_EQ(finding.what, "The log's mutex is free.");
    EXPECT_EQ(WaitForSingleObject(m_mutex.Get(), 0), WAIT_OBJECT_0);
    ReleaseMutex(m_mutex.Get());
}

TEST_F(MutexCheck, SaysThatTheMutexIsHeld)
{
    std::vector<DWORD> waits;
    test::WaitCall const held([&](auto next, HANDLE handle, DWORD milliseconds) {
        if (milliseconds != 2000)
        {
            return next(handle, milliseconds); // for the thread
        }
        waits.push_back(milliseconds);
        return static_cast<DWORD>(WAIT_TIMEOUT);
    });
    auto const finding = Look(true);
    EXPECT_EQ(finding.result, Result::Failed);
    EXPECT_EQ(finding.what, "The log's mutex is not free within 2 s.");
    EXPECT_NE(finding.advice, "");
    EXPECT_EQ(waits.size(), 1u);
}

TEST_F(MutexCheck, LeavesAnAbandonedMutexAbandoned)
{
    std::thread([&] { WaitForSingleObject(m_mutex.Get(), INFINITE); }).join();
    auto const finding = Look(true);
    EXPECT_EQ(finding.result, Result::Worked);
    EXPECT_EQ(finding.what, "The log's mutex is free; its last owner ended in the middle of a line.");
    EXPECT_EQ(WaitForSingleObject(m_mutex.Get(), 0), WAIT_ABANDONED);
    ReleaseMutex(m_mutex.Get());
}

TEST_F(MutexCheck, SaysThatTheWaitFails)
{
    test::WaitCall const failing([](auto next, HANDLE handle, DWORD milliseconds) {
        return milliseconds == 2000 ? static_cast<DWORD>(WAIT_FAILED) : next(handle, milliseconds);
    });
    auto const finding = Look(true);
    EXPECT_EQ(finding.result, Result::CannotBeTold);
    EXPECT_EQ(finding.what, "Whether the log's mutex is free cannot be told: the wait for it fails.");
}

TEST_F(MutexCheck, TakesAMutexThatNobodyHasForFree)
{
    HaveContainer();
    m_name.clear();
    EXPECT_EQ(Look(false).what, "The log's mutex is free: no process uses it.");
    EXPECT_EQ(m_asked.size(), 3u);
    auto const finding = Look(true);
    EXPECT_EQ(finding.result, Result::CannotBeTold);
    EXPECT_EQ(finding.what,
              "Whether the log's mutex is free cannot be told: the app runs, and its mutex is not found.");
}

TEST_F(MutexCheck, SaysThatItMayNotOpenTheMutex)
{
    HaveContainer();
    test::OpenMutexCall const denied(test::Failing<HANDLE>(nullptr, ERROR_ACCESS_DENIED));
    auto const finding = Look(false);
    EXPECT_EQ(finding.result, Result::CannotBeTold);
    EXPECT_TRUE(finding.what.ends_with(" (5).")) << finding.what;
}
