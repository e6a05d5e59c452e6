// The open web's folders as a tree, and the files of the chosen one as a list.
#pragma once

#include <windows.h>
#include <commctrl.h>

#include <map>
#include <string>

#include "host/model/Session.h"

namespace standin {

class FolderView {
 public:
  void create(HWND parent);
  void resize(const RECT& area) const;
  // Reads the web again; the chosen folder stays chosen while it exists.
  void refresh(const Session& session);
  // The tree's and the list's notifications.
  void onNotify(const NMHDR& header, const Session& session);

 private:
  HTREEITEM add(HTREEITEM parent, const std::wstring& name, const std::wstring& folder);
  void addFolders(HTREEITEM parent, const std::wstring& folder);
  void showFiles(const std::wstring& folder) const;

  HWND tree_ = nullptr;
  HWND list_ = nullptr;
  bool filling_ = false;
  std::map<HTREEITEM, std::wstring> folders_;
  std::wstring chosen_;
};

}  // namespace standin
