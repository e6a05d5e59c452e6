// A window as a screen reader sees it.
#pragma once

#include <windows.h>

#include <oleacc.h>

#include <string>

#include "common/com.h"

struct Accessible {
  std::wstring name;
  long role = 0;
};

inline ComPtr<IAccessible> accessibleObject(HWND window) {
  ComPtr<IAccessible> object;
  AccessibleObjectFromWindow(window, static_cast<DWORD>(OBJID_CLIENT), __uuidof(IAccessible),
                             reinterpret_cast<void**>(object.put()));
  return object;
}

inline Accessible accessibleOf(HWND window) {
  Accessible result;
  const auto object = accessibleObject(window);
  if (!object) return result;
  VARIANT self = {};
  self.vt = VT_I4;
  self.lVal = CHILDID_SELF;
  com::Bstr name;
  if (object->get_accName(self, name.put()) == S_OK) result.name = name.text();
  VARIANT role = {};
  if (object->get_accRole(self, &role) == S_OK && role.vt == VT_I4) result.role = role.lVal;
  return result;
}
