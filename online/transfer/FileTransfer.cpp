#include "online/transfer/FileTransfer.h"

#include <utility>

#include "common/NoSystemBoxes.h"
#include "common/log.h"
#include "common/paths.h"
#include "common/text.h"
#include "online/archive/ArchiveNames.h"
#include "online/transfer/TransferProgress.h"

using modCommon::WriteLog;
using modWINInetURL::CrackedUrl;

namespace {

constexpr DWORD readSize = 255;

handles::File openForWriting(const std::wstring& path) {
  const NoSystemBoxes quiet;
  handles::File file(CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr,
                                 CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!file) throw modCommon::openingError(GetLastError());
  return file;
}

void write(const handles::File& file, const char* bytes, DWORD count) {
  const NoSystemBoxes quiet;
  DWORD written = 0;
  if (!WriteFile(file.get(), bytes, count, &written, nullptr)) throw errors::fromLastError();
  if (written != count) throw Error(errors::diskFull);
}

bool deleteFile(const std::wstring& path) {
  const NoSystemBoxes quiet;
  return DeleteFileW(path.c_str()) != FALSE;
}

}  // namespace

std::wstring stagingFile(const std::wstring& folder, const std::wstring& address) {
  const std::wstring name = text::replaceAll(text::afterLast(address, L'/'), L"%20", L" ");
  if (!modCommon::IsValidFileName(name) || archive::faultOf(name) != archive::NameFault::none)
    throw Error(errors::badFileName);
  return modCommon::withBackslash(folder) + name;
}

FileTransfer::FileTransfer(const DownloadTable& table, InternetSession& session,
                           std::wstring stagingFolder, DownloadView& view)
    : DownloadSteps(session, view), table_(table), stagingFolder_(std::move(stagingFolder)) {}

void FileTransfer::run() {
  const auto places = table_.places();
  int number = 0;
  for (const Place& place : places) {
    view_.showCaption(text::join({L"Downloading ", std::to_wstring(++number), L" of ",
                                  std::to_wstring(places.size()), L" files."}));
    transfer(place);
  }
}

void FileTransfer::transfer(const Place& place) {
  const std::wstring& address = table_.address(place.column, place.kind);
  const auto parts = modWINInetURL::CrackUrl(address);
  if (!parts) {
    WriteLog(L"URL could not be cracked. Invalid URL");
    throw Error(errors::cancelled, L"URL could not be cracked. Invalid URL");
  }
  showAddress(*parts);
  view_.showCurrentSize({});
  WriteLog({L"Download proceedings for ", view_.current(), L" begins."});
  const std::wstring path = stagingFile(stagingFolder_, address);
  check();
  handles::Internet source = locate(address, *parts);
  check();
  if (mayWrite(path)) receive(source, place, path);
  WriteLog(L"File closed.");
  WriteLog(L"Download completed successfully. ");
  source.reset();
  view_.stepOverall();
  check();
}

handles::Internet FileTransfer::locate(const std::wstring& address, const CrackedUrl& parts) {
  WriteLog(L"Locating file...");
  handles::Internet file;
  if (parts.scheme == modWINInetURL::schemeFtp && session_.access() == InternetSession::direct) {
    connectToFtp(parts);
    check();
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
    deleteFile(path);
  } else {
    WriteLog(L"Destination file is not to be overwritten...");
  }
  check();
  return overwrite;
}

void FileTransfer::receive(const handles::Internet& source, const Place& place,
                           const std::wstring& path) {
  const std::wstring_view name = text::afterLast(path, L'\\');
  handles::File file = openForWriting(path);
  WriteLog({L"File opened for binary input.  File Name : ", name});
  WriteLog({L"Beginning to download the file ", name});
  checkReceiving(place, file);
  copyBytes(source, place, file);
}

// Without a size nothing is read, and the file stays empty.
void FileTransfer::copyBytes(const handles::Internet& source, const Place& place,
                             handles::File& file) {
  const unsigned long long size = table_.size(place.column, place.kind);
  TransferProgress progress(size, view_);
  char buffer[readSize];
  for (unsigned long long received = 0; received < size;) {
    const auto count = session_.read(source, buffer, readSize);
    checkReceiving(place, file);
    if (!count) readFailed(place, file, session_.lastError());
    // A connection that ended early reads nothing, successfully and for ever.
    if (*count == 0) readFailed(place, file, ERROR_SUCCESS);
    write(file, buffer, *count);
    received += *count;
    progress.show(received);
  }
}

void FileTransfer::checkReceiving(const Place& place, handles::File& file) {
  if (view_.keepGoing()) return;
  file.reset();
  DeleteRelatedFiles(place);
  throw HandledError(errors::descriptionOf(errors::cancelled));
}

void FileTransfer::readFailed(const Place& place, handles::File& file, DWORD code) {
  file.reset();
  const std::wstring text = L"Unable to read the current file.";
  view_.fail(withErrorText(text, code));
  DeleteRelatedFiles(place);
  throw HandledError(text);
}

void FileTransfer::DeleteRelatedFiles(const Place& place) noexcept {
  try {
    WriteLog(L"Entering DeleteRelatedFiles()");
    const std::wstring& address = table_.address(place.column, place.kind);
    if (!address.empty() && !deleteFile(stagingFile(stagingFolder_, address)))
      throw errors::fromLastError();
    WriteLog(L"Exiting DeleteRelatedFiles()");
  } catch (...) {
    WriteLog(
        {L"Error While Exiting DeleteRelatedFiles(). Error : ", errors::current().description()});
  }
}
