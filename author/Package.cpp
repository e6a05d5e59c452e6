#include "author/Package.h"

#include <algorithm>

#include "author/Sha256.h"
#include "author/ZipWriter.h"
#include "common/errors.h"
#include "common/letter_case.h"
#include "common/text.h"
#include "online/archive/gate.h"
#include "webcopy/copied_files.h"

namespace author {
namespace {

// One that is larger is no part of a web page.
constexpr std::uint64_t largestFile = 128u << 20;

// Gone again, unless it is put into its place.
class Part {
 public:
  explicit Part(const std::wstring& place) : place_(place), path_(pathBeside(place)) {}
  ~Part() {
    if (!isPlaced_) DeleteFileW(path_.c_str());
  }
  Part(const Part&) = delete;
  Part& operator=(const Part&) = delete;

  const std::wstring& path() const noexcept { return path_; }
  void place() {
    replaceFile(path_, place_);
    isPlaced_ = true;
  }

 private:
  const std::wstring& place_;
  std::wstring path_;
  bool isPlaced_ = false;
};

// A folder with something to be packed in it need not be packed itself.
bool isEmptyFolder(const FolderTree& tree, const std::wstring& path) {
  const std::wstring below = path + L"\\";
  const auto& entries = tree.entries;
  auto each =
      std::lower_bound(entries.begin(), entries.end(), below,
                       [](const auto& entry, const auto& what) { return entry.path < what; });
  while (each != entries.end() && each->path.starts_with(below) && isHostsOwn(each->path)) ++each;
  return each == entries.end() || !each->path.starts_with(below);
}

bool isOneOf(const std::vector<std::wstring>& folders, const std::wstring& path) {
  return std::find(folders.begin(), folders.end(), path) != folders.end();
}

void pack(const std::wstring& folder, const FolderTree& tree, ZipWriter& zip, Work& work) {
  const std::wstring front = nameOf(folder) + L"/";
  for (const FolderEntry& entry : tree.entries) {
    goOnOrCancel(work);
    if (isHostsOwn(entry.path) || isOneOf(tree.leadElsewhere, entry.path)) continue;
    const std::wstring name = front + text::replaceAll(entry.path, L"\\", L"/");
    if (entry.isFolder()) {
      if (isEmptyFolder(tree, entry.path)) zip.addFolder(name);
      continue;
    }
    work.show(L"Packing " + entry.path + L"...");
    zip.addFile(name, readFile(folder + L"\\" + entry.path, largestFile));
  }
}

// What the download would say of it.
void letThroughGate(const std::wstring& part, const std::wstring& path, Work& work) {
  archive::ArchiveFile file(part);
  try {
    const auto damage = archive::damageOf(file, {path, longestDownloadFolder()}, work);
    if (damage) throw Error(errors::pathFileAccess, *damage);
  } catch (const Error& error) {
    if (error.number() == errors::cancelled) throw;
    throw Error(error.number(), L"The archive would be refused by the download. " +
                                    std::wstring(error.description()));
  }
}

std::wstring sumOf(const std::wstring& path) {
  archive::ArchiveFile file(path);
  Sha256 sum;
  std::string piece(1u << 20, '\0');
  for (std::uint64_t done = 0; done < file.size();) {
    const std::size_t got = file.read(done, piece.data(), piece.size());
    if (got == 0) break;
    sum.add(std::string_view(piece).substr(0, got));
    done += got;
  }
  return sum.digits();
}

}  // namespace

std::wstring longestDownloadFolder() { return L"C:\\" + std::wstring(85, L'd'); }

Package packFolder(const std::wstring& folder, const FolderTree& tree, const std::wstring& path,
                   Work& work) {
  if (!tree.isWhole)
    throw Error(errors::overflow, folder + L": It holds more than an archive can.");
  if (text::beginsIgnoringCase(path, folder + L"\\"))
    throw Error(errors::badFileName,
                path + L": The archive would lie in the folder that it holds.");
  if (isFolder(path)) throw Error(errors::pathFileAccess, path + L": This is a folder.");
  Part part(path);
  Package package{path, 0, 0, {}};
  const std::wstring above(text::beforeLast(path, L'\\'));
  if (!isFolder(above + L"\\")) throw errorAbout(path, ERROR_PATH_NOT_FOUND);
  NewFile file(part.path());
  ZipWriter zip(file);
  pack(folder, tree, zip, work);
  zip.finish();
  file.finish();
  package.files = zip.count();
  package.size = zip.size();
  work.show(L"Checking the archive...");
  letThroughGate(part.path(), path, work);
  package.sha256 = sumOf(part.path());
  part.place();
  return package;
}

}  // namespace author
