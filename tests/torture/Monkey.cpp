#include "tests/torture/Monkey.h"

#include <algorithm>
#include <cstdio>

#include "tests/support/utf8.h"
#include "tests/torture/World.h"

namespace torture {
namespace {

constexpr int entries = 2;

BOOL CALLBACK noteUsable(HWND child, LPARAM list) {
  if (IsWindowVisible(child) && IsWindowEnabled(child))
    reinterpret_cast<std::vector<HWND>*>(list)->push_back(child);
  return TRUE;
}

std::vector<HWND> usableChildren(HWND window) {
  std::vector<HWND> children;
  EnumChildWindows(window, noteUsable, reinterpret_cast<LPARAM>(&children));
  return children;
}

bool isButton(HWND window) {
  return (SendMessageW(window, WM_GETDLGCODE, 0, 0) &
          (DLGC_BUTTON | DLGC_DEFPUSHBUTTON | DLGC_UNDEFPUSHBUTTON)) != 0;
}

// Whatever is chosen there may be anywhere on the disk, so nothing but what it offers is.
bool isSystemsChoiceOfFolder(HWND window) {
  return FindWindowExW(window, nullptr, L"SHBrowseForFolder ShellNameSpace Control", nullptr) ||
         windowText(window) == L"Browse for Folder" || windowText(window) == L"Browse For Folder";
}

}  // namespace

Monkey::Monkey(unsigned seed, int actions, FakeWebBrowser& page,
               std::vector<std::wstring> addresses, std::function<void(int)> clickEntry)
    : random_(seed),
      left_(actions),
      page_(page),
      addresses_(std::move(addresses)),
      clickEntry_(std::move(clickEntry)) {}

int Monkey::below(int bound) {
  return static_cast<int>(random_() % static_cast<unsigned>(std::max(bound, 1)));
}

void Monkey::did(const std::wstring& what) {
  std::printf("did\t%s\n", toUtf8(what).c_str());
  std::fflush(stdout);
}

void Monkey::open() {
  --left_;
  const int entry = below(entries);
  did(L"entry " + std::to_wstring(entry));
  clickEntry_(entry);
}

int Monkey::choose(const ShownBox& box) {
  constexpr int buttons[] = {IDYES, IDNO, IDOK, IDCANCEL};
  constexpr const wchar_t* captions[] = {L"Yes", L"No", L"OK", L"Cancel"};
  std::vector<int> there;
  for (std::size_t each = 0; each < std::size(buttons); ++each)
    if (std::ranges::find(box.buttons, captions[each]) != box.buttons.end())
      there.push_back(buttons[each]);
  if (there.empty()) return IDOK;
  const int button = oneOf(there);
  did(L"box \"" + box.text.substr(0, 60) + L"\": " + std::to_wstring(button));
  return button;
}

void Monkey::act() {
  if (isInMenu()) return leaveMenu();
  const auto dialogs = ownDialogs();
  if (dialogs.empty() || !IsWindowEnabled(dialogs.front())) return;
  const HWND top = dialogs.front();
  if (isDone()) {
    PostMessageW(top, WM_CLOSE, 0, 0);
    return;
  }
  --left_;
  if (isSystemsChoiceOfFolder(top)) {
    did(L"the system's choice of a folder");
    PostMessageW(top, WM_COMMAND, static_cast<WPARAM>(below(2) ? IDOK : IDCANCEL), 0);
    return;
  }
  actIn(top);
}

void Monkey::actIn(HWND window) {
  switch (below(20)) {
    case 0:
    case 1:
    case 2:
    case 3:
      return pressButton(window);
    case 4:
    case 5:
    case 6:
    case 7:
    case 8:
      return pressKey();
    case 9:
      return type();
    case 10:
    case 11:
    case 12:
      return click(window);
    case 13:
      return turnWheel();
    case 14:
      return resize(window);
    case 15:
      return changeSystem(window);
    case 16:
    case 17:
      return goOnInPage();
    case 18:
      did(L"close");
      PostMessageW(window, WM_CLOSE, 0, 0);
      return;
    default:  // a user who does not wait
      const int entry = below(entries);
      did(L"entry " + std::to_wstring(entry) + L" once more");
      clickEntry_(entry);
  }
}

// The first entry, or none: the others start programs of the system's.
void Monkey::leaveMenu() {
  const bool takes = below(2) == 1;
  did(takes ? L"menu: the first" : L"menu: none");
  if (takes) PostMessageW(GetFocus(), WM_KEYDOWN, VK_DOWN, 0);
  PostMessageW(GetFocus(), WM_KEYDOWN, static_cast<WPARAM>(takes ? VK_RETURN : VK_ESCAPE), 0);
}

void Monkey::pressButton(HWND window) {
  auto buttons = usableChildren(window);
  std::erase_if(buttons, [](HWND child) { return !isButton(child); });
  if (buttons.empty()) return;
  const HWND chosen = oneOf(buttons);
  did(L"button \"" + windowText(chosen) + L"\" of \"" + windowText(window) + L"\"");
  PostMessageW(chosen, BM_CLICK, 0, 0);
}

void Monkey::pressKey() {
  constexpr WPARAM keys[] = {VK_TAB,  VK_TAB, VK_DOWN,   VK_DOWN,  VK_UP,   VK_LEFT, VK_RIGHT,
                             VK_NEXT, VK_END, VK_RETURN, VK_SPACE, VK_F5,   VK_F1,   VK_ESCAPE,
                             VK_F4,   'N',    'H',       VK_APPS,  VK_HOME, VK_PRIOR};
  const WPARAM key = oneOf(keys);
  const HWND focus = GetFocus();
  if (!focus) return;
  did(L"key " + std::to_wstring(key));
  PostMessageW(focus, WM_KEYDOWN, key, 1);
  PostMessageW(focus, WM_KEYUP, key, static_cast<LPARAM>(0xC0000001));
}

void Monkey::type() {
  constexpr std::wstring_view letters = L"abNZ 0.\\:/*?\u00E4\u4E2D\b";
  const HWND focus = GetFocus();
  if (!focus) return;
  const auto letter = oneOf(letters);
  did(L"letter " + std::to_wstring(static_cast<int>(letter)));
  PostMessageW(focus, WM_CHAR, letter, 1);
}

void Monkey::click(HWND window) {
  const auto children = usableChildren(window);
  if (children.empty()) return;
  const HWND chosen = oneOf(children);
  RECT area = {};
  GetClientRect(chosen, &area);
  const LPARAM place = MAKELPARAM(below(area.right), below(area.bottom));
  const bool isDouble = below(4) == 0;
  did(std::wstring(isDouble ? L"double click" : L"click") + L" on " +
      std::to_wstring(GetDlgCtrlID(chosen)));
  PostMessageW(chosen, WM_LBUTTONDOWN, MK_LBUTTON, place);
  PostMessageW(chosen, WM_LBUTTONUP, 0, place);
  if (!isDouble) return;
  PostMessageW(chosen, WM_LBUTTONDBLCLK, MK_LBUTTON, place);
  PostMessageW(chosen, WM_LBUTTONUP, 0, place);
}

void Monkey::turnWheel() {
  const HWND focus = GetFocus();
  if (!focus) return;
  const int turn = WHEEL_DELTA * (below(5) - 2);
  const bool zooms = below(2) == 1;
  did(L"wheel " + std::to_wstring(turn));
  PostMessageW(focus, WM_MOUSEWHEEL, MAKEWPARAM(zooms ? MK_CONTROL : 0, turn), 0);
}

void Monkey::resize(HWND window) {
  const int width = 100 + below(1100);
  const int height = 50 + below(900);
  did(L"size " + std::to_wstring(width) + L" x " + std::to_wstring(height));
  SetWindowPos(window, nullptr, below(200), below(200), width, height,
               SWP_NOZORDER | SWP_NOACTIVATE);
}

void Monkey::changeSystem(HWND window) {
  constexpr UINT changes[] = {WM_SYSCOLORCHANGE, WM_SETTINGCHANGE, WM_THEMECHANGED, WM_FONTCHANGE,
                              WM_DISPLAYCHANGE};
  const UINT change = oneOf(changes);
  did(L"message " + std::to_wstring(change));
  PostMessageW(window, change, 0, 0);
}

void Monkey::goOnInPage() {
  if (page_.alive() == 0 || !page_.isResting()) return;
  const auto& address = oneOf(addresses_);
  did(L"page: " + address);
  page_.follow(address);
}

}  // namespace torture
