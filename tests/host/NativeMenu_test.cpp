#include "host/NativeMenu.h"

#include "common/handles.h"
#include "host/model/Host.h"
#include "tests/support/text_output.h"

using standin::Host;

namespace {

std::vector<HMENU> subMenus(HMENU menu) {
  std::vector<HMENU> result;
  for (int i = 0; i < GetMenuItemCount(menu); ++i)
    if (const HMENU opened = GetSubMenu(menu, i)) result.push_back(opened);
  return result;
}

HBITMAP plainBitmap(COLORREF colour) {
  const handles::ScreenContext screen;
  const handles::DeviceContext memory(CreateCompatibleDC(screen.get()));
  const HBITMAP bitmap = CreateCompatibleBitmap(screen.get(), 16, 16);
  const HGDIOBJ old = SelectObject(memory.get(), bitmap);
  for (int i = 0; i < 256; ++i) SetPixel(memory.get(), i % 16, i / 16, colour);
  SelectObject(memory.get(), old);
  return bitmap;
}

}  // namespace

TEST_CASE("the system's menu shows captions separators and states of the model") {
  Host host;
  host.control(7122)->enabled = false;
  host.control(7126)->visible = false;
  const HWND window = CreateWindowW(L"STATIC", L"", WS_OVERLAPPEDWINDOW, 0, 0, 100, 100, nullptr,
                                    nullptr, nullptr, nullptr);
  standin::NativeMenu menu;
  menu.build(window, host.commandBars().menuBar.get());
  const HMENU format = subMenus(GetMenu(window))[4];
  const HMENU templates = subMenus(format).front();
  wchar_t caption[64] = {};
  GetMenuStringW(templates, 0, caption, 64, MF_BYPOSITION);
  CHECK(std::wstring(caption) == L"&Attach Dynamic Web Template...");
  CHECK((GetMenuState(templates, 1, MF_BYPOSITION) & MF_GRAYED) != 0);
  CHECK((GetMenuState(templates, 3, MF_BYPOSITION) & MF_SEPARATOR) != 0);
  CHECK(GetMenuItemCount(templates) == 7);
  CHECK(menu.control(GetMenuItemID(templates, 0)).get() == host.control(7121));
  CHECK_FALSE(menu.control(5));
  menu.build(window, nullptr);
  CHECK(GetMenu(window) == nullptr);
  DestroyWindow(window);
}

TEST_CASE("a control keeps its command when the menu is made anew") {
  Host host;
  const HWND window = CreateWindowW(L"STATIC", L"", WS_OVERLAPPEDWINDOW, 0, 0, 100, 100, nullptr,
                                    nullptr, nullptr, nullptr);
  standin::NativeMenu menu;
  const auto commandOf = [&](long id) {
    for (UINT command = 1000; command < 1200; ++command)
      if (menu.control(command).get() == host.control(id)) return command;
    return 0u;
  };
  menu.build(window, host.commandBars().menuBar.get());
  const UINT before = commandOf(7127);
  const UINT removed = commandOf(7121);
  host.control(7121)->bar->erase(host.control(7121));
  host.addEntry(30002, 5000, L"New");
  menu.build(window, host.commandBars().menuBar.get());
  CHECK(before != 0);
  CHECK(commandOf(7127) == before);
  CHECK_FALSE(menu.control(removed));
  DestroyWindow(window);
}

TEST_CASE(
    "a face in a menu is opaque and its light grey or button grey becomes the menu's colour") {
  const COLORREF menu = GetSysColor(COLOR_MENU);
  for (const COLORREF background : {RGB(192, 192, 192), GetSysColor(COLOR_3DFACE)}) {
    const HBITMAP drawn = plainBitmap(background);
    const handles::Gdi face = standin::menuFace(drawn);
    DeleteObject(drawn);
    REQUIRE(face);
    DIBSECTION section = {};
    REQUIRE(GetObjectW(face.get(), sizeof section, &section));
    const DWORD pixel = *static_cast<const DWORD*>(section.dsBm.bmBits);
    CHECK((pixel >> 24) == 0xFF);
    CHECK(((pixel >> 16) & 0xFF) == GetRValue(menu));
    CHECK((pixel & 0xFF) == GetBValue(menu));
  }
}
