// The controls of dialogs as typed members of their form. Each is a thin wrapper around the
// system's own control; it is usable from Form_Load to the end of the form.
#pragma once

#include <windows.h>
#include <commctrl.h>

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "common/forms/Form.h"

namespace forms {

class Control {
 public:
  // Joins `form`, whose dialog resource holds the control `id`.
  Control(Form& form, int id);
  virtual ~Control() = default;
  Control(const Control&) = delete;
  Control& operator=(const Control&) = delete;

  int id() const noexcept { return id_; }
  HWND hwnd() const noexcept { return window_; }

  std::wstring text() const;
  void setText(std::wstring_view value);
  bool enabled() const noexcept;
  // A control that has the focus hands it on before it is disabled or hidden.
  void setEnabled(bool enabled) noexcept;
  void setVisible(bool visible) noexcept;
  void focus() noexcept;
  void setToolTip(std::wstring_view value);

  // A text that the program attaches to a control.
  std::wstring tag;

 protected:
  Form& form() const noexcept { return form_; }
  virtual std::wstring toolTip() const { return toolTip_; }

 private:
  friend class Form;
  virtual void onAttached() {}
  virtual void onCommand(WORD /*code*/) {}  // Not run by tests: none asks such a control.
  // A command of one of the control's own parts, a toolbar's button.
  virtual void onChildCommand(int /*command*/) {}  // Not run by tests: as above.
  virtual LRESULT onNotify(NMHDR& /*header*/) { return 0; }
  // Whether its size decides how all of it looks, as the width does for a text that is cut.
  virtual bool repaintsWhenSized() const { return true; }
  // A control of an owner-drawn style is to be painted.
  virtual void onDraw(HDC /*target*/, const RECT& /*place*/) {}  // Not run by tests: as above.

  Form& form_;
  int id_;
  HWND window_ = nullptr;
  std::wstring toolTip_;  // from the resources until the program sets another
};

// A text. One with an ellipsis style (SS_ENDELLIPSIS, SS_PATHELLIPSIS) and SS_NOTIFY shows its full
// text as a tip. Those styles hold a text to one line; with SS_OWNERDRAW it is wrapped, and an
// ellipsis ends the last line that there is room for.
class Label : public Control {
 public:
  using Control::Control;
  void setText(std::wstring_view value);

 private:
  std::wstring toolTip() const override;
  void onDraw(HDC target, const RECT& place) override;

  std::optional<std::wstring> set_;  // what it was last given; before that the resource's text
};

class Button : public Control {
 public:
  using Control::Control;
  std::function<void()> onClick;

 private:
  void onCommand(WORD code) override;
};

class CheckBox : public Button {
 public:
  using Button::Button;
  int value() const noexcept;  // 0, 1, or 2 when grey
  void setValue(int value) noexcept;
};

class TextBox : public Control {
 public:
  using Control::Control;
  void selectAll() noexcept;
  std::function<void()> onChange;

 private:
  void onCommand(WORD code) override;
};

// A drop-down list whose items carry a number.
class ComboBox : public Control {
 public:
  using Control::Control;
  void add(std::wstring_view text, long data);
  void select(int index) noexcept;  // does not fire onClick
  int selected() const noexcept;    // -1 when none is
  long selectedData() const noexcept;
  std::function<void()> onClick;  // the user chose an item

 private:
  void onCommand(WORD code) override;
};

// A step that is smaller than a tenth of the bar is shown ten times a second at most; the end is
// always shown.
class ProgressBar : public Control {
 public:
  using Control::Control;
  long maximum() const noexcept { return maximum_; }
  long value() const noexcept { return value_; }
  void setValue(long value) noexcept;
  // Minimum 0, the given maximum, value 0. This and the step ignore any error.
  void ResetProgress(short maximum) noexcept;
  // A step that would pass the maximum is not applied.
  void StepProgress(short by) noexcept;

 private:
  static constexpr DWORD betweenPaints = 100;  // milliseconds

  bool isWorthShowing(long value) const noexcept;
  void show(long value) noexcept;
  void tell(UINT message, WPARAM wParam, LPARAM lParam) noexcept;
  LONG pixelsAt(long value) const noexcept;

  long maximum_ = 100;
  long value_ = 0;
  long shown_ = 0;
  LONG filled_ = 0;  // pixels, of what is shown
  DWORD shownAt_ = 0;
};

}  // namespace forms
