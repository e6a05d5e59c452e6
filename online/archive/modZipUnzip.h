// One extraction with the unzip library: its records and the routines it calls back.
#pragma once

#include <windows.h>

#include <string>

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

// Loads the library and unpacks the whole archive. Questions are asked over `owner`. The answer is
// the library's result: 0 = success, 2 = the folder cannot be written, 9 = no valid archive.
//
// Nothing is ever written outside of the folder: before anything is unpacked, the library lists the
// archive's names, so that what is checked and what is unpacked is read by the same code. An
// archive with a name that would not stay inside, or with more in it than the disk holds, raises an
// Error whose description says so. So does a library that is missing or cannot be used.
//
// `lastMessage` becomes the text that the library sent last, also when an Error ends the call.
long Unzip(const Options& options, std::wstring& lastMessage, HWND owner);

}  // namespace modZipUnzip
