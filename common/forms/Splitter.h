// The bar between the two sides of a form that is split (see Edges).
#pragma once

#include "common/forms/WindowClass.h"
#include "common/forms/controls.h"

namespace forms {

// In the dialog resource: CONTROL of class "QuilletSplitter". The mouse moves it, and the arrow
// keys, Home and End while it has the focus; a double click takes it back to where it was designed.
class Splitter : public Control {
 public:
  static constexpr wchar_t className[] = L"QuilletSplitter";

  Splitter(Form& form, int id);
  ~Splitter() override;

 private:
  void onAttached() override;
  static LRESULT CALLBACK windowProcedure(HWND, UINT, WPARAM, LPARAM) noexcept;
  LRESULT onMessage(UINT message, WPARAM wParam, LPARAM lParam) noexcept;
  void onKey(WPARAM key) noexcept;
  LONG inForm(LPARAM mouse) const noexcept;
  void paint(HDC target) const noexcept;

  WindowClass class_;
  LONG grabbed_ = 0;  // the split, seen from the mouse
};

}  // namespace forms
