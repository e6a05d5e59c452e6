// Addresses as an embedded browser names them.
#pragma once

#include <string>

namespace forms {

// Whether the address `reached`, as the browser reports it, is the page that was asked for as
// `wanted`: a local path or a URL. The browser turns paths into file URLs; a place inside the page
// ("#...") is still that page.
bool isSamePage(const std::wstring& reached, const std::wstring& wanted);

}  // namespace forms
