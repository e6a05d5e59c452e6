// The test programs of a folder, each case of theirs in a process of its own.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "tests/runner/ChildProcess.h"
#include "tests/runner/Report.h"

class TestRun {
 public:
  struct Program {
    std::wstring name;  // without ".exe"
    std::vector<std::string> cases;
    std::string trouble;  // why they are not known
  };

  // `programs` ends in a backslash. No case may take longer than `limit`, in milliseconds.
  TestRun(const std::wstring& programs, DWORD limit);

  // Those whose names are `wanted`; all when none is.
  std::vector<Program> find(const std::vector<std::wstring>& wanted) const;
  void run(const Program& program, Report& report) const;

 private:
  ChildProcess::Outcome start(const std::wstring& name, const std::wstring& arguments,
                              DWORD limit) const;

  std::wstring programs_;
  std::wstring scratch_;
  DWORD limit_;
};
