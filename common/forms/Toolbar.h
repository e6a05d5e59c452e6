// A toolbar whose buttons are told apart by a key.
#pragma once

#include <vector>

#include "common/forms/controls.h"

namespace forms {

// In the dialog resource: CONTROL of class "ToolbarWindow32". A button's text is its tool tip and
// its name for screen readers; only a drop-down button shows it beside the picture.
class Toolbar : public Control {
 public:
  Toolbar(Form& form, int id);
  ~Toolbar() override;

  void setImages(HIMAGELIST images) noexcept;  // borrowed
  // What buttons that cannot be pressed show instead.
  void setDisabledImages(HIMAGELIST images) noexcept;  // borrowed
  void addButton(std::wstring_view key, int image, std::wstring_view text);
  // Shows its text, and opens a menu when it is pressed.
  void addDropDown(std::wstring_view key, int image, std::wstring_view text);
  void addSeparator();

  bool buttonEnabled(std::wstring_view key) const noexcept;
  void setButtonEnabled(std::wstring_view key, bool enabled) noexcept;
  std::wstring buttonText(std::wstring_view key) const;
  void setButtonText(std::wstring_view key, std::wstring_view text);
  void setButtonImage(std::wstring_view key, int image) noexcept;
  void setButtonWidth(std::wstring_view key, int pixels) noexcept;
  // On the screen.
  RECT buttonPlace(std::wstring_view key) const noexcept;

  std::function<void(const std::wstring& key)> onButtonClick;
  std::function<void(const std::wstring& key)> onButtonDropDown;

 private:
  void onAttached() override;
  void onChildCommand(int command) override;
  LRESULT onNotify(NMHDR& header) override;
  void insert(std::wstring_view key, int image, std::wstring_view text, BYTE style);
  int commandOf(std::wstring_view key) const noexcept;

  std::vector<std::wstring> keys_;  // by the position of the command
};

}  // namespace forms
