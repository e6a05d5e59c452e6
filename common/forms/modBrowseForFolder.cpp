#include "common/forms/modBrowseForFolder.h"

#include <objbase.h>
#include <shlobj.h>

#include <utility>

#include "common/ansi.h"

namespace {

// OLE on this thread, which the picker's new style needs. A thread of the other apartment kind
// keeps what it has and gets the old style.
class OleScope {
 public:
  OleScope() noexcept : result_(OleInitialize(nullptr)) {}
  ~OleScope() {
    if (available()) OleUninitialize();
  }
  OleScope(const OleScope&) = delete;
  OleScope& operator=(const OleScope&) = delete;
  bool available() const noexcept { return SUCCEEDED(result_); }

 private:
  HRESULT result_;
};

// The name of an item in the shell's own terms.
class ItemIdList {
 public:
  explicit ItemIdList(PIDLIST_ABSOLUTE owned) noexcept : list_(owned) {}
  ~ItemIdList() { CoTaskMemFree(list_); }
  ItemIdList(const ItemIdList&) = delete;
  ItemIdList& operator=(const ItemIdList&) = delete;

  explicit operator bool() const noexcept { return list_ != nullptr; }

  // Empty for what is no part of the file system.
  std::wstring path() const {
    wchar_t buffer[MAX_PATH] = {};
    if (!SHGetPathFromIDListW(list_, buffer)) return {};
    return buffer;
  }

 private:
  PIDLIST_ABSOLUTE list_;
};

int CALLBACK selectStart(HWND dialog, UINT message, LPARAM, LPARAM start) noexcept {
  if (message == BFFM_INITIALIZED) SendMessageW(dialog, BFFM_SETSELECTIONW, TRUE, start);
  return 0;
}

}  // namespace

namespace modBrowseForFolder {

bool BrowseForFolder(HWND owner, std::wstring_view prompt, std::wstring& path) {
  const OleScope ole;
  const std::wstring title(prompt);
  BROWSEINFOW browse = {};
  browse.hwndOwner = owner;
  browse.lpszTitle = title.c_str();
  browse.ulFlags = ole.available() ? BIF_USENEWUI : 0;
  if (!path.empty()) {
    browse.lpfn = selectStart;
    browse.lParam = reinterpret_cast<LPARAM>(path.c_str());
  }
  const ItemIdList chosen(SHBrowseForFolderW(&browse));
  if (!chosen) return false;
  std::wstring result = chosen.path();
  if (!text::fitsAnsi(result)) result.clear();
  path = std::move(result);
  return true;
}

}  // namespace modBrowseForFolder
