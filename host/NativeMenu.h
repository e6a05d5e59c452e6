// The system's menu for the model's menu bar.
#pragma once

#include <windows.h>

#include <map>
#include <vector>

#include "common/handles.h"
#include "host/model/CommandBars.h"

namespace standin {

class NativeMenu {
 public:
  NativeMenu() = default;
  NativeMenu(const NativeMenu&) = delete;
  NativeMenu& operator=(const NativeMenu&) = delete;

  // Makes the window's menu anew; no bar, no menu. A control keeps its command for its life: one
  // that was chosen before may still be on its way.
  void build(HWND window, const CommandBar* bar);
  // The control behind a menu command; null for any other command.
  ComPtr<CommandBarControl> control(UINT command) const;

 private:
  void fill(HMENU menu, const CommandBar& bar);
  void addEntry(HMENU menu, CommandBarControl& control);

  UINT commandOf(CommandBarControl& control);

  HMENU menu_ = nullptr;
  UINT nextCommand_ = 1000;
  std::map<UINT, ComPtr<CommandBarControl>> controls_;
  std::vector<handles::Gdi> faces_;
};

// A button's face as menus draw it: opaque, on the menu's colour. Where the face has no
// transparency of its own, light grey (192, 192, 192) is taken for it, as faces use it.
handles::Gdi menuFace(HBITMAP face);

}  // namespace standin
