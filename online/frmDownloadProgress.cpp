#include "online/frmDownloadProgress.h"

#include "online/DestinationMenu.h"
#include "online/resource.h"
#include "online/unpacking_boxes.h"

namespace {

void logRunModalError(const Error& error) {
  modCommon::reportErrorOfForm(L"RunModal", L"frmDownloadDlg", error);
}

}  // namespace

frmDownloadProgress::frmDownloadProgress(HostApplication host)
    : Form(L"frmDownloadProgress", IDD_DOWNLOAD, L"Downloading"),
      host_(std::move(host)),
      lblCurrentDownload(*this, IDC_DOWNLOAD_CURRENT),
      prbDownloadProgress(*this, IDC_DOWNLOAD_CURRENTBAR),
      lblCurrentDownloadSize(*this, IDC_DOWNLOAD_CURRENTSIZE),
      prbOverallProgress(*this, IDC_DOWNLOAD_OVERALLBAR),
      lblOverallDownloadSize(*this, IDC_DOWNLOAD_OVERALLSIZE),
      cmdCancel(*this, IDCANCEL) {
  cmdCancel.onClick = [this] { cmdCancel_Click(); };
}

bool frmDownloadProgress::RunModal(std::wstring& destinationFolder, bool& completed,
                                   const Request& request, HWND owner) {
  try {
    return runRequest(destinationFolder, completed, request, owner);
  } catch (...) {  // Not run by tests: what fails in the run ends there.
    logRunModalError(errors::current());
    return false;
  }
}

// Only the user's themes need it: a host that does not tell still has its templates.
std::wstring frmDownloadProgress::hostVersion() const noexcept {
  try {
    return host_.version();
  } catch (...) {
    logRunModalError(errors::current());
    return {};
  }
}

bool frmDownloadProgress::runRequest(std::wstring& destinationFolder, bool& completed,
                                     const Request& request, HWND owner) {
  cancelled_ = false;
  const bool machineWide = request.destinationTag == DestinationMenu::machineTag;
  DownloadView& view = *this;
  run_.emplace(DownloadRequest{.pageAddress = request.pageAddress,
                               .destinationFolder = request.destinationFolder,
                               .machineWide = machineWide,
                               .hostVersion = hostVersion()},
               view);
  run_->ExtractAndCanonicalizeUrl();
  if (run_->table().addressCount() == 0) {
    showMessage(owner, L"Could not extract download information.", MB_ICONHAND, L"DWT Online");
    return false;
  }
  showModal(owner);
  completed = run_->completed();
  destinationFolder = run_->destinationFolder();
  return completed && !cancelled_;
}

void frmDownloadProgress::Form_Load() {
  if (!run_->load()) unload();
}

void frmDownloadProgress::Form_Activate() {
  run_->run();
  unload();
}

void frmDownloadProgress::Form_Unload() { run_->unload(); }

// A run that is under way notices at its next step.
void frmDownloadProgress::cmdCancel_Click() {
  cancelled_ = true;
  unload();
}

bool frmDownloadProgress::keepGoing() {
  forms::yieldToMessages();
  // A host that is closing takes the window away without asking for a cancel.
  return !cancelled_ && !isUnloaded();
}

void frmDownloadProgress::showCaption(const std::wstring& text) {
  SetWindowTextW(hwnd(), text.c_str());
}

void frmDownloadProgress::fail(std::wstring_view text, std::wstring_view title) noexcept {
  showMessage(boxOwner(), text, MB_ICONHAND, title);
}

bool frmDownloadProgress::ask(const std::wstring& text) { return message(text, MB_YESNO) == IDYES; }

// Not run by tests: downloads are unpacked over what is there.
UnpackingQuestions::Overwrite frmDownloadProgress::overwrite(const std::wstring& name) {
  return online::askToOverwrite(boxOwner(), name);
}

std::optional<std::wstring> frmDownloadProgress::password(int longest) {
  return online::askForPassword(boxOwner(), longest);
}
