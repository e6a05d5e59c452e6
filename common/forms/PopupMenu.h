// One pop-up menu.
#pragma once

#include <windows.h>

#include "common/errors.h"
#include "common/handles.h"

namespace forms {

struct MenuTraits {
  using type = HMENU;
  static type none() noexcept { return nullptr; }
  static void close(type handle) noexcept { DestroyMenu(handle); }
};

class PopupMenu {
 public:
  PopupMenu() : menu_(CreatePopupMenu()) {
    if (!menu_) throw errors::fromLastError();
  }

  HMENU get() const noexcept { return menu_.get(); }
  void add(int command, const wchar_t* text, bool enabled = true) const {
    append(enabled ? MF_STRING : MF_STRING | MF_GRAYED, command, text);
  }
  void addSeparator(int command) const { append(MF_SEPARATOR, command, nullptr); }

 private:
  void append(UINT flags, int command, const wchar_t* text) const {
    if (!AppendMenuW(menu_.get(), flags, static_cast<UINT_PTR>(command), text))
      throw errors::fromLastError();
  }

  handles::Unique<MenuTraits> menu_;
};

}  // namespace forms
