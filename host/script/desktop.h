// The windows of this process as a user sees them, reached from another thread by messages only.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>
#include <vector>

namespace standin::desktop {

// Visible top-level windows, the foremost first.
std::vector<HWND> windows();
// A window of exactly that caption, shown or not; null when there is none.
HWND anyWindow(const std::wstring& caption);
// Those with that caption; a "*" at its end stands for any rest. Where this process has none, those
// of programs that it has started.
std::vector<HWND> windows(std::wstring_view caption);
// Every visible window inside, in tab order.
std::vector<HWND> children(HWND window);

std::wstring textOf(HWND window);     // line breaks become "|"
std::wstring captionOf(HWND window);  // the same without accelerator marks
std::wstring classOf(HWND window);
bool isClass(HWND window, const wchar_t* name);
// True for a box of the system's own: one text, an icon at most, and push buttons.
bool isMessageBox(HWND window);

// The child that a number or the label in front of it means; null when there is none.
HWND control(HWND window, const std::wstring& idOrLabel);
HWND button(HWND window, const std::wstring& caption);

// Where to click in a child of the window.
struct Spot {
  HWND child = nullptr;  // null when there is nothing to click on
  POINT place = {};
};
// An enabled button of a tool bar by its text, which may be shown as its tip only.
Spot toolButton(HWND window, const std::wstring& text);
// The first button of the tool bar behind that label.
Spot firstToolButton(HWND window, const std::wstring& idOrLabel);
// A link in a page that the host's own browser shows.
Spot link(HWND window, const std::wstring& text);
void click(const Spot& spot);

// How far the fullest progress bar in the window has come, in per cent; -1 without a bar.
int progress(HWND window);

// The pop-up menu that is open in front of all others, and the enabled entry of that caption in it.
// The entry is counted as the arrow keys count; -1 when there is none.
HWND popupMenu();
int popupEntry(HWND popup, const std::wstring& caption);

// A bounded SendMessage.
LRESULT send(HWND window, UINT message, WPARAM wParam = 0, LPARAM lParam = 0);

// Rows and nodes; false when there is no such one.
bool hasRow(HWND window, const std::wstring& text);
bool selectRow(HWND window, const std::wstring& text);
bool openNode(HWND window, const std::wstring& path);  // levels parted by "/"

// The command of a menu entry: each of `path` is the caption of a menu or entry on the way to it,
// in order; levels may be left out. 0 when there is none or it is disabled.
UINT menuCommand(HWND window, const std::vector<std::wstring>& path);

// The accelerators that open the menus of `path`, every level named; empty when there is no such
// menu.
std::wstring menuLetters(HWND window, const std::vector<std::wstring>& path);

// Everything that is there, for a look at what a script meets.
std::wstring describe();

}  // namespace standin::desktop
