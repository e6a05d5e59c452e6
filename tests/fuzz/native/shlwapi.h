// See windows.h.
#pragma once

#include <windows.h>

#define URL_ESCAPE_UNSAFE 0x20000000u

HRESULT UrlCanonicalizeW(const wchar_t* address, wchar_t* canonical, DWORD* size, DWORD flags);
