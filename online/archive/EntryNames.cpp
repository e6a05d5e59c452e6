#include "online/archive/EntryNames.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <unordered_map>
#include <unordered_set>

#include "online/archive/ArchiveNames.h"

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

constexpr std::wstring_view notInNames = L"<>|\"?*:";

void dropVersion(std::wstring& path) {
  const auto at = path.find_last_of(L";/");
  if (at != path.npos && path[at] == L';' &&
      path.find_first_not_of(L"0123456789", at + 1) == path.npos)
    path.erase(at);
}

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

// Takes in one name after the other.
class NameCheck {
 public:
  NameCheck(const CodePages& pages, std::size_t longestPath)
      : pages_(pages), longestPath_(longestPath) {}

  Fault check(const Entry& entry) {
    if (entry.name.empty()) return Fault::noName;
    const auto name = nameOf(entry, pages_);
    if (!name) return Fault::badUtf8;
    if (const Fault fault = checkReadings(entry, *name); fault != Fault::none) return fault;
    if (!pages_.fitsAnsi(*name)) return Fault::unfitName;
    const Place place = placeOf(*name, entry);
    if (faultOf(place.path) != NameFault::none) return Fault::unsafeName;
    if (place.path.size() > longestPath_) return Fault::longName;
    if (place.path.empty()) return place.isFolder ? Fault::none : Fault::noName;
    return checkMeeting(*name, place);
  }

 private:
  // An earlier library, or another setting of the system, reads the bytes in another way.
  Fault checkReadings(const Entry& entry, const std::wstring& name) const {
    if (hasControl(name)) return Fault::controlName;
    if (faultOf(name) != NameFault::none) return Fault::unsafeName;
    constexpr auto isPlainControl = [](char byte) {
      return static_cast<unsigned char>(byte) < 0x20 || byte == 0x7F;
    };
    if (std::any_of(entry.name.begin(), entry.name.end(), isPlainControl))
      return Fault::controlName;
    return faultOf(pages_.fromAnsi(entry.name)) != NameFault::none ||
                   faultOf(pages_.fromOem(entry.name)) != NameFault::none
               ? Fault::unsafeName
               : Fault::none;
  }

  Fault checkMeeting(const std::wstring& name, const Place& place) {
    const std::wstring key = pages_.upper(place.path);
    for (auto at = key.find(L'/'); at != key.npos; at = key.find(L'/', at + 1)) {
      const std::wstring folder = key.substr(0, at);
      if (files_.contains(folder)) return Fault::fileAndFolder;
      folders_.insert(folder);
    }
    if (place.isFolder) {
      folders_.insert(key);
      return files_.contains(key) ? Fault::fileAndFolder : Fault::none;
    }
    if (folders_.contains(key)) return Fault::fileAndFolder;
    // The later one of two entries with one name wins, as with every tool.
    const std::wstring own = withoutEmptyParts(pages_.upper(name));
    return files_.emplace(key, own).first->second == own ? Fault::none : Fault::sameName;
  }

  const CodePages& pages_;
  std::size_t longestPath_;
  std::unordered_set<std::wstring> folders_;
  std::unordered_map<std::wstring, std::wstring> files_;  // by path, the names
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
  return {withoutEmptyParts(path), isFolder};
}

Finding checkNames(const Directory& directory, const CodePages& pages, std::size_t longestPath) {
  NameCheck names(pages, longestPath);
  for (std::size_t i = 0; i < directory.entries.size(); ++i)
    if (const Fault fault = names.check(directory.entries[i]); fault != Fault::none)
      return {fault, i};
  return {};
}

}  // namespace archive
