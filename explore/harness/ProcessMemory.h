#pragma once

namespace explore
{

// The memory of a play's processes. What they allocate is given back at once when the play is over, since a process
// that is killed, or a play that is left off, runs no destructor. A program that has a scheduler allocates all of its
// memory this way: between the two objects below it is the processes', elsewhere the program's own.
class ProcessMemory
{
  public:
    // Gives back all of it.
    static void Reset() noexcept;
};

// While one exists, allocations are the processes'.
class AsProcess
{
  public:
    AsProcess() noexcept;
    AsProcess(AsProcess const&) = delete;
    AsProcess& operator=(AsProcess const&) = delete;
    ~AsProcess();

  private:
    bool m_before;
};

// While one exists, allocations are the program's own.
class AsSystem
{
  public:
    AsSystem() noexcept;
    AsSystem(AsSystem const&) = delete;
    AsSystem& operator=(AsSystem const&) = delete;
    ~AsSystem();

  private:
    bool m_before;
};

} // namespace explore
