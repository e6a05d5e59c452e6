#include "online/archive/CUnzip.h"

#include "common/errors.h"
#include "online/archive/UnpackingBoxes.h"

long CUnzip::Unzip(std::wstring& zipFileName, std::wstring& extractDir, HWND owner) {
  UnpackingBoxes boxes(owner);
  return Unzip(zipFileName, extractDir, boxes);
}

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
