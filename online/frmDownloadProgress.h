// The download dialog: sizes, transfers and unpacks what a download page asks for, when it is first
// shown.
#pragma once

#include <optional>
#include <string>

#include "addin/host/HostApplication.h"
#include "common/forms/Form.h"
#include "common/forms/controls.h"
#include "online/transfer/DownloadRun.h"
#include "online/transfer/DownloadView.h"

class frmDownloadProgress : public forms::Form, private DownloadView {
 public:
  explicit frmDownloadProgress(HostApplication host);

  // What the catalogue window hands in, and what it gets back. The application-data folder and the
  // agent string are accepted for the caller's sake and not used.
  struct Request {
    std::wstring pageAddress;
    std::wstring applicationData;
    std::wstring destinationFolder;
    std::wstring destinationTag;  // the list's letter
    std::wstring agent;
  };
  // True when the download completed and was not cancelled. `destinationFolder` is the folder that
  // was used; `completed` tells whether every archive was handled, whatever the user did.
  bool RunModal(std::wstring& destinationFolder, bool& completed, const Request& request,
                HWND owner);

 private:
  void Form_Load() override;
  void Form_Activate() override;
  void Form_Unload() override;
  void cmdCancel_Click();
  bool runRequest(std::wstring& destinationFolder, bool& completed, const Request& request,
                  HWND owner);
  std::wstring hostVersion() const noexcept;

  bool keepGoing() override;
  void showCaption(const std::wstring& text) override;
  void showCurrent(const std::wstring& text) override { lblCurrentDownload.setText(text); }
  void showCurrentSize(const std::wstring& text) override { lblCurrentDownloadSize.setText(text); }
  void showOverallSize(const std::wstring& text) override { lblOverallDownloadSize.setText(text); }
  void resetCurrent(short maximum) override { prbDownloadProgress.ResetProgress(maximum); }
  void stepCurrent(short by) override { prbDownloadProgress.StepProgress(by); }
  void resetOverall(short maximum) override { prbOverallProgress.ResetProgress(maximum); }
  void stepOverall() override { prbOverallProgress.StepProgress(1); }
  void disableCancel() override { cmdCancel.setEnabled(false); }
  void fail(std::wstring_view text, std::wstring_view title) noexcept override;
  bool ask(const std::wstring& text) override;
  Overwrite overwrite(const std::wstring& name) override;
  std::optional<std::wstring> password(int longest) override;

  HostApplication host_;
  std::optional<DownloadRun> run_;
  bool cancelled_ = false;

  forms::Label lblCurrentDownload;
  forms::ProgressBar prbDownloadProgress;
  forms::Label lblCurrentDownloadSize;
  forms::ProgressBar prbOverallProgress;
  forms::Label lblOverallDownloadSize;
  forms::Button cmdCancel;
};
