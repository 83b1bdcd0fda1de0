#pragma once
#include "explore/faults/Play.h"
#include "utils/UniqueHandle.h"

#include <memory>
#include <windows.h>

namespace explore::faults
{

// Plays what standard input names, one after the other, and says on standard output what each showed.
int Work();

// Another process of this program that plays: a play may end the app's process.
class Worker
{
  public:
    Worker();
    Worker(Worker const&) = delete;
    Worker& operator=(Worker const&) = delete;
    ~Worker();

    // Starts another process when the last one has ended.
    Verdict Play(PlayId const& id);

  private:
    struct Process;

    std::unique_ptr<Process> m_process;
};

} // namespace explore::faults
