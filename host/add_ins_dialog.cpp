#include "host/add_ins_dialog.h"

#include <commctrl.h>

#include "host/resource.h"

namespace standin {
namespace {

class AddInsDialog {
 public:
  explicit AddInsDialog(AddIns& addIns) : addIns_(addIns) {}

  static INT_PTR CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_INITDIALOG) {
      SetWindowLongPtrW(window, DWLP_USER, lParam);
      reinterpret_cast<AddInsDialog*>(lParam)->initialise(window);
      return TRUE;
    }
    auto* self = reinterpret_cast<AddInsDialog*>(GetWindowLongPtrW(window, DWLP_USER));
    if (!self) return FALSE;
    if (message == WM_COMMAND) return self->onCommand(LOWORD(wParam));
    if (message == WM_NOTIFY && reinterpret_cast<NMHDR*>(lParam)->code == LVN_ITEMCHANGED)
      self->enableButtons();
    return FALSE;
  }

 private:
  void initialise(HWND window) {
    window_ = window;
    list_ = GetDlgItem(window, IDC_ADD_INS_LIST);
    ListView_SetExtendedListViewStyle(list_, LVS_EX_FULLROWSELECT);
    const struct {
      const wchar_t* title;
      int width;
    } columns[] = {{L"Name", 120}, {L"Component", 110}, {L"State", 80}};
    int index = 0;
    for (const auto& [title, width] : columns) {
      LVCOLUMNW column = {};
      column.mask = LVCF_TEXT | LVCF_WIDTH;
      column.pszText = const_cast<wchar_t*>(title);
      column.cx = width;
      SendMessageW(list_, LVM_INSERTCOLUMNW, static_cast<WPARAM>(index++),
                   reinterpret_cast<LPARAM>(&column));
    }
    addIns_.find();
    fill();
  }

  void setCell(int row, int column, const std::wstring& text) {
    LVITEMW item = {};
    item.mask = LVIF_TEXT;
    item.iItem = row;
    item.iSubItem = column;
    item.pszText = const_cast<wchar_t*>(text.c_str());
    if (column == 0)
      SendMessageW(list_, LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item));
    else
      SendMessageW(list_, LVM_SETITEMW, 0, reinterpret_cast<LPARAM>(&item));
  }

  void fill() {
    const int selected = selection();
    ListView_DeleteAllItems(list_);
    int row = 0;
    for (const AddIn& addIn : addIns_.list()) {
      setCell(row, 0, addIn.friendlyName.empty() ? addIn.progId : addIn.friendlyName);
      setCell(row, 1, addIn.progId);
      setCell(row, 2,
              addIn.connected         ? L"Loaded"
              : addIn.failure.empty() ? L"Not loaded"
                                      : addIn.failure);
      ++row;
    }
    ListView_SetItemState(list_, selected < 0 ? 0 : selected, LVIS_SELECTED | LVIS_FOCUSED,
                          LVIS_SELECTED | LVIS_FOCUSED);
    enableButtons();
  }

  int selection() const { return ListView_GetNextItem(list_, -1, LVNI_SELECTED); }

  const AddIn* selected() const {
    const int row = selection();
    return row < 0 ? nullptr : &addIns_.list()[static_cast<std::size_t>(row)];
  }

  void enableButtons() {
    const AddIn* addIn = selected();
    EnableWindow(GetDlgItem(window_, IDC_LOAD), addIn && !addIn->connected);
    EnableWindow(GetDlgItem(window_, IDC_UNLOAD), addIn && addIn->connected);
  }

  INT_PTR onCommand(int id) {
    const AddIn* addIn = selected();
    if (id == IDCANCEL || id == IDOK) {
      EndDialog(window_, id);
    } else if (addIn && id == IDC_LOAD) {
      // A copy: looking for new add-ins may move those that are listed.
      if (const std::wstring progId = addIn->progId; !addIns_.load(progId))
        MessageBoxW(window_, selected()->failure.c_str(), L"Add-ins", MB_ICONEXCLAMATION);
      fill();
    } else if (addIn && id == IDC_UNLOAD) {
      addIns_.unload(addIn->progId);
      fill();
    } else {
      return FALSE;
    }
    return TRUE;
  }

  AddIns& addIns_;
  HWND window_ = nullptr;
  HWND list_ = nullptr;
};

}  // namespace

void showAddInsDialog(HWND owner, AddIns& addIns) {
  AddInsDialog dialog(addIns);
  DialogBoxParamW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(IDD_ADD_INS), owner,
                  AddInsDialog::procedure, reinterpret_cast<LPARAM>(&dialog));
}

}  // namespace standin
