// Runs of the program, each with a folder of its own.
#pragma once

#include <windows.h>

#include <string>

#include "common/handles.h"
#include "tests/support/ScratchFolder.h"

struct Outcome {
  DWORD code = 0;
  std::string output;
};

class Program {
 public:
  ScratchFolder folder;
  std::wstring web = folder.makeFolder(L"My Web");
  bool addIns = false;  // whether those that are registered are loaded

  Outcome run(const std::wstring& arguments, const std::string& input = {}) const;
  // With the web and this script.
  Outcome script(const std::string& lines, const std::wstring& arguments = {}) const;

  // The same without waiting for the end; one at a time.
  void start(const std::wstring& arguments, const std::string& input = {}) const;
  std::wstring scriptArguments(const std::string& lines) const;
  std::string output() const { return folder.readFile(L"output"); }
  bool isRunning() const;
  HWND mainWindow() const;  // null when there is none
  // Waits for the end; a program that does not come to it is ended, with the exit code 99.
  Outcome end() const;

 private:
  mutable handles::Kernel process_;
  mutable DWORD id_ = 0;
};
