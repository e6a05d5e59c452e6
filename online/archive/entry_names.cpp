#include "online/archive/entry_names.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>
#include <vector>

#include "common/safe_names.h"
#include "online/archive/order.h"

namespace archive {
namespace {

// What a lead byte says about the character it begins.
struct Lead {
  int following;
  std::uint32_t bits;
  std::uint32_t smallest;  // that needs so many bytes
};

std::optional<Lead> leadOf(unsigned char byte) {
  if (byte < 0x80) return Lead{0, byte, 0};
  if (byte < 0xC2) return std::nullopt;
  if (byte < 0xE0) return Lead{1, byte & 0x1Fu, 0x80};
  if (byte < 0xF0) return Lead{2, byte & 0x0Fu, 0x800};
  if (byte < 0xF5) return Lead{3, byte & 0x07u, 0x10000};
  return std::nullopt;
}

bool isCharacter(std::uint32_t code, const Lead& lead) {
  const bool half = code >= 0xD800 && code < 0xE000;
  return code >= lead.smallest && code <= 0x10FFFF && !half;
}

void append(std::wstring& text, std::uint32_t code) {
  if constexpr (sizeof(wchar_t) == 2) {
    if (code >= 0x10000) {
      text += static_cast<wchar_t>(0xD7C0 + (code >> 10));
      text += static_cast<wchar_t>(0xDC00 + (code & 0x3FF));
      return;
    }
  }
  text += static_cast<wchar_t>(code);
}

// Of a tool on a system whose programs wrote names as the console does.
bool isOem(const Entry& entry) {
  constexpr std::uint8_t fat = 0;
  constexpr std::uint8_t hpfs = 6;
  constexpr std::uint8_t ntfs = 11;
  const bool unixTool =
      entry.hasUnixAttributes &&
      (entry.hostVersion == 25 || entry.hostVersion == 26 || entry.hostVersion == 40);
  return (entry.hostSystem == fat && !unixTool) || entry.hostSystem == hpfs ||
         (entry.hostSystem == ntfs && entry.hostVersion == 50);
}

bool isControl(wchar_t letter) { return letter < 0x20 || (letter >= 0x7F && letter < 0xA0); }

bool hasControl(std::wstring_view name) { return std::any_of(name.begin(), name.end(), isControl); }

// One beyond sixteen bits: even where the code page has it the library writes "_" in its place.
bool hasLongLetter(std::wstring_view name) {
  return std::any_of(name.begin(), name.end(), [](wchar_t letter) {
    const auto code = static_cast<std::uint32_t>(letter);
    return code >= 0xD800 && (code < 0xE000 || code > 0xFFFF);
  });
}

constexpr std::wstring_view notInNames = L"<>|\"?*:";

// The ten that are digits everywhere, and those that are where the code page has them.
constexpr std::wstring_view anyDigits =
    L"0123456789\u00B2\u00B3\u00B9"
    L"\u0E50\u0E51\u0E52\u0E53\u0E54\u0E55\u0E56\u0E57\u0E58\u0E59";
constexpr std::wstring_view digits = anyDigits.substr(0, 10);
constexpr std::wstring_view someDigits = anyDigits.substr(10);

// Whether the library drops the end of a name for a version depends on the system's language, which
// knows what else is a digit: nobody can tell what the file would be called.
bool hasDoubtfulVersion(std::wstring_view name) {
  const auto at = name.rfind(L';');
  return at != name.npos && name.find_first_not_of(anyDigits, at + 1) == name.npos &&
         name.find_first_of(someDigits, at + 1) != name.npos;
}

bool isSafe(std::wstring_view name) {
  return names::faultOf(name) == names::Fault::none && !hasDoubtfulVersion(name);
}

void dropVersion(std::wstring& path) {
  const auto at = path.find_last_of(L";/");
  if (at != path.npos && path[at] == L';' && path.find_first_not_of(digits, at + 1) == path.npos)
    path.erase(at);
}

// To the library a file's own name "." is one that cannot be made.
bool isNameless(std::wstring_view path) { return path == L"." || path.ends_with(L"/."); }

// Without empty parts and those that mean "here".
std::wstring withoutEmptyParts(std::wstring_view path) {
  std::wstring result;
  while (!path.empty()) {
    const auto end = std::min(path.find(L'/'), path.size());
    const std::wstring_view part = path.substr(0, end);
    if (!part.empty() && part != L".") {
      if (!result.empty()) result += L'/';
      result += part;
    }
    path.remove_prefix(std::min(end + 1, path.size()));
  }
  return result;
}

// Which file or folder an entry is to become.
struct Claim {
  std::wstring key;  // in capital letters, "below" between the parts
  std::wstring name;
  std::size_t entry = 0;
  bool isFolder = false;
};

// No name holds it by now, and it comes before all that names hold: what lies in a folder stands
// directly behind the folder, in the order of keys.
constexpr wchar_t below = L'\1';

// The library cuts what is longer before it looks at its parts.
constexpr std::size_t mostBytes = 259;

// How much shorter than a file's the path of a folder has to be: a short name fits behind it.
constexpr std::size_t roomInFolder = 12;

bool isTooLong(const Place& place, std::size_t bytes, std::size_t longest) {
  const auto slash = place.isFolder ? place.path.size() : place.path.rfind(L'/');
  const bool hasFolder = slash != place.path.npos;
  return bytes > longest || (hasFolder && slash + roomInFolder > longest);
}

// Takes in one name after the other.
class NameCheck {
 public:
  NameCheck(const CodePages& pages, std::size_t longestPath)
      : pages_(pages), longestPath_(longestPath) {}

  Fault check(Entry& entry, std::size_t number) {
    if (entry.name.empty()) return Fault::noName;
    if (std::max(entry.name.size(), entry.unicodeName.size()) > mostBytes) return Fault::longName;
    const auto name = nameOf(entry, pages_);
    if (!name) return Fault::badUtf8;
    if (const Fault fault = checkReadings(entry, *name); fault != Fault::none) return fault;
    if (!pages_.fitsAnsi(*name) || hasLongLetter(*name)) return Fault::unfitName;
    const Place place = placeOf(*name, entry);
    entry.isFolder = place.isFolder;
    if (names::faultOf(place.path) != names::Fault::none) return Fault::unsafeName;
    if (isTooLong(place, pages_.toAnsi(place.path).size(), longestPath_)) return Fault::longName;
    if (place.path.empty()) return place.isFolder ? Fault::none : Fault::noName;
    std::wstring key = pages_.upper(place.path);
    std::replace(key.begin(), key.end(), L'/', below);
    claims_.push_back(
        {std::move(key), withoutEmptyParts(pages_.upper(*name)), number, place.isFolder});
    return Fault::none;
  }

  // The first entry that meets an earlier one in the same place. The later one of two files with
  // one name wins, as with every tool.
  Finding meeting() const {
    // Not run by tests: they do, and it counts with the next line.
    const auto order = sorted(claims_.size(), [this](std::size_t left, std::size_t right) {
      const int compared = claims_[left].key.compare(claims_[right].key);
      return compared < 0 || (compared == 0 && left < right);
    });
    Finding first;
    std::size_t group = 0;  // where the claims to one key begin
    for (std::size_t i = 1; i < order.size(); ++i) {
      const Claim& before = claims_[order[group]];
      const Claim& claim = claims_[order[i]];
      const Fault fault = faultOfMeeting(before, claim);
      const std::size_t later = std::max(before.entry, claim.entry);
      if (fault != Fault::none && later < first.entry) first = {fault, later};
      if (claim.key != before.key) group = i;
    }
    return first;
  }

 private:
  // An earlier library, or another setting of the system, reads the bytes in another way.
  Fault checkReadings(const Entry& entry, const std::wstring& name) const {
    if (hasControl(name)) return Fault::controlName;
    if (!isSafe(name)) return Fault::unsafeName;
    constexpr auto isPlainControl = [](char byte) {
      return static_cast<unsigned char>(byte) < 0x20 || byte == 0x7F;
    };
    if (std::any_of(entry.name.begin(), entry.name.end(), isPlainControl))
      return Fault::controlName;
    return isSafe(pages_.fromAnsi(entry.name)) && isSafe(pages_.fromOem(entry.name))
               ? Fault::none
               : Fault::unsafeName;
  }

  static Fault faultOfMeeting(const Claim& before, const Claim& claim) {
    if (claim.key == before.key) {
      if (claim.isFolder != before.isFolder) return Fault::fileAndFolder;
      return claim.isFolder || claim.name == before.name ? Fault::none : Fault::sameName;
    }
    const bool isInside =
        claim.key.starts_with(before.key) && claim.key[before.key.size()] == below;
    return isInside && !before.isFolder ? Fault::fileAndFolder : Fault::none;
  }

  const CodePages& pages_;
  std::size_t longestPath_;
  std::vector<Claim> claims_;
};

}  // namespace

std::optional<std::wstring> fromUtf8(std::string_view bytes) {
  std::wstring text;
  text.reserve(bytes.size());
  for (std::size_t i = 0; i < bytes.size();) {
    const auto lead = leadOf(static_cast<unsigned char>(bytes[i++]));
    if (!lead || bytes.size() - i < static_cast<std::size_t>(lead->following)) return std::nullopt;
    std::uint32_t code = lead->bits;
    for (int rest = lead->following; rest > 0; --rest) {
      const auto byte = static_cast<unsigned char>(bytes[i++]);
      if ((byte & 0xC0) != 0x80) return std::nullopt;
      code = code << 6 | (byte & 0x3Fu);
    }
    if (!isCharacter(code, *lead)) return std::nullopt;
    append(text, code);
  }
  return text;
}

std::optional<std::wstring> nameOf(const Entry& entry, const CodePages& pages) {
  if (entry.isUtf8) return fromUtf8(entry.name);
  if (!entry.unicodeName.empty()) return fromUtf8(entry.unicodeName);
  return isOem(entry) ? pages.fromOem(entry.name) : pages.fromAnsi(entry.name);
}

Place placeOf(std::wstring_view name, const Entry& entry) {
  constexpr std::uint8_t fat = 0;
  const bool backslashesSeparate = entry.hostSystem == fat && name.find(L'/') == name.npos;
  std::wstring path;
  for (const wchar_t letter : name) {
    if (letter == L'\\')
      path += backslashesSeparate ? L'/' : L'_';
    else
      path += notInNames.find(letter) == notInNames.npos ? letter : L'_';
  }
  const bool isFolder = path.ends_with(L'/');
  if (!isFolder) dropVersion(path);
  if (isNameless(path)) return {};
  return {withoutEmptyParts(path), isFolder};
}

Finding checkNames(Directory& directory, const CodePages& pages, std::size_t longestPath,
                   KeepGoing& run) {
  NameCheck names(pages, longestPath);
  for (std::size_t i = 0; i < directory.entries.size(); ++i) {
    if (i % 64 == 63 && !run.keepGoing()) return {Fault::stopped, i};
    if (const Fault fault = names.check(directory.entries[i], i); fault != Fault::none)
      return {fault, i};
  }
  return names.meeting();
}

}  // namespace archive
