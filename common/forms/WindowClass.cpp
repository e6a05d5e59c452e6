#include "common/forms/WindowClass.h"

#include "common/module.h"

namespace forms {

WindowClass::WindowClass(const wchar_t* name, WNDPROC procedure) noexcept : name_(name) {
  WNDCLASSW windowClass = {};
  windowClass.style = CS_DBLCLKS;
  windowClass.lpfnWndProc = procedure;
  windowClass.hInstance = module::instance();
  windowClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
  windowClass.lpszClassName = name;
  RegisterClassW(&windowClass);  // one that exists is left as it is
}

WindowClass::~WindowClass() {
  // Refused while a window of the class exists: the last user takes it away.
  UnregisterClassW(name_, module::instance());
}

}  // namespace forms
