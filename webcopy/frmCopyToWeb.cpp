#include "webcopy/frmCopyToWeb.h"

#include <utility>

#include "addin/host/environment.h"
#include "webcopy/resource.h"

namespace {

// A host that imports a large file leaves no time for painting, so what changes is painted at once.
void paintNow(const forms::Control& control) noexcept { UpdateWindow(control.hwnd()); }

}  // namespace

frmCopyToWeb::frmCopyToWeb()
    : Form(L"frmCopyToWeb", IDD_COPYTOWEB, L"Copying"),
      lblDWT(*this, IDC_COPYTOWEB_LBLDWT),
      lblDWTName(*this, IDC_COPYTOWEB_LBLDWTNAME),
      lblToWeb(*this, IDC_COPYTOWEB_LBLTOWEB),
      txtWebName(*this, IDC_COPYTOWEB_TXTWEBNAME),
      lblOverAllProgress(*this, IDC_COPYTOWEB_LBLOVERALLPROGRESS),
      lblStatusOverall(*this, IDC_COPYTOWEB_LBLSTATUSOVERALL),
      pbOverall(*this, IDC_COPYTOWEB_PBOVERALL),
      lblCurrentProgress(*this, IDC_COPYTOWEB_LBLCURRENTPROGRESS),
      lblStatusCurrent(*this, IDC_COPYTOWEB_LBLSTATUSCURRENT),
      pbCurrent(*this, IDC_COPYTOWEB_PBCURRENT),
      txtStatusCurrent(*this, IDC_COPYTOWEB_TXTSTATUSCURRENT),
      cmdCancel(*this, IDCANCEL) {
  cmdCancel.onClick = [this] { cmdCancel_Click(); };
}

bool frmCopyToWeb::CopyTemplateFolder(std::wstring destinationFolder, SourceItem item, HWND owner) {
  CopyRunView& view = *this;
  run_.emplace(hostApplication(), std::move(destinationFolder), std::move(item), view);
  showModal(owner ? owner : modCommon::GetHostMainWindow());
  // A host that is closing takes the window away before the run has begun.
  const bool copied = started_ && run_->continueFlag();
  run_.reset();
  return copied;
}

void frmCopyToWeb::Form_Load() { cmdCancel.focus(); }

void frmCopyToWeb::Form_Activate() {
  handle(L"Form_Activate", [this] {
    started_ = true;
    BringWindowToTop(hwnd());
    try {
      run_->EH_CopyDWTToWeb();
    } catch (const Error& error) {
      // The run has logged its cancel.
      if (error.number() != errors::cancelled) throw;
    }
  });
  // While the run could still call the host, the host's windows had to stay disabled.
  if (done_ || !run_->continueFlag()) Form::unload();
}

void frmCopyToWeb::cmdCancel_Click() {
  handle(L"cmdCancel_Click", [this] {
    if (!run_->continueFlag()) return;
    if (message(L"Do you want to cancel the operation?", MB_YESNO | MB_ICONQUESTION) != IDYES)
      return;
    run_->cancel();
    cmdCancel.setEnabled(false);
    // A run is still on the stack, perhaps below an event loop of the host's own, and the window
    // must not free the others before it has returned: Form_Activate unloads then.
    if (!started_) Form::unload();
  });
}

bool frmCopyToWeb::keepGoing() {
  forms::yieldToMessages();
  // A host that is closing takes the window away without asking for a cancel.
  return !isUnloaded() && run_->continueFlag();
}

void frmCopyToWeb::showWeb(const std::wstring& url) {
  txtWebName.setText(url);
  txtWebName.setToolTip(url);
  paintNow(txtWebName);
}

void frmCopyToWeb::showTemplate(const std::wstring& title) {
  lblDWTName.setText(title);
  paintNow(lblDWTName);
}

void frmCopyToWeb::showOverallStatus(const std::wstring& text) {
  lblStatusOverall.setText(text);
  paintNow(lblStatusOverall);
}

void frmCopyToWeb::showCurrentStatus(const std::wstring& text) {
  lblStatusCurrent.setText(text);
  paintNow(lblStatusCurrent);
}

void frmCopyToWeb::resetOverall(short maximum) { pbOverall.ResetProgress(maximum); }

void frmCopyToWeb::stepOverall() { pbOverall.StepProgress(1); }

void frmCopyToWeb::resetCurrent(short maximum) { pbCurrent.ResetProgress(maximum); }

void frmCopyToWeb::stepCurrent() { pbCurrent.StepProgress(1); }

void frmCopyToWeb::finishCurrent() { pbCurrent.setValue(pbCurrent.maximum()); }

bool frmCopyToWeb::ask(const std::wstring& text) {
  return message(text, MB_YESNO | MB_ICONQUESTION) == IDYES;
}

void frmCopyToWeb::inform(const std::wstring& text) { message(text, MB_OK | MB_ICONINFORMATION); }

void frmCopyToWeb::fail(const std::wstring& text) { message(text, MB_OK | MB_ICONERROR); }

std::wstring frmCopyToWeb::caption() const { return Form::caption(); }

void frmCopyToWeb::unload() {
  done_ = true;
  cmdCancel.setEnabled(false);
}
