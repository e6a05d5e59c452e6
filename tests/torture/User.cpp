#include "tests/torture/User.h"

#include <commctrl.h>

#include <algorithm>

#include "catalogue/resource.h"
#include "tests/torture/Monkey.h"
#include "tests/torture/World.h"
#include "webcopy/resource.h"

namespace torture {
namespace {

User* current = nullptr;
constexpr int visitsOfEach = 4;
constexpr wchar_t templatesCaption[] = L"Dynamic Web Template Browser";
constexpr wchar_t onlineCaption[] = L"DWT Online";

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
  std::erase_if(visited_, [](const Visited& each) { return !isUp(each.window); });
  if (visited_.empty()) {
    if (looks_) closeOther();
    return;
  }
  Visited& top = visited_.back();
  if (!IsWindowEnabled(top.window)) {
    if (looks_) closeOther();
    return;
  }
  if (!top.isOnline && !isEnabled(top.window, IDC_QUILLET_SELECT)) return;  // it lists
  const Visited before = top;
  ++top.done;
  looks_ ? look(before) : act(before);
}

void User::look(const Visited& visited) {
  constexpr int buttons[] = {IDC_QUILLET_ABOUT, IDC_QUILLET_SELECT, IDC_QUILLET_DESTFOLDER};
  if (visited.isOnline || visited.done >= std::size(buttons))
    PostMessageW(visited.window, WM_CLOSE, 0, 0);
  else
    press(visited.window, buttons[visited.done]);
}

// A window over those that are visited, or that was over one which has gone: what it opens itself,
// and its end.
void User::closeOther() {
  const auto dialogs = ownDialogs();
  if (dialogs.empty() || !IsWindowEnabled(dialogs.front())) return;
  const HWND top = dialogs.front();
  const std::wstring caption = windowText(top);
  if (caption == templatesCaption || caption == onlineCaption) return;
  if (met_.insert(top).second && IsWindow(GetDlgItem(top, IDC_SELECTWEBFOLDER_BTNNEWFOLDER)))
    press(top, IDC_SELECTWEBFOLDER_BTNNEWFOLDER);
  else
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
