#include "catalogue/FolderListEdit.h"

#include <algorithm>

#include "common/letter_case.h"
#include "common/log.h"
#include "common/settings.h"

void FolderListEdit::Load() {
  rows_.clear();
  TemplateFolderList list;
  modCommon::ReadTemplateFolderList(list);
  for (const ListedFolder& folder : list) rows_.add(folder);
  selectNear(0);
}

FolderListEdit::Allowed FolderListEdit::allowed() const {
  if (rows_.count() == 0) return {};
  const int index = rows_.selected();
  const bool perUser = index >= 0 && rows_.row(index).list == FolderList::user;
  return {.edit = perUser, .remove = perUser, .removeAll = true};
}

bool FolderListEdit::Add(std::wstring_view path) {
  const int existing = rows_.find(path);
  const bool isNew = existing < 0;
  rows_.select(isNew ? rows_.add({FolderList::user, std::wstring(path)}) : existing);
  return isNew;
}

FolderListEdit::Change FolderListEdit::Edit(std::wstring_view path) {
  const int index = rows_.selected();
  if (index < 0 || text::equalIgnoringCase(rows_.row(index).path, path)) return Change::none;
  if (rows_.find(path) >= 0) return Change::alreadyListed;
  rows_.setPath(index, path);
  rows_.select(index);
  return Change::done;
}

void FolderListEdit::Remove() {
  const int index = rows_.selected();
  if (index < 0) return;
  rows_.removeAt(index);
  selectNear(index);
}

void FolderListEdit::RemoveAll() {
  for (int index = rows_.count() - 1; index >= 0; --index)
    if (rows_.row(index).list != FolderList::machine) rows_.removeAt(index);
  selectNear(rows_.selected());
}

void FolderListEdit::Save() const {
  settings::DeleteSetting(settings::folders);
  modCommon::WriteLog(L"Saving DWT list...");
  for (int index = 0; index < rows_.count(); ++index) {
    const ListedFolder row = rows_.row(index);
    if (row.list != FolderList::user) continue;
    settings::SaveSetting(settings::folders, row.path, row.path);
    modCommon::WriteLog({L"User folder: ", row.path});
  }
}

void FolderListEdit::selectNear(int index) {
  if (rows_.count() > 0) rows_.select(std::clamp(index, 0, rows_.count() - 1));
}
