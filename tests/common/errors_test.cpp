#include "common/errors.h"

#include <windows.h>

#include <memory>
#include <new>
#include <string>
#include <type_traits>
#include <utility>

#include "tests/support/text_output.h"

namespace {

template <class Thrown>
Error inFlight(const Thrown& thrown) {
  try {
    throw thrown;
  } catch (...) {
    return errors::current();
  }
}

}  // namespace

TEST_CASE("every run-time number has its description") {
  const std::pair<long, const wchar_t*> expected[] = {
      {5, L"Invalid procedure call or argument"},
      {6, L"Overflow"},
      {7, L"Out of memory"},
      {9, L"Subscript out of range"},
      {13, L"Type mismatch"},
      {52, L"Bad file name or number"},
      {53, L"File not found"},
      {55, L"File already open"},
      {57, L"Device I/O error"},
      {58, L"File already exists"},
      {61, L"Disk full"},
      {67, L"Too many files"},
      {68, L"Device unavailable"},
      {70, L"Permission denied"},
      {71, L"Disk not ready"},
      {75, L"Path/File access error"},
      {76, L"Path not found"},
      {91, L"Object variable or With block variable not set"},
      {429, L"ActiveX component can't create object"},
      {438, L"Object doesn't support this property or method"},
      {440, L"Automation error"},
      {450, L"Wrong number of arguments or invalid property assignment"},
      {512, L"Operation Cancelled."},
  };
  for (const auto& [number, description] : expected) {
    const long row = number;
    CAPTURE(row);
    CHECK(errors::descriptionOf(number) == description);
    CHECK(Error(number).number() == number);
    CHECK(Error(number).description() == description);
  }
  CHECK(errors::descriptionOf(0) == L"");
  CHECK(errors::descriptionOf(-1) == L"");
}

TEST_CASE("every system code becomes its run-time number") {
  const std::pair<DWORD, long> expected[] = {
      {ERROR_NOT_ENOUGH_MEMORY, 7},    {ERROR_OUTOFMEMORY, 7},     {ERROR_INVALID_NAME, 52},
      {ERROR_BAD_PATHNAME, 52},        {ERROR_BAD_NETPATH, 52},    {ERROR_BAD_NET_NAME, 52},
      {ERROR_INVALID_DRIVE, 52},       {ERROR_FILE_NOT_FOUND, 53}, {ERROR_CRC, 57},
      {ERROR_GEN_FAILURE, 57},         {ERROR_IO_DEVICE, 57},      {ERROR_FILE_EXISTS, 58},
      {ERROR_ALREADY_EXISTS, 58},      {ERROR_DISK_FULL, 61},      {ERROR_HANDLE_DISK_FULL, 61},
      {ERROR_TOO_MANY_OPEN_FILES, 67}, {ERROR_DEV_NOT_EXIST, 68},  {ERROR_SHARING_VIOLATION, 70},
      {ERROR_LOCK_VIOLATION, 70},      {ERROR_WRITE_PROTECT, 70},  {ERROR_NOT_READY, 71},
      {ERROR_ACCESS_DENIED, 75},       {ERROR_PATH_NOT_FOUND, 76},
  };
  for (const auto& [code, number] : expected) {
    const DWORD row = code;
    CAPTURE(row);
    CHECK(errors::numberFromSystemCode(code) == number);
    CHECK(errors::fromSystemCode(code).description() == errors::descriptionOf(number));
  }
}

TEST_CASE("a system code outside the table becomes the fallback") {
  CHECK(errors::numberFromSystemCode(ERROR_INVALID_WINDOW_HANDLE) == 75);
  CHECK(errors::numberFromSystemCode(ERROR_INVALID_WINDOW_HANDLE, 440) == 440);
}

TEST_CASE("the last error of the thread becomes an error") {
  SetLastError(ERROR_NOT_READY);
  CHECK(errors::fromLastError().number() == 71);
}

TEST_CASE("every result of a COM call becomes its run-time number") {
  const std::pair<HRESULT, long> expected[] = {
      {E_OUTOFMEMORY, 7},           {DISP_E_TYPEMISMATCH, 13},        {DISP_E_UNKNOWNNAME, 438},
      {DISP_E_MEMBERNOTFOUND, 438}, {DISP_E_BADPARAMCOUNT, 450},      {REGDB_E_CLASSNOTREG, 429},
      {CO_E_CLASSSTRING, 429},      {CLASS_E_CLASSNOTAVAILABLE, 429}, {E_FAIL, 440},
      {E_UNEXPECTED, 440},          {RPC_E_DISCONNECTED, 440},
  };
  for (const auto& [result, number] : expected) {
    const HRESULT row = result;
    CAPTURE(row);
    CHECK(errors::fromHResult(result).number() == number);
    CHECK(errors::fromHResult(result).description() == errors::descriptionOf(number));
  }
}

TEST_CASE("an error keeps a description and a source of its own") {
  const Error error(440, L"The host says no.", L"frmCopyToWeb");
  CHECK(error.number() == 440);
  CHECK(error.description() == L"The host says no.");
  CHECK(error.source() == L"frmCopyToWeb");
}

TEST_CASE("copying an error or meeting one without a text of its own takes no memory") {
  static_assert(std::is_nothrow_copy_constructible_v<Error>);
  static_assert(std::is_nothrow_constructible_v<Error, long>);
  const auto met = std::make_unique<Error>(440, L"The host says no.");
  const Error copy = *met;
  CHECK(copy.description().data() == met->description().data());
}

TEST_CASE("a cancelled operation is error 512") {
  CHECK(errors::operationCancelled().number() == 512);
  CHECK(errors::operationCancelled(L"EnumDWTs").source() == L"EnumDWTs");
  CHECK(errors::operationCancelled().description() == L"Operation Cancelled.");
}

TEST_CASE("whatever is in flight becomes an error") {
  const Error own = inFlight(Error(91, L"text", L"source"));
  CHECK(own.number() == 91);
  CHECK(own.description() == L"text");
  CHECK(own.source() == L"source");
  CHECK(inFlight(std::bad_alloc()).number() == 7);
  CHECK(inFlight(7).number() == 5);
}
