#include "online/DestinationMenu.h"

#include "common/letter_case.h"

DestinationMenu::DestinationMenu(const TemplateFolderList& folders) {
  const auto letterOf = [](const std::wstring& entry) { return entry.substr(0, 1); };
  std::wstring running = folders.empty() ? std::wstring() : letterOf(folders.front());
  for (const std::wstring& folder : folders) {
    if (letterOf(folder) != running) {
      running = letterOf(folder);
      entries_.push_back({separator, {}});
    }
    entries_.push_back({folder.substr(1), running});
  }
  if (!folders.empty()) entries_.push_back({separator, {}});
  entries_.push_back({browse, {}});
}

const DestinationEntry* DestinationMenu::find(std::wstring_view path) const {
  for (const DestinationEntry& entry : entries_)
    if (text::equalIgnoringCase(entry.text, path)) return &entry;
  return nullptr;
}

bool DestinationMenu::has(std::wstring_view path) const { return find(path) != nullptr; }

std::wstring DestinationMenu::tagOf(std::wstring_view path) const {
  const DestinationEntry* const entry = find(path);
  return entry ? entry->tag : userTag;
}
