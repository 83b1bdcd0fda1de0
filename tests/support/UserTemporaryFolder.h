#pragma once
#include "tests/support/TemporaryFolder.h"

namespace test
{

// A folder of the test's own which, as long as this lives, the system gives as the user's temporary folder to this
// process and to those that it starts.
class UserTemporaryFolder : public TemporaryFolder
{
  public:
    UserTemporaryFolder();
    ~UserTemporaryFolder();

  private:
    std::wstring m_former;
};

} // namespace test
