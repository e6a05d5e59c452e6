#include "tests/fuzz/ArchivePromises.h"

#include <windows.h>

#include <algorithm>
#include <map>

#include "common/ansi.h"
#include "common/letter_case.h"
#include "online/archive/entry_names.h"
#include "tests/fuzz/Target.h"

namespace fuzz {
namespace {

class Pages final : public archive::CodePages {
 public:
  std::wstring fromAnsi(std::string_view bytes) const override { return text::fromAnsi(bytes); }
  std::wstring fromOem(std::string_view bytes) const override {
    if (bytes.empty()) return {};
    std::wstring letters(bytes.size(), L'\0');
    letters.resize(static_cast<std::size_t>(
        MultiByteToWideChar(CP_OEMCP, 0, bytes.data(), static_cast<int>(bytes.size()),
                            letters.data(), static_cast<int>(letters.size()))));
    return letters;
  }
  std::string toAnsi(std::wstring_view text) const override { return text::toAnsi(text); }
  bool fitsAnsi(std::wstring_view text) const override { return text::fitsAnsi(text); }
  std::wstring upper(std::wstring_view text) const override { return text::toUpper(text); }
};

std::wstring capitals(std::wstring_view name) {
  std::wstring result(name);
  for (wchar_t& letter : result)
    if (letter >= L'a' && letter <= L'z') letter = static_cast<wchar_t>(letter - 32);
  return result;
}

bool isDevice(std::wstring_view part) {
  std::wstring stem = capitals(part.substr(0, part.find(L'.')));
  while (stem.ends_with(L' ')) stem.pop_back();
  for (const wchar_t* device : {L"CON", L"PRN", L"AUX", L"NUL", L"CONIN$", L"CONOUT$"})
    if (stem == device) return true;
  return stem.size() == 4 && (stem.starts_with(L"COM") || stem.starts_with(L"LPT")) &&
         stem[3] >= L'0' && stem[3] <= L'9';
}

void checkPart(std::wstring_view part) {
  promise(!part.empty() && part != L"." && part != L"..", "each part of a path leads downwards");
  promise(part.back() != L'.' && part.back() != L' ', "the system drops nothing of a part");
  promise(!isDevice(part), "no part is a device");
  promise(part.find_first_of(L"<>|\"?*:\\/") == part.npos, "a part has only letters of names");
  for (const wchar_t letter : part) promise(letter >= 0x20, "no control characters");
}

void checkPath(std::wstring_view path) {
  for (;;) {
    const auto end = path.find(L'/');
    checkPart(path.substr(0, end));
    if (end == path.npos) return;
    path.remove_prefix(end + 1);
  }
}

}  // namespace

std::size_t Bytes::read(std::uint64_t offset, char* buffer, std::size_t count) {
  ++reads_;
  if (offset >= bytes_.size()) return 0;
  const std::size_t got = bytes_.substr(static_cast<std::size_t>(offset)).copy(buffer, count);
  taken_ += got;
  return got;
}

const archive::CodePages& codePages() {
  static const Pages pages;
  return pages;
}

archive::Finding passGate(archive::ByteSource& source, archive::Directory& directory,
                          std::size_t longestPath, KeepGoing& run) {
  directory = archive::readDirectory(source, run);
  if (directory.finding) return directory.finding;
  const archive::Finding names = archive::checkNames(directory, codePages(), longestPath, run);
  return names ? names : archive::checkContents(source, directory, run);
}

void checkNamesStayInside(const archive::Directory& directory, std::size_t longestPath) {
  std::map<std::wstring, bool> places;  // in capitals, and whether it is a folder
  for (const archive::Entry& entry : directory.entries) {
    const auto name = archive::nameOf(entry, codePages());
    promise(name.has_value(), "an entry has a name");
    if (!name) continue;
    const archive::Place place = archive::placeOf(*name, entry);
    promise(place.isFolder == entry.isFolder, "it is known what is a folder");
    promise(codePages().toAnsi(place.path).size() <= longestPath, "a path is not too long");
    const auto folder = place.isFolder ? place.path.size() : place.path.rfind(L'/');
    promise(folder == place.path.npos || folder + 12 <= longestPath,
            "a folder has room for a short name");
    promise(codePages().fitsAnsi(place.path), "the library can be told the path");
    if (place.path.empty()) {
      promise(place.isFolder, "only a folder may be the one that is unpacked into");
      continue;
    }
    checkPath(place.path);
    const auto [before, isNew] = places.emplace(capitals(place.path), place.isFolder);
    promise(isNew || before->second == place.isFolder, "no file and folder have one name");
  }
  for (const auto& [path, isFolder] : places)
    for (auto slash = path.find(L'/'); slash != path.npos; slash = path.find(L'/', slash + 1)) {
      const auto above = places.find(path.substr(0, slash));
      promise(above == places.end() || above->second, "nothing lies below a file");
    }
}

void checkAccepted(const Bytes& source, const archive::Directory& directory,
                   std::size_t longestPath) {
  checkNamesStayInside(directory, longestPath);
  std::vector<std::pair<std::uint64_t, std::uint64_t>> spans;
  std::uint64_t size = 0;
  for (const archive::Entry& entry : directory.entries) {
    promise(entry.header < entry.data && entry.data <= entry.end && entry.end <= source.size(),
            "an entry lies in the file");
    spans.emplace_back(entry.header, entry.end);
    if (!entry.isEncrypted) size += entry.size;
  }
  std::sort(spans.begin(), spans.end());
  for (std::size_t i = 1; i < spans.size(); ++i)
    promise(spans[i - 1].second <= spans[i].first, "no two entries share bytes");
  promise(size <= source.size() * 1040, "what is unpacked is in proportion to the file");
}

void checkEffort(const Bytes& source, const archive::Directory& directory, const EveryStep& run) {
  constexpr std::uint64_t window = 64 * 1024;
  const std::uint64_t size = source.size();
  const std::uint64_t windows = 24 + size / 1024;
  promise(source.taken() <= 4 * size + windows * std::min(size, window),
          "bytes are not read over and over");
  promise(directory.entries.size() <= size / 46, "an entry has a record");
  promise(run.taken() <= 16 + 2 * directory.entries.size() + size * 1040 / 32768,
          "steps are bounded");
}

}  // namespace fuzz
