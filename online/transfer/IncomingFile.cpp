#include "online/transfer/IncomingFile.h"

#include <utility>

#include "common/NoSystemBoxes.h"
#include "common/errors.h"
#include "common/log.h"
#include "common/paths.h"

using modCommon::WriteLog;

namespace {

handles::File openForWriting(const std::wstring& path) {
  const NoSystemBoxes quiet;
  handles::File file(CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr,
                                 CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!file) throw modCommon::openingError(GetLastError());
  return file;
}

}  // namespace

IncomingFile::IncomingFile(std::wstring path)
    : path_(std::move(path)), file_(openForWriting(path_)) {}

IncomingFile::~IncomingFile() {
  if (complete_) return;
  close();
  DeleteRelatedFiles();
}

void IncomingFile::write(const char* bytes, DWORD count) {
  const NoSystemBoxes quiet;
  DWORD written = 0;
  if (!WriteFile(file_.get(), bytes, count, &written, nullptr)) throw errors::fromLastError();
  if (written != count) throw Error(errors::diskFull);
}

void IncomingFile::complete() noexcept {
  close();
  complete_ = true;
}

void IncomingFile::DeleteRelatedFiles() noexcept {
  try {
    WriteLog(L"Entering DeleteRelatedFiles()");
    const NoSystemBoxes quiet;
    if (!DeleteFileW(path_.c_str())) throw errors::fromLastError();
    WriteLog(L"Exiting DeleteRelatedFiles()");
  } catch (...) {
    WriteLog(
        {L"Error While Exiting DeleteRelatedFiles(). Error : ", errors::current().description()});
  }
}
