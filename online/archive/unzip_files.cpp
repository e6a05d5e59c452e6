#include "online/archive/unzip_files.h"

#include "common/NoSystemBoxes.h"
#include "common/errors.h"
#include "common/letter_case.h"
#include "common/log.h"
#include "common/paths.h"
#include "common/report.h"
#include "online/archive/CUnzip.h"
#include "online/archive/unzip_records.h"

namespace modCommon {
namespace {

constexpr wchar_t notAnArchiveText[] =
    L"Cannot unzip file: \" %s \".\r\nIt does not appear to be a valid archive. If you downloaded "
    L"this file, try downloading the file again.";

// So that the next download starts clean.
void deleteArchive(const std::wstring& path) {
  const NoSystemBoxes quiet;
  DeleteFileW(path.c_str());
}

void showResult(long result, const std::wstring& archivePath, const std::wstring& extractDir,
                UnpackingQuestions& questions) {
  switch (result) {
    case unzip::cannotCreate:
      questions.fail(noPermissionText(extractDir));
      break;
    case unzip::notAnArchive:
      questions.fail(text::replaceIgnoringCase(notAnArchiveText, L"%s", archivePath));
      deleteArchive(archivePath);
      break;
    default:
      break;
  }
}

void logLastMessage(const CUnzip& extractor) noexcept {
  try {
    WriteLog(text::toUpper(extractor.GetLastMessage()));
  } catch (...) {  // Not run by tests: no memory.
    WriteLog(extractor.GetLastMessage());
  }
}

bool unzipFiles(CUnzip& extractor, const std::wstring& archivePath, const std::wstring& extractDir,
                UnpackingQuestions& questions) {
  extractor.ZipFileName = archivePath;
  extractor.ExtractDir = extractDir;
  extractor.HonorDirectories = true;
  extractor.OverWriteFiles = true;
  extractor.ExtractNewer = true;
  std::wstring archive;
  std::wstring folder;
  // Without a folder the library would unpack into whatever the host's current folder is.
  const long result =
      extractDir.empty() ? unzip::cannotCreate : extractor.Unzip(archive, folder, questions);
  if (result == unzip::success) return true;
  showResult(result, archivePath, extractDir, questions);
  logLastMessage(extractor);
  return false;
}

}  // namespace

bool UnzipFiles(const std::wstring& archivePath, const std::wstring& extractDir,
                UnpackingQuestions& questions) noexcept {
  CUnzip extractor;
  try {
    return unzipFiles(extractor, archivePath, extractDir, questions);
  } catch (...) {
    const Error error = errors::current();
    if (error.number() != errors::cancelled) questions.fail(error.description());
    reportModuleError(L"UnzipFiles", error);
    if (!extractor.GetLastMessage().empty()) logLastMessage(extractor);
    return false;
  }
}

}  // namespace modCommon
