// The module's own resources.
#pragma once

#define IDB_COPYTOWEB 101
#define IDB_DWTONLINE 104
