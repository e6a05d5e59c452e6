#include "common/forms/controls.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace forms {

Control::Control(Form& form, int id) : form_(form), id_(id) { form.controls_.push_back(this); }

std::wstring Control::text() const { return windowText(window_); }

void Control::setText(std::wstring_view value) {
  SetWindowTextW(window_, std::wstring(value).c_str());
}

bool Control::enabled() const noexcept { return IsWindowEnabled(window_) != FALSE; }

void Control::setEnabled(bool enabled) noexcept {
  if (enabled)
    EnableWindow(window_, TRUE);
  else
    form_.putAway(window_, false);
}

void Control::setVisible(bool visible) noexcept {
  if (visible)
    ShowWindow(window_, SW_SHOWNA);
  else
    form_.putAway(window_, true);
}

void Control::focus() noexcept { form_.giveFocus(window_); }

void Control::setToolTip(std::wstring_view value) { toolTip_ = value; }

void Label::setText(std::wstring_view value) {
  if (set_ == value) return;
  Control::setText(value);
  set_ = value;
}

std::wstring Label::toolTip() const {
  const LONG_PTR ellipsis = GetWindowLongPtrW(hwnd(), GWL_STYLE) & SS_ELLIPSISMASK;
  if (!ellipsis) return Control::toolTip();
  const std::wstring value = text();
  const handles::WindowContext context(hwnd());
  const HGDIOBJ former = SelectObject(
      context.get(), reinterpret_cast<HGDIOBJ>(SendMessageW(hwnd(), WM_GETFONT, 0, 0)));
  SIZE size = {};
  GetTextExtentPoint32W(context.get(), value.c_str(), static_cast<int>(value.size()), &size);
  SelectObject(context.get(), former);
  RECT client;
  GetClientRect(hwnd(), &client);
  return size.cx > client.right ? value : Control::toolTip();
}

void Label::onDraw(HDC target, const RECT& place) {
  const HGDIOBJ former =
      SelectObject(target, reinterpret_cast<HGDIOBJ>(SendMessageW(hwnd(), WM_GETFONT, 0, 0)));
  FillRect(target, &place, GetSysColorBrush(COLOR_3DFACE));
  SetBkMode(target, TRANSPARENT);
  SetTextColor(target, GetSysColor(COLOR_WINDOWTEXT));
  RECT lines = place;
  DrawTextW(target, text().c_str(), -1, &lines,
            DT_NOPREFIX | DT_WORDBREAK | DT_EDITCONTROL | DT_END_ELLIPSIS);
  SelectObject(target, former);
}

void Button::onCommand(WORD code) {
  if (code == BN_CLICKED && onClick) onClick();
}

int CheckBox::value() const noexcept {
  return static_cast<int>(SendMessageW(hwnd(), BM_GETCHECK, 0, 0));
}

void CheckBox::setValue(int value) noexcept {
  SendMessageW(hwnd(), BM_SETCHECK, static_cast<WPARAM>(value), 0);
}

void TextBox::selectAll() noexcept { SendMessageW(hwnd(), EM_SETSEL, 0, -1); }

void TextBox::onCommand(WORD code) {
  if (code == EN_CHANGE && onChange) onChange();
}

void ComboBox::add(std::wstring_view text, long data) {
  const LRESULT index =
      SendMessageW(hwnd(), CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(std::wstring(text).c_str()));
  SendMessageW(hwnd(), CB_SETITEMDATA, static_cast<WPARAM>(index), data);
}

void ComboBox::select(int index) noexcept {
  SendMessageW(hwnd(), CB_SETCURSEL, static_cast<WPARAM>(index), 0);
}

int ComboBox::selected() const noexcept {
  return static_cast<int>(SendMessageW(hwnd(), CB_GETCURSEL, 0, 0));
}

long ComboBox::selectedData() const noexcept {
  const int index = selected();
  if (index < 0) return 0;
  return static_cast<long>(SendMessageW(hwnd(), CB_GETITEMDATA, static_cast<WPARAM>(index), 0));
}

void ComboBox::onCommand(WORD code) {
  if (code == CBN_SELCHANGE && onClick) onClick();
}

void ProgressBar::setValue(long value) noexcept {
  value_ = value;
  if (isWorthShowing(value)) show(value);
}

bool ProgressBar::isWorthShowing(long value) const noexcept {
  if (value == 0 || value == maximum_) return value != shown_;
  if (pixelsAt(value) == pixelsAt(shown_)) return false;
  return std::abs(value - shown_) >= maximum_ / 10 || GetTickCount() - shownAt_ >= betweenPaints;
}

// The pictures of a theme take their time, for the whole bar as much as importing some files: only
// the part is painted that changes. The end of what is filled looks different from the rest, so
// some of its surroundings come along. An end of the bar is often left at once for the other one:
// it is painted with the next step, or when the queue is looked at next.
void ProgressBar::show(long value) noexcept {
  shown_ = value;
  shownAt_ = GetTickCount();
  tell(PBM_SETPOS, static_cast<WPARAM>(value), 0);
  const LONG former = std::exchange(filled_, pixelsAt(value));
  RECT changed = {};
  GetClientRect(hwnd(), &changed);
  changed.left = std::min(former, filled_) - changed.bottom;
  changed.right = std::max(former, filled_) + changed.bottom;
  InvalidateRect(hwnd(), &changed, FALSE);
  if (value != 0 && value != maximum_) UpdateWindow(hwnd());
}

// The control would paint itself as a whole at each of its messages, also where no pixel changes.
void ProgressBar::tell(UINT message, WPARAM wParam, LPARAM lParam) noexcept {
  const bool visible = (GetWindowLongW(hwnd(), GWL_STYLE) & WS_VISIBLE) != 0;
  SendMessageW(hwnd(), WM_SETREDRAW, FALSE, 0);
  SendMessageW(hwnd(), message, wParam, lParam);
  if (visible) SendMessageW(hwnd(), WM_SETREDRAW, TRUE, 0);
}

LONG ProgressBar::pixelsAt(long value) const noexcept {
  RECT client = {};
  GetClientRect(hwnd(), &client);
  if (value < 0) return -1;
  return maximum_ > 0 ? MulDiv(value, client.right, maximum_) : 0;
}

void ProgressBar::ResetProgress(short maximum) noexcept {
  if (maximum < 0) return;
  maximum_ = maximum;
  shown_ = -1;
  // The control itself wants a range that is not empty.
  tell(PBM_SETRANGE32, 0, std::max<long>(maximum, 1));
  setValue(0);
}

void ProgressBar::StepProgress(short by) noexcept {
  if (value_ + by <= maximum_) setValue(value_ + by);
}

}  // namespace forms
