#include "author/disk.h"

#include <algorithm>

#include "common/NoSystemBoxes.h"
#include "common/errors.h"
#include "common/letter_case.h"
#include "common/paths.h"
#include "common/text.h"
#include "webcopy/copied_files.h"

namespace author {
namespace {

// The form of a full path that may be longer than the system's usual functions take. In that form
// "/" and ".." would be names.
std::wstring longForm(const std::wstring& path) {
  if (path.find(L'/') != path.npos || path.find(L"\\..") != path.npos) return path;
  if (path.starts_with(L"\\\\?\\")) return path;
  if (path.starts_with(L"\\\\")) return L"\\\\?\\UNC" + path.substr(1);
  return L"\\\\?\\" + path;
}

bool isDots(const wchar_t* name) { return wcscmp(name, L".") == 0 || wcscmp(name, L"..") == 0; }

// Calls `take` for everything in a folder. The system's code; ERROR_SUCCESS when all was read.
template <class Take>
DWORD forEachIn(const std::wstring& folder, const Take& take) {
  const NoSystemBoxes quiet;
  WIN32_FIND_DATAW data;
  const handles::Find search(
      FindFirstFileW(longForm(modCommon::withBackslash(folder) + L"*").c_str(), &data));
  if (!search) return GetLastError();
  do
    if (!isDots(data.cFileName)) take(data);
  while (FindNextFileW(search.get(), &data));
  const DWORD code = GetLastError();
  return code == ERROR_NO_MORE_FILES ? ERROR_SUCCESS : code;
}

// Names of what has all of these attributes.
std::vector<std::wstring> listed(const std::wstring& folder, DWORD attributes) {
  std::vector<std::wstring> names;
  const DWORD code = forEachIn(folder, [&](const WIN32_FIND_DATAW& data) {
    if ((data.dwFileAttributes & attributes) == attributes) names.emplace_back(data.cFileName);
  });
  if (code) throw errorAbout(folder, code);
  std::sort(names.begin(), names.end());
  return names;
}

FolderEntry entryOf(const WIN32_FIND_DATAW& data, const std::wstring& below) {
  FolderEntry entry;
  entry.path = below + data.cFileName;
  entry.attributes = data.dwFileAttributes;
  entry.size = std::uint64_t{data.nFileSizeHigh} << 32 | data.nFileSizeLow;
  return entry;
}

class TreeReader {
 public:
  TreeReader(const std::wstring& folder, KeepGoing& run) : folder_(folder), run_(run) {}

  FolderTree read() {
    if (const DWORD code = readLevel(L"")) throw errorAbout(folder_, code);
    while (!waiting_.empty() && tree_.isWhole) {
      const std::wstring path = std::move(waiting_.back());
      waiting_.pop_back();
      if (readLevel(path + L"\\")) tree_.unreadable.push_back(path);
    }
    std::sort(tree_.entries.begin(), tree_.entries.end(),
              [](const auto& left, const auto& right) { return left.path < right.path; });
    for (auto* list : {&tree_.unreadable, &tree_.leadElsewhere, &tree_.tooDeep})
      std::sort(list->begin(), list->end());
    return std::move(tree_);
  }

 private:
  DWORD readLevel(const std::wstring& below) {
    return forEachIn(folder_ + L"\\" + below, [&](const WIN32_FIND_DATAW& data) {
      goOnOrCancel(run_);
      if (tree_.entries.size() == FolderTree::mostEntries) tree_.isWhole = false;
      if (!tree_.isWhole) return;
      tree_.entries.push_back(entryOf(data, below));
      if (tree_.entries.back().isFolder()) takeFolder(tree_.entries.back());
    });
  }

  void takeFolder(const FolderEntry& entry) {
    if (entry.attributes & FILE_ATTRIBUTE_REPARSE_POINT)
      tree_.leadElsewhere.push_back(entry.path);
    else if (folder_.size() + 1 + entry.path.size() > longestLocalPath)
      tree_.tooDeep.push_back(entry.path);
    else
      waiting_.push_back(entry.path);
  }

  const std::wstring& folder_;
  KeepGoing& run_;
  FolderTree tree_;
  std::vector<std::wstring> waiting_;
};

DWORD attributesOf(const std::wstring& path) {
  const NoSystemBoxes quiet;
  return GetFileAttributesW(longForm(path).c_str());
}

}  // namespace

void goOnOrCancel(KeepGoing& run) {
  if (!run.keepGoing()) throw errors::operationCancelled();
}

Error errorAbout(const std::wstring& path, DWORD code) {
  const Error error = errors::fromSystemCode(code);
  return {error.number(), text::join({path, L": ", error.description()})};
}

std::wstring fullPath(const std::wstring& path) {
  const DWORD size = GetFullPathNameW(path.c_str(), 0, nullptr, nullptr);
  std::wstring result(size, L'\0');
  const DWORD length = GetFullPathNameW(path.c_str(), size, result.data(), nullptr);
  if (length == 0 || length >= size) throw errorAbout(path, ERROR_INVALID_NAME);
  result.resize(length);
  while (result.size() > 3 && result.back() == L'\\') result.pop_back();
  return result;
}

std::wstring nameOf(const std::wstring& path) {
  const std::wstring_view name = text::afterLast(path, L'\\');
  const bool isShare = path.starts_with(L"\\\\") && std::count(path.begin(), path.end(), L'\\') < 4;
  return isShare || name.find(L':') != name.npos ? std::wstring() : std::wstring(name);
}

bool isThere(const std::wstring& path) { return attributesOf(path) != INVALID_FILE_ATTRIBUTES; }

bool isFolder(const std::wstring& path) {
  return isThere(path) && (attributesOf(path) & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

FolderTree listTree(const std::wstring& folder, KeepGoing& run) {
  return TreeReader(folder, run).read();
}

std::vector<std::wstring> namesIn(const std::wstring& folder) { return listed(folder, 0); }

std::vector<std::wstring> foldersIn(const std::wstring& folder) {
  return listed(folder, FILE_ATTRIBUTE_DIRECTORY);
}

std::string readFile(const std::wstring& path, std::uint64_t limit) {
  const NoSystemBoxes quiet;
  const handles::File file(CreateFileW(longForm(path).c_str(), GENERIC_READ,
                                       FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                       nullptr, OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
  if (!file) throw errorAbout(path, GetLastError());
  LARGE_INTEGER size = {};
  if (!GetFileSizeEx(file.get(), &size)) throw errorAbout(path, GetLastError());
  if (static_cast<std::uint64_t>(size.QuadPart) > limit)
    throw Error(errors::overflow, path + L": It is larger than can be looked into.");
  std::string bytes(static_cast<std::size_t>(size.QuadPart), '\0');
  DWORD read = 0;
  if (!ReadFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr))
    throw errorAbout(path, GetLastError());
  bytes.resize(read);
  return bytes;
}

NewFile::NewFile(std::wstring path) : path_(std::move(path)) {
  const NoSystemBoxes quiet;
  file_.reset(CreateFileW(longForm(path_).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                          FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!file_) throw errorAbout(path_, GetLastError());
}

NewFile::~NewFile() {
  if (!file_) return;
  file_.reset();
  DeleteFileW(longForm(path_).c_str());
}

void NewFile::write(std::string_view bytes) {
  constexpr std::size_t piece = 1u << 20;
  while (!bytes.empty()) {
    const auto wanted = static_cast<DWORD>(std::min(bytes.size(), piece));
    DWORD written = 0;
    if (!WriteFile(file_.get(), bytes.data(), wanted, &written, nullptr))
      throw errorAbout(path_, GetLastError());
    if (written == 0) throw errorAbout(path_, ERROR_DISK_FULL);
    bytes.remove_prefix(written);
  }
}

void NewFile::finish() {
  if (!FlushFileBuffers(file_.get())) throw errorAbout(path_, GetLastError());
  file_.reset();
}

void writeFile(const std::wstring& path, std::string_view bytes) {
  NewFile file(path);
  file.write(bytes);
  file.finish();
}

void makeFolders(const std::wstring& path) {
  if (path.empty() || isFolder(path)) return;
  const std::wstring above(text::beforeLast(path, L'\\'));
  if (above.size() < path.size()) makeFolders(above);
  if (!CreateDirectoryW(longForm(path).c_str(), nullptr)) throw errorAbout(path, GetLastError());
}

void removeTree(const std::wstring& path) noexcept {
  try {
    std::vector<FolderEntry> entries;
    forEachIn(path, [&](const WIN32_FIND_DATAW& data) {
      entries.push_back(entryOf(data, path + L"\\"));
    });
    for (const FolderEntry& entry : entries) {
      if (!entry.isFolder())
        DeleteFileW(longForm(entry.path).c_str());
      else if (entry.attributes & FILE_ATTRIBUTE_REPARSE_POINT)
        RemoveDirectoryW(longForm(entry.path).c_str());
      else
        removeTree(entry.path);
    }
    RemoveDirectoryW(longForm(path).c_str());
  } catch (...) {  // Not run by tests: no memory.
    return;        // what is left is told by whoever looks
  }
}

void replaceFile(const std::wstring& made, const std::wstring& place) {
  if (!MoveFileExW(longForm(made).c_str(), longForm(place).c_str(),
                   MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH))
    throw errorAbout(place, GetLastError());
}

std::wstring pathBeside(const std::wstring& path) {
  for (int number = 1;; ++number) {
    std::wstring beside = text::join({path, L".", text::decimal(number), L".part"});
    if (!isThere(beside)) return beside;
  }
}

}  // namespace author
