#include "host/script/desktop.h"

#include <commctrl.h>

#include <algorithm>

#include "common/text.h"
#include "host/model/CommandBars.h"
#include "html/PageView.h"

namespace standin::desktop {
namespace {

constexpr UINT answerMilliseconds = 10000;

template <class Visit>
BOOL CALLBACK visitWindow(HWND window, LPARAM visit) {
  (*reinterpret_cast<Visit*>(visit))(window);
  return TRUE;
}

std::wstring raw(HWND window) {
  std::wstring text(static_cast<std::size_t>(send(window, WM_GETTEXTLENGTH)) + 1, L'\0');
  text.resize(static_cast<std::size_t>(
      send(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()))));
  return text;
}

// --- Lists

std::wstring listText(HWND list, int row, int column) {
  wchar_t text[512] = {};
  LVITEMW item = {};
  item.iSubItem = column;
  item.pszText = text;
  item.cchTextMax = 512;
  send(list, LVM_GETITEMTEXTW, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
  return text;
}

int listColumns(HWND list) {
  const HWND header = reinterpret_cast<HWND>(send(list, LVM_GETHEADER));
  return header ? static_cast<int>(send(header, HDM_GETITEMCOUNT)) : 1;
}

int listRow(HWND list, const std::wstring& text) {
  const int rows = static_cast<int>(send(list, LVM_GETITEMCOUNT));
  const int columns = listColumns(list);
  for (int row = 0; row < rows; ++row)
    for (int column = 0; column < columns; ++column)
      if (listText(list, row, column) == text) return row;
  return -1;
}

void selectListRow(HWND list, int row) {
  LVITEMW item = {};
  item.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
  send(list, LVM_SETITEMSTATE, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(&item));
  item.state = LVIS_SELECTED | LVIS_FOCUSED;
  send(list, LVM_SETITEMSTATE, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
  send(list, LVM_ENSUREVISIBLE, static_cast<WPARAM>(row), FALSE);
}

// --- List and combo boxes

struct BoxMessages {
  UINT find;
  UINT choose;
  WORD notify;
};

BoxMessages boxMessages(HWND box) {
  return isClass(box, L"ComboBox") ? BoxMessages{CB_FINDSTRINGEXACT, CB_SETCURSEL, CBN_SELCHANGE}
                                   : BoxMessages{LB_FINDSTRINGEXACT, LB_SETCURSEL, LBN_SELCHANGE};
}

int boxRow(HWND box, const std::wstring& text) {
  return static_cast<int>(send(box, boxMessages(box).find, static_cast<WPARAM>(-1),
                               reinterpret_cast<LPARAM>(text.c_str())));
}

void selectBoxRow(HWND box, int row) {
  send(box, boxMessages(box).choose, static_cast<WPARAM>(row));
  // A box that is set by a message does not tell its parent, as it does when the user sets it.
  const auto id = static_cast<WORD>(GetDlgCtrlID(box));
  PostMessageW(GetParent(box), WM_COMMAND, MAKEWPARAM(id, boxMessages(box).notify),
               reinterpret_cast<LPARAM>(box));
}

bool isBox(HWND window) { return isClass(window, L"ComboBox") || isClass(window, L"ListBox"); }

int rowOf(HWND child, const std::wstring& text) {
  if (isClass(child, WC_LISTVIEWW)) return listRow(child, text);
  return isBox(child) ? boxRow(child, text) : -1;
}

bool selectRowOf(HWND child, const std::wstring& text) {
  const int row = rowOf(child, text);
  if (row < 0) return false;
  if (isBox(child))
    selectBoxRow(child, row);
  else
    selectListRow(child, row);
  return true;
}

// --- Trees

std::wstring nodeText(HWND tree, HTREEITEM node) {
  wchar_t text[512] = {};
  TVITEMW item = {};
  item.mask = TVIF_TEXT;
  item.hItem = node;
  item.pszText = text;
  item.cchTextMax = 512;
  send(tree, TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&item));
  return text;
}

HTREEITEM nextNode(HWND tree, WPARAM relation, HTREEITEM node) {
  return reinterpret_cast<HTREEITEM>(
      send(tree, TVM_GETNEXTITEM, relation, reinterpret_cast<LPARAM>(node)));
}

HTREEITEM nodeNamed(HWND tree, HTREEITEM first, const std::wstring& text) {
  for (HTREEITEM node = first; node; node = nextNode(tree, TVGN_NEXT, node))
    if (nodeText(tree, node) == text) return node;
  return nullptr;
}

HTREEITEM openedChild(HWND tree, HTREEITEM node) {
  send(tree, TVM_EXPAND, TVE_EXPAND, reinterpret_cast<LPARAM>(node));
  return nextNode(tree, TVGN_CHILD, node);
}

bool openNodeIn(HWND tree, const std::vector<std::wstring>& levels) {
  HTREEITEM among = nextNode(tree, TVGN_ROOT, nullptr);
  // The root may be left out of the path.
  if (among && !nodeNamed(tree, among, levels.front())) among = openedChild(tree, among);
  HTREEITEM node = nullptr;
  for (const auto& level : levels) {
    node = nodeNamed(tree, among, level);
    if (!node) return false;
    among = openedChild(tree, node);
  }
  send(tree, TVM_SELECTITEM, TVGN_CARET, reinterpret_cast<LPARAM>(node));
  return true;
}

// --- Tool bars

bool isToolbar(HWND window) { return isClass(window, TOOLBARCLASSNAMEW); }

std::wstring toolText(HWND bar, int command) {
  wchar_t text[512] = {};
  const auto length =
      static_cast<int>(send(bar, TB_GETBUTTONTEXTW, static_cast<WPARAM>(command), 0));
  if (length > 0 && length < 512)
    send(bar, TB_GETBUTTONTEXTW, static_cast<WPARAM>(command), reinterpret_cast<LPARAM>(text));
  return text;
}

Spot middleOfTool(HWND bar, int index) {
  RECT place = {};
  send(bar, TB_GETITEMRECT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&place));
  return {bar, {(place.left + place.right) / 2, (place.top + place.bottom) / 2}};
}

// --- Menus

std::wstring menuCaption(HMENU menu, int position) {
  wchar_t text[256] = {};
  GetMenuStringW(menu, static_cast<UINT>(position), text, 256, MF_BYPOSITION);
  return std::wstring(text::beforeLast(text, L'\t'));
}

std::wstring menuText(HMENU menu, int position) {
  return plainCaption(menuCaption(menu, position));
}

// 0 when the caption has none.
wchar_t acceleratorOf(const std::wstring& caption) {
  for (std::size_t i = 0; i + 1 < caption.size(); ++i)
    if (caption[i] == L'&' && caption[++i] != L'&') return caption[i];
  return L'\0';
}

UINT menuCommandIn(HMENU menu, const std::vector<std::wstring>& path, std::size_t next) {
  const int count = GetMenuItemCount(menu);
  for (int i = 0; i < count; ++i) {
    const bool hit = menuText(menu, i) == path[next];
    const HMENU opened = GetSubMenu(menu, i);
    if (opened) {
      const std::size_t left = hit && next + 1 < path.size() ? next + 1 : next;
      if (const UINT command = menuCommandIn(opened, path, left)) return command;
    } else if (hit && next + 1 == path.size()) {
      const UINT state = GetMenuState(menu, static_cast<UINT>(i), MF_BYPOSITION);
      return state & (MF_GRAYED | MF_DISABLED) ? 0 : GetMenuItemID(menu, i);
    }
  }
  return 0;
}

void describeWindow(HWND window, int depth, std::wstring& result) {
  result.append(static_cast<std::size_t>(depth) * 2, L' ');
  const int id = depth ? GetDlgCtrlID(window) : 0;
  result += classOf(window) + L" " + std::to_wstring(id) + L" \"" + textOf(window) + L"\"" +
            (IsWindowEnabled(window) ? L"" : L" disabled") + L"\n";
  for (HWND child = GetWindow(window, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT))
    if (IsWindowVisible(child)) describeWindow(child, depth + 1, result);
}

std::vector<HWND> visibleWindows(bool ofThisProcess) {
  std::vector<HWND> result;
  auto visit = [&](HWND window) {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    const bool own = process == GetCurrentProcessId();
    if (own == ofThisProcess && IsWindowVisible(window)) result.push_back(window);
  };
  EnumWindows(visitWindow<decltype(visit)>, reinterpret_cast<LPARAM>(&visit));
  return result;
}

}  // namespace

LRESULT send(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  DWORD_PTR result = 0;
  SendMessageTimeoutW(window, message, wParam, lParam, SMTO_NORMAL, answerMilliseconds, &result);
  return static_cast<LRESULT>(result);
}

std::vector<HWND> windows() { return visibleWindows(true); }

HWND anyWindow(const std::wstring& caption) {
  HWND found = nullptr;
  auto visit = [&](HWND window) {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    if (!found && process == GetCurrentProcessId() && textOf(window) == caption) found = window;
  };
  EnumWindows(visitWindow<decltype(visit)>, reinterpret_cast<LPARAM>(&visit));
  return found;
}

std::vector<HWND> windows(std::wstring_view caption) {
  const bool anyRest = !caption.empty() && caption.back() == L'*';
  if (anyRest) caption.remove_suffix(1);
  for (const bool ofThisProcess : {true, false}) {
    std::vector<HWND> result = visibleWindows(ofThisProcess);
    std::erase_if(result, [&](HWND window) {
      const std::wstring text = textOf(window);
      return anyRest ? text.substr(0, caption.size()) != caption : text != caption;
    });
    if (!result.empty()) return result;
  }
  return {};
}

std::vector<HWND> children(HWND window) {
  std::vector<HWND> result;
  auto visit = [&](HWND child) {
    if (IsWindowVisible(child)) result.push_back(child);
  };
  EnumChildWindows(window, visitWindow<decltype(visit)>, reinterpret_cast<LPARAM>(&visit));
  return result;
}

std::wstring textOf(HWND window) {
  const std::wstring text = text::replaceAll(raw(window), L"\r\n", L"|");
  return text::replaceAll(text::replaceAll(text, L"\n", L"|"), L"\r", L"|");
}

std::wstring captionOf(HWND window) { return plainCaption(textOf(window)); }

std::wstring classOf(HWND window) {
  wchar_t name[128] = {};
  GetClassNameW(window, name, 128);
  return name;
}

bool isClass(HWND window, const wchar_t* name) { return sameName(classOf(window), name); }

bool isMessageBox(HWND window) {
  if (!isClass(window, L"#32770")) return false;
  int buttons = 0;
  int texts = 0;
  for (const HWND child : children(window)) {
    const int id = GetDlgCtrlID(child);
    if (isClass(child, L"Button") && id >= IDOK && id <= IDCONTINUE)
      ++buttons;
    else if (isClass(child, L"Static"))
      texts += textOf(child).empty() ? 0 : 1;
    else
      return false;
  }
  return buttons > 0 && texts == 1;
}

HWND control(HWND window, const std::wstring& idOrLabel) {
  if (!idOrLabel.empty() && idOrLabel.find_first_not_of(L"0123456789") == idOrLabel.npos)
    return GetDlgItem(window, std::stoi(idOrLabel));
  for (const HWND child : children(window))
    if (isClass(child, L"Static") && captionOf(child) == idOrLabel)
      return GetWindow(child, GW_HWNDNEXT);
  return nullptr;
}

HWND button(HWND window, const std::wstring& caption) {
  for (const HWND child : children(window))
    if (isClass(child, L"Button") && captionOf(child) == caption) return child;
  return nullptr;
}

Spot toolButton(HWND window, const std::wstring& text) {
  for (const HWND bar : children(window)) {
    const int count = isToolbar(bar) ? static_cast<int>(send(bar, TB_BUTTONCOUNT)) : 0;
    for (int i = 0; i < count; ++i) {
      TBBUTTON tool = {};
      send(bar, TB_GETBUTTON, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&tool));
      if (tool.fsState & TBSTATE_ENABLED && !(tool.fsStyle & BTNS_SEP) &&
          toolText(bar, tool.idCommand) == text)
        return middleOfTool(bar, i);
    }
  }
  return {};
}

Spot firstToolButton(HWND window, const std::wstring& idOrLabel) {
  const HWND bar = control(window, idOrLabel);
  return bar && isToolbar(bar) ? middleOfTool(bar, 0) : Spot{};
}

Spot link(HWND window, const std::wstring& text) {
  for (const HWND child : children(window)) {
    POINT place = {};
    if (html::linkPlace(child, text, place)) return {child, place};
  }
  return {};
}

void click(const Spot& spot) {
  const LPARAM place = MAKELPARAM(spot.place.x, spot.place.y);
  PostMessageW(spot.child, WM_LBUTTONDOWN, MK_LBUTTON, place);
  PostMessageW(spot.child, WM_LBUTTONUP, 0, place);
  PostMessageW(spot.child, WM_MOUSELEAVE, 0, 0);
}

int progress(HWND window) {
  LRESULT most = -1;
  for (const HWND child : children(window)) {
    if (!isClass(child, PROGRESS_CLASSW)) continue;
    const LRESULT least = send(child, PBM_GETRANGE, TRUE);
    const LRESULT range = send(child, PBM_GETRANGE, FALSE) - least;
    if (range > 0) most = std::max(most, (send(child, PBM_GETPOS) - least) * 100 / range);
  }
  return static_cast<int>(most);
}

HWND popupMenu() {
  for (const HWND window : windows())
    if (isClass(window, L"#32768")) return window;
  return nullptr;
}

int popupEntry(HWND popup, const std::wstring& caption) {
  const auto menu = reinterpret_cast<HMENU>(send(popup, MN_GETHMENU));
  const int count = menu ? GetMenuItemCount(menu) : 0;
  int passed = 0;
  for (int i = 0; i < count; ++i) {
    const UINT state = GetMenuState(menu, static_cast<UINT>(i), MF_BYPOSITION);
    if (state & MF_SEPARATOR) continue;
    if (menuText(menu, i) == caption && !(state & (MF_GRAYED | MF_DISABLED))) return passed;
    ++passed;
  }
  return -1;
}

bool hasRow(HWND window, const std::wstring& text) {
  return std::ranges::any_of(children(window), [&](HWND child) { return rowOf(child, text) >= 0; });
}

bool selectRow(HWND window, const std::wstring& text) {
  return std::ranges::any_of(children(window),
                             [&](HWND child) { return selectRowOf(child, text); });
}

bool openNode(HWND window, const std::wstring& path) {
  return std::ranges::any_of(children(window), [&](HWND child) {
    return isClass(child, WC_TREEVIEWW) && openNodeIn(child, text::split(path, L'/'));
  });
}

UINT menuCommand(HWND window, const std::vector<std::wstring>& path) {
  const HMENU menu = GetMenu(window);
  return menu ? menuCommandIn(menu, path, 0) : 0;
}

std::wstring menuLetters(HWND window, const std::vector<std::wstring>& path) {
  std::wstring letters;
  HMENU menu = GetMenu(window);
  for (const auto& level : path) {
    const int count = menu ? GetMenuItemCount(menu) : 0;
    int position = 0;
    while (position < count && menuText(menu, position) != level) ++position;
    const wchar_t letter = position < count ? acceleratorOf(menuCaption(menu, position)) : L'\0';
    if (!letter) return {};
    letters += static_cast<wchar_t>(towlower(letter));
    menu = GetSubMenu(menu, position);
  }
  return menu ? letters : std::wstring();
}

std::wstring describe() {
  std::wstring result;
  for (const HWND window : windows()) describeWindow(window, 0, result);
  return result;
}

}  // namespace standin::desktop
