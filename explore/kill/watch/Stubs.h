#pragma once
#include <cstdint>
#include <vector>

namespace explore::kill
{

// The arguments of a system call that are passed in registers, in the order in which the thunk pushes them.
struct Arguments
{
    void* fourth;
    void* third;
    void* second;
    void* first;
};

// A system call of ntdll: a stub that takes its number into a register and enters the system.
struct Stub
{
    char const* name;
    unsigned char* code;
    void* original; // does what the stub did before it was replaced
};

// Called in the place of each stub, with its number among them. What it returns is jumped to with the arguments as they
// are by then.
using OnCall = void* (*)(std::uint32_t stub, Arguments& arguments);

// All stubs that ntdll exports, each with a copy as its original; nothing is replaced yet. Empty where ntdll's are not
// of the form that this knows.
std::vector<Stub> FindStubs();

// The stubs must outlive the process.
void Replace(std::vector<Stub> const& stubs, OnCall onCall);

} // namespace explore::kill
