// One run of a program, ended with everything that it has started.
#pragma once

#include <windows.h>

#include <string>

#include "common/handles.h"

class ChildProcess {
 public:
  struct Outcome {
    bool isEnded = false;  // by itself, and not because its time was over
    DWORD code = 0;
    std::string output;  // both streams, as bytes
  };

  // Runs `commandLine` in `folder`, which is its folder for temporary files, too. Throws
  // std::runtime_error when it does not start.
  ChildProcess(const std::wstring& commandLine, const std::wstring& folder);
  ~ChildProcess();
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  // Afterwards nothing of it runs any more.
  Outcome wait(DWORD milliseconds);

 private:
  void startIn(const std::wstring& folder);
  void endAll();

  std::wstring commandLine_;
  std::wstring outputFile_;
  handles::Kernel job_;
  handles::Kernel process_;
  bool isInJob_ = false;
};
