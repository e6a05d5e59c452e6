// The progress dialog that copies one template into the open web. It does its whole run when it is
// first shown.
#pragma once

#include <optional>
#include <string>

#include "common/forms/controls.h"
#include "webcopy/CopyRun.h"

class frmCopyToWeb final : public forms::Form, private CopyRunView {
 public:
  frmCopyToWeb();

  // Copies the template folder of `item` into a folder of the web that is open in the host. True
  // when it was copied to the end; false when the user cancelled or declined to overwrite, or an
  // error stopped the run. Raises an Error (429) when there can be no window. Used once.
  bool CopyTemplateFolder(std::wstring destinationFolder, SourceItem item, HWND owner);

 private:
  void Form_Load() override;
  void Form_Activate() override;
  void cmdCancel_Click();

  bool keepGoing() override;
  void showWeb(const std::wstring& url) override;
  void showTemplate(const std::wstring& title) override;
  void showOverallStatus(const std::wstring& text) override;
  void showCurrentStatus(const std::wstring& text) override;
  void resetOverall(short maximum) override;
  void stepOverall() override;
  void resetCurrent(short maximum) override;
  void stepCurrent() override;
  void finishCurrent() override;
  bool ask(const std::wstring& text) override;
  void inform(const std::wstring& text) override;
  void fail(const std::wstring& text) override;
  std::wstring caption() const override;
  void unload() override;

  forms::Label lblDWT;
  forms::Label lblDWTName;
  forms::Label lblToWeb;
  forms::TextBox txtWebName;
  forms::Label lblOverAllProgress;
  forms::Label lblStatusOverall;
  forms::ProgressBar pbOverall;
  forms::Label lblCurrentProgress;
  forms::Label lblStatusCurrent;
  forms::ProgressBar pbCurrent;
  forms::TextBox txtStatusCurrent;  // unused
  forms::Button cmdCancel;

  std::optional<CopyRun> run_;
  bool started_ = false;
  bool done_ = false;  // the run wants its window gone
};
