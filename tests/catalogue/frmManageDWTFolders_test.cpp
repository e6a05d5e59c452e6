#include "catalogue/frmManageDWTFolders.h"

#include "catalogue/resource.h"
#include "common/errors.h"
#include "common/forms/folder_icons.h"
#include "tests/catalogue/catalogue_support.h"
#include "tests/support/DebugOutput.h"
#include "tests/support/FolderPicker.h"
#include "tests/support/ImportPatch.h"
#include "tests/support/ModalDriver.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/text_output.h"

namespace {

constexpr wchar_t applicationTitle[] = L"Quillet Viewer";
constexpr wchar_t dialogCaption[] = L"Manage Dynamic Web Template Folders";
constexpr wchar_t pickerPrompt[] = L"Select a folder that contains Dynamic Web Templates";

// The dialog's list as the user sees and uses it.
class ShownList {
 public:
  explicit ShownList(HWND dialog) : window_(GetDlgItem(dialog, IDC_FOLDERS_LIST)) {}

  int count() const { return ListView_GetItemCount(window_); }
  std::wstring text(int index) const {
    wchar_t buffer[1024] = {};
    LVITEMW item = {};
    item.pszText = buffer;
    item.cchTextMax = 1024;
    SendMessageW(window_, LVM_GETITEMTEXTW, static_cast<WPARAM>(index),
                 reinterpret_cast<LPARAM>(&item));
    return buffer;
  }
  int image(int index) const {
    LVITEMW item = {};
    item.mask = LVIF_IMAGE;
    item.iItem = index;
    SendMessageW(window_, LVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&item));
    return item.iImage;
  }
  Lines texts() const {
    Lines result;
    for (int index = 0; index < count(); ++index) result.push_back(text(index));
    return result;
  }
  int selected() const { return ListView_GetNextItem(window_, -1, LVNI_SELECTED); }
  void click(int index) const {
    constexpr UINT state = LVIS_SELECTED | LVIS_FOCUSED;
    ListView_SetItemState(window_, index, state, state);
  }
  void deselect() const { ListView_SetItemState(window_, -1, 0, LVIS_SELECTED | LVIS_FOCUSED); }
  void doubleClick(int index) const {
    NMITEMACTIVATE activate = {};
    activate.hdr = {window_, IDC_FOLDERS_LIST, static_cast<UINT>(NM_DBLCLK)};
    activate.iItem = index;
    SendMessageW(GetParent(window_), WM_NOTIFY, IDC_FOLDERS_LIST,
                 reinterpret_cast<LPARAM>(&activate));
  }
  void clickHeader() const {
    NMLISTVIEW click = {};
    click.hdr = {window_, IDC_FOLDERS_LIST, static_cast<UINT>(LVN_COLUMNCLICK)};
    click.iItem = -1;
    SendMessageW(GetParent(window_), WM_NOTIFY, IDC_FOLDERS_LIST, reinterpret_cast<LPARAM>(&click));
  }
  void pressKey(WPARAM key) const {
    PostMessageW(window_, WM_KEYDOWN, key, 0);
    PostMessageW(window_, WM_KEYUP, key, 0);
    forms::yieldToMessages();
  }
  int columnWidth() const { return ListView_GetColumnWidth(window_, 0); }
  HWND hwnd() const { return window_; }

 private:
  HWND window_;
};

struct EnabledButtons {
  bool edit;
  bool remove;
  bool removeAll;
  bool operator==(const EnabledButtons&) const = default;
};

EnabledButtons enabledButtons(HWND dialog) {
  return {isEnabled(dialog, IDC_FOLDERS_EDIT), isEnabled(dialog, IDC_FOLDERS_REMOVE),
          isEnabled(dialog, IDC_FOLDERS_REMOVEALL)};
}

constexpr EnabledButtons noneEnabled{false, false, false};
constexpr EnabledButtons machineRowEnabled{false, false, true};
constexpr EnabledButtons userRowEnabled{true, true, true};

// The dialog with everything around it.
struct FolderDialog {
  ScratchRegistry registry;
  LoggingOn logging;
  DebugOutput output;
  ModalDriver driver;
  FolderPicker picker;
  bool wasOpen = false;
  HWND window = nullptr;

  // Shows the dialog and runs `script` in it; what the script leaves open is closed.
  bool show(const std::function<void(HWND, const ShownList&)>& script) {
    driver.onDialog(dialogCaption, [this, script](HWND dialog) {
      wasOpen = true;
      window = dialog;
      output.clear();
      script(dialog, ShownList(dialog));
      if (IsWindowVisible(dialog)) PostMessageW(dialog, WM_CLOSE, 0, 0);
    });
    return ShowFolderDialog(nullptr);
  }

  Lines stored() const { return registry.valueNames(HKEY_CURRENT_USER, userFolders); }
};

// Only the box that is shown for a folder that cannot be added bears the dialog's caption.
void checkBox(const FolderDialog& dialog, const std::wstring& text, UINT icon, const Lines& buttons,
              const std::wstring& title = applicationTitle) {
  REQUIRE(dialog.driver.boxes().size() == 1);
  const ShownBox& box = dialog.driver.boxes()[0];
  CHECK(box.title == title);
  CHECK(box.owner == dialog.window);
  CHECK(box.text == text);
  CHECK(box.icon == icon);
  CHECK(box.buttons == buttons);
}

LSTATUS WINAPI refuseValue(HKEY, LPCSTR name, DWORD, DWORD, const BYTE*, DWORD);

// Lets values be written until one has this name.
struct RefusedValue {
  static inline RefusedValue* current = nullptr;
  explicit RefusedValue(std::string refused) : name(std::move(refused)) { current = this; }
  ~RefusedValue() { current = nullptr; }
  RefusedValue(const RefusedValue&) = delete;
  RefusedValue& operator=(const RefusedValue&) = delete;

  std::string name;
  ImportPatch patch{nullptr, "advapi32.dll", "RegSetValueExA", refuseValue};
};

LSTATUS WINAPI refuseValue(HKEY key, LPCSTR name, DWORD reserved, DWORD type, const BYTE* data,
                           DWORD size) {
  const RefusedValue& refused = *RefusedValue::current;
  if (refused.name == name) return ERROR_ACCESS_DENIED;
  return refused.patch.original<decltype(refuseValue)>()(key, name, reserved, type, data, size);
}

LSTATUS WINAPI enumerateForEver(HKEY, DWORD, LPSTR name, LPDWORD, LPDWORD, LPDWORD, LPBYTE,
                                LPDWORD) {
  lstrcpyA(name, "C:\\T");
  return ERROR_SUCCESS;
}

LSTATUS WINAPI refuseDeletion(HKEY, LPCSTR) { return ERROR_ACCESS_DENIED; }

// Whether the wait cursor was there at every call that the registry got.
struct WatchedCursor {
  static inline WatchedCursor* current = nullptr;

  WatchedCursor() { current = this; }
  ~WatchedCursor() { current = nullptr; }
  WatchedCursor(const WatchedCursor&) = delete;
  WatchedCursor& operator=(const WatchedCursor&) = delete;

  static bool isWaiting() { return GetCursor() == LoadCursorW(nullptr, IDC_WAIT); }

  static LSTATUS WINAPI enumerate(HKEY key, DWORD index, LPSTR name, LPDWORD length,
                                  LPDWORD reserved, LPDWORD type, LPBYTE data, LPDWORD size) {
    ++current->reads;
    current->waiting = current->waiting && isWaiting();
    return current->enumerated.original<decltype(enumerate)>()(key, index, name, length, reserved,
                                                               type, data, size);
  }

  static LSTATUS WINAPI set(HKEY key, LPCSTR name, DWORD reserved, DWORD type, const BYTE* data,
                            DWORD size) {
    ++current->writes;
    current->waiting = current->waiting && isWaiting();
    return current->written.original<decltype(set)>()(key, name, reserved, type, data, size);
  }

  int reads = 0;
  int writes = 0;
  bool waiting = true;
  ImportPatch enumerated{nullptr, "advapi32.dll", "RegEnumValueA", enumerate};
  ImportPatch written{nullptr, "advapi32.dll", "RegSetValueExA", set};
};

// A list control that cannot tell its rows, while it lives.
class SilentRows {
 public:
  explicit SilentRows(HWND list)
      : list_(list),
        former_(SetWindowLongPtrW(list, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(procedure))) {
    original = reinterpret_cast<WNDPROC>(former_);
  }
  ~SilentRows() { SetWindowLongPtrW(list_, GWLP_WNDPROC, former_); }
  SilentRows(const SilentRows&) = delete;
  SilentRows& operator=(const SilentRows&) = delete;

 private:
  static inline WNDPROC original = nullptr;

  static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == LVM_GETITEMW) return FALSE;
    return CallWindowProcW(original, window, message, wParam, lParam);
  }

  HWND list_;
  LONG_PTR former_;
};

// One picture of an image list as it is drawn.
std::vector<COLORREF> pixels(HIMAGELIST images, int index) {
  int width = 0;
  int height = 0;
  ImageList_GetIconSize(images, &width, &height);
  const handles::ScreenContext screen;
  const handles::DeviceContext context(CreateCompatibleDC(screen.get()));
  const handles::Gdi bitmap(CreateCompatibleBitmap(screen.get(), width, height));
  const HGDIOBJ former = SelectObject(context.get(), bitmap.get());
  PatBlt(context.get(), 0, 0, width, height, WHITENESS);
  ImageList_Draw(images, index, context.get(), 0, 0, ILD_NORMAL);
  std::vector<COLORREF> result;
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x) result.push_back(GetPixel(context.get(), x, y));
  SelectObject(context.get(), former);
  return result;
}

RECT placeOf(HWND window) {
  RECT place;
  GetWindowRect(window, &place);
  MapWindowPoints(nullptr, GetParent(window), reinterpret_cast<POINT*>(&place), 2);
  return place;
}

}  // namespace

TEST_CASE("the folder dialog has its captions") {
  FolderDialog session;
  session.show([](HWND dialog, const ShownList& list) {
    CHECK(windowText(dialog) == dialogCaption);
    CHECK(windowText(dialog, IDC_FOLDERS_LABEL) == L"Folders to scan for Dynamic Web Template :");
    CHECK(windowText(dialog, IDC_FOLDERS_ADD) == L"&Add...");
    CHECK(windowText(dialog, IDC_FOLDERS_EDIT) == L"&Edit...");
    CHECK(windowText(dialog, IDC_FOLDERS_REMOVE) == L"&Remove");
    CHECK(windowText(dialog, IDC_FOLDERS_REMOVEALL) == L"Re&move All");
    CHECK(windowText(dialog, IDOK) == L"OK");
    CHECK(windowText(dialog, IDCANCEL) == L"Cancel");
    wchar_t title[100] = {};
    LVCOLUMNW column = {};
    column.mask = LVCF_TEXT;
    column.pszText = title;
    column.cchTextMax = 100;
    SendMessageW(list.hwnd(), LVM_GETCOLUMNW, 0, reinterpret_cast<LPARAM>(&column));
    CHECK(title == std::wstring(L"DWT folder list"));
    CHECK_FALSE(SendMessageW(list.hwnd(), LVM_GETCOLUMNW, 1, reinterpret_cast<LPARAM>(&column)));
  });
  CHECK(session.wasOpen);
}

TEST_CASE("the buttons of the folder dialog have their tool tips") {
  FolderDialog session;
  session.show([](HWND dialog, const ShownList&) {
    CHECK(toolTip(dialog, IDC_FOLDERS_ADD) == L"Add a folder to the DWT folders list");
    CHECK(toolTip(dialog, IDC_FOLDERS_EDIT) == L"Modify path for the selected DWT folder");
    CHECK(toolTip(dialog, IDC_FOLDERS_REMOVE) ==
          L"Remove selected folder from the DWT folders list");
    CHECK(toolTip(dialog, IDC_FOLDERS_REMOVEALL) ==
          L"Remove all folders from the DWT folders list");
    CHECK(toolTip(dialog, IDOK) == L"Saves changes to the DWT folders list");
    CHECK(toolTip(dialog, IDCANCEL) == L"Cancel modifications to DWT folders list");
  });
}

TEST_CASE("without listed folders the dialog opens empty with edit and both removes disabled") {
  FolderDialog session;
  session.driver.onDialog(dialogCaption, [](HWND dialog) {
    CHECK(ShownList(dialog).count() == 0);
    CHECK(enabledButtons(dialog) == noneEnabled);
    CHECK(isEnabled(dialog, IDC_FOLDERS_ADD));
    CHECK(isEnabled(dialog, IDOK));
    press(dialog, IDCANCEL);
  });
  CHECK_FALSE(ShowFolderDialog(nullptr));
  CHECK(session.output.messages() ==
        Lines{L"Reading DWT folders list...", L"DWT folders list contains 0 items."});
}

TEST_CASE("a path in both lists is shown twice in the dialog with an icon for each list") {
  FolderDialog session;
  listForMachine(session.registry, L"C:\\Both");
  listForUser(session.registry, L"C:\\Both");
  session.show([](HWND, const ShownList& list) {
    CHECK(list.texts() == Lines{L"C:\\Both", L"C:\\Both"});
    CHECK(list.image(0) == 0);
    CHECK(list.image(1) == 1);
    const auto images =
        reinterpret_cast<HIMAGELIST>(SendMessageW(list.hwnd(), LVM_GETIMAGELIST, LVSIL_SMALL, 0));
    CHECK(ImageList_GetImageCount(images) == 2);
  });
  CHECK(session.wasOpen);
}

TEST_CASE("the icon of a row tells which list its folder is from") {
  FolderDialog session;
  listForMachine(session.registry, L"C:\\Machine");
  listForUser(session.registry, L"C:\\User");
  session.show([](HWND, const ShownList& list) {
    const auto images =
        reinterpret_cast<HIMAGELIST>(SendMessageW(list.hwnd(), LVM_GETIMAGELIST, LVSIL_SMALL, 0));
    const forms::ImageList drawn =
        forms::makeFolderIcons({forms::FolderIcon::ofMachine, forms::FolderIcon::ofUser});
    const auto machine = pixels(drawn.get(), 0);
    const auto user = pixels(drawn.get(), 1);
    CHECK(machine != user);
    CHECK(pixels(images, list.image(0)) == machine);
    CHECK(pixels(images, list.image(1)) == user);
  });
  CHECK(session.wasOpen);
}

TEST_CASE("the column of the folder dialog opens wide enough for its paths") {
  FolderDialog session;
  listForUser(session.registry, L"C:\\" + std::wstring(120, L'm'));
  session.show([](HWND, const ShownList& list) {
    CHECK(list.columnWidth() > ListView_GetStringWidth(list.hwnd(), list.text(0).c_str()));
  });
  CHECK(session.wasOpen);
}

TEST_CASE("the wait cursor is there while the folder list is read and stored") {
  FolderDialog session;
  listForUser(session.registry, L"C:\\User");
  const WatchedCursor cursor;
  CHECK(session.show([](HWND dialog, const ShownList&) {
    CHECK_FALSE(WatchedCursor::isWaiting());
    press(dialog, IDOK);
  }));
  CHECK(cursor.reads > 0);
  CHECK(cursor.writes == 1);
  CHECK(cursor.waiting);
  CHECK_FALSE(WatchedCursor::isWaiting());
}

TEST_CASE("the folder dialog opens with its first row selected") {
  FolderDialog session;
  listForMachine(session.registry, L"C:\\Machine");
  listForUser(session.registry, L"C:\\User");
  session.show([](HWND dialog, const ShownList& list) {
    CHECK(list.selected() == 0);
    CHECK(enabledButtons(dialog) == machineRowEnabled);
  });
}

TEST_CASE("a machine-wide folder can be neither edited nor removed") {
  FolderDialog session;
  listForMachine(session.registry, L"C:\\Machine");
  listForUser(session.registry, L"C:\\User");
  session.show([](HWND dialog, const ShownList& list) {
    list.click(1);
    CHECK(enabledButtons(dialog) == userRowEnabled);
    list.click(0);
    CHECK(enabledButtons(dialog) == machineRowEnabled);
  });
}

TEST_CASE("adding a folder lists and selects it as the user's own") {
  FolderDialog session;
  const ScratchFolder folder;
  listForMachine(session.registry, L"C:\\Machine");
  session.picker.choose(folder.path());
  session.show([&](HWND dialog, const ShownList& list) {
    press(dialog, IDC_FOLDERS_ADD);
    CHECK(list.texts() == Lines{L"C:\\Machine", folder.path()});
    CHECK(list.image(1) == 1);
    CHECK(list.selected() == 1);
    CHECK(enabledButtons(dialog) == userRowEnabled);
    REQUIRE(session.picker.shown.size() == 1);
    CHECK(session.picker.shown[0].prompt == pickerPrompt);
    CHECK(session.picker.shown[0].start == L"C:\\Machine");
    CHECK(session.picker.shown[0].owner == dialog);
  });
  CHECK(session.driver.boxes().empty());
}

TEST_CASE("adding the first folder enables the buttons") {
  FolderDialog session;
  const ScratchFolder folder;
  session.picker.choose(folder.path());
  session.show([&](HWND dialog, const ShownList& list) {
    press(dialog, IDC_FOLDERS_ADD);
    CHECK(list.texts() == Lines{folder.path()});
    CHECK(enabledButtons(dialog) == userRowEnabled);
  });
}

TEST_CASE("adding nothing changes nothing") {
  FolderDialog session;
  listForUser(session.registry, L"C:\\User");
  session.picker.cancel();
  session.show([](HWND dialog, const ShownList& list) {
    press(dialog, IDC_FOLDERS_ADD);
    CHECK(list.texts() == Lines{L"C:\\User"});
    CHECK(enabledButtons(dialog) == userRowEnabled);
  });
  CHECK(session.picker.shown.size() == 1);
  CHECK(session.driver.boxes().empty());
}

TEST_CASE("adding a virtual folder shows that its path is invalid") {
  FolderDialog session;
  session.picker.chooseVirtualFolder();
  session.show([&](HWND dialog, const ShownList& list) {
    press(dialog, IDC_FOLDERS_ADD);
    CHECK(list.count() == 0);
    CHECK(enabledButtons(dialog) == noneEnabled);
    CHECK(session.output.messages() == Lines{});
  });
  checkBox(session, L"Invalid path. Please select a valid file system path to search for DWT's.",
           MB_ICONASTERISK, {L"OK"}, dialogCaption);
}

TEST_CASE("adding a listed folder silently selects its row") {
  FolderDialog session;
  const ScratchFolder folder;
  listForMachine(session.registry, folder.path());
  listForUser(session.registry, L"A:\\User");
  session.picker.choose(folder.path());
  session.show([&](HWND dialog, const ShownList& list) {
    list.click(1);
    press(dialog, IDC_FOLDERS_ADD);
    CHECK(list.count() == 2);
    CHECK(list.selected() == 0);
    CHECK(enabledButtons(dialog) == machineRowEnabled);
  });
  CHECK(session.driver.boxes().empty());
}

TEST_CASE("adding a listed folder in another letter case selects its row") {
  FolderDialog session;
  const ScratchFolder folder;
  const std::wstring listed = text::toLower(folder.path());
  listForUser(session.registry, listed);
  session.picker.choose(folder.path());
  session.show([&](HWND dialog, const ShownList& list) {
    press(dialog, IDC_FOLDERS_ADD);
    CHECK(list.texts() == Lines{listed});
    CHECK(list.selected() == 0);
  });
}

TEST_CASE("a part of a listed path is not the listed path") {
  FolderDialog session;
  const ScratchFolder folder;
  listForUser(session.registry, folder / L"deeper");
  session.picker.choose(folder.path());
  session.show([&](HWND dialog, const ShownList& list) {
    press(dialog, IDC_FOLDERS_ADD);
    CHECK(list.texts() == Lines{folder / L"deeper", folder.path()});
  });
}

TEST_CASE("an added long path widens the column") {
  FolderDialog session;
  const ScratchFolder folder;
  session.picker.choose(folder.makeFolder(std::wstring(120, L'm')));
  session.show([&](HWND dialog, const ShownList& list) {
    const int before = list.columnWidth();
    press(dialog, IDC_FOLDERS_ADD);
    CHECK(list.columnWidth() > before);
    CHECK(list.columnWidth() > ListView_GetStringWidth(list.hwnd(), list.text(0).c_str()));
  });
}

TEST_CASE("editing a folder replaces its path") {
  FolderDialog session;
  const ScratchFolder folder;
  listForMachine(session.registry, L"C:\\Machine");
  listForUser(session.registry, L"C:\\User");
  session.picker.choose(folder.path());
  session.show([&](HWND dialog, const ShownList& list) {
    list.click(1);
    press(dialog, IDC_FOLDERS_EDIT);
    CHECK(list.texts() == Lines{L"C:\\Machine", folder.path()});
    CHECK(list.image(1) == 1);
    CHECK(list.selected() == 1);
    CHECK(enabledButtons(dialog) == userRowEnabled);
    CHECK(session.output.messages() ==
          Lines{L"Path Name : C:\\User", L"New Path : " + folder.path()});
    REQUIRE(session.picker.shown.size() == 1);
    CHECK(session.picker.shown[0].prompt == pickerPrompt);
    CHECK(session.picker.shown[0].start == L"C:\\User");
  });
  CHECK(session.driver.boxes().empty());
}

TEST_CASE("a folder edited to a long path widens the column") {
  FolderDialog session;
  const ScratchFolder folder;
  listForUser(session.registry, L"C:\\User");
  session.picker.choose(folder.makeFolder(std::wstring(120, L'm')));
  session.show([&](HWND dialog, const ShownList& list) {
    const int before = list.columnWidth();
    press(dialog, IDC_FOLDERS_EDIT);
    CHECK(list.columnWidth() > before);
  });
}

TEST_CASE("cancelling the picker leaves an edited folder as it was") {
  FolderDialog session;
  listForUser(session.registry, L"C:\\User");
  session.picker.cancel();
  session.show([&](HWND dialog, const ShownList& list) {
    press(dialog, IDC_FOLDERS_EDIT);
    CHECK(list.texts() == Lines{L"C:\\User"});
    CHECK(session.output.messages() == Lines{L"Path Name : C:\\User"});
  });
}

TEST_CASE("editing to a virtual folder shows and logs that its path is invalid") {
  FolderDialog session;
  listForUser(session.registry, L"C:\\User");
  session.picker.chooseVirtualFolder();
  const std::wstring invalid =
      L"Invalid path. Please select a valid file system path to search for DWT's.";
  session.show([&](HWND dialog, const ShownList& list) {
    press(dialog, IDC_FOLDERS_EDIT);
    CHECK(list.texts() == Lines{L"C:\\User"});
    CHECK(session.output.messages() == Lines{L"Path Name : C:\\User", invalid});
  });
  checkBox(session, invalid, MB_ICONASTERISK, {L"OK"});
}

TEST_CASE("editing a folder to its own path in another letter case does nothing") {
  FolderDialog session;
  const ScratchFolder folder;
  const std::wstring listed = text::toLower(folder.path());
  listForUser(session.registry, listed);
  session.picker.choose(folder.path());
  session.show([&](HWND dialog, const ShownList& list) {
    press(dialog, IDC_FOLDERS_EDIT);
    CHECK(list.texts() == Lines{listed});
    CHECK(session.output.messages() == Lines{L"Path Name : " + listed});
  });
  CHECK(session.driver.boxes().empty());
}

TEST_CASE("editing a folder to a listed path objects") {
  FolderDialog session;
  const ScratchFolder folder;
  listForMachine(session.registry, folder.path());
  listForUser(session.registry, L"C:\\User");
  session.picker.choose(folder.path());
  session.show([&](HWND dialog, const ShownList& list) {
    list.click(1);
    press(dialog, IDC_FOLDERS_EDIT);
    CHECK(list.texts() == Lines{folder.path(), L"C:\\User"});
    CHECK(list.selected() == 1);
    CHECK(session.output.messages() ==
          Lines{L"Path Name : C:\\User", folder.path() + L": Path already exists in the list."});
  });
  checkBox(session, folder.path() + L"\r\nPath already exists in the list.", MB_ICONASTERISK,
           {L"OK"});
}

TEST_CASE("editing without a selected row asks for one") {
  FolderDialog session;
  listForUser(session.registry, L"C:\\User");
  session.show([&](HWND dialog, const ShownList& list) {
    list.deselect();
    press(dialog, IDC_FOLDERS_EDIT);
    CHECK(session.output.messages() == Lines{});
  });
  checkBox(session, L"Please select an item to edit.", MB_ICONASTERISK, {L"OK"});
  CHECK(session.picker.shown.empty());
}

TEST_CASE("removing without a selected row asks for one") {
  FolderDialog session;
  listForUser(session.registry, L"C:\\User");
  session.show([](HWND dialog, const ShownList& list) {
    list.deselect();
    press(dialog, IDC_FOLDERS_REMOVE);
    CHECK(list.count() == 1);
  });
  checkBox(session, L"Please select an item to remove.", MB_ICONASTERISK, {L"OK"});
}

TEST_CASE("removing a folder asks first and selects the row that takes its place") {
  FolderDialog session;
  for (const wchar_t* path : {L"C:\\a", L"C:\\b", L"C:\\c"}) listForUser(session.registry, path);
  session.driver.answer(IDYES);
  session.show([](HWND dialog, const ShownList& list) {
    list.click(1);
    press(dialog, IDC_FOLDERS_REMOVE);
    CHECK(list.texts() == Lines{L"C:\\a", L"C:\\c"});
    CHECK(list.selected() == 1);
    CHECK(enabledButtons(dialog) == userRowEnabled);
  });
  checkBox(session, L"Are you sure you want to remove the selected folder?", MB_ICONQUESTION,
           {L"Yes", L"No"});
}

TEST_CASE("a folder whose removal was declined stays") {
  FolderDialog session;
  listForUser(session.registry, L"C:\\User");
  session.driver.answer(IDNO);
  session.show([](HWND dialog, const ShownList& list) {
    press(dialog, IDC_FOLDERS_REMOVE);
    CHECK(list.texts() == Lines{L"C:\\User"});
    CHECK(enabledButtons(dialog) == userRowEnabled);
  });
}

TEST_CASE("removing the bottom row selects the one above") {
  FolderDialog session;
  listForMachine(session.registry, L"C:\\Machine");
  listForUser(session.registry, L"C:\\User");
  session.driver.answer(IDYES);
  session.show([](HWND dialog, const ShownList& list) {
    list.click(1);
    press(dialog, IDC_FOLDERS_REMOVE);
    CHECK(list.texts() == Lines{L"C:\\Machine"});
    CHECK(list.selected() == 0);
    CHECK(enabledButtons(dialog) == machineRowEnabled);
  });
}

TEST_CASE("removing the only folder disables edit and both removes") {
  FolderDialog session;
  listForUser(session.registry, L"C:\\User");
  session.driver.answer(IDYES);
  session.show([](HWND dialog, const ShownList& list) {
    press(dialog, IDC_FOLDERS_REMOVE);
    CHECK(list.count() == 0);
    CHECK(enabledButtons(dialog) == noneEnabled);
  });
}

TEST_CASE("remove all keeps the machine-wide folders") {
  FolderDialog session;
  listForMachine(session.registry, L"C:\\Machine a");
  listForMachine(session.registry, L"C:\\Machine b");
  listForUser(session.registry, L"C:\\User a");
  listForUser(session.registry, L"C:\\User b");
  session.driver.answer(IDYES);
  session.show([](HWND dialog, const ShownList& list) {
    list.click(3);
    press(dialog, IDC_FOLDERS_REMOVEALL);
    CHECK(list.texts() == Lines{L"C:\\Machine a", L"C:\\Machine b"});
    CHECK(list.selected() >= 0);
    CHECK(enabledButtons(dialog) == machineRowEnabled);
  });
  checkBox(session, L"Are you sure you want to remove all folders?", MB_ICONQUESTION,
           {L"Yes", L"No"});
}

TEST_CASE("remove all of the user's folders alone empties the list") {
  FolderDialog session;
  listForUser(session.registry, L"C:\\User a");
  listForUser(session.registry, L"C:\\User b");
  session.driver.answer(IDYES);
  session.show([](HWND dialog, const ShownList& list) {
    press(dialog, IDC_FOLDERS_REMOVEALL);
    CHECK(list.count() == 0);
    CHECK(enabledButtons(dialog) == noneEnabled);
  });
}

TEST_CASE("remove all that was declined removes nothing") {
  FolderDialog session;
  listForUser(session.registry, L"C:\\User a");
  listForUser(session.registry, L"C:\\User b");
  session.driver.answer(IDNO);
  session.show([](HWND dialog, const ShownList& list) {
    press(dialog, IDC_FOLDERS_REMOVEALL);
    CHECK(list.count() == 2);
    CHECK(enabledButtons(dialog) == userRowEnabled);
  });
}

TEST_CASE("OK stores the user's folders with the path as name and value") {
  FolderDialog session;
  const ScratchFolder folder;
  listForMachine(session.registry, L"C:\\Machine");
  listForUser(session.registry, L"C:\\Old");
  session.registry.setString(HKEY_CURRENT_USER, userFolders, L"C:\\Kept", L"C:\\Other data");
  session.picker.choose(folder.path());
  session.driver.answer(IDYES);
  const bool saved = session.show([&](HWND dialog, const ShownList& list) {
    press(dialog, IDC_FOLDERS_ADD);
    list.click(list.text(1) == L"C:\\Old" ? 1 : 2);
    press(dialog, IDC_FOLDERS_REMOVE);
    session.output.clear();
    press(dialog, IDOK);
    CHECK(session.output.messages() ==
          Lines{L"Saving DWT list...", L"User folder: C:\\Kept", L"User folder: " + folder.path()});
  });
  CHECK(saved);
  CHECK(session.stored().size() == 2);
  CHECK(session.registry.string(HKEY_CURRENT_USER, userFolders, L"C:\\Kept") == L"C:\\Kept");
  CHECK(session.registry.string(HKEY_CURRENT_USER, userFolders, folder.path()) == folder.path());
  CHECK(session.registry.valueNames(HKEY_LOCAL_MACHINE, machineFolders) == Lines{L"C:\\Machine"});
}

TEST_CASE("OK with machine-wide folders only leaves the section of the user deleted") {
  FolderDialog session;
  listForMachine(session.registry, L"C:\\Machine");
  listForUser(session.registry, L"C:\\User");
  session.driver.answer(IDYES);
  const bool saved = session.show([&](HWND dialog, const ShownList&) {
    press(dialog, IDC_FOLDERS_REMOVEALL);
    session.output.clear();
    press(dialog, IDOK);
    CHECK(session.output.messages() == Lines{L"Saving DWT list..."});
  });
  CHECK(saved);
  CHECK_FALSE(session.registry.hasKey(HKEY_CURRENT_USER, userFolders));
}

TEST_CASE("OK on an empty list is a success") {
  FolderDialog session;
  CHECK(session.show([](HWND dialog, const ShownList&) { press(dialog, IDOK); }));
  CHECK_FALSE(session.registry.hasKey(HKEY_CURRENT_USER, userFolders));
}

TEST_CASE("nothing is stored before OK") {
  FolderDialog session;
  listForUser(session.registry, L"C:\\User");
  session.driver.answer(IDYES);
  session.show([&](HWND dialog, const ShownList& list) {
    press(dialog, IDC_FOLDERS_REMOVE);
    CHECK(list.count() == 0);
    CHECK(session.stored() == Lines{L"C:\\User"});
  });
}

TEST_CASE("cancel and the close box and Escape store nothing") {
  using Way = void (*)(HWND dialog, HWND list);
  const Way ways[] = {[](HWND dialog, HWND) { press(dialog, IDCANCEL); },
                      [](HWND dialog, HWND) { SendMessageW(dialog, WM_CLOSE, 0, 0); },
                      [](HWND dialog, HWND) { SendMessageW(dialog, WM_SYSCOMMAND, SC_CLOSE, 0); },
                      [](HWND, HWND list) { PostMessageW(list, WM_KEYDOWN, VK_ESCAPE, 1); }};
  for (const Way leave : ways) {
    FolderDialog session;
    listForUser(session.registry, L"C:\\User");
    session.driver.answer(IDYES);
    CHECK_FALSE(session.show([&](HWND dialog, const ShownList& list) {
      press(dialog, IDC_FOLDERS_REMOVE);
      CHECK(list.count() == 0);
      leave(dialog, list.hwnd());
      PostMessageW(dialog, WM_COMMAND, IDOK, 0);  // a dialog that is still open stores the list
    }));
    CHECK(session.stored() == Lines{L"C:\\User"});
  }
}

TEST_CASE("a sorted folder list is stored in the order in which it stands") {
  FolderDialog session;
  listForUser(session.registry, L"C:\\a");
  listForUser(session.registry, L"C:\\b");
  listForUser(session.registry, L"C:\\c");
  session.show([&](HWND dialog, const ShownList& list) {
    list.clickHeader();
    list.clickHeader();
    CHECK(list.texts() == Lines{L"C:\\c", L"C:\\b", L"C:\\a"});
    press(dialog, IDOK);
    CHECK(session.output.messages() == Lines{L"Saving DWT list...", L"User folder: C:\\c",
                                             L"User folder: C:\\b", L"User folder: C:\\a"});
  });
}

TEST_CASE("a sorted folder list removes and edits the row that is selected") {
  FolderDialog session;
  const ScratchFolder folder;
  for (const wchar_t* path : {L"C:\\a", L"C:\\b", L"C:\\c"}) listForUser(session.registry, path);
  session.picker.choose(folder.path());
  session.driver.answer(IDYES);
  session.show([&](HWND dialog, const ShownList& list) {
    list.clickHeader();
    list.clickHeader();
    list.click(0);
    press(dialog, IDC_FOLDERS_REMOVE);
    CHECK(list.texts() == Lines{L"C:\\b", L"C:\\a"});
    press(dialog, IDC_FOLDERS_EDIT);
    CHECK(list.texts() == Lines{folder.path(), L"C:\\a"});
    press(dialog, IDOK);
  });
  CHECK(session.stored().size() == 2);
  CHECK(session.registry.string(HKEY_CURRENT_USER, userFolders, folder.path()) == folder.path());
}

TEST_CASE("paths with umlauts and percent signs and quotes are stored as they are") {
  FolderDialog session;
  const std::wstring path = L"C:\\100% \x00E4\x00F6\x00FC's & more";
  listForUser(session.registry, path);
  session.show([](HWND dialog, const ShownList&) { press(dialog, IDOK); });
  CHECK(session.registry.string(HKEY_CURRENT_USER, userFolders, path) == path);
}

TEST_CASE("a folder that cannot be stored is logged and the dialog stays open") {
  FolderDialog session;
  for (const wchar_t* path : {L"C:\\a", L"C:\\b", L"C:\\c"}) listForUser(session.registry, path);
  const RefusedValue refused("C:\\b");
  const bool saved = session.show([&](HWND dialog, const ShownList& list) {
    press(dialog, IDOK);
    CHECK(IsWindowVisible(dialog));
    CHECK(list.count() == 3);
    CHECK(session.output.messages() ==
          Lines{L"Saving DWT list...", L"User folder: C:\\a",
                L"ERROR in procedure cmdOk_Click of Form frmManageDWTFolders. Error : 5\tInvalid "
                L"procedure call or argument"});
  });
  CHECK_FALSE(saved);
  CHECK(session.stored() == Lines{L"C:\\a"});
  CHECK(session.driver.boxes().empty());
}

TEST_CASE("a stored list that cannot be deleted is logged and left as it was") {
  FolderDialog session;
  listForUser(session.registry, L"C:\\User");
  const ImportPatch patch(nullptr, "shlwapi.dll", "SHDeleteKeyA", refuseDeletion);
  const bool saved = session.show([&](HWND dialog, const ShownList&) {
    press(dialog, IDOK);
    CHECK(IsWindowVisible(dialog));
    CHECK(session.output.messages() == Lines{L"ERROR in procedure cmdOk_Click of Form "
                                             L"frmManageDWTFolders. Error : 5\tInvalid procedure "
                                             L"call or argument"});
  });
  CHECK_FALSE(saved);
  CHECK(session.stored() == Lines{L"C:\\User"});
}

TEST_CASE("a row that cannot be removed is logged and the dialog stays open") {
  FolderDialog session;
  listForUser(session.registry, L"C:\\User");
  session.driver.answer(IDYES);
  session.show([&](HWND dialog, const ShownList& list) {
    {
      const SilentRows silent(list.hwnd());
      press(dialog, IDC_FOLDERS_REMOVE);
    }
    CHECK(IsWindowVisible(dialog));
    CHECK(list.texts() == Lines{L"C:\\User"});
    CHECK(session.output.messages() == Lines{L"ERROR in procedure cmdRemove_Click of Form "
                                             L"frmManageDWTFolders. Error : 9\tSubscript out of "
                                             L"range"});
  });
  CHECK(session.wasOpen);
}

TEST_CASE("a row that cannot be read when it is selected is logged and the dialog stays open") {
  FolderDialog session;
  listForUser(session.registry, L"C:\\User");
  listForUser(session.registry, L"D:\\User");
  session.show([&](HWND dialog, const ShownList& list) {
    {
      const SilentRows silent(list.hwnd());
      list.click(1);
    }
    CHECK(IsWindowVisible(dialog));
    CHECK(
        session.output.messages() ==
        Lines{L"ERROR in procedure lvSelectedFolders_ItemClick of Form frmManageDWTFolders. Error "
              L": 9\tSubscript out of range"});
  });
  CHECK(session.wasOpen);
}

TEST_CASE("a folder list that cannot be read is logged and the dialog opens") {
  FolderDialog session;
  listForMachine(session.registry, L"C:\\T");
  const ImportPatch patch(nullptr, "advapi32.dll", "RegEnumValueA", enumerateForEver);
  session.driver.onDialog(dialogCaption, [](HWND dialog) {
    CHECK(ShownList(dialog).count() == 0);
    CHECK(enabledButtons(dialog) == noneEnabled);
    CHECK_FALSE(isEnabled(dialog, IDOK));
    press(dialog, IDCANCEL);
  });
  CHECK_FALSE(ShowFolderDialog(nullptr));
  CHECK(session.driver.dialogs() == Lines{dialogCaption});
  CHECK(session.output.messages().back() ==
        L"ERROR in procedure Form_Load of Form frmManageDWTFolders. Error : 6\tOverflow");
}

TEST_CASE("add and edit log their errors under the same name") {
  FolderDialog session;
  listForUser(session.registry, L"C:\\User");
  session.picker.fail([] { throw Error(errors::outOfMemory); });
  const std::wstring line =
      L"ERROR in procedure cmdAdd_Click of Form frmManageDWTFolders. Error : 7\tOut of memory";
  session.show([&](HWND dialog, const ShownList&) {
    press(dialog, IDC_FOLDERS_ADD);
    press(dialog, IDC_FOLDERS_EDIT);
    CHECK(session.output.messages() == Lines{line, L"Path Name : C:\\User", line});
    CHECK(IsWindowVisible(dialog));
  });
}

TEST_CASE("the Delete key in the folder list removes the selected folder") {
  FolderDialog session;
  listForUser(session.registry, L"C:\\User");
  session.driver.answer(IDYES);
  session.show([](HWND, const ShownList& list) {
    list.pressKey(VK_DELETE);
    CHECK(list.count() == 0);
  });
  checkBox(session, L"Are you sure you want to remove the selected folder?", MB_ICONQUESTION,
           {L"Yes", L"No"});
}

TEST_CASE("the Delete key removes one folder however many there are") {
  FolderDialog session;
  for (const wchar_t* path : {L"C:\\a", L"C:\\b", L"C:\\c"}) listForUser(session.registry, path);
  session.driver.answer(IDYES);
  session.driver.answer(IDYES);
  session.show([](HWND, const ShownList& list) {
    list.pressKey(VK_DELETE);
    CHECK(list.texts() == Lines{L"C:\\b", L"C:\\c"});
  });
  CHECK(session.driver.boxes().size() == 1);
}

TEST_CASE("the Delete key removes nothing while a button has the focus") {
  FolderDialog session;
  listForUser(session.registry, L"C:\\User");
  session.driver.answer(IDYES);
  session.show([](HWND dialog, const ShownList& list) {
    const HWND button = GetDlgItem(dialog, IDC_FOLDERS_ADD);
    PostMessageW(button, WM_KEYDOWN, VK_DELETE, 0);
    PostMessageW(button, WM_KEYUP, VK_DELETE, 0);
    forms::yieldToMessages();
    CHECK(list.count() == 1);
  });
  CHECK(session.driver.boxes().empty());
}

TEST_CASE("the Delete key leaves a machine-wide folder alone") {
  FolderDialog session;
  listForMachine(session.registry, L"C:\\Machine");
  session.show([](HWND, const ShownList& list) {
    list.pressKey(VK_DELETE);
    CHECK(list.count() == 1);
  });
  CHECK(session.driver.boxes().empty());
}

TEST_CASE("a double click edits a folder of the user only") {
  FolderDialog session;
  listForMachine(session.registry, L"C:\\Machine");
  listForUser(session.registry, L"C:\\User");
  session.show([&](HWND, const ShownList& list) {
    list.doubleClick(0);
    CHECK(session.picker.shown.empty());
    list.click(1);
    list.doubleClick(1);
    CHECK(session.picker.shown.size() == 1);
    CHECK(session.output.messages() == Lines{L"Path Name : C:\\User"});
  });
}

TEST_CASE("the folder list grows with its dialog and the buttons keep their edges") {
  FolderDialog session;
  session.show([](HWND dialog, const ShownList& list) {
    UpdateWindow(dialog);
    UpdateWindow(GetDlgItem(dialog, IDC_FOLDERS_ADD));
    const RECT listBefore = placeOf(list.hwnd());
    const RECT addBefore = placeOf(GetDlgItem(dialog, IDC_FOLDERS_ADD));
    const RECT okBefore = placeOf(GetDlgItem(dialog, IDOK));
    RECT window;
    GetWindowRect(dialog, &window);
    const int width = window.right - window.left;
    const int height = window.bottom - window.top;
    SetWindowPos(dialog, nullptr, 0, 0, width + 60, height + 40, SWP_NOMOVE | SWP_NOZORDER);
    const RECT listAfter = placeOf(list.hwnd());
    const RECT addAfter = placeOf(GetDlgItem(dialog, IDC_FOLDERS_ADD));
    const RECT okAfter = placeOf(GetDlgItem(dialog, IDOK));
    CHECK(listAfter.left == listBefore.left);
    CHECK(listAfter.right == listBefore.right + 60);
    CHECK(listAfter.bottom == listBefore.bottom + 40);
    CHECK(addAfter.left == addBefore.left + 60);
    CHECK(addAfter.top == addBefore.top);
    CHECK(okAfter.left == okBefore.left + 60);
    CHECK(okAfter.top == okBefore.top + 40);
    // What moved is painted anew.
    CHECK(GetUpdateRect(GetDlgItem(dialog, IDC_FOLDERS_ADD), nullptr, FALSE));
    SetWindowPos(dialog, nullptr, 0, 0, 10, 10, SWP_NOMOVE | SWP_NOZORDER);
    GetWindowRect(dialog, &window);
    CHECK(window.right - window.left == width);
    CHECK(window.bottom - window.top == height);
  });
  CHECK(session.wasOpen);
}

TEST_CASE("the folder dialog gives back every handle") {
  const long before = handles::liveCount();
  FolderDialog session;
  listForUser(session.registry, L"C:\\User");
  session.show([](HWND dialog, const ShownList&) { press(dialog, IDOK); });
  CHECK(handles::liveCount() == before);
}
