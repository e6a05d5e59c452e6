#include "common/forms/Toolbar.h"

#include <algorithm>

namespace forms {
namespace {

// Commands of toolbar buttons, clear of every control's number.
constexpr int firstCommand = 0x7000;

}  // namespace

Toolbar::Toolbar(Form& form, int id) : Control(form, id) {}

Toolbar::~Toolbar() = default;

void Toolbar::onAttached() {
  SendMessageW(hwnd(), TB_BUTTONSTRUCTSIZE, sizeof(TBBUTTON), 0);
  // Texts beside the pictures where they are shown at all, tool tips where they are not.
  SendMessageW(hwnd(), TB_SETEXTENDEDSTYLE, 0, TBSTYLE_EX_MIXEDBUTTONS | TBSTYLE_EX_DRAWDDARROWS);
}

void Toolbar::setImages(HIMAGELIST images) noexcept {
  SendMessageW(hwnd(), TB_SETIMAGELIST, 0, reinterpret_cast<LPARAM>(images));
}

void Toolbar::setDisabledImages(HIMAGELIST images) noexcept {
  SendMessageW(hwnd(), TB_SETDISABLEDIMAGELIST, 0, reinterpret_cast<LPARAM>(images));
}

void Toolbar::addButton(std::wstring_view key, int image, std::wstring_view text) {
  insert(key, image, text, BTNS_BUTTON | BTNS_AUTOSIZE);
}

void Toolbar::addDropDown(std::wstring_view key, int image, std::wstring_view text) {
  insert(key, image, text, BTNS_WHOLEDROPDOWN | BTNS_SHOWTEXT | BTNS_NOPREFIX);
}

void Toolbar::addSeparator() { insert({}, 0, {}, BTNS_SEP); }

void Toolbar::insert(std::wstring_view key, int image, std::wstring_view text, BYTE style) {
  const std::wstring caption(text);
  TBBUTTON button = {};
  button.iBitmap = image;
  button.idCommand = firstCommand + static_cast<int>(keys_.size());
  button.fsState = TBSTATE_ENABLED;
  button.fsStyle = style;
  button.iString = caption.empty() ? -1 : reinterpret_cast<INT_PTR>(caption.c_str());
  keys_.emplace_back(key);
  SendMessageW(hwnd(), TB_ADDBUTTONSW, 1, reinterpret_cast<LPARAM>(&button));
}

int Toolbar::commandOf(std::wstring_view key) const noexcept {
  const auto found = std::find(keys_.begin(), keys_.end(), key);
  return firstCommand + static_cast<int>(found - keys_.begin());
}

bool Toolbar::buttonEnabled(std::wstring_view key) const noexcept {
  return SendMessageW(hwnd(), TB_ISBUTTONENABLED, static_cast<WPARAM>(commandOf(key)), 0) > 0;
}

void Toolbar::setButtonEnabled(std::wstring_view key, bool enabled) noexcept {
  SendMessageW(hwnd(), TB_ENABLEBUTTON, static_cast<WPARAM>(commandOf(key)),
               MAKELPARAM(enabled, 0));
}

std::wstring Toolbar::buttonText(std::wstring_view key) const {
  const auto command = static_cast<WPARAM>(commandOf(key));
  const LRESULT length = SendMessageW(hwnd(), TB_GETBUTTONTEXTW, command, 0);
  if (length <= 0) return {};
  std::wstring text(static_cast<std::size_t>(length) + 1, L'\0');
  SendMessageW(hwnd(), TB_GETBUTTONTEXTW, command, reinterpret_cast<LPARAM>(text.data()));
  text.resize(static_cast<std::size_t>(length));
  return text;
}

void Toolbar::setButtonText(std::wstring_view key, std::wstring_view text) {
  std::wstring caption(text);
  TBBUTTONINFOW info = {};
  info.cbSize = sizeof info;
  info.dwMask = TBIF_TEXT;
  info.pszText = caption.data();
  SendMessageW(hwnd(), TB_SETBUTTONINFOW, static_cast<WPARAM>(commandOf(key)),
               reinterpret_cast<LPARAM>(&info));
}

void Toolbar::setButtonImage(std::wstring_view key, int image) noexcept {
  SendMessageW(hwnd(), TB_CHANGEBITMAP, static_cast<WPARAM>(commandOf(key)), image);
}

void Toolbar::setButtonWidth(std::wstring_view key, int pixels) noexcept {
  TBBUTTONINFOW info = {};
  info.cbSize = sizeof info;
  info.dwMask = TBIF_SIZE;
  info.cx = static_cast<WORD>(std::clamp(pixels, 0, 0x7FFF));
  SendMessageW(hwnd(), TB_SETBUTTONINFOW, static_cast<WPARAM>(commandOf(key)),
               reinterpret_cast<LPARAM>(&info));
}

RECT Toolbar::buttonPlace(std::wstring_view key) const noexcept {
  RECT place = {};
  SendMessageW(hwnd(), TB_GETRECT, static_cast<WPARAM>(commandOf(key)),
               reinterpret_cast<LPARAM>(&place));
  MapWindowPoints(hwnd(), nullptr, reinterpret_cast<POINT*>(&place), 2);
  return place;
}

void Toolbar::onChildCommand(int command) {
  const auto index = static_cast<std::size_t>(command - firstCommand);
  if (index < keys_.size() && onButtonClick) onButtonClick(keys_[index]);
}

LRESULT Toolbar::onNotify(NMHDR& header) {
  if (header.code != static_cast<UINT>(TBN_DROPDOWN)) return 0;
  const auto index =
      static_cast<std::size_t>(reinterpret_cast<const NMTOOLBARW&>(header).iItem - firstCommand);
  if (index < keys_.size() && onButtonDropDown) onButtonDropDown(keys_[index]);
  return TBDDRET_DEFAULT;
}

}  // namespace forms
