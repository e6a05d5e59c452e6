// A place that shows one picture at any size, with scroll bars when the picture is larger.
#pragma once

#include <string>

#include "common/forms/WindowClass.h"
#include "common/forms/controls.h"

namespace forms {

// In the dialog resource: CONTROL of class "QuilletPictureBox". Sizes are pixels.
class PictureBox : public Control {
 public:
  static constexpr wchar_t className[] = L"QuilletPictureBox";
  // What is no picture raises this number, as the run-time's pictures do.
  static constexpr long invalidPicture = 481;

  PictureBox(Form& form, int id);
  ~PictureBox() override;

  // Shows a GIF or JPEG file at its natural size. The file is not kept open. On an Error the box
  // stays as it was.
  void load(const std::wstring& path);
  void clear() noexcept;

  bool hasPicture() const noexcept { return static_cast<bool>(bitmap_); }
  const std::wstring& path() const noexcept { return path_; }  // empty without a picture
  SIZE naturalSize() const noexcept { return natural_; }
  SIZE pictureSize() const noexcept { return shown_; }
  // Stretches the picture to that size and shows its upper left part.
  void setPictureSize(SIZE size);

 private:
  void onAttached() override;
  static LRESULT CALLBACK windowProcedure(HWND, UINT, WPARAM, LPARAM) noexcept;
  LRESULT onMessage(UINT message, WPARAM wParam, LPARAM lParam);
  void paint(HDC target) const;
  void paintPicture(HDC target) const;
  void updateScrollBars() noexcept;
  void scrollTo(int bar, int position) noexcept;
  void onScroll(int bar, WORD request) noexcept;
  void onKey(WPARAM key) noexcept;
  void onWheel(short delta, bool sideways) noexcept;
  SIZE clientSize() const noexcept;

  WindowClass class_;
  std::wstring path_;
  handles::Gdi bitmap_;  // at natural size, on the window's background
  handles::Gdi scaled_;  // at the shown size; null while that is the natural one
  SIZE natural_ = {};
  SIZE shown_ = {};
  POINT offset_ = {};
  int wheelRest_ = 0;
};

}  // namespace forms
