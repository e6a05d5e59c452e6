#include "catalogue/FolderListEdit.h"

#include "tests/catalogue/catalogue_support.h"
#include "tests/support/DebugOutput.h"
#include "tests/support/text_output.h"

namespace {

using Change = FolderListEdit::Change;

// Rows without a window.
class PlainRows final : public FolderRows {
 public:
  int count() const override { return static_cast<int>(rows.size()); }
  ListedFolder row(int index) const override { return rows.at(static_cast<std::size_t>(index)); }
  int find(std::wstring_view path) const override {
    for (int index = 0; index < count(); ++index)
      if (text::equalIgnoringCase(row(index).path, path)) return index;
    return -1;
  }
  int selected() const override { return chosen; }
  void select(int index) override {
    chosen = index;
    ++selections;
  }
  int add(const ListedFolder& row) override {
    rows.push_back(row);
    return count() - 1;
  }
  void setPath(int index, std::wstring_view path) override {
    rows.at(static_cast<std::size_t>(index)).path = path;
  }
  void removeAt(int index) override {
    rows.erase(rows.begin() + index);
    if (chosen == index)
      chosen = -1;
    else if (chosen > index)
      --chosen;
  }
  void clear() override {
    rows.clear();
    chosen = -1;
  }

  Lines tagged() const { return ::tagged(rows); }

  TemplateFolderList rows;
  int chosen = -1;
  int selections = 0;
};

struct EditedList {
  explicit EditedList(const Lines& tagged, int selected = 0) {
    rows.rows = folderList(tagged);
    rows.chosen = selected;
  }
  PlainRows rows;
  FolderListEdit edit{rows};
};

}  // namespace

TEST_CASE("an edited list starts with both lists and its first row selected") {
  ScratchRegistry registry;
  listForMachine(registry, L"C:\\Machine");
  listForUser(registry, L"C:\\User");
  EditedList list({L"UC:\\Before"});
  list.edit.Load();
  CHECK(list.rows.tagged() == Lines{L"GC:\\Machine", L"UC:\\User"});
  CHECK(list.rows.chosen == 0);
}

TEST_CASE("an edited list without rows has none selected and allows nothing") {
  const ScratchRegistry registry;
  EditedList list({});
  list.rows.chosen = -1;
  list.edit.Load();
  CHECK(list.rows.chosen == -1);
  const auto allowed = list.edit.allowed();
  CHECK_FALSE(allowed.edit);
  CHECK_FALSE(allowed.remove);
  CHECK_FALSE(allowed.removeAll);
}

TEST_CASE("what an edited list allows follows the tag of the selected row") {
  EditedList list({L"GC:\\Machine", L"UC:\\User"});
  CHECK_FALSE(list.edit.allowed().edit);
  CHECK_FALSE(list.edit.allowed().remove);
  CHECK(list.edit.allowed().removeAll);
  list.rows.chosen = 1;
  CHECK(list.edit.allowed().edit);
  CHECK(list.edit.allowed().remove);
  list.rows.chosen = -1;
  CHECK_FALSE(list.edit.allowed().edit);
  CHECK_FALSE(list.edit.allowed().remove);
  CHECK(list.edit.allowed().removeAll);
}

TEST_CASE("adding tells a new path from a listed one") {
  EditedList list({L"GC:\\Machine", L"UC:\\User"}, 1);
  CHECK_FALSE(list.edit.Add(L"c:\\MACHINE"));
  CHECK(list.rows.chosen == 0);
  CHECK(list.edit.Add(L"C:\\New"));
  CHECK(list.rows.chosen == 2);
  CHECK(list.rows.tagged() == Lines{L"GC:\\Machine", L"UC:\\User", L"UC:\\New"});
}

TEST_CASE("editing tells its three outcomes apart") {
  EditedList list({L"GC:\\Machine", L"UC:\\User"}, 1);
  CHECK(list.edit.Edit(L"c:\\user") == Change::none);
  CHECK(list.edit.Edit(L"c:\\machine") == Change::alreadyListed);
  CHECK(list.rows.tagged() == Lines{L"GC:\\Machine", L"UC:\\User"});
  CHECK(list.edit.Edit(L"C:\\New") == Change::done);
  CHECK(list.rows.tagged() == Lines{L"GC:\\Machine", L"UC:\\New"});
  // The row is selected anew, as a new one would be.
  CHECK(list.rows.chosen == 1);
  CHECK(list.rows.selections == 1);
}

TEST_CASE("the row that takes a removed one's place is selected and at the end the last one") {
  EditedList list({L"UC:\\a", L"UC:\\b", L"UC:\\c"}, 1);
  list.edit.Remove();
  CHECK(list.rows.tagged() == Lines{L"UC:\\a", L"UC:\\c"});
  CHECK(list.rows.chosen == 1);
  list.edit.Remove();
  CHECK(list.rows.chosen == 0);
  list.edit.Remove();
  CHECK(list.rows.tagged().empty());
  CHECK(list.rows.chosen == -1);
}

TEST_CASE("editing and removing without a selected row change nothing") {
  EditedList list({L"UC:\\User"}, -1);
  CHECK(list.edit.Edit(L"C:\\New") == Change::none);
  list.edit.Remove();
  CHECK(list.rows.tagged() == Lines{L"UC:\\User"});
}

TEST_CASE("remove all removes the user's rows wherever they stand") {
  EditedList list({L"UC:\\a", L"GC:\\b", L"UC:\\c", L"GC:\\d", L"UC:\\e"}, 3);
  list.edit.RemoveAll();
  CHECK(list.rows.tagged() == Lines{L"GC:\\b", L"GC:\\d"});
  // The selected row stayed.
  CHECK(list.rows.chosen == 1);
}

TEST_CASE("remove all that takes the selected row selects the first one left") {
  EditedList list({L"GC:\\a", L"UC:\\b"}, 1);
  list.edit.RemoveAll();
  CHECK(list.rows.chosen == 0);
}

TEST_CASE("saving replaces the stored list by the user's rows in their order") {
  ScratchRegistry registry;
  listForUser(registry, L"C:\\Old");
  EditedList list({L"UC:\\b", L"GC:\\Machine", L"UC:\\a"});
  const LoggingOn logging;
  const DebugOutput output;
  list.edit.Save();
  CHECK(output.messages() ==
        Lines{L"Saving DWT list...", L"User folder: C:\\b", L"User folder: C:\\a"});
  CHECK(registry.valueNames(HKEY_CURRENT_USER, userFolders).size() == 2);
  CHECK(registry.string(HKEY_CURRENT_USER, userFolders, L"C:\\a") == L"C:\\a");
  CHECK(registry.string(HKEY_CURRENT_USER, userFolders, L"C:\\b") == L"C:\\b");
}
