#pragma once
#include "tests/support/WrappedSystem.h"

namespace explore
{

// What the log's header asks of its machine, which no process changes: the answer is that there is nothing.
struct MachineCalls
{
    test::OpenKeyCall openKey{[](auto...) { return LSTATUS{ERROR_FILE_NOT_FOUND}; }};
    test::RegGetValueCall getValue{[](auto...) { return LSTATUS{ERROR_FILE_NOT_FOUND}; }};
    // The system's own bookkeeping of critical sections would grow with each process that is killed.
    test::InitializeCriticalSectionCall initialize{[](auto, CRITICAL_SECTION* section) {
        InitializeCriticalSectionEx(section, 0, CRITICAL_SECTION_NO_DEBUG_INFO);
    }};
    test::GetModuleCall getModule{[](auto...) { return HMODULE{nullptr}; }};
};

} // namespace explore
