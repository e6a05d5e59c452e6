// The one exception type of the program, and the table from the system's codes to its numbers.
#pragma once

#include <exception>
#include <memory>
#include <string>
#include <string_view>

namespace errors {

// The run-time numbers that the program itself raises or tells apart.
enum Number : long {
  invalidArgument = 5,
  overflow = 6,
  outOfMemory = 7,
  subscriptOutOfRange = 9,
  typeMismatch = 13,
  badFileName = 52,
  fileNotFound = 53,
  fileAlreadyOpen = 55,
  deviceIoError = 57,
  fileAlreadyExists = 58,
  diskFull = 61,
  tooManyFiles = 67,
  deviceUnavailable = 68,
  permissionDenied = 70,
  diskNotReady = 71,
  pathFileAccess = 75,
  pathNotFound = 76,
  objectNotSet = 91,
  cannotCreateObject = 429,
  noSuchMember = 438,
  automationError = 440,
  wrongArgumentCount = 450,
  cancelled = 512,
};

// What went wrong: a number, a text for people, and optionally where it was raised. A copy shares
// the texts, so it takes no memory and never fails.
class Error : public std::exception {
 public:
  explicit Error(long number) noexcept : number_(number) {}  // with the number's own description
  Error(long number, std::wstring_view description, std::wstring_view source = {});

  long number() const noexcept { return number_; }
  // Both live as long as this error or a copy of it.
  std::wstring_view description() const noexcept;
  std::wstring_view source() const noexcept;
  const char* what() const noexcept override { return "Quillet error"; }

 private:
  struct Texts {
    std::wstring description;
    std::wstring source;
  };

  long number_;
  std::shared_ptr<const Texts> texts_;  // none: the number's own description
};

// A long operation was stopped on purpose: 512, "Operation Cancelled.".
Error operationCancelled(std::wstring_view source = {});

// The description that belongs to a number; empty when the number has none.
std::wstring_view descriptionOf(long number) noexcept;

// The run-time number of a Win32 code. `fallback` is the answer for a code outside the table.
long numberFromSystemCode(unsigned long code, long fallback = pathFileAccess);

// What the system says about a Win32 code, with its line break; empty for an unknown one.
std::wstring systemMessage(unsigned long code);

// The error that a Win32 code (by default the thread's last one) stands for.
Error fromSystemCode(unsigned long code);
Error fromLastError();

// The error that a failing HRESULT of a COM call stands for, without a text of the callee's own.
Error fromHResult(long result);

// The error in flight inside a catch block, whatever its C++ type.
Error current() noexcept;

}  // namespace errors

using errors::Error;
