// Calls into somebody else's code that must not take the host down with it.
#pragma once

#include <functional>

namespace standin {

// Runs `call`; false when it ended in a C++ exception or a fault of the processor that nobody
// handled. What the call owned is lost then. Calls may be nested; one thread only.
bool guarded(const std::function<void()>& call);

}  // namespace standin
