// The "DWT Online" window: the catalogue's pages in an embedded browser, and the folder that what
// is downloaded goes to.
#pragma once

#include <string>

#include "addin/host/HostApplication.h"
#include "common/forms/Form.h"
#include "common/forms/ImageList.h"
#include "common/forms/Toolbar.h"
#include "common/forms/WebBrowser.h"
#include "common/forms/controls.h"
#include "online/DestinationMenu.h"
#include "online/RefusedDownloads.h"

class frmDWTOnline : public forms::Form {
 public:
  explicit frmDWTOnline(HostApplication host);

  // What the caller does after the window has closed.
  enum CloseReason : short {
    nothing = 0,
    downloaded = 1,   // a download was completed
    showBrowser = 2,  // the user asked for the template browser
  };

  // Shows the window over `owner`. Opened from the browser, it does not offer to open it.
  short RunOnline(bool openedFromBrowser, HWND owner);

 private:
  void Form_Load() override;
  void Form_Resize() override;
  void Form_Unload() override;
  bool onMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) override;
  bool preTranslate(MSG& message) override;
  bool openHelp(const wchar_t* topic, HWND owner) override;

  void load();
  std::wstring readStartPage();
  void buildToolbar();
  void complain(const wchar_t* procedure, const Error& error) const noexcept;
  void buildMenu();
  std::wstring readApplicationData() const;
  void restoreDestination();
  void openStartPage(const std::wstring& startPage);

  void tbDWTOnline_ButtonClick(const std::wstring& key);
  void tbDestPath_ButtonDropDown();
  void mnuFolder_Click(const DestinationEntry& entry);
  void browseForDestination();
  std::wstring destination() const;  // empty when there is none
  void setDestination(const std::wstring& path, const std::wstring& tag);
  void addToUserFolders(const std::wstring& path);
  template <class Body>
  void handleMenu(Body&& body) const noexcept;

  void wbDWTOnline_BeforeNavigate2(const std::wstring& address, bool topFrame, bool& cancel);
  void wbDWTOnline_DocumentComplete(bool topFrame);
  void wbDWTOnline_CommandStateChange(long command, bool enable);
  void askForDownload(const std::wstring& address, const std::wstring& extraInformation);
  void runDownload(const std::wstring& address, const std::wstring& extraInformation);
  bool downloadTo(std::wstring& folder, const std::wstring& address);
  void finish(const std::wstring& extraInformation);
  void showSuccessPage(const std::wstring& address);
  void stopSuccessPage();
  void switchOff() noexcept;
  void switchOn() noexcept;
  bool isCovered() const noexcept;
  void startUnloadTimer();
  void stopUnloadTimer() noexcept;
  void tmrUnloadMe_Timer();

  HostApplication host_;
  std::wstring hostVersion_;
  short CloseReason_ = nothing;
  bool OpenedFromBrowser_ = false;
  bool DownloadCompleted_ = false;
  bool UnloadArmed_ = false;
  bool FullyLoaded_ = false;
  bool timerRuns_ = false;
  bool inDownload_ = false;
  bool switchedOff_ = false;  // from a completed download to the next page
  RefusedDownloads refused_;
  DestinationMenu menu_;
  forms::ImageList pictures_;
  forms::ImageList disabledPictures_;
  forms::ImageList folderPictures_;

  forms::Toolbar tbDWTOnline;
  forms::Label picSaveIn;
  forms::Toolbar tbDestPath;
  forms::WebBrowser wbDWTOnline;
};
