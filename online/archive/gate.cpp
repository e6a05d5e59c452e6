#include "online/archive/gate.h"

#include <windows.h>

#include <algorithm>

#include "common/NoSystemBoxes.h"
#include "common/ansi.h"
#include "common/byte_size.h"
#include "common/errors.h"
#include "common/letter_case.h"
#include "common/paths.h"
#include "common/text.h"
#include "online/archive/Directory.h"
#include "online/archive/bomb.h"
#include "online/archive/contents.h"
#include "online/archive/entry_names.h"

namespace archive {
namespace {

class SystemPages final : public CodePages {
 public:
  std::wstring fromAnsi(std::string_view bytes) const override { return text::fromAnsi(bytes); }
  std::wstring fromOem(std::string_view bytes) const override {
    if (bytes.empty()) return {};
    std::wstring result(bytes.size(), L'\0');
    const int length =
        MultiByteToWideChar(CP_OEMCP, 0, bytes.data(), static_cast<int>(bytes.size()),
                            result.data(), static_cast<int>(result.size()));
    result.resize(static_cast<std::size_t>(length));
    return result;
  }
  std::string toAnsi(std::wstring_view text) const override { return text::toAnsi(text); }
  bool fitsAnsi(std::wstring_view text) const override { return text::fitsAnsi(text); }
  std::wstring upper(std::wstring_view text) const override { return text::toUpper(text); }
};

// What is said of an archive on account of one entry, or of none.
const wchar_t* textOf(Fault fault) {
  switch (fault) {
    case Fault::noEnd:
      return L"The record at the end of its directory is missing.";
    case Fault::directory:
      return L"Its directory is damaged.";
    case Fault::contents:
      return L"The contents of a file in it are damaged";
    case Fault::severalParts:
      return L"It is one of several parts.";
    case Fault::headersDiffer:
      return L"A file in it is described in two ways that differ";
    case Fault::overlap:
      return L"A file in it shares its contents with another one";
    case Fault::outside:
      return L"A file in it is said to lie outside of the archive";
    case Fault::method:
      return L"A file in it is compressed by a method that is not supported";
    case Fault::encryption:
      return L"A file in it is encrypted by a method that is not supported";
    case Fault::kind:
      return L"A file in it is of a kind that is not supported";
    case Fault::tooMuch:
      return L"A file in it holds more than it claims";
    case Fault::tooMany:
      return L"It holds more than 65,535 files and folders.";
    case Fault::noName:
      return L"A file in it has no name.";
    case Fault::controlName:
      return L"The name of a file in it holds a control character";
    case Fault::badUtf8:
      return L"The name of a file in it is not in the encoding that it claims";
    case Fault::unfitName:
      return L"The name of a file in it holds a character that this system's code page does not "
             L"have";
    case Fault::longName:
      return L"The path of a file in it would be too long";
    case Fault::sameName:
      return L"Two files in it would become the same file on this system";
    case Fault::fileAndFolder:
      return L"A file and a folder in it have the same name";
    default:
      return L"The name of a file in it is not safe, since it could lead outside of the chosen "
             L"folder";
  }
}

// Fit to be shown: "^A" for a control character, and not longer than a path can be.
std::wstring shown(std::wstring_view name) {
  std::wstring result;
  for (const wchar_t letter : name.substr(0, MAX_PATH)) {
    if (letter >= 0x20) {
      result += letter;
    } else {
      result += L'^';
      result += static_cast<wchar_t>(letter + L'@');
    }
  }
  if (name.size() > MAX_PATH) result += L"...";
  return result;
}

std::wstring reasonOf(const Finding& finding, const Directory& directory) {
  const std::wstring_view text = textOf(finding.fault);
  if (finding.entry == Finding::noEntry || text.ends_with(L'.')) return std::wstring(text);
  const Entry& entry = directory.entries[finding.entry];
  const SystemPages pages;
  const std::wstring name = nameOf(entry, pages).value_or(pages.fromAnsi(entry.name));
  return text::join({text, L" : ", shown(name)});
}

Error refusal(const Passage& passage, long number, const std::wstring& why) {
  return {number,
          text::join({L"The archive \" ", passage.archive, L" \" was not unpacked. ", why})};
}

// A path below the folder can be so long, in bytes: the library would cut the name of a longer one.
std::size_t longestPath(const std::wstring& folder) {
  constexpr std::size_t longest = MAX_PATH - 1;
  const std::size_t used = text::toAnsi(folder).size() + 1;
  return used < longest ? longest - used : longest;
}

// In bytes; no number of entries makes it overflow.
struct Sizes {
  double claimed = 0;
  double possible = 0;
};

// What is compressed beneath an encryption can only be estimated: the method's highest ratio.
Sizes sizesOf(const Directory& directory) {
  constexpr double highestRatio = 1032;
  Sizes sizes;
  for (const Entry& entry : directory.entries) {
    const auto claimed = static_cast<double>(entry.size);
    sizes.claimed += claimed;
    const bool isHidden = entry.isEncrypted && entry.method == deflated;
    sizes.possible += isHidden
                          ? std::max(claimed, static_cast<double>(entry.packedSize) * highestRatio)
                          : claimed;
  }
  return sizes;
}

// Of a folder that is still to be made, the nearest one above it. A share needs its backslash.
std::wstring existingPart(std::wstring_view folder) {
  std::wstring path = modCommon::withBackslash(folder);
  while (GetFileAttributesW(path.c_str()) == INVALID_FILE_ATTRIBUTES) {
    const auto cut = path.find_last_of(L"\\/", path.size() - 2);
    if (cut == path.npos || cut + 1 == path.size()) break;
    path.resize(cut + 1);
    if (path.size() < 2) break;
  }
  return path;
}

void checkSizes(const Passage& passage, const Sizes& sizes, std::uint64_t archiveSize) {
  if (isBomb(sizes.claimed, static_cast<double>(archiveSize)))
    throw refusal(passage, errors::diskFull,
                  text::join({L"It claims to hold ", text::byteSize(sizes.claimed),
                              L", which is out of all proportion to its own size."}));
  const NoSystemBoxes quiet;
  const std::wstring folder = existingPart(passage.folder);
  ULARGE_INTEGER available = {};
  if (!GetDiskFreeSpaceExW(folder.c_str(), &available, nullptr, nullptr)) return;
  const auto left = static_cast<double>(available.QuadPart);
  if (sizes.possible > left)
    throw refusal(passage, errors::diskFull,
                  text::join({sizes.possible > sizes.claimed ? L"It may hold " : L"It holds ",
                              text::byteSize(sizes.possible), L", but there are only ",
                              text::byteSize(left), L" left on the disk."}));
}

// The reason of damage. Any other fault is raised.
std::optional<std::wstring> judge(const Finding& finding, const Directory& directory,
                                  const Passage& passage) {
  if (!finding) return std::nullopt;
  if (finding.fault == Fault::stopped) throw errors::operationCancelled();
  const std::wstring reason = reasonOf(finding, directory);
  if (isDamage(finding.fault)) return reason;
  throw refusal(passage, errors::pathFileAccess, reason);
}

}  // namespace

std::optional<std::wstring> damageOf(ArchiveFile& file, const Passage& passage, KeepGoing& run) {
  if (!run.keepGoing()) throw errors::operationCancelled();
  Directory directory = readDirectory(file, run);
  if (const auto damage = judge(directory.finding, directory, passage)) return damage;
  judge(checkNames(directory, SystemPages(), longestPath(passage.folder), run), directory, passage);
  checkSizes(passage, sizesOf(directory), file.size());
  return judge(checkContents(file, directory, run), directory, passage);
}

std::wstring damageOfUnopened(const Error& error, const Passage& passage) {
  if (error.number() == errors::fileNotFound || error.number() == errors::pathNotFound ||
      error.number() == errors::badFileName)
    return std::wstring(error.description());
  throw refusal(passage, error.number(), std::wstring(error.description()));
}

}  // namespace archive
