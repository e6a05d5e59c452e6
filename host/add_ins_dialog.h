// The dialog that lists the add-ins and loads and unloads them.
#pragma once

#include <windows.h>

#include "host/AddIns.h"

namespace standin {

void showAddInsDialog(HWND owner, AddIns& addIns);

}  // namespace standin
