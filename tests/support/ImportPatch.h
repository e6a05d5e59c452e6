// Another function in place of one that a loaded module imports, while it lives. For what the
// platform under the tests cannot do: a drive without a medium, another version of the system.
#pragma once

#include <windows.h>

#include <vector>

class ImportPatch {
 public:
  // `module` null is the test program itself, into which the product's libraries are linked. Throws
  // std::runtime_error when the module does not import that function from that library: a
  // substitution that cannot take place must not pass unnoticed.
  template <class Function>
  ImportPatch(HMODULE module, const char* library, const char* function, Function* replacement) {
    apply(module, library, function, reinterpret_cast<void*>(replacement));
  }
  ~ImportPatch();
  ImportPatch(const ImportPatch&) = delete;
  ImportPatch& operator=(const ImportPatch&) = delete;

  // What the module would have called, for a replacement that passes some calls on.
  template <class Function>
  Function* original() const noexcept {
    return reinterpret_cast<Function*>(original_);
  }

 private:
  void apply(HMODULE module, const char* library, const char* function, void* replacement);

  std::vector<void**> slots_;
  void* original_ = nullptr;
};
