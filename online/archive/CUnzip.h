// The extractor: options that are set one by one, then one call.
#pragma once

#include <string>

#include "online/archive/modZipUnzip.h"

class CUnzip : public modZipUnzip::Options {
 public:
  // An argument that is not empty becomes the property of that name first; the arguments come back
  // as what was used. The result is the library's (0 = success). Errors bear the source
  // "CGUnZipFiles::Unzip".
  long Unzip(std::wstring& zipFileName, std::wstring& extractDir, UnpackingQuestions& questions);

  // What the library said last, or what kept it from being asked.
  const std::wstring& GetLastMessage() const noexcept { return lastMessage_; }

 private:
  std::wstring lastMessage_;
};
