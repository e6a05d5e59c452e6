#include "online/archive/CUnzip.h"

#include "common/errors.h"

long CUnzip::Unzip(std::wstring& zipFileName, std::wstring& extractDir,
                   UnpackingQuestions& questions) {
  try {
    if (!zipFileName.empty()) ZipFileName = zipFileName;
    if (!extractDir.empty()) ExtractDir = extractDir;
    zipFileName = ZipFileName;
    extractDir = ExtractDir;
    return modZipUnzip::Unzip(*this, lastMessage_, questions);
  } catch (...) {
    const Error error = errors::current();
    throw Error(error.number(), error.description(), L"CGUnZipFiles::Unzip");
  }
}
