// The system's internet functions, changed for a test: what the platform under it cannot do.
#pragma once

#include <utility>
#include <vector>

#include "tests/support/ImportPatch.h"

// While it lives, the product's look-ups of internet functions find the replacements given.
class InternetPatch {
 public:
  InternetPatch();
  ~InternetPatch();
  InternetPatch(const InternetPatch&) = delete;
  InternetPatch& operator=(const InternetPatch&) = delete;

  // FTP connections at the protocol's port go to this one instead. Other ports are refused.
  void ftpPort(unsigned short port);
  // What the server says about a file's size, which Wine does not ask.
  void ftpFileSize(unsigned long size);
  void ftpFileSizeUnknown();
  // The system's proxy setting.
  void accessType(unsigned long type);
  // The calls of InternetOpenUrl, by address, go to this address instead.
  void openUrlAt(const char* address, const char* instead);
  // No session can be opened; the system's error is this one.
  void noSession(unsigned long code);
  // The same for the calls of InternetOpenUrl and for reading.
  void noUrl(unsigned long code);
  void noRead(unsigned long code);
  // A read comes back when it has all that it wants, or the end of the file, as is documented; over
  // FTP Wine gives what has come.
  void readsWhole();
  // Nor does it tell how much can be read.
  void nothingTold(unsigned long code);
  // The same for the files of FTP servers; for setting options.
  void noFtpFile(unsigned long code);
  void noOptions();
  // The system has no such function.
  void missing(const char* function);

  // What the session that was opened last was opened with.
  static unsigned long flagsOfSession();
  // The options that were set to numbers: of the session that was opened last, and of anything
  // else, such as the process.
  using Options = std::vector<std::pair<unsigned long, unsigned long>>;
  static const Options& optionsOfSession();
  static const Options& optionsElsewhere();

  // How often it was asked how much can be read, and for something to read.
  int questions() const noexcept;
  int reads() const noexcept;

  // How many handles were closed that the system no longer knew.
  int staleCloses() const noexcept;

 private:
  ImportPatch patch_;
};
