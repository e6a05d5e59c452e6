// The template folder list while a user edits it. Storage changes only at Save.
#pragma once

#include <string>
#include <string_view>

#include "folders/TemplateFolderList.h"

// The rows as they are shown, numbered in the order in which they stand. There is no other copy of
// the edited list.
class FolderRows {
 public:
  virtual int count() const = 0;
  virtual ListedFolder row(int index) const = 0;
  // The first row of that path in any letter case; -1 when none has it.
  virtual int find(std::wstring_view path) const = 0;
  virtual int selected() const = 0;  // -1 when none is
  virtual void select(int index) = 0;
  virtual int add(const ListedFolder& row) = 0;  // where it stands now
  virtual void setPath(int index, std::wstring_view path) = 0;
  virtual void removeAt(int index) = 0;
  virtual void clear() = 0;

 protected:
  ~FolderRows() = default;
};

class FolderListEdit {
 public:
  // What the selected row allows.
  struct Allowed {
    bool edit = false;
    bool remove = false;
    bool removeAll = false;
  };

  enum class Change { none, done, alreadyListed };

  explicit FolderListEdit(FolderRows& rows) : rows_(rows) {}

  // Fills the rows from both lists and selects the first.
  void Load();

  Allowed allowed() const;

  // The row of that path becomes the selected one; true when it had to be added. A path that is
  // listed already, even machine-wide, is silently only selected.
  bool Add(std::wstring_view path);

  // The selected row gets another path. Unlike Add it does not settle for a row that has it
  // already.
  Change Edit(std::wstring_view path);

  // The selected row goes; the row that takes its place is selected.
  void Remove();

  // Every per-user row goes; machine-wide rows stay.
  void RemoveAll();

  // Replaces the stored per-user list by the per-user rows, in the order in which they stand. An
  // error leaves what was written up to then.
  void Save() const;

 private:
  void selectNear(int index);

  FolderRows& rows_;
};
