// "Dynamic Web Template Browser": lists the templates, previews the selected one and copies it into
// the open web.
#pragma once

#include <windows.h>

#include <optional>
#include <string>

#include "addin/host/HostApplication.h"
#include "catalogue/Preview.h"
#include "catalogue/TemplateScan.h"
#include "common/forms/Form.h"
#include "common/forms/ListView.h"
#include "common/forms/PictureBox.h"
#include "common/forms/Splitter.h"
#include "common/forms/WebBrowser.h"
#include "common/forms/controls.h"

class frmQuillet : public forms::Form, private TemplateScanView {
 public:
  explicit frmQuillet(HostApplication& host);
  ~frmQuillet() override;

  // Modal over `owner`. The first argument tells whether the online catalogue was left for this
  // window; both ways open the same window.
  void ShowQuillet(bool openedFromOnline, HWND owner);

 private:
  class Scanning;

  void Form_Load() override;
  void Form_Resize() override;
  void Form_Unload() override;
  bool onMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) override;
  bool preTranslate(MSG& message) override;
  bool openHelp(const wchar_t* topic, HWND owner) override;

  // The scan's view of this window.
  bool keepGoing() override;
  bool isListed(std::wstring_view key) override { return templates_.has(key); }
  void add(const TemplateEntry& entry) override;
  int count() override { return lvDWTs.count(); }
  void showFolder(std::wstring_view folder) override;
  void showUnopened(std::wstring_view text) override;
  void showNotReady(const std::wstring& text) override;
  void showWaitCursor(bool shown) noexcept override;

  void lvListView_ItemClick();
  void xwpPreview_Failed(const Error& error);
  void lvListView_DblClick();
  void lvListView_ContextMenu(LPARAM place);
  void mnuOpenFolder_Click();
  bool cbZoom_MouseWheel(const MSG& message);
  void cboZoom_Click();
  void cmdCopytoWeb_Click();
  void cmdDestFolder_Click();
  void cmdSelect_Click();
  void cmdDWTOnline_Click();
  void cmdDWTNotes_Click();
  void cmdApplyInstructions_Click();
  void cmdHelp_Click();
  void cmdAbout_Click();
  void cmdCancel_Click();
  void wbPreview_BeforeNavigate2(const std::wstring& address, bool topFrame, bool& cancel);
  void wbPreview_NavigateError(const std::wstring& address, bool topFrame, bool& cancel);

  void connectEvents();
  void keepEdges();
  void setUpControls();
  void start();
  bool showStartFailure(const Error& error);
  void writeVersions() const;
  void bringToFront() noexcept;

  void ListTemplates(const std::wstring& wanted = {});
  void readAnew();
  void showList(const std::wstring& wanted);
  void showStatus();
  void restoreSplit();
  void saveSplit() const;
  void clearPreview();
  void enableTemplateButtons(bool enabled);

  std::optional<TemplateEntry> selectedTemplate() const;
  void showDescription(const std::wstring& description);
  void fitDescription() noexcept;
  void showTemplate(const TemplateEntry& entry);
  void showPreview(const Preview& preview);
  void showPicture(const std::wstring& file);
  void showPage(const std::wstring& file);
  bool isFrame(const std::wstring& address) const;
  void showPreviewError();
  void showPlace(bool picture);
  SIZE zoomedSize(SIZE natural) const;

  void offerDefaultFolder(const HostWeb& web);
  bool askForDefault(const HostWeb& web);
  void copyTo(const HostWeb& web, const TemplateEntry& entry);
  void takeDownloads();

  HostApplication& host_;
  TemplateList templates_;    // the list shows them
  std::wstring destination_;  // empty: not chosen
  bool cancelled_ = false;    // a scan stops at its next check
  bool scanning_ = false;
  std::optional<forms::WaitCursor> wait_;
  int wheelRest_ = 0;
  std::wstring searching_;  // the folder, while there is one
  std::wstring trouble_;    // why the list may have fewer rows than it should

  forms::Label lblDWTs;
  forms::ListView lvDWTs;
  forms::Label lblStatus;
  forms::Splitter splitter;
  forms::Label lblTitle;
  forms::PictureBox xwpPreview;
  forms::WebBrowser wbPreview;
  forms::Label lblZoom;
  forms::ComboBox cbZoom;
  forms::Label lblDWTDescCaption;
  forms::TextBox lblDWTDesc;  // a label that can be focused, scrolled and copied
  forms::Label lblDWTPathCaption;
  forms::Label lblDWTPath;
  forms::Label lblDestPathCaption;
  forms::Label lblDestPath;
  forms::Button cmdCopytoWeb;
  forms::Button cmdDestFolder;
  forms::Button cmdDWTNotes;
  forms::Button cmdApplyInstructions;
  forms::Button cmdSelect;
  forms::Button cmdDWTOnline;
  forms::Button cmdHelp;
  forms::Button cmdAbout;
  forms::Button cmdCancel;
};
