#pragma once
#include "explore/faults/model/Reckoning.h"

#include <span>
#include <string_view>
#include <vector>

namespace explore::faults
{

class Stage;

// A way through the app that begins at rest: how it is played, and what the rules say of it.
struct Flow
{
    std::string_view name;
    void (*prepare)(Stage& stage); // the app comes to rest
    void (*begin)(Stage& stage);
    Steps rules; // none where handlers run
    Role role = Role::Handler;
    Scene scene = {};
    bool hasHelper = false;           // that can go away
    Steps second = {};                // of a request that comes before the first one is answered
    std::vector<Steps> handlers = {}; // of a connection's end, at the same time
    Steps closed = {};                // that of a helper that goes away meanwhile
};

std::span<Flow const> Flows();

// Null for a name that there is not.
Flow const* FlowOf(std::string_view name);

} // namespace explore::faults
