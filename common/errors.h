// The one exception type of the program, and the table from the system's codes to its numbers.
#pragma once

#include <exception>
#include <string>

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

// What went wrong: a number, a text for people, and optionally where it was raised.
class Error : public std::exception {
 public:
  explicit Error(long number);  // with the number's own description
  Error(long number, std::wstring description, std::wstring source = {});

  long number() const noexcept { return number_; }
  const std::wstring& description() const noexcept { return description_; }
  const std::wstring& source() const noexcept { return source_; }
  const char* what() const noexcept override { return "Quillet error"; }

 private:
  long number_;
  std::wstring description_;
  std::wstring source_;
};

// A long operation was stopped on purpose: 512, "Operation Cancelled.".
Error operationCancelled(std::wstring source = {});

// The description that belongs to a number; empty when the number has none.
std::wstring descriptionOf(long number);

// The run-time number of a Win32 code. `fallback` is the answer for a code outside the table.
long numberFromSystemCode(unsigned long code, long fallback = pathFileAccess);

// The error that a Win32 code (by default the thread's last one) stands for.
Error fromSystemCode(unsigned long code);
Error fromLastError();

// The error that a failing HRESULT of a COM call stands for, without a text of the callee's own.
Error fromHResult(long result);

// The error in flight inside a catch block, whatever its C++ type.
Error current() noexcept;

}  // namespace errors

using errors::Error;
