#include "tests/torture/User.h"

#include <commctrl.h>

#include <algorithm>

#include "catalogue/resource.h"
#include "common/forms/resource.h"
#include "tests/torture/Monkey.h"
#include "tests/torture/World.h"
#include "webcopy/resource.h"

namespace torture {
namespace {

User* current = nullptr;
constexpr int visitsOfEach = 4;
constexpr wchar_t templatesCaption[] = L"Dynamic Web Template Browser";
constexpr wchar_t onlineCaption[] = L"DWT Online";
constexpr wchar_t passwordCaption[] = L"Quillet Viewer";

bool isUp(HWND window) { return IsWindow(window) && IsWindowVisible(window); }

void selectRow(HWND list, const std::wstring& title) {
  for (int row = 0; row < ListView_GetItemCount(list); ++row) {
    wchar_t text[256] = {};
    LVITEMW item = {};
    item.pszText = text;
    item.cchTextMax = 256;
    SendMessageW(list, LVM_GETITEMTEXTW, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
    if (title == text)
      ListView_SetItemState(list, row, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
  }
}

BOOL CALLBACK noteViewer(HWND window, LPARAM found) {
  wchar_t name[16] = {};
  GetClassNameW(window, name, 16);
  DWORD process = 0;
  GetWindowThreadProcessId(window, &process);
  if (name != std::wstring_view(L"#32770") || process == GetCurrentProcessId() || !isUp(window))
    return TRUE;
  *reinterpret_cast<HWND*>(found) = window;
  return FALSE;
}

// The viewers of help and notes are programs of their own.
HWND findViewer() {
  HWND found = nullptr;
  EnumWindows(noteViewer, reinterpret_cast<LPARAM>(&found));
  return found;
}

void askForMenu(HWND list) {
  selectRow(list, User::wantedTemplate);
  PostMessageW(list, WM_CONTEXTMENU, reinterpret_cast<WPARAM>(list), -1);
}

// Agrees where that is asked, unless the user `refuses` that, and else takes what is there.
int answer(const ShownBox& box, bool refuses) {
  if (refuses && box.text.find(L"overwrite") != box.text.npos) return IDNO;
  return std::ranges::find(box.buttons, L"Yes") != box.buttons.end() ? IDYES : IDOK;
}

}  // namespace

User::User(FakeWebBrowser& page, std::wstring download, bool refuses)
    : page_(page), download_(std::move(download)), refuses_(refuses) {
  current = this;
  modal_.answerOthers([this](const ShownBox& box) {
    return monkey_ ? monkey_->choose(box) : answer(box, refuses_);
  });
  for (int visit = 0; visit < visitsOfEach; ++visit) {
    expect(templatesCaption, false);
    expect(onlineCaption, true);
    modal_.onDialog(passwordCaption, [](HWND window) {
      SetDlgItemTextA(window, IDC_INPUTBOX_TXTINPUT, password);
      press(window, IDOK);
    });
  }
  timer_ = SetTimer(nullptr, 0, USER_TIMER_MINIMUM, onTimer);
}

User::~User() {
  KillTimer(nullptr, timer_);
  current = nullptr;
}

std::vector<std::wstring> User::boxes() const {
  std::vector<std::wstring> result;
  for (const ShownBox& box : modal_.boxes()) result.push_back(box.title + L" | " + box.text);
  return result;
}

std::vector<std::wstring> User::dialogs() const {
  auto all = modal_.dialogs();
  all.insert(all.end(), others_.begin(), others_.end());
  return all;
}

void User::expect(const wchar_t* caption, bool isOnline) {
  modal_.onDialog(caption, [this, isOnline](HWND window) {
    visited_.push_back({window, isOnline});
  });
}

void CALLBACK User::onTimer(HWND, UINT, UINT_PTR, DWORD) {
  if (current) current->lookAround();
}

// What is done in a window may show others, in which the user then acts.
void User::lookAround() {
  if (monkey_) return monkey_->act();
  if (awaitsViewer_) return closeViewer();
  if (isInMenu()) return leaveMenu();
  std::erase_if(visited_, [](const Visited& each) { return !isUp(each.window); });
  const bool looks = aim_ == Aim::look;
  if (visited_.empty()) {
    if (looks) closeOther();
    return;
  }
  Visited& top = visited_.back();
  if (!IsWindowEnabled(top.window)) {
    if (looks) closeOther();
    return;
  }
  if (!top.isOnline && !isEnabled(top.window, IDC_QUILLET_SELECT)) return;  // it lists
  const Visited before = top;
  ++top.done;
  switch (aim_) {
    case Aim::use:
      return act(before);
    case Aim::look:
      return look(before);
    case Aim::read:
      return read(before);
  }
}

void User::look(const Visited& visited) {
  constexpr int buttons[] = {IDC_QUILLET_ABOUT, IDC_QUILLET_SELECT, IDC_QUILLET_DESTFOLDER};
  if (visited.isOnline || visited.done > std::size(buttons))
    PostMessageW(visited.window, WM_CLOSE, 0, 0);
  else if (visited.done == 0)
    askForMenu(GetDlgItem(visited.window, IDC_QUILLET_LIST));
  else
    press(visited.window, buttons[visited.done - 1]);
}

void User::leaveMenu() {
  others_.push_back(L"a menu");
  EndMenu();
}

void User::read(const Visited& visited) {
  constexpr int buttons[] = {IDC_QUILLET_HELP, IDC_QUILLET_NOTES};
  if (visited.done >= std::size(buttons)) {
    press(visited.window, IDCANCEL);
    return;
  }
  selectRow(GetDlgItem(visited.window, IDC_QUILLET_LIST), wantedTemplate);
  awaitsViewer_ = true;
  press(visited.window, buttons[visited.done]);
}

// Until its program has ended: one that is about to end would take the next start's page.
void User::closeViewer() {
  const HWND window = findViewer();
  if (window && !viewer_) {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    viewer_.reset(OpenProcess(SYNCHRONIZE, FALSE, process));
    others_.push_back(L"a viewer, number " + std::to_wstring(others_.size() + 1));
  }
  if (window) PostMessageW(window, WM_CLOSE, 0, 0);
  if (!viewer_ || WaitForSingleObject(viewer_.get(), 0) != WAIT_OBJECT_0) return;
  viewer_.reset();
  awaitsViewer_ = false;
}

// A window over those that are visited, or that was over one which has gone: what it opens itself,
// and its end.
void User::closeOther() {
  const auto dialogs = ownDialogs();
  if (dialogs.empty() || !IsWindowEnabled(dialogs.front())) return;
  const HWND top = dialogs.front();
  const std::wstring caption = windowText(top);
  if (caption == templatesCaption || caption == onlineCaption) return;
  if (met_.insert(top).second)
    for (const int opener : {IDC_SELECTWEBFOLDER_BTNNEWFOLDER, IDC_FOLDERS_ADD})
      if (IsWindow(GetDlgItem(top, opener))) return press(top, opener);
  PostMessageW(top, WM_CLOSE, 0, 0);
}

void User::act(Visited visited) {
  if (visited.isOnline && visited.done == 0 && page_.isResting()) {
    page_.follow(download_);
  } else if (visited.isOnline) {
    PostMessageW(visited.window, WM_CLOSE, 0, 0);
  } else if (visited.done == 0 && isEnabled(visited.window, IDOK)) {
    selectRow(GetDlgItem(visited.window, IDC_QUILLET_LIST), wantedTemplate);
    press(visited.window, IDOK);
  } else {
    press(visited.window, IDCANCEL);
  }
}

}  // namespace torture
