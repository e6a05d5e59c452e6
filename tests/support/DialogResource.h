// A dialog resource as it was written, in dialog units.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

struct DialogItem {
  int id = 0;
  std::wstring className;  // the system's own classes by name: Button, Edit, Static, ...
  std::wstring caption;
  DWORD style = 0;
  DWORD extendedStyle = 0;
  RECT place = {};

  bool isTabStop() const { return (style & WS_TABSTOP) && (style & WS_VISIBLE); }
  // Resource compilers write class names in a letter case of their own.
  bool isOf(const wchar_t* name) const { return lstrcmpiW(className.c_str(), name) == 0; }
  bool isButton() const { return isOf(L"Button"); }
  bool isLabel() const { return isOf(L"Static"); }
  // The character behind the first "&" that is not doubled, lowered; 0 when there is none.
  wchar_t mnemonic() const;
};

struct DialogResource {
  int id = 0;
  std::wstring caption;
  DWORD style = 0;
  SIZE size = {};
  std::vector<DialogItem> items;  // in tab order
};

// Every dialog of this module.
std::vector<DialogResource> dialogResources();
