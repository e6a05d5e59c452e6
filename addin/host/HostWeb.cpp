#include "addin/host/HostWeb.h"

#include "addin/host/web_path.h"
#include "common/errors.h"
#include "common/letter_case.h"
#include "common/text.h"

using com::Variant;

namespace {

template <class Item>
std::vector<Item> itemsOf(const com::Dispatch& collection) {
  // Some of the host's counts come as a VARIANT inside a VARIANT, so they are converted.
  const long count = collection.value(L"Count").number();
  std::vector<Item> items;
  for (long index = 0; index < count; ++index)
    items.emplace_back(collection.object(L"Item", {index}));
  return items;
}

// Null when the host lists none of that name.
com::Dispatch itemNamed(const com::Dispatch& collection, std::wstring_view name) {
  const long count = collection.value(L"Count").number();
  for (long index = 0; index < count; ++index) {
    com::Dispatch item = collection.object(L"Item", {index});
    if (text::equalIgnoringCase(item.value(L"Name").text(), name)) return item;
  }
  return {};
}

// What Add gave back or, where the host made the item but gave nothing back, the item of that name.
com::Dispatch added(const com::Dispatch& collection, const Variant& answer,
                    std::wstring_view name) {
  com::Dispatch item(answer.object());
  if (!item) item = itemNamed(collection, name);
  if (!item) throw Error(errors::objectNotSet);
  return item;
}

template <class Item>
std::optional<Item> ifThere(com::Dispatch object) {
  if (!object) return std::nullopt;
  return Item(std::move(object));
}

}  // namespace

std::wstring HostFile::name() const { return object_.value(L"Name").text(); }
std::wstring HostFile::extension() const { return object_.value(L"Extension").text(); }
std::wstring HostFile::url() const { return object_.value(L"Url").text(); }
void HostFile::remove() const { object_.call(L"Delete"); }

void HostFile::applyTheme(const std::wstring& theme, long properties) const {
  object_.call(L"ApplyTheme", {theme, properties});
}

std::wstring HostFolder::name() const { return object_.value(L"Name").text(); }

std::wstring HostFolder::url() const {
  std::wstring url = object_.value(L"Url").text();
  // Taken for a path it would be the web's root.
  if (url.empty()) throw Error(errors::typeMismatch);
  return url;
}

bool HostFolder::isWeb() const { return object_.value(L"IsWeb").boolean(); }
HostWeb HostFolder::web() const { return HostWeb(object_.object(L"Web")); }

std::vector<HostFolder> HostFolder::folders() const {
  return itemsOf<HostFolder>(object_.object(L"Folders"));
}

bool HostFolder::hasFolders() const {
  return object_.object(L"Folders").value(L"Count").number() > 0;
}

std::optional<HostFolder> HostFolder::folderNamed(const std::wstring& name) const {
  return ifThere<HostFolder>(itemNamed(object_.object(L"Folders"), name));
}

HostFolder HostFolder::addFolder(const std::wstring& name) const {
  const com::Dispatch folders = object_.object(L"Folders");
  return HostFolder(added(folders, folders.call(L"Add", {name}), name));
}

HostFiles HostFolder::files() const { return HostFiles(object_.object(L"Files")); }

HostFile HostFiles::import(const std::wstring& localPath) const {
  const Variant answer = object_.call(L"Add", {localPath, /*overwrite=*/false});
  return HostFile(added(object_, answer, text::afterLast(localPath, L'\\')));
}

long HostFiles::count() const { return object_.value(L"Count").number(); }

std::wstring HostWeb::url() const {
  std::wstring url = object_.value(L"Url").text();
  while (!url.empty() && url.back() == L'/') url.pop_back();
  return url;
}

HostFolder HostWeb::rootFolder() const { return HostFolder(object_.object(L"RootFolder")); }

std::optional<HostFolder> HostWeb::locateFolder(std::wstring_view path) const {
  const Reading reading = read(path);
  auto folder = folderAt(reading.place);
  return folder || reading.other.empty() ? folder : folderAt(reading.other);
}

std::optional<HostFolder> HostWeb::folderAt(const std::wstring& place) const {
  if (place.empty()) return rootFolder();
  return ifThere<HostFolder>(itemAt(place, L"LocateFolder", L"Folders"));
}

std::optional<HostFile> HostWeb::locateFile(std::wstring_view path) const {
  const Reading reading = read(path);
  auto file = fileAt(reading.place);
  return file || reading.other.empty() ? file : fileAt(reading.other);
}

std::optional<HostFile> HostWeb::fileAt(const std::wstring& place) const {
  if (place.empty()) return std::nullopt;
  return ifThere<HostFile>(itemAt(place, L"LocateFile", L"Files"));
}

// Whether a host takes what it is to locate as it stands, or for an address with escapes in it and
// an end at "#", is its own affair. A path that is not the same either way could mean a file of the
// user's with another name: its last level is looked for in the list of its folder.
com::Dispatch HostWeb::itemAt(const std::wstring& place, std::wstring_view lookUp,
                              std::wstring_view list) const {
  if (place.find_first_of(L"%#") == place.npos) return object_.lookUp(lookUp, {place});
  const auto name = text::afterLast(place, L'/');
  const auto parent = folderAt(webpath::normal(place.substr(0, place.size() - name.size())));
  return parent ? itemNamed(parent->object_.object(list), name) : com::Dispatch();
}

MadeFolder HostWeb::createFolder(std::wstring_view path) const {
  const std::wstring place = relative(path);
  if (auto existing = folderAt(place)) return {std::move(*existing)};
  // An address of another web: its levels must not be made in this one.
  if (webpath::isAbsolute(place)) throw Error(errors::pathNotFound);

  MadeFolder made = {rootFolder()};
  std::wstring reached;
  for (const auto& level : webpath::levels(place)) {
    if (!reached.empty()) reached += L'/';
    reached += level;
    made = createSubfolder(made.folder, level, reached);
  }
  return made;
}

MadeFolder HostWeb::createSubfolder(const HostFolder& parent, const std::wstring& name,
                                    const std::wstring& path) const {
  if (auto existing = folderAt(path)) return {std::move(*existing)};
  try {
    return {parent.addFolder(name), true};
  } catch (const Error&) {
    // Whether the host refuses a name that exists is not settled, and its look-up may have missed
    // one made by another program meanwhile, or failed.
    if (auto existing = existingSubfolder(parent, name, path)) return {std::move(*existing)};
    throw;
  }
}

// A host that does not even list its folders has none to offer.
std::optional<HostFolder> HostWeb::existingSubfolder(const HostFolder& parent,
                                                     const std::wstring& name,
                                                     const std::wstring& path) const {
  try {
    auto folder = folderAt(path);
    return folder ? folder : parent.folderNamed(name);
  } catch (const Error&) {
    return std::nullopt;
  }
}

void HostWeb::refresh() const { object_.call(L"Refresh", {true}); }

std::wstring HostWeb::relative(std::wstring_view path) const {
  const Reading reading = read(path);
  const bool isOther =
      !reading.other.empty() && !folderAt(reading.place) && folderAt(reading.other);
  return isOther ? reading.other : reading.place;
}

// Whether a host escapes the addresses it tells is its own affair.
HostWeb::Reading HostWeb::read(std::wstring_view path) const {
  if (!webpath::isAbsolute(path)) return {webpath::normal(path), {}};
  const auto below = webpath::below(path, url());
  if (!below) return {std::wstring(path), {}};
  Reading reading = {webpath::normal(below->path),
                     webpath::normal(webpath::unescaped(below->path))};
  if (below->spelling == webpath::Spelling::escaped) reading.place.swap(reading.other);
  if (below->spelling != webpath::Spelling::unknown || reading.place == reading.other)
    reading.other.clear();
  return reading;
}
