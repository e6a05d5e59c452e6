// The component's entries in the registry: as a COM class, as a type library, and in the host's
// list of add-ins.
#pragma once

#include <windows.h>

namespace registration {

// The class and the type library for everybody on the machine or for this user alone. The host's
// list is always the user's; `list` is the entry there without the others, for each further user of
// a machine.
enum class Scope { machine, user, list };

// Writes every entry, or none: after a failure all is as it was. A system code, 0 for success.
LONG add(Scope scope) noexcept;

// Removes what `add` writes, and the keys that are empty then. What is not there is no failure; the
// first failure is reported after everything was tried.
LONG remove(Scope scope) noexcept;

}  // namespace registration
