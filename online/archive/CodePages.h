// What the system makes of bytes that are text, and of letters.
#pragma once

#include <string>
#include <string_view>

namespace archive {

class CodePages {
 public:
  // In the code page that Windows programs use, and in the one of the console.
  virtual std::wstring fromAnsi(std::string_view bytes) const = 0;
  virtual std::wstring fromOem(std::string_view bytes) const = 0;
  virtual std::string toAnsi(std::wstring_view text) const = 0;
  // True when the former has all of it.
  virtual bool fitsAnsi(std::wstring_view text) const = 0;
  // As the file system compares names.
  virtual std::wstring upper(std::wstring_view text) const = 0;

 protected:
  ~CodePages() = default;
};

}  // namespace archive
