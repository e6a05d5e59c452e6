// Each check of the hardened run notices what it is there for, and ends the process.
#include "tests/hardened/faults.h"

#include <windows.h>
#include <doctest/doctest.h>

#include <string>

#include "common/handles.h"

namespace {

// How the process ended that made this fault.
std::string outcomeOf(const std::wstring& fault) {
  wchar_t path[MAX_PATH] = {};
  GetModuleFileNameW(nullptr, path, MAX_PATH);
  const std::wstring own = path;
  std::wstring line =
      L"\"" + own.substr(0, own.rfind(L'\\') + 1) + L"hardened-faults.exe\" \"" + fault + L"\"";
  STARTUPINFOW startup = {};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION process = {};
  if (!CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                      &process))
    return "did not start";
  CloseHandle(process.hThread);
  const handles::File ended(process.hProcess);
  if (WaitForSingleObject(ended.get(), 30000) != WAIT_OBJECT_0) {
    TerminateProcess(ended.get(), 1);
    return "hung";
  }
  DWORD code = 0;
  GetExitCodeProcess(ended.get(), &code);
  switch (code) {
    case faults::survived:
      return "survived";
    case faults::unknownFault:
      return "unknown fault";
    case EXCEPTION_ACCESS_VIOLATION:
      return "page is not there";
    case EXCEPTION_ILLEGAL_INSTRUCTION:
      return "trap";
    case 3:
      return "abort";
    default:
      return "code " + std::to_string(code);
  }
}

}  // namespace

TEST_CASE("A program without a fault is not ended") {
  CHECK(outcomeOf(L"nothing") == "survived");
  CHECK(outcomeOf(L"a fault that nobody wrote") == "unknown fault");
}

TEST_CASE("One byte behind a block ends the process at once") {
  CHECK(outcomeOf(L"write behind a block") == "page is not there");
  CHECK(outcomeOf(L"read behind a block") == "page is not there");
  CHECK(outcomeOf(L"read behind a long block") == "page is not there");
}

TEST_CASE("One byte before a block or in the gap behind it ends the process when it is freed") {
  CHECK(outcomeOf(L"write behind a block of odd size") == "trap");
  CHECK(outcomeOf(L"write before a block") == "trap");
}

TEST_CASE("A block that has been freed is no longer there") {
  CHECK(outcomeOf(L"read a freed block") == "page is not there");
  CHECK(outcomeOf(L"write a deleted object") == "page is not there");
  CHECK(outcomeOf(L"read a moved block") == "page is not there");
}

TEST_CASE("What is no block can not be freed") {
  CHECK(outcomeOf(L"free twice") == "trap");
  CHECK(outcomeOf(L"free the middle") == "trap");
}

TEST_CASE("What the language leaves undefined ends the process") {
  CHECK(outcomeOf(L"overflow a number") == "trap");
  CHECK(outcomeOf(L"shift too far") == "trap");
  CHECK(outcomeOf(L"divide by zero") == "trap");
  CHECK(outcomeOf(L"read behind an array") == "trap");
  CHECK(outcomeOf(L"use nothing") == "trap");
}

TEST_CASE("What the library forbids ends the process") {
  CHECK(outcomeOf(L"read behind a vector") == "abort");
  CHECK(outcomeOf(L"read the back of nothing") == "abort");
}

TEST_CASE("A stack that was written over ends the process") {
  CHECK(outcomeOf(L"smash the stack") == "trap");
}

TEST_CASE("A copy that does not fit into its array ends the process") {
  CHECK(outcomeOf(L"copy too much") == "trap");
}
