#include "host/model/Web.h"

#include <algorithm>

#include "common/ansi.h"
#include "common/text.h"
#include "host/model/Themes.h"
#include "host/model/disk.h"
#include "host/model/web_paths.h"

namespace standin {
namespace {

const MemberTable webMembers(
    L"Web",
    {{L"Url", Kind::get, {}, call<&Web::getUrl>},
     {L"Title", Kind::get, {}, call<&Web::getTitle>},
     {L"RootFolder", Kind::get, {}, call<&Web::getRootFolder>},
     {L"LocateFolder", Kind::method, {{L"FolderUrl", Takes::text}}, call<&Web::locateFolder>},
     {L"LocateFile", Kind::method, {{L"FileUrl", Takes::text}}, call<&Web::locateFile>},
     {L"AllFolders", Kind::get, {}, call<&Web::getAllFolders>},
     {L"AllFiles", Kind::get, {}, call<&Web::getAllFiles>},
     {L"Refresh", Kind::method, {{L"Flag", Takes::boolean, true}}, call<&Web::refresh>}});

const MemberTable folderMembers(L"WebFolder",
                                {{L"Name", Kind::get, {}, call<&WebFolder::getName>},
                                 {L"Url", Kind::get, {}, call<&WebFolder::getUrl>},
                                 {L"IsWeb", Kind::get, {}, call<&WebFolder::getIsWeb>},
                                 {L"IsRoot", Kind::get, {}, call<&WebFolder::getIsRoot>},
                                 {L"Parent", Kind::get, {}, call<&WebFolder::getParent>},
                                 {L"Web", Kind::get, {}, call<&WebFolder::getWeb>},
                                 {L"Folders", Kind::get, {}, call<&WebFolder::getFolders>},
                                 {L"Files", Kind::get, {}, call<&WebFolder::getFiles>}});

const MemberTable foldersMembers(
    L"WebFolders",
    {{L"Count", Kind::get, {}, call<&WebFolders::getCount>},
     {L"Item", Kind::get, {{L"Index", Takes::numberOrText}}, call<&WebFolders::getItem>},
     {L"Add", Kind::method, {{L"FolderUrl", Takes::text}}, call<&WebFolders::add>}});

const MemberTable filesMembers(
    L"WebFiles", {{L"Count", Kind::get, {}, call<&WebFiles::getCount>},
                  {L"Item", Kind::get, {{L"Index", Takes::numberOrText}}, call<&WebFiles::getItem>},
                  {L"Add",
                   Kind::method,
                   {{L"FileName", Takes::text}, {L"Overwrite", Takes::boolean, true}},
                   call<&WebFiles::add>}});

const MemberTable fileMembers(
    L"WebFile", {{L"Name", Kind::get, {}, call<&WebFile::getName>},
                 {L"Extension", Kind::get, {}, call<&WebFile::getExtension>},
                 {L"Url", Kind::get, {}, call<&WebFile::getUrl>},
                 {L"Title", Kind::get, {}, call<&WebFile::getTitle>},
                 {L"Delete", Kind::method, {}, call<&WebFile::remove>},
                 {L"ApplyTheme",
                  Kind::method,
                  {{L"ThemeName", Takes::text}, {L"ThemeProperties", Takes::number, true}},
                  call<&WebFile::applyTheme>}});

std::wstring nameOf(const std::wstring& relative) {
  return std::wstring(text::afterLast(relative, L'/'));
}

std::wstring parentOf(const std::wstring& relative) {
  const auto slash = relative.rfind(L'/');
  return slash == relative.npos ? std::wstring() : relative.substr(0, slash);
}

std::wstring extensionOf(const std::wstring& name) {
  const auto point = name.rfind(L'.');
  return point == name.npos ? std::wstring() : name.substr(point + 1);
}

std::vector<std::wstring> listed(const Session& session, std::vector<std::wstring> names) {
  if (session.options.listedUnsorted) std::reverse(names.begin(), names.end());
  return names;
}

std::vector<std::wstring> foldersIn(const Session& session, const std::wstring& relative) {
  std::vector<std::wstring> result;
  for (const auto& name : listed(session, disk::folderNames(diskPathOf(session, relative))))
    if (session.options.vtiFoldersListed || !sameName(name.substr(0, 4), L"_vti"))
      result.push_back(joined(relative, name));
  return result;
}

std::vector<std::wstring> filesIn(const Session& session, const std::wstring& relative) {
  std::vector<std::wstring> result;
  for (const auto& name : listed(session, disk::fileNames(diskPathOf(session, relative))))
    result.push_back(joined(relative, name));
  return result;
}

// The web below the root; a web inside it is a web of its own and not entered.
std::vector<std::wstring> allFolders(const Session& session) {
  std::vector<std::wstring> result = foldersIn(session, L"");
  for (std::size_t i = 0; i < result.size(); ++i) {
    if (isSubWeb(diskPathOf(session, result[i]))) continue;
    const auto below = foldersIn(session, result[i]);
    result.insert(result.end(), below.begin(), below.end());
  }
  return result;
}

std::wstring pathOfItem(const std::vector<std::wstring>& paths, const Arguments& arguments) {
  if (arguments.isText(0)) {
    for (const auto& path : paths)
      if (sameName(nameOf(path), arguments.text(0))) return path;
  } else {
    const long index = arguments.number(0);
    if (index >= 0 && static_cast<std::size_t>(index) < paths.size())
      return paths[static_cast<std::size_t>(index)];
  }
  throw Refusal{DISP_E_BADINDEX, L"There is no item of that index or name."};
}

// The text between the title tags of a page, as bytes of the user's code page.
std::wstring titleIn(const std::wstring& page) {
  const std::wstring lower = [&] {
    std::wstring copy = page;
    CharLowerBuffW(copy.data(), static_cast<DWORD>(copy.size()));
    return copy;
  }();
  const auto start = lower.find(L"<title>");
  const auto end = lower.find(L"</title>", start);
  if (start == lower.npos || end == lower.npos) return {};
  return page.substr(start + 7, end - start - 7);
}

}  // namespace

WebObject::WebObject(SharedSession session)
    : AutomationObject(std::move(session)), generation_(this->session()->webGeneration) {}

void WebObject::requireOpen() const {
  if (generation_ != session()->webGeneration || session()->webFolder.empty())
    throw Refusal{E_FAIL, L"The web is no longer open."};
}

// --- Web

const MemberTable& Web::members() const { return webMembers; }

std::wstring Web::address() const {
  requireOpen();
  return webUrl(*session());
}

com::Variant Web::getUrl(const Arguments&) const { return address(); }

com::Variant Web::getTitle(const Arguments&) {
  requireOpen();
  return nameOf(fileUrl(session()->webFolder));
}

com::Variant Web::getRootFolder(const Arguments&) {
  requireOpen();
  return objectValue(make<WebFolder>(session(), L""));
}

com::Variant Web::locateFolder(const Arguments& arguments) {
  requireOpen();
  const auto path = locatedPath(*session(), arguments.text(0));
  if (path && disk::isFolder(diskPathOf(*session(), *path)))
    return objectValue(make<WebFolder>(session(), *path));
  if (session()->options.absentFolderIsError)
    throw Refusal{HRESULT_FROM_WIN32(ERROR_PATH_NOT_FOUND),
                  L"Cannot find the folder \"" + arguments.text(0) + L"\"."};
  return session()->nothing();
}

com::Variant Web::locateFile(const Arguments& arguments) {
  requireOpen();
  const auto path = locatedPath(*session(), arguments.text(0));
  if (path && disk::isFile(diskPathOf(*session(), *path)))
    return objectValue(make<WebFile>(session(), *path));
  if (session()->options.absentFileIsError)
    throw Refusal{HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND),
                  L"Cannot find the file \"" + arguments.text(0) + L"\"."};
  return session()->nothing();
}

com::Variant Web::getAllFolders(const Arguments&) {
  requireOpen();
  return objectValue(make<WebFolders>(session(), L"", true));
}

com::Variant Web::getAllFiles(const Arguments&) {
  requireOpen();
  return objectValue(make<WebFiles>(session(), L"", true));
}

com::Variant Web::refresh(const Arguments&) {
  requireOpen();
  session()->webChanged();
  return {};
}

// --- WebFolder

WebFolder::WebFolder(SharedSession session, std::wstring relative)
    : WebObject(std::move(session)), relative_(std::move(relative)) {}

const MemberTable& WebFolder::members() const { return folderMembers; }

std::wstring WebFolder::address() const {
  requireOpen();
  return urlOf(*session(), relative_);
}

com::Variant WebFolder::getName(const Arguments&) {
  requireOpen();
  return nameOf(relative_.empty() ? fileUrl(session()->webFolder) : relative_);
}

com::Variant WebFolder::getUrl(const Arguments&) const { return address(); }

com::Variant WebFolder::getIsWeb(const Arguments&) {
  requireOpen();
  return relative_.empty() ? session()->options.rootIsWeb
                           : isSubWeb(diskPathOf(*session(), relative_));
}

com::Variant WebFolder::getIsRoot(const Arguments&) {
  requireOpen();
  return relative_.empty();
}

com::Variant WebFolder::getParent(const Arguments&) {
  requireOpen();
  if (relative_.empty()) return session()->nothing();
  return objectValue(make<WebFolder>(session(), parentOf(relative_)));
}

com::Variant WebFolder::getWeb(const Arguments&) {
  requireOpen();
  return objectValue(make<Web>(session()));
}

com::Variant WebFolder::getFolders(const Arguments&) {
  requireOpen();
  return objectValue(make<WebFolders>(session(), relative_, false));
}

com::Variant WebFolder::getFiles(const Arguments&) {
  requireOpen();
  return objectValue(make<WebFiles>(session(), relative_, false));
}

// --- WebFolders

WebFolders::WebFolders(SharedSession session, std::wstring relative, bool all)
    : WebObject(std::move(session)), relative_(std::move(relative)), all_(all) {}

const MemberTable& WebFolders::members() const { return foldersMembers; }

std::vector<std::wstring> WebFolders::paths() const {
  requireOpen();
  return all_ ? allFolders(*session()) : foldersIn(*session(), relative_);
}

com::Variant WebFolders::getCount(const Arguments&) { return static_cast<long>(paths().size()); }

com::Variant WebFolders::getItem(const Arguments& arguments) {
  return objectValue(make<WebFolder>(session(), pathOfItem(paths(), arguments)));
}

// A name or path counts from this folder, an absolute URL from the web.
std::wstring WebFolders::wantedPath(const std::wstring& argument) const {
  const std::wstring address =
      session()->options.addUnescapes ? unescapedAddress(argument) : argument;
  const auto inWeb = relativePath(*session(), address);
  if (isAbsoluteUrl(address)) {
    if (inWeb && session()->options.addTakesUrl) return *inWeb;
  } else if (inWeb && !inWeb->empty()) {
    return address.front() == L'/' ? *inWeb : joined(relative_, *inWeb);
  }
  throw Refusal{E_INVALIDARG, L"\"" + address + L"\" is not the name of a new folder."};
}

com::Variant WebFolders::add(const Arguments& arguments) {
  requireOpen();
  const Session& shared = *session();
  const std::wstring path = wantedPath(arguments.text(0));
  if (disk::exists(diskPathOf(shared, path))) {
    if (!shared.options.addExistingFolderGivesIt || disk::isFile(diskPathOf(shared, path)))
      throw Refusal{HRESULT_FROM_WIN32(ERROR_ALREADY_EXISTS),
                    L"The folder \"" + nameOf(path) + L"\" already exists."};
    return objectValue(make<WebFolder>(session(), path));
  }
  if (shared.options.addMakesLevels)
    for (auto slash = path.find(L'/'); slash != path.npos; slash = path.find(L'/', slash + 1))
      if (const auto level = diskPathOf(shared, path.substr(0, slash)); !disk::isFolder(level))
        disk::makeFolder(level);
  disk::makeFolder(diskPathOf(shared, path));
  return objectValue(make<WebFolder>(session(), path));
}

// --- WebFile

WebFile::WebFile(SharedSession session, std::wstring relative)
    : WebObject(std::move(session)), relative_(std::move(relative)) {}

const MemberTable& WebFile::members() const { return fileMembers; }

std::wstring WebFile::requireFile() const {
  requireOpen();
  std::wstring path = diskPathOf(*session(), relative_);
  if (!disk::isFile(path))
    throw Refusal{HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND),
                  L"The file \"" + nameOf(relative_) + L"\" is no longer in the web."};
  return path;
}

std::wstring WebFile::address() const {
  requireOpen();
  return urlOf(*session(), relative_);
}

com::Variant WebFile::getName(const Arguments&) {
  requireOpen();
  return nameOf(relative_);
}

com::Variant WebFile::getExtension(const Arguments&) {
  requireOpen();
  return extensionOf(nameOf(relative_));
}

com::Variant WebFile::getUrl(const Arguments&) const { return address(); }

com::Variant WebFile::getTitle(const Arguments&) {
  const std::wstring title = titleIn(text::fromAnsi(disk::readBytes(requireFile())));
  return title.empty() ? nameOf(relative_) : title;
}

com::Variant WebFile::remove(const Arguments&) {
  disk::deleteFile(requireFile());
  return {};
}

com::Variant WebFile::applyTheme(const Arguments& arguments) {
  applyThemeToPage(*session(), requireFile(), arguments.text(0), arguments.number(1));
  return {};
}

// --- WebFiles

WebFiles::WebFiles(SharedSession session, std::wstring relative, bool all)
    : WebObject(std::move(session)), relative_(std::move(relative)), all_(all) {}

const MemberTable& WebFiles::members() const { return filesMembers; }

std::vector<std::wstring> WebFiles::paths() const {
  requireOpen();
  std::vector<std::wstring> result = filesIn(*session(), relative_);
  if (!all_) return result;
  for (const auto& folder : allFolders(*session())) {
    if (isSubWeb(diskPathOf(*session(), folder))) continue;
    const auto files = filesIn(*session(), folder);
    result.insert(result.end(), files.begin(), files.end());
  }
  return result;
}

com::Variant WebFiles::getCount(const Arguments&) { return static_cast<long>(paths().size()); }

com::Variant WebFiles::getItem(const Arguments& arguments) {
  return objectValue(make<WebFile>(session(), pathOfItem(paths(), arguments)));
}

com::Variant WebFiles::add(const Arguments& arguments) {
  requireOpen();
  const std::wstring local = arguments.text(0);
  if (!disk::isFile(local))
    throw Refusal{HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND),
                  L"Cannot find the file \"" + local + L"\" to import."};
  const std::wstring path = joined(relative_, std::wstring(text::afterLast(local, L'\\')));
  const std::wstring target = diskPathOf(*session(), path);
  if (disk::isFolder(target) || (disk::isFile(target) && !arguments.boolean(1)))
    throw Refusal{HRESULT_FROM_WIN32(ERROR_FILE_EXISTS),
                  L"The file \"" + nameOf(path) + L"\" already exists."};
  Sleep(static_cast<DWORD>(session()->options.importMilliseconds));
  disk::copyFile(local, target);
  return objectValue(make<WebFile>(session(), path));
}

}  // namespace standin
