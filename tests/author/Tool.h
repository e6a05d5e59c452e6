// The real program, with its output in files.
#pragma once

#include <windows.h>

#include <stdexcept>
#include <string>

#include "common/handles.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/text_output.h"

class Tool {
 public:
  struct Outcome {
    DWORD code = 0;
    std::string output;
    std::string errors;
  };

  // The one beside the tests, or another one.
  explicit Tool(std::wstring program = programPath()) : program_(std::move(program)) {}

  // `arguments` as they stand on a command line. Ends it after a while that no run takes.
  Outcome run(const std::wstring& arguments) const {
    const handles::File out = inherited(disk / L"output");
    const handles::File errors = inherited(disk / L"errors");
    STARTUPINFOW start = {};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdOutput = out.get();
    start.hStdError = errors.get();
    std::wstring line = L"\"" + program_ + L"\" " + arguments;
    PROCESS_INFORMATION process = {};
    if (!CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr,
                        disk.path().c_str(), &start, &process))
      throw std::runtime_error("the program does not start");
    const handles::Kernel thread(process.hThread);
    const handles::Kernel handle(process.hProcess);
    constexpr DWORD patience = 40000;
    if (WaitForSingleObject(handle.get(), patience) != WAIT_OBJECT_0)
      TerminateProcess(handle.get(), 99);
    WaitForSingleObject(handle.get(), patience);
    Outcome outcome;
    GetExitCodeProcess(handle.get(), &outcome.code);
    outcome.output = disk.readFile(L"output");
    outcome.errors = disk.readFile(L"errors");
    return outcome;
  }

  ScratchFolder disk;  // the program's current folder

 private:
  std::wstring program_;

  static std::wstring programPath() {
    wchar_t path[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    const std::wstring own = path;
    return own.substr(0, own.rfind(L'\\') + 1) + L"quillet-template.exe";
  }
  static handles::File inherited(const std::wstring& path) {
    SECURITY_ATTRIBUTES security = {sizeof security, nullptr, TRUE};
    return handles::File(CreateFileW(path.c_str(), GENERIC_WRITE,
                                     FILE_SHARE_READ | FILE_SHARE_WRITE, &security, CREATE_ALWAYS,
                                     FILE_ATTRIBUTE_NORMAL, nullptr));
  }
};
