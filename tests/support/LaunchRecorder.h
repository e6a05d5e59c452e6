// A program that tells how it was launched, under any name in any folder.
#pragma once

#include <optional>
#include <string>

class LaunchRecorder {
 public:
  // Copies the recorder to `path`; it is gone again afterwards. A test target that uses it depends
  // on the target "launch-recorder".
  explicit LaunchRecorder(std::wstring path);
  ~LaunchRecorder();
  LaunchRecorder(const LaunchRecorder&) = delete;
  LaunchRecorder& operator=(const LaunchRecorder&) = delete;

  // Waits for a launch and tells the whole command line, once; nothing when none comes in time.
  std::optional<std::wstring> commandLine(unsigned milliseconds = 20000);

 private:
  std::wstring path_;
};
