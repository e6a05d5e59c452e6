// What this process hands to the system debug output while it lives, line by line, in order.
#pragma once

#include <string>
#include <vector>

class DebugOutput {
 public:
  DebugOutput();
  ~DebugOutput();
  DebugOutput(const DebugOutput&) = delete;
  DebugOutput& operator=(const DebugOutput&) = delete;

  const std::vector<std::wstring>& lines() const noexcept { return lines_; }
  // The same without the time ("hh:mm:ss") and the blank behind it; further blanks are indentation.
  std::vector<std::wstring> messages() const;
  bool has(const std::wstring& message) const;
  // Any line that holds this text.
  bool hasLineWith(const std::wstring& part) const;
  void clear() { lines_.clear(); }

 private:
  friend struct DebugOutputHook;
  std::vector<std::wstring> lines_;
  void* hook_ = nullptr;
};
