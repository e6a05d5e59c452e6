// What the two menu entries open.
#pragma once

#include <windows.h>

#include "addin/host/HostApplication.h"

namespace commands {

// The window that a command has opened before, with what stands over it; false when none is open.
bool bringOpenWindowToFront() noexcept;

// The template browser, modal to `owner`. Needs an open web.
void browseTemplates(HostApplication& host, HWND owner);

// How the online catalogue was left.
enum class OnlineResult { closed = 0, browseDownloads = 2 };
OnlineResult openOnlineCatalogue(HostApplication& host, HWND owner);

}  // namespace commands
