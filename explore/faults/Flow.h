#pragma once
#include "explore/faults/Stage.h"
#include "explore/faults/model/Reckoning.h"

#include <span>
#include <string_view>

namespace explore::faults
{

// A way through the app that begins at rest: how it is played, and what the rules say of it.
struct Flow
{
    std::string_view name;
    void (*prepare)(Stage& stage); // the app comes to rest
    void (*begin)(Stage& stage);
    Steps rules;
    Role role = Role::Handler;
    Scene scene = {};
    bool isRequest = false; // of a helper
    Steps beside = {};      // what a second thread does at the same time
};

std::span<Flow const> Flows();

// Null for a name that there is not.
Flow const* FlowOf(std::string_view name);

} // namespace explore::faults
