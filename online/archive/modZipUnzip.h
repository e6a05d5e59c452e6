// One extraction with the unzip library: its records and the routines it calls back. The only door
// to that library.
#pragma once

#include <string>

#include "online/archive/UnpackingQuestions.h"

namespace modZipUnzip {

// What the extractor can be told, in the order of its members.
struct Options {
  bool ExtractNewer = false;  // leaves files that are as new as the archive's or newer alone
  bool SpaceToUnderScore = false;
  bool PromptOverwrite = false;
  short MessageLevel = 2;  // 0 all messages, 1 few, 2 none
  bool WriteToStdOut = false;
  bool TestZip = false;           // reads the whole archive, writes nothing
  short ExtractList = 0;          // other than 0: lists the contents, writes nothing
  bool ExtractOnlyNewer = false;  // replaces older files, adds none
  bool DisplayComment = false;    // shows the archive's comment, nothing else
  bool HonorDirectories = false;
  bool OverWriteFiles = false;  // all of them, without a question
  bool ConvertCRtoCRLF = false;
  bool Verbose = false;  // a technical listing, nothing else
  bool CaseSensitive = false;
  short Privilege = 0;
  std::wstring ZipFileName;
  std::wstring ExtractDir;  // empty for the current folder
};

// On while a theme's archive is unpacked, for what the library calls back.
class ThemeMode {
 public:
  explicit ThemeMode(bool on) noexcept;
  ~ThemeMode();
  ThemeMode(const ThemeMode&) = delete;
  ThemeMode& operator=(const ThemeMode&) = delete;

  static bool isOn() noexcept;

 private:
  bool before_;
};

// Loads the library and unpacks the whole archive. The answer is the library's result: 0 = success,
// 2 = the folder cannot be written, 9 = no valid archive.
//
// Whatever the options, the library gets to see an archive only after the gate has read all of it:
// its directory, the header of each entry, and what each entry holds. Damage that a broken download
// explains is the result 9; an archive that is not to be unpacked raises an Error whose description
// names the first reason. In both cases nothing has been written. From the gate's first look to the
// library's last nobody can write the archive.
//
// A library that is missing or cannot be used raises an Error, too. So does a stop (512), which
// leaves what was unpacked until then.
//
// `lastMessage` becomes the text that the library sent last, or what kept it from being asked; it
// is empty after a success at most.
long Unzip(const Options& options, std::wstring& lastMessage, UnpackingQuestions& questions);

}  // namespace modZipUnzip
