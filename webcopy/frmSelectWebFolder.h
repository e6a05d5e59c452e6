// Lets the user choose a folder of a web, and make new ones on the way.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "addin/host/HostWeb.h"
#include "common/forms/ImageList.h"
#include "common/forms/TreeView.h"
#include "webcopy/web_folders.h"

// `path` is the initial selection and, when the user pressed OK (true), the chosen folder: its path
// below the web's root without a leading "/", empty for the root itself; when `absolute`, the web's
// URL, "/" and that path. A cancel leaves it as it was. Raises an Error (429) when there can be no
// window.
bool SelectWebFolder(const HostWeb& web, std::wstring& path, bool allowNewFolder, bool absolute,
                     HWND owner);

// The tree is read one level at a time, when a node is expanded first, and never again: folders
// made by others meanwhile do not show.
class frmSelectWebFolder final : public forms::Form {
 public:
  frmSelectWebFolder();

  bool SelectWebFolder(const HostWeb& web, std::wstring& path, bool allowNewFolder, bool absolute,
                       HWND owner);

 private:
  using Node = forms::TreeView::Node;

  void Form_Load() override;
  void btnNewFolder_Click();
  void btnOK_Click();
  void btnCancel_Click();
  bool tvFolders_Expand(Node node);

  void loadTree();
  void walkTo(const std::wstring& path);
  void addChildren(Node node, const HostFolder& folder);
  void addFolders(Node node, const std::vector<webfolder::OfferedFolder>& offered);
  Node addNode(Node parent, const std::wstring& name, int tag);
  Node childNamed(Node node, const std::wstring& name) const;
  std::optional<HostFolder> folderOf(Node node) const;
  void createFolder(Node node, const HostFolder& parent, const std::wstring& name);
  void showNewFolder(Node node, const std::wstring& name);

  forms::Label lblWeb;
  forms::TextBox txtWeb;
  forms::TreeView tvFolders;
  forms::Button btnNewFolder;
  forms::Button btnOK;
  forms::Button btnCancel;
  forms::ImageList ilIcons;

  std::optional<HostWeb> web_;
  std::wstring path_;
  std::wstring WebRootName_;
  bool allowNewFolder_ = false;
  bool ok_ = false;
};
