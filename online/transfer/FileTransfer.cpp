#include "online/transfer/FileTransfer.h"

#include <utility>

#include "common/NoSystemBoxes.h"
#include "common/log.h"
#include "common/paths.h"
#include "common/text.h"
#include "online/transfer/TransferProgress.h"

using modCommon::WriteLog;
using modWINInetURL::CrackedUrl;

namespace {

constexpr DWORD readSize = 255;

// Raises an Error (61) without room for that many bytes in a folder. A disk that does not tell is
// written to.
void requireSpace(const std::wstring& folder, double bytes) {
  const NoSystemBoxes quiet;
  ULARGE_INTEGER available = {};
  if (!GetDiskFreeSpaceExW(modCommon::withBackslash(folder).c_str(), &available, nullptr, nullptr))
    return;
  if (bytes > static_cast<double>(available.QuadPart))
    throw Error(errors::diskFull,
                text::join({folder, L"\r\n", modWINInetURL::ErrorText(ERROR_DISK_FULL)}));
}

}  // namespace

FileTransfer::FileTransfer(const DownloadTable& table, InternetSession& session,
                           const std::wstring& stagingFolder, DownloadView& view)
    : DownloadSteps(session, view),
      table_(table),
      places_(table.places()),
      staged_(stagingFolder) {}

std::vector<FileTransfer::Archive> FileTransfer::run() {
  std::vector<Archive> archives;
  for (std::size_t index = 0; index < places_.size(); ++index) {
    showCaption(text::join({L"Downloading ", text::decimal(index + 1), L" of ",
                            text::decimal(places_.size()), L" files."}));
    archives.push_back({places_[index].kind, transfer(index)});
  }
  return archives;
}

std::wstring FileTransfer::transfer(std::size_t index) {
  const Place& place = places_[index];
  const auto& parts = table_.parts(place.column, place.kind);
  if (!parts) {
    WriteLog(L"URL could not be cracked. Invalid URL");
    throw Error(errors::cancelled, L"URL could not be cracked. Invalid URL");
  }
  showAddress(*parts);
  view_.showCurrentSize({});
  WriteLog({L"Download proceedings for ", current(), L" begins."});
  const std::wstring path = staged_.freePath(table_.address(place.column, place.kind));
  check();
  handles::Internet source = locate(place, *parts);
  check();
  if (mayWrite(path)) {
    requireSpace(index);
    receive(source, place, path);
  }
  staged_.take(path);
  WriteLog(L"File closed.");
  WriteLog(L"Download completed successfully. ");
  source.reset();
  view_.stepOverall();
  check();
  return path;
}

handles::Internet FileTransfer::locate(const Place& place, const CrackedUrl& parts) {
  const std::wstring& address = table_.address(place.column, place.kind);
  WriteLog(L"Locating file...");
  handles::Internet file;
  if (parts.scheme == modWINInetURL::schemeFtp && session_.access() == InternetSession::direct) {
    const bool connected =
        session_.GetInternetConnectHandle(parts.host, parts.user, parts.password);
    check();
    if (!connected) failToConnect();
    file = openFtpFile(text::replaceAll(parts.path, L"%20", L" "));
  } else {
    file =
        openUrl(parts.scheme == modWINInetURL::schemeFtp ? text::replaceAll(address, L"%20", L" ")
                                                         : address);
    refuseMissing(file);
  }
  WriteLog(L"File sucessfully located.");
  return file;
}

// An earlier download's copy is kept when the user wants to: it is the one unpacked later.
bool FileTransfer::mayWrite(const std::wstring& path) {
  if (!modCommon::fileExists(path)) return true;
  WriteLog(L"Destination file already exists.");
  const bool overwrite =
      view_.ask(L"The specified file already exists. Do you wish to overwrite the existing file?");
  if (overwrite) {
    WriteLog(L"Destination file is to be overwritten...");
    const NoSystemBoxes quiet;
    DeleteFileW(path.c_str());
  } else {
    WriteLog(L"Destination file is not to be overwritten...");
  }
  check();
  return overwrite;
}

// The claims of the server are all that is known of what is to come. A file of an earlier run may
// be kept, or makes room for the one in its place.
void FileTransfer::requireSpace(std::size_t index) const {
  const auto claimed = [this](const Place& place) {
    return static_cast<double>(table_.size(place.column, place.kind));
  };
  double needed = claimed(places_[index]);
  for (std::size_t later = index + 1; later < places_.size(); ++later)
    if (!isStaged(places_[later])) needed += claimed(places_[later]);
  ::requireSpace(staged_.folder(), needed);
}

// A name that no file can have ends the run when its turn comes.
bool FileTransfer::isStaged(const Place& place) const noexcept {
  try {
    return modCommon::fileExists(staged_.freePath(table_.address(place.column, place.kind)));
  } catch (...) {
    return false;
  }
}

void FileTransfer::receive(const handles::Internet& source, const Place& place,
                           const std::wstring& path) {
  const std::wstring_view name = text::afterLast(path, L'\\');
  IncomingFile file(path);
  WriteLog({L"File opened for binary input.  File Name : ", name});
  WriteLog({L"Beginning to download the file ", name});
  check();
  copyBytes(source, table_.size(place.column, place.kind), file);
  file.complete();
}

// Without a size nothing is read, and the file stays empty.
void FileTransfer::copyBytes(const handles::Internet& source, unsigned long long size,
                             IncomingFile& file) {
  TransferProgress progress(size, view_);
  char buffer[readSize];
  for (unsigned long long received = 0; received < size;) {
    const auto count = session_.read(source, buffer, readSize);
    check();
    if (!count) readFailed(file, session_.lastError());
    // A connection that ended early reads nothing, successfully and for ever.
    if (*count == 0) readFailed(file, ERROR_SUCCESS);
    file.write(buffer, *count);
    received += *count;
    progress.show(received);
  }
}

void FileTransfer::readFailed(IncomingFile& file, DWORD code) {
  file.close();
  const std::wstring text = L"Unable to read the current file.";
  failWith(withErrorText(text, code), text);
}
