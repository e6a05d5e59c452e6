// The menu behind "Save In": the listed template folders, from which one is chosen for downloads.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "folders/TemplateFolderList.h"

struct DestinationEntry {
  std::wstring text;  // a folder path, "-" for a separator, or the last entry's caption
  std::wstring tag;   // the list's letter, "G" or "U"; empty for what is no folder
};

// Folder texts are compared without case.
class DestinationMenu {
 public:
  static constexpr wchar_t separator[] = L"-";
  static constexpr wchar_t browse[] = L"Browse...";
  static constexpr wchar_t userTag[] = L"U";
  static constexpr wchar_t machineTag[] = L"G";

  // The folders in their order with a separator wherever the list's letter changes, another one
  // behind the last, then "Browse..."; that alone when there are no folders. An entry without a
  // path is left out.
  explicit DestinationMenu(const TemplateFolderList& folders = {});

  const std::vector<DestinationEntry>& entries() const noexcept { return entries_; }
  bool has(std::wstring_view path) const;
  // "U" for a folder that no entry has: one chosen by browsing is the user's.
  std::wstring tagOf(std::wstring_view path) const;

 private:
  const DestinationEntry* find(std::wstring_view path) const;

  std::vector<DestinationEntry> entries_;
};
