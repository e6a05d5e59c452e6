// What the catalogue's tests share.
#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/TemplateScan.h"
#include "common/letter_case.h"
#include "tests/folders/folder_support.h"

// A template list without a window.
class ListedTemplates final : public TemplateScanView {
 public:
  bool isListed(std::wstring_view key) override {
    for (const auto& row : rows)
      if (text::equalIgnoringCase(row.key, key)) return true;
    return false;
  }
  void add(const TemplateEntry& entry) override {
    if (onAdd) onAdd(entry);
    addedWaiting = addedWaiting && waiting;
    rows.push_back(entry);
  }
  int count() override { return static_cast<int>(rows.size()); }
  void showFolder(std::wstring_view folder) override { folders.emplace_back(folder); }
  void showUnopened(std::wstring_view text) override { unopened.emplace_back(text); }
  void showNotReady(const std::wstring& message) override { messages.push_back(message); }
  void showWaitCursor(bool shown) noexcept override {
    inTurns = inTurns && shown != waiting;
    waiting = shown;
  }
  bool keepGoing() override {
    ++asked;
    return !onAsked || onAsked();
  }

  Lines keys() const {
    Lines result;
    for (const auto& row : rows) result.push_back(row.key);
    return result;
  }
  Lines titles() const {
    Lines result;
    for (const auto& row : rows) result.push_back(row.title);
    return result;
  }

  std::vector<TemplateEntry> rows;
  Lines folders;  // that were searched
  Lines unopened;
  Lines messages;
  int asked = 0;
  bool waiting = false;
  bool inTurns = true;       // the wait cursor was never shown or taken back twice
  bool addedWaiting = true;  // every row was added under the wait cursor
  std::function<bool()> onAsked;
  std::function<void(const TemplateEntry&)> onAdd;
};
