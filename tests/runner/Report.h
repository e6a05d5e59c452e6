// The one file that the tests leave behind: UTF-8 with Windows' line ends, so every editor shows
// it.
#pragma once

#include <map>
#include <string>

#include "common/handles.h"
#include "tests/runner/verdict.h"

class Report {
 public:
  // Begins the file anew. Throws std::runtime_error when it cannot be written.
  explicit Report(const std::wstring& path);

  // A line of its own.
  void line(const std::string& text);
  // All lines are in the file at once: whatever happens to the machine, it says how far it went.
  void add(const std::string& name, const Verdict& verdict);
  int count(Result result) const;
  // The last line, which counts them.
  std::string summary() const;

 private:
  handles::File file_;
  std::map<Result, int> counts_;
};
