// A child of this process at its two ends: what it does before it becomes a program, and how its
// end is awaited. For the Linux forms of the services alone.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

#include "platform/linux/descriptor.h"

namespace velto::platform {

// All that the child needs, laid out before it exists.
struct ChildPlan {
    // The program's absolute path and its arguments; "name=value" texts.
    ChildPlan(std::vector<std::string> command, std::vector<std::string> variables);
    ChildPlan(const ChildPlan&) = delete;
    ChildPlan& operator=(const ChildPlan&) = delete;

    std::vector<std::string> arguments;
    std::vector<std::string> environment;
    std::vector<char*> argument_pointers;  // into the texts above, with a null at the end
    std::vector<char*> environment_pointers;
    std::string folder;             // empty: the parent's
    bool ends_with_parent = false;  // SIGKILL when the thread that started it ends
    std::vector<int> descriptors;   // become numbers 3, 4, ...
    pid_t parent;
};

// What the child says through its report pipe if it can't become the program.
struct ChildFailure {
    enum class Step { Setup, Folder, Program };
    Step step = Step::Setup;
    int error = 0;  // an errno value
};

// The child's number, or -1 with the reason in errno. It has become the program when this returns,
// or has failed: then a ChildFailure is in the pipe whose write end, closed on exec, is `report`.
pid_t StartChild(ChildPlan& plan, int report);

// Becomes readable when the child, not yet waited for, has ended. If no descriptor is free it isn't
// valid, and a poll passes over it.
Descriptor EndOf(pid_t child);

}  // namespace velto::platform
