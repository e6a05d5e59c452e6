// The functions of the system that the module calls, watched at its import table: what it takes
// from the system it has to give back, and any one of its calls can be made to fail.
#pragma once

#include <windows.h>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace torture {

// The last are the places at which the module lets pending messages through; these do not fail.
enum class Kind { registry, ini, files, memory, windows, drawing, com, network, yields };

struct SystemCall {
  int number;  // from 1 on, since the watch began, among the calls of its kind
  const char* function;
  // The first text that it is given, if any: of a path the last part tells what is asked for.
  const char* narrowText = nullptr;
  const wchar_t* wideText = nullptr;
};

// What a call that is to fail fails with.
struct SystemFailure {
  DWORD code;      // for functions of Win32
  HRESULT result;  // for those of COM
};

// One at a time.
class SystemCalls {
 public:
  explicit SystemCalls(HMODULE module);
  ~SystemCalls();
  SystemCalls(const SystemCalls&) = delete;
  SystemCalls& operator=(const SystemCalls&) = delete;

  // `watcher` is asked before each call of that kind. What it gives is what the call fails with;
  // none lets the call be made. It may do whatever can happen meanwhile.
  using Watcher = std::function<const SystemFailure*(const SystemCall&)>;
  void watch(Kind kind, Watcher watcher);
  void unwatch() noexcept;

  // What the module holds now, by what it is: "files", "keys", "blocks of memory".
  static std::map<std::string, long> held();

 private:
  class Patches;
  std::unique_ptr<Patches> patches_;
};

}  // namespace torture
