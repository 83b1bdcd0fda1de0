#include "tests/support/UserTemporaryFolder.h"

#include <windows.h>

namespace test
{

namespace
{

// The first variable that GetTempPathW looks at.
constexpr wchar_t variable[] = L"TMP";

} // namespace

UserTemporaryFolder::UserTemporaryFolder() : m_former(MAX_PATH, L'\0')
{
    m_former.resize(GetEnvironmentVariableW(variable, m_former.data(), MAX_PATH));
    SetEnvironmentVariableW(variable, Path().c_str());
}

UserTemporaryFolder::~UserTemporaryFolder()
{
    SetEnvironmentVariableW(variable, m_former.empty() ? nullptr : m_former.c_str());
}

} // namespace test
