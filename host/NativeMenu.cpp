#include "host/NativeMenu.h"

#include <algorithm>

namespace standin {
namespace {

constexpr int faceSize = 16;

class Pixels {
 public:
  Pixels() : values_(faceSize * faceSize) {}

  bool read(HBITMAP bitmap) {
    const handles::ScreenContext screen;
    BITMAPINFO info = header();
    return GetDIBits(screen.get(), bitmap, 0, faceSize, values_.data(), &info, DIB_RGB_COLORS) ==
           faceSize;
  }

  handles::Gdi bitmap() const {
    BITMAPINFO info = header();
    void* bits = nullptr;
    handles::Gdi result(CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0));
    if (bits) std::copy(values_.begin(), values_.end(), static_cast<DWORD*>(bits));
    return result;
  }

  std::vector<DWORD>& values() { return values_; }

 private:
  static BITMAPINFO header() {
    BITMAPINFO info = {};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = faceSize;
    info.bmiHeader.biHeight = faceSize;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    return info;
  }

  std::vector<DWORD> values_;
};

// A colour of the system's as a pixel without alpha.
DWORD pixelOf(int systemColour) {
  const COLORREF colour = GetSysColor(systemColour);
  return static_cast<DWORD>(GetRValue(colour)) << 16 | static_cast<DWORD>(GetGValue(colour)) << 8 |
         GetBValue(colour);
}

DWORD mixed(DWORD over, DWORD under, DWORD alpha) {
  DWORD result = 0xFF000000;
  for (int shift = 0; shift < 24; shift += 8) {
    const DWORD a = (over >> shift) & 0xFF;
    const DWORD b = (under >> shift) & 0xFF;
    result |= ((a * alpha + b * (255 - alpha)) / 255) << shift;
  }
  return result;
}

void separate(HMENU menu) {
  if (GetMenuItemCount(menu) > 0) AppendMenuW(menu, MF_SEPARATOR, 0, nullptr);
}

}  // namespace

handles::Gdi menuFace(HBITMAP face) {
  Pixels pixels;
  const handles::Gdi sized(CopyImage(face, IMAGE_BITMAP, faceSize, faceSize, LR_CREATEDIBSECTION));
  if (!sized || !pixels.read(static_cast<HBITMAP>(sized.get()))) return {};
  auto& values = pixels.values();
  const bool hasAlpha =
      std::any_of(values.begin(), values.end(), [](DWORD value) { return value >> 24 != 0; });
  const DWORD under = pixelOf(COLOR_MENU);
  const DWORD button = pixelOf(COLOR_3DFACE);
  for (DWORD& value : values) {
    const DWORD colour = value & 0xFFFFFF;
    const bool seenThrough = colour == 0xC0C0C0 || colour == button;
    value = mixed(value, under, hasAlpha ? value >> 24 : seenThrough ? 0 : 255);
  }
  return pixels.bitmap();
}

void NativeMenu::build(HWND window, const CommandBar* bar) {
  const HMENU old = menu_;
  const auto oldFaces = std::move(faces_);
  faces_.clear();
  std::erase_if(controls_, [](const auto& entry) { return !entry.second->bar; });
  menu_ = bar ? CreateMenu() : nullptr;
  if (bar) fill(menu_, *bar);
  SetMenu(window, menu_);
  if (old) DestroyMenu(old);
  DrawMenuBar(window);
}

ComPtr<CommandBarControl> NativeMenu::control(UINT command) const {
  const auto found = controls_.find(command);
  return found == controls_.end() ? nullptr : found->second;
}

UINT NativeMenu::commandOf(CommandBarControl& control) {
  for (const auto& [command, known] : controls_)
    if (known.get() == &control) return command;
  controls_[nextCommand_] = ComPtr<CommandBarControl>(&control);
  return nextCommand_++;
}

void NativeMenu::fill(HMENU menu, const CommandBar& bar) {
  for (const auto& control : bar.controls()) {
    if (!control->visible) continue;
    if (control->beginGroup) separate(menu);
    const CommandBarPopup* popup = control->asPopup();
    if (!popup) {
      addEntry(menu, *control.get());
      continue;
    }
    const HMENU opened = CreatePopupMenu();
    fill(opened, popup->menu());
    AppendMenuW(menu, MF_POPUP | (control->enabled ? MF_ENABLED : MF_GRAYED),
                reinterpret_cast<UINT_PTR>(opened), control->caption.c_str());
  }
}

void NativeMenu::addEntry(HMENU menu, CommandBarControl& control) {
  const UINT command = commandOf(control);
  AppendMenuW(menu, MF_STRING | (control.enabled ? MF_ENABLED : MF_GRAYED), command,
              control.caption.c_str());
  const CommandBarButton* button = control.asButton();
  constexpr long captionOnly = 2;
  if (!button || !button->face() || button->style() == captionOnly) return;
  faces_.push_back(menuFace(button->face()));
  MENUITEMINFOW item = {};
  item.cbSize = sizeof item;
  item.fMask = MIIM_BITMAP;
  item.hbmpItem = static_cast<HBITMAP>(faces_.back().get());
  SetMenuItemInfoW(menu, command, FALSE, &item);
}

}  // namespace standin
