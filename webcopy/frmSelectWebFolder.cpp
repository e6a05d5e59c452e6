#include "webcopy/frmSelectWebFolder.h"

#include "addin/host/web_path.h"
#include "common/forms/folder_icons.h"
#include "common/letter_case.h"
#include "common/text.h"
#include "webcopy/frmNewFolder.h"
#include "webcopy/resource.h"
#include "webcopy/web_folder_path.h"

namespace {

// The tag of a node: whether its children have been read.
constexpr int unread = 0;
constexpr int read = 1;

constexpr forms::TreeView::Images folderImages = {0, 1};

}  // namespace

bool SelectWebFolder(const HostWeb& web, std::wstring& path, bool allowNewFolder, bool absolute,
                     HWND owner) {
  return frmSelectWebFolder().SelectWebFolder(web, path, allowNewFolder, absolute, owner);
}

frmSelectWebFolder::frmSelectWebFolder()
    : Form(L"frmSelectWebFolder", IDD_SELECTWEBFOLDER, L"Destination"),
      lblWeb(*this, IDC_SELECTWEBFOLDER_LBLWEB),
      txtWeb(*this, IDC_SELECTWEBFOLDER_TXTWEB),
      tvFolders(*this, IDC_SELECTWEBFOLDER_TVFOLDERS, L'/'),
      btnNewFolder(*this, IDC_SELECTWEBFOLDER_BTNNEWFOLDER),
      btnOK(*this, IDOK),
      btnCancel(*this, IDCANCEL) {
  tvFolders.onExpanding = [this](Node node) { return tvFolders_Expand(node); };
  tvFolders.onDoubleClick = [this] {
    if (tvFolders.selected()) btnOK_Click();
  };
  btnNewFolder.onClick = [this] { btnNewFolder_Click(); };
  btnOK.onClick = [this] { btnOK_Click(); };
  btnCancel.onClick = [this] { btnCancel_Click(); };
}

bool frmSelectWebFolder::SelectWebFolder(const HostWeb& web, std::wstring& path,
                                         bool allowNewFolder, bool absolute, HWND owner) {
  web_ = web;
  path_ = path;
  allowNewFolder_ = allowNewFolder;
  showModal(owner);
  if (ok_) path = webfolder::chosenPath(path_, web.url(), absolute);
  web_.reset();
  return ok_;
}

void frmSelectWebFolder::Form_Load() {
  keep(txtWeb, forms::left | forms::top | forms::right);
  keep(tvFolders, forms::left | forms::top | forms::right | forms::bottom);
  keep(btnNewFolder, forms::left | forms::bottom);
  keep(btnOK, forms::right | forms::bottom);
  keep(btnCancel, forms::right | forms::bottom);
  btnNewFolder.setVisible(allowNewFolder_);
  tvFolders.focus();
  const forms::WaitCursor wait;
  loadTree();
  walkTo(webfolder::initialPath(path_, web_->url()));
  tvFolders.ensureVisible(tvFolders.selected());
}

void frmSelectWebFolder::loadTree() {
  const std::wstring url = web_->url();
  txtWeb.setText(url);
  tvFolders.clear();
  ilIcons = forms::makeFolderIcons({forms::FolderIcon::closed, forms::FolderIcon::open});
  tvFolders.setImages(ilIcons.get());
  WebRootName_ = webfolder::rootName(url);
  const Node root = addNode(nullptr, WebRootName_, unread);
  tvFolders.select(root);
  addChildren(root, web_->rootFolder());
  tvFolders.expand(root);
}

// Selects the folder of that path when every folder on the way is there.
void frmSelectWebFolder::walkTo(const std::wstring& path) {
  const Node root = tvFolders.selected();
  Node node = root;
  for (const std::wstring& name : webfolder::foldersOf(path)) {
    tvFolders.expand(node);
    const Node child = childNamed(node, name);
    node = child ? child : childNamed(node, webpath::unescaped(name));
    if (!node) return;
  }
  tvFolders.select(node);
}

// A node counts as read from the beginning: the host may let the user open it once more while it
// is asked. Nothing happens to one whose folders cannot be read.
void frmSelectWebFolder::addChildren(Node node, const HostFolder& folder) {
  tvFolders.setTag(node, read);
  // A folder that was made while an earlier reading failed stands beside it.
  const Node nameless = childNamed(node, {});
  if (nameless) tvFolders.remove(nameless);
  try {
    addFolders(node, webfolder::offeredFolders(folder));
  } catch (...) {
    tvFolders.setTag(node, unread);
    if (nameless) addNode(node, {}, read);
    throw;
  }
}

void frmSelectWebFolder::addFolders(Node node,
                                    const std::vector<webfolder::OfferedFolder>& offered) {
  const forms::TreeView::Frozen frozen(tvFolders);
  // One that was made while the host was asked is there already.
  const bool anyThere = tvFolders.firstChild(node) != nullptr;
  for (const auto& each : offered) {
    if (anyThere && childNamed(node, each.name)) continue;
    const Node child = addNode(node, each.name, each.hasFolders ? unread : read);
    // Something below it shows that it can be expanded.
    if (each.hasFolders) addNode(child, {}, read);
  }
  tvFolders.sortChildren(node);
}

frmSelectWebFolder::Node frmSelectWebFolder::addNode(Node parent, const std::wstring& name,
                                                     int tag) {
  return tvFolders.add(parent, name, folderImages, tag);
}

frmSelectWebFolder::Node frmSelectWebFolder::childNamed(Node node, const std::wstring& name) const {
  Node child = tvFolders.firstChild(node);
  while (child && !text::equalIgnoringCase(tvFolders.text(child), name))
    child = tvFolders.nextSibling(child);
  return child;
}

std::optional<HostFolder> frmSelectWebFolder::folderOf(Node node) const {
  const std::wstring path = tvFolders.fullPath(node);
  if (path == WebRootName_) return web_->rootFolder();
  return web_->locateFolder(webfolder::belowRoot(path));
}

bool frmSelectWebFolder::tvFolders_Expand(Node node) {
  handle(L"tvFolders_Expand", [&] {
    if (tvFolders.tag(node) != unread) return;
    const forms::WaitCursor wait;
    if (const auto folder = folderOf(node)) addChildren(node, *folder);
  });
  // One that could not be read stays closed over its nameless node.
  return tvFolders.tag(node) == read;
}

void frmSelectWebFolder::btnNewFolder_Click() {
  handle(L"btnNewFolder_Click", [this] {
    const Node node = tvFolders.selected();
    if (!node) return;
    tvFolders.expand(node);
    const auto parent = folderOf(node);
    if (isUnloaded()) return;  // while the host answered
    std::wstring name;
    if (parent && AskNewFolderName(*parent, name, hwnd())) createFolder(node, *parent, name);
    tvFolders.focus();
  });
}

void frmSelectWebFolder::createFolder(Node node, const HostFolder& parent,
                                      const std::wstring& name) {
  try {
    showNewFolder(node, parent.addFolder(name).name());
  } catch (...) {
    // Names that the check lets pass may still be none for the web's disk or server.
    const Error error = errors::current();
    modCommon::reportFormError(L"btnNewFolder_Click", this->name(), error);
    showFolderRefused(hwnd(), text::join({L"The folder \"", name, L"\" could not be created.\r\n",
                                          error.description()}));
  }
}

void frmSelectWebFolder::showNewFolder(Node node, const std::wstring& name) {
  // A node that could not be read before may be now, the new folder with it.
  tvFolders.expand(node);
  if (tvFolders.tag(node) != read) return;
  Node child = childNamed(node, name);
  if (!child) {
    child = addNode(node, name, read);
    tvFolders.sortChildren(node);
  }
  tvFolders.ensureVisible(child);
  tvFolders.select(child);
}

void frmSelectWebFolder::btnOK_Click() {
  handle(L"btnOK_Click", [this] {
    const Node node = tvFolders.selected();
    if (!node) return;
    path_ = tvFolders.fullPath(node);
    ok_ = true;
    unload();
  });
}

void frmSelectWebFolder::btnCancel_Click() {
  handle(L"btnCancel_Click", [this] {
    ok_ = false;
    unload();
  });
}
