// Addresses as an embedded browser names them.
#pragma once

#include <optional>
#include <string>

namespace forms {

// Whether the address `reached`, as the browser reports it, is the page that was asked for as
// `wanted`: a local path or a URL. Files are the same when they are the same file of the disk,
// however the two are written; a place inside the page ("#...") and a query are still that page.
// Nothing is looked at that lies on another drive or server than `wanted`.
bool isSamePage(const std::wstring& reached, const std::wstring& wanted);

// The full path of the file that `address`, as the browser reports it, shows, when it lies on the
// drive or server share that `page`, a local path, lies on.
std::optional<std::wstring> fileBeside(const std::wstring& address, const std::wstring& page);

}  // namespace forms
