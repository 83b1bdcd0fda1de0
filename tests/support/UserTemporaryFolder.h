#pragma once
#include "tests/support/TemporaryFolder.h"

namespace test
{

// A folder that the system returns as the user's temporary folder to this process and its child processes while it
// exists.
class UserTemporaryFolder : public TemporaryFolder
{
  public:
    UserTemporaryFolder();
    ~UserTemporaryFolder();

  private:
    std::wstring m_former;
};

} // namespace test
