#include "addin/registration.h"

#include <iterator>
#include <optional>
#include <string>
#include <vector>

#include <objbase.h>

#include "addin/identity.h"
#include "common/handles.h"
#include "common/module.h"
#include "common/text.h"

namespace registration {
namespace {

// A module's path may hold characters that the code page lacks, so all of this is wide.
using Key = handles::Registry;

// A key and what stands in it.
struct Data {
  DWORD type = REG_NONE;
  std::vector<BYTE> bytes;
};
struct Entry {
  HKEY root;
  std::wstring key;
  std::wstring name;         // empty: the key's unnamed value
  std::optional<Data> data;  // nothing: the key alone
};

Data string(const std::wstring& value) {
  const auto* first = reinterpret_cast<const BYTE*>(value.c_str());
  return {REG_SZ, {first, first + (value.size() + 1) * sizeof(wchar_t)}};
}

Data number(DWORD value) {
  const auto* first = reinterpret_cast<const BYTE*>(&value);
  return {REG_DWORD, {first, first + sizeof value}};
}

std::wstring guidText(const GUID& guid) {
  wchar_t text[40] = {};
  StringFromGUID2(guid, text, static_cast<int>(std::size(text)));
  return text;
}

enum class Place { classObject, programId, library, addIn };
enum class Content { key, text, number, modulePath, moduleFolder, classId, libraryId };

// One line of the registration; `text` and `number` are there for the contents of these names.
struct Line {
  Place place;
  const wchar_t* below;
  const wchar_t* name;
  Content content;
  const wchar_t* text;
  DWORD number;
};

// The interface in the type library is the host's, whose own registration must stay what it is:
// that is why the keys are written here, and not by the system's type library services.
constexpr Line lines[] = {
    {Place::classObject, L"", L"", Content::text, identity::description, 0},
    {Place::classObject, L"\\InprocServer32", L"", Content::modulePath, nullptr, 0},
    {Place::classObject, L"\\InprocServer32", L"ThreadingModel", Content::text, L"Apartment", 0},
    {Place::classObject, L"\\ProgID", L"", Content::text, identity::programId, 0},
    {Place::classObject, L"\\Programmable", L"", Content::key, nullptr, 0},
    {Place::classObject, L"\\TypeLib", L"", Content::libraryId, nullptr, 0},
    {Place::classObject, L"\\Version", L"", Content::text, identity::version, 0},
    {Place::programId, L"", L"", Content::text, identity::description, 0},
    {Place::programId, L"\\CLSID", L"", Content::classId, nullptr, 0},
    {Place::library, L"", L"", Content::text, identity::description, 0},
    {Place::library, L"\\0\\win32", L"", Content::modulePath, nullptr, 0},
    {Place::library, L"\\FLAGS", L"", Content::text, L"0", 0},
    {Place::library, L"\\HELPDIR", L"", Content::moduleFolder, nullptr, 0},
    {Place::addIn, L"", L"FriendlyName", Content::text, identity::friendlyName, 0},
    {Place::addIn, L"", L"Description", Content::text, identity::description, 0},
    {Place::addIn, L"", L"LoadBehavior", Content::number, nullptr, 3},
    {Place::addIn, L"", L"CommandLineSafe", Content::number, nullptr, 0},
};

std::wstring keyOf(Place place) {
  const std::wstring classes = L"Software\\Classes\\";
  switch (place) {
    case Place::classObject:
      return classes + L"CLSID\\" + guidText(identity::classId);
    case Place::programId:
      return classes + identity::programId;
    case Place::library:
      return classes + L"TypeLib\\" + guidText(identity::typeLibraryId) + L"\\" + identity::version;
    case Place::addIn:
      break;
  }
  return std::wstring(L"Software\\Microsoft\\Office\\FrontPage\\Addins\\") + identity::programId;
}

std::wstring moduleFolder() {
  std::wstring folder = module::folder();
  folder.pop_back();
  return folder;
}

std::optional<Data> dataOf(const Line& line) {
  switch (line.content) {
    case Content::text:
      return string(line.text);
    case Content::number:
      return number(line.number);
    case Content::modulePath:
      return string(module::path());
    case Content::moduleFolder:
      return string(moduleFolder());
    case Content::classId:
      return string(guidText(identity::classId));
    case Content::libraryId:
      return string(guidText(identity::typeLibraryId));
    case Content::key:
      break;
  }
  return std::nullopt;
}

std::vector<Entry> entries(Scope scope) {
  const HKEY root = scope == Scope::machine ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER;
  std::vector<Entry> result;
  for (const Line& line : lines) {
    const bool isListed = line.place == Place::addIn;
    if (scope == Scope::list && !isListed) continue;
    result.push_back({isListed ? HKEY_CURRENT_USER : root, keyOf(line.place) + line.below,
                      line.name, dataOf(line)});
  }
  return result;
}

Key open(HKEY root, const std::wstring& path, REGSAM access) noexcept {
  HKEY key = nullptr;
  if (RegOpenKeyExW(root, path.c_str(), 0, access, &key) != ERROR_SUCCESS) return Key();
  return Key(key);
}

bool isEmpty(HKEY key) noexcept {
  DWORD keys = 0;
  DWORD values = 0;
  return RegQueryInfoKeyW(key, nullptr, nullptr, nullptr, &keys, nullptr, nullptr, &values, nullptr,
                          nullptr, nullptr, nullptr) == ERROR_SUCCESS &&
         keys == 0 && values == 0;
}

// Deletes the key when nothing is in it, then the keys above it that are left empty, down to the
// system's own first levels.
LONG prune(HKEY root, std::wstring path) {
  for (;;) {
    const auto above = path.rfind(L'\\');
    if (above == path.npos || path == L"Software\\Classes") return ERROR_SUCCESS;
    const Key key = open(root, path, KEY_READ);
    if (key && !isEmpty(key.get())) return ERROR_SUCCESS;
    if (key) {
      const LONG deleted = RegDeleteKeyW(root, path.c_str());
      if (deleted != ERROR_SUCCESS) return deleted;
    }
    path.resize(above);
  }
}

std::optional<Data> read(HKEY key, const std::wstring& name) {
  Data data;
  DWORD size = 0;
  if (RegQueryValueExW(key, name.c_str(), nullptr, &data.type, nullptr, &size) != ERROR_SUCCESS)
    return std::nullopt;
  data.bytes.resize(size);
  if (RegQueryValueExW(key, name.c_str(), nullptr, &data.type, data.bytes.data(), &size) !=
      ERROR_SUCCESS)
    return std::nullopt;  // Not run by tests: it has just been removed.
  return data;
}

LONG write(HKEY key, const std::wstring& name, const Data& data) noexcept {
  return RegSetValueExW(key, name.c_str(), 0, data.type, data.bytes.data(),
                        static_cast<DWORD>(data.bytes.size()));
}

// Writes entries and takes everything back unless told to keep it.
class Transaction {
 public:
  Transaction() = default;
  ~Transaction() {
    while (!undo_.empty()) {
      takeBack(undo_.back());
      undo_.pop_back();
    }
  }
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;

  LONG put(const Entry& entry) {
    rememberMissingKeys(entry);
    HKEY created = nullptr;
    const LONG result = RegCreateKeyExW(entry.root, entry.key.c_str(), 0, nullptr, 0,
                                        KEY_READ | KEY_WRITE, nullptr, &created, nullptr);
    if (result != ERROR_SUCCESS) return result;
    const Key key(created);
    if (!entry.data) return ERROR_SUCCESS;
    undo_.push_back({false, {entry.root, entry.key, entry.name, read(key.get(), entry.name)}});
    return write(key.get(), entry.name, *entry.data);
  }

  void keep() noexcept { undo_.clear(); }

 private:
  struct Step {
    bool isNewKey;
    Entry before;
  };

  void rememberMissingKeys(const Entry& entry) {
    std::wstring path;
    for (const auto& level : text::split(entry.key, L'\\')) {
      path += path.empty() ? level : L'\\' + level;
      if (!open(entry.root, path, KEY_READ))
        undo_.push_back({true, {entry.root, path, {}, std::nullopt}});
    }
  }

  static void takeBack(const Step& step) noexcept {
    const Entry& before = step.before;
    if (step.isNewKey) {
      RegDeleteKeyW(before.root, before.key.c_str());
      return;
    }
    const Key key = open(before.root, before.key, KEY_READ | KEY_WRITE);
    if (!key) return;
    if (before.data)
      write(key.get(), before.name, *before.data);
    else
      RegDeleteValueW(key.get(), before.name.c_str());
  }

  std::vector<Step> undo_;
};

LONG removeEntry(const Entry& entry) {
  HKEY opened = nullptr;
  LONG result = RegOpenKeyExW(entry.root, entry.key.c_str(), 0, KEY_READ | KEY_WRITE, &opened);
  const Key key(opened);
  if (result == ERROR_SUCCESS && entry.data)
    result = RegDeleteValueW(key.get(), entry.name.c_str());
  if (result != ERROR_SUCCESS && result != ERROR_FILE_NOT_FOUND) return result;
  return prune(entry.root, entry.key);
}

}  // namespace

LONG add(Scope scope) noexcept {
  try {
    Transaction transaction;
    for (const Entry& entry : entries(scope))
      if (const LONG result = transaction.put(entry); result != ERROR_SUCCESS) return result;
    transaction.keep();
    return ERROR_SUCCESS;
  } catch (...) {  // Not run by tests: no memory.
    return ERROR_OUTOFMEMORY;
  }
}

LONG remove(Scope scope) noexcept {
  try {
    LONG outcome = ERROR_SUCCESS;
    for (const Entry& entry : entries(scope)) {
      const LONG result = removeEntry(entry);
      if (outcome == ERROR_SUCCESS) outcome = result;
    }
    return outcome;
  } catch (...) {  // Not run by tests: no memory.
    return ERROR_OUTOFMEMORY;
  }
}

}  // namespace registration
