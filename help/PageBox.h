// A page of the disk as a control of a dialog.
#pragma once

#include <functional>
#include <string>

#include "common/forms/WindowClass.h"
#include "common/forms/controls.h"
#include "help/PagePictures.h"
#include "html/PageView.h"

namespace help {

class PageBox : public forms::Control {
 public:
  static constexpr wchar_t className[] = L"QuilletPageBox";

  PageBox(forms::Form& form, int id);
  ~PageBox() override;

  // Shows a file of the disk; what cannot be shown, a page says.
  void show(const std::wstring& file);
  const std::wstring& file() const noexcept { return file_; }
  std::wstring title() const;
  // Shows the system's printer dialog over the form and prints, unless the user cancels it. Raises
  // an Error when the printer refuses.
  void print();

  // A link to another file beside this one. Addresses outside go to the user's own programs, and
  // links of any other kind nowhere.
  std::function<void(const std::wstring& file)> onLink;

 private:
  void onAttached() override;
  static LRESULT CALLBACK windowProcedure(HWND, UINT, WPARAM, LPARAM) noexcept;
  void followLink(const std::wstring& link);

  forms::WindowClass class_;
  std::wstring file_;
  PagePictures pictures_;
  html::PageView view_;
};

}  // namespace help
