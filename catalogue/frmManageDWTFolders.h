// "Manage Dynamic Web Template Folders": which folders are scanned for templates.
#pragma once

#include <windows.h>

#include "catalogue/FolderListEdit.h"
#include "common/forms/Form.h"
#include "common/forms/ImageList.h"
#include "common/forms/ListView.h"
#include "common/forms/controls.h"

class frmManageDWTFolders : public forms::Form {
 public:
  frmManageDWTFolders();

  // Modal over `owner`. True when the list was saved.
  bool ShowFolderDialog(HWND owner);

 private:
  // The list control as the edited list's rows.
  class Rows final : public FolderRows {
   public:
    explicit Rows(forms::ListView& list) : list_(list) {}
    int count() const override { return list_.count(); }
    ListedFolder row(int index) const override;
    int find(std::wstring_view path) const override { return list_.find(path); }
    int selected() const override { return list_.selected(); }
    void select(int index) override { list_.select(index); }
    int add(const ListedFolder& row) override;
    void setPath(int index, std::wstring_view path) override { list_.setText(index, path); }
    void removeAt(int index) override { list_.removeAt(index); }
    void clear() override { list_.clear(); }

   private:
    forms::ListView& list_;
  };

  void Form_Load() override;
  void Form_Resize() override { lvSelectedFolders.autoSizeColumn(); }
  bool preTranslate(MSG& message) override;

  void lvSelectedFolders_ItemClick();
  void cmdAdd_Click();
  void cmdEdit_Click();
  void cmdRemove_Click();
  void cmdRemoveAll_Click();
  void cmdOk_Click();

  void loadIcons();
  void keepEdges();
  // A box titled with the application's title; only one of them bears the dialog's caption.
  int tell(std::wstring_view text, UINT style) const noexcept;
  bool pickFolder(std::wstring& path);
  void accept(const std::wstring& path);
  std::wstring selectedPath() const;

  forms::ImageList ilIcons_;
  forms::Label Label1;
  forms::ListView lvSelectedFolders;
  forms::Button cmdAdd;
  forms::Button cmdEdit;
  forms::Button cmdRemove;
  forms::Button cmdRemoveAll;
  forms::Button cmdOK;
  forms::Button cmdCancel;

  Rows rows_{lvSelectedFolders};
  FolderListEdit edit_{rows_};
  bool saved_ = false;
};

// Shows the dialog. True when the user left it with OK: the templates are to be listed again.
bool ShowFolderDialog(HWND owner);
