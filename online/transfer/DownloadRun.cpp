#include "online/transfer/DownloadRun.h"

#include <utility>

#include "addin/host/environment.h"
#include "common/byte_size.h"
#include "common/log.h"
#include "common/paths.h"
#include "common/report.h"
#include "common/text.h"
#include "online/archive/modZipUnzip.h"
#include "online/archive/unzip_files.h"
#include "online/transfer/DownloadSteps.h"
#include "online/transfer/UrlValidation.h"

using modCommon::WriteLog;
using Row = DownloadTable::Row;

namespace {

constexpr wchar_t restartText[] =
    L"One or more DWTs that were installed use FrontPage theme.\r\n"
    L"You must restart FrontPage before you copy these DWTs to the web.";

constexpr wchar_t noApplicationDataText[] =
    L"The folder for application data could not be found. Without it there is no place to download "
    L"to.";

constexpr wchar_t noThemesFolderText[] =
    L"The folder for themes could not be found. Without it there is no place to unpack a theme to.";

// What a file that cannot be written is to the user.
std::wstring failureText(const Error& error) {
  switch (error.number()) {
    case errors::badFileName:
      return L"The disk is not in the drive or the specified path does not exist.";
    case errors::diskNotReady:
      return L"The disk not ready or the specified path does not exist.";
    case errors::permissionDenied:
    case errors::pathFileAccess:
      return L"Invalid file path or the file cannot be written to the specified location";
    case errors::pathNotFound:
      return L"The path could not be found.";
    default:
      return std::wstring(error.description());
  }
}

// The download's view while an archive is unpacked. It notes a stop, which is no failure to show.
class UnpackingView final : public UnpackingQuestions {
 public:
  explicit UnpackingView(DownloadView& view) : view_(view) {}

  bool wasStopped() const noexcept { return stopped_; }
  bool keepGoing() override {
    stopped_ = !view_.keepGoing();
    return !stopped_;
  }
  // Not run by tests: downloads are unpacked over what is there.
  Overwrite overwrite(const std::wstring& name) override { return view_.overwrite(name); }
  std::optional<std::wstring> password(int longest) override { return view_.password(longest); }
  void fail(std::wstring_view text, std::wstring_view title) noexcept override {
    view_.fail(text, title);
  }

 private:
  DownloadView& view_;
  bool stopped_ = false;
};

}  // namespace

DownloadRun::DownloadRun(DownloadRequest request, DownloadView& view)
    : request_(std::move(request)), view_(view) {}

void DownloadRun::ExtractAndCanonicalizeUrl() noexcept {
  WriteLog(L"ENTERING PROCEDURE : ExtractAndCanonicalizeUrl()");
  try {
    const auto parts = modWINInetURL::CrackUrl(request_.pageAddress);
    table_.fill(parts ? parts->extraInfo : std::wstring());
    WriteLog(L"EXITING PROCEDURE : ExtractAndCanonicalizeUrl()");
  } catch (...) {
    modCommon::reportFormErrorText(L"ExtractAndCanonicalizeUrl", downloadForm, errors::current());
  }
}

bool DownloadRun::load() noexcept {
  try {
    prepare();
    return true;
  } catch (...) {
    const Error error = errors::current();
    if (error.number() == errors::cancelled)
      modCommon::reportHandledError(L"Form_Load", downloadForm, error);
    else
      modCommon::reportErrorOfForm(L"Form_Load", downloadForm, error);
    return false;
  }
}

void DownloadRun::prepare() {
  WriteLog(L"Loading the Progress Dialog.... ");
  openInternet();
  if (table_.addressCount() == 0)
    throw Error(errors::cancelled, L"There are no files to download.");
  makeFolders();
}

void DownloadRun::openInternet() {
  WriteLog(L"Opening a handle to the internet.... ");
  if (!session_.open()) {
    const std::wstring text = L"Could not open a connection to the internet.";
    view_.fail(withErrorText(text, session_.lastError()));
    throw HandledError(text);
  }
  session_.readProxy();
  WriteLog(L"Handle to the internet opened successfully.");
}

// A folder that cannot be made or written has been shown; no file is worth downloading then.
void DownloadRun::makeFolders() {
  std::wstring applicationData;
  modCommon::SystemFolders wanted;
  wanted.applicationData = &applicationData;
  modCommon::GetSystemFolders(request_.hostVersion, wanted);

  const std::wstring& destination = request_.destinationFolder;
  if (!modCommon::CreateFolderPath(destination, view_) ||
      !modCommon::CanWriteToFolder(destination, view_))
    throw HandledError(text::join({destination, L" could not be written."}));

  stagingFolder_ = text::join({modCommon::withBackslash(applicationData), L"Korvel Software"});
  if (applicationData.empty()) view_.fail(noApplicationDataText);
  if (applicationData.empty() || !modCommon::CreateFolderPath(stagingFolder_, view_))
    throw Error(errors::cancelled, text::join({stagingFolder_, L" could not be created."}));
}

void DownloadRun::run() noexcept {
  running_ = true;
  WriteLog(L"PERFORMING INITIALIZATION.");
  try {
    transferAndInstall();
  } catch (const HandledError& error) {
    modCommon::reportErrorOfForm(L"Form_Activate", downloadForm, error);
  } catch (...) {
    const Error error = errors::current();
    modCommon::reportErrorOfForm(L"Form_Activate", downloadForm, error);
    view_.fail(failureText(error));
  }
  running_ = false;
  unload();
}

void DownloadRun::unload() noexcept {
  if (!running_) session_.close();
}

void DownloadRun::transferAndInstall() {
  UrlValidation validation(table_, session_, view_);
  if (!validation.ValidateURLs()) return;
  // Each file once for its transfer, once for its unpacking.
  view_.resetOverall(static_cast<short>(2 * table_.places().size()));
  view_.showOverallSize(text::byteSize(validation.totalSize()));
  install(FileTransfer(table_, session_, stagingFolder_, view_).run());
}

void DownloadRun::install(const std::vector<FileTransfer::Archive>& archives) {
  view_.showCaption(L"Installing...");
  view_.disableCancel();
  WriteLog(L"Begin process of unzipping the files...");
  const std::wstring themesFolder = chooseThemesFolder();
  bool allUnpacked = true;
  for (const auto& archive : archives)
    if (!unpack(archive, themesFolder)) allUnpacked = false;
  completed_ = allUnpacked;
  WriteLog(L"Process of unzipping the files completed.");
  view_.showCaption(L"Downloading...");
  if (themeInstalled_) view_.fail(restartText, L"DWT Online");
}

bool DownloadRun::unpack(const FileTransfer::Archive& archive, const std::wstring& themesFolder) {
  const auto& [kind, path] = archive;
  const bool isTheme = kind == Row::theme;
  WriteLog({L"Unzipping file : ", path});
  const std::wstring& folder = isTheme ? themesFolder : request_.destinationFolder;
  if (isTheme && folder.empty()) {
    WriteLog(noThemesFolderText);
    view_.fail(noThemesFolderText);
    view_.stepOverall();
    return false;
  }
  const modZipUnzip::ThemeMode mode(isTheme);
  UnpackingView view(view_);
  const bool unpacked = modCommon::UnzipFiles(path, folder, view);
  if (view.wasStopped()) throw HandledError(errors::descriptionOf(errors::cancelled));
  if (unpacked && isTheme) themeInstalled_ = true;
  WriteLog({L"Completed unzipping file : ", path});
  view_.stepOverall();
  return unpacked;
}

std::wstring DownloadRun::chooseThemesFolder() const {
  std::wstring userThemes;
  std::wstring sharedThemes;
  modCommon::SystemFolders wanted;
  wanted.userThemes = &userThemes;
  wanted.sharedThemes = &sharedThemes;
  modCommon::GetSystemFolders(request_.hostVersion, wanted);
  const bool shared = request_.machineWide && !sharedThemes.empty() &&
                      modCommon::CanWriteToFolder(sharedThemes, view_);
  return shared ? sharedThemes : userThemes;
}
