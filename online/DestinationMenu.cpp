#include "online/DestinationMenu.h"

#include "common/letter_case.h"

DestinationMenu::DestinationMenu(const TemplateFolderList& folders) {
  std::wstring running;
  for (const ListedFolder& folder : folders) {
    if (folder.path.empty()) continue;  // a value without a name
    const std::wstring letter = letterOf(folder.list);
    if (!entries_.empty() && letter != running) entries_.push_back({separator, {}});
    running = letter;
    entries_.push_back({folder.path, letter});
  }
  if (!entries_.empty()) entries_.push_back({separator, {}});
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
