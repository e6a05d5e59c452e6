// Ways in which a test program can end, for the tests of the runners.
#include <windows.h>
#include <doctest/doctest.h>

#include <string>

#include "common/handles.h"
#include "common/module.h"
#include "tests/support/Skipped.h"
#include "tests/support/machine.h"

TEST_CASE("passes") { CHECK(true); }

TEST_CASE("fails") { CHECK(false); }

// A fault of the processor: from one that is only raised, a debugger may let the program go on.
TEST_CASE("crashes") {
  volatile int* volatile nowhere = nullptr;
  *nowhere = 1;
}

// As a crash that the system reports as a success.
TEST_CASE("ends the process") { ExitProcess(0); }

TEST_CASE("ends the process without a word") { TerminateProcess(GetCurrentProcess(), 0); }

TEST_CASE("a name, with what w?ldcards and a command line would t*ke for their own: \"%TEMP%\"") {
  CHECK(true);
}

TEST_CASE("ein Name mit größeren Buchstaben") { CHECK(false); }

TEST_CASE("cannot be run here") { throw Skipped("there is no moon"); }

TEST_CASE("has failed before it cannot be run") {
  CHECK(false);
  throw Skipped("there is no moon");
}

TEST_CASE("throws") { throw std::runtime_error("the sky falls"); }

TEST_CASE("changes the machine") { machine::mayChange(); }

TEST_CASE("leaves a program and a file behind") {
  std::wstring line = L"\"" + module::folder() + L"hanging-tests.exe\"";
  STARTUPINFOW start = {};
  start.cb = sizeof start;
  PROCESS_INFORMATION process = {};
  REQUIRE(CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start,
                         &process));
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  wchar_t folder[MAX_PATH] = {};
  GetTempPathW(MAX_PATH, folder);
  const std::wstring deep = std::wstring(folder) + L"left behind";
  CHECK(CreateDirectoryW(deep.c_str(), nullptr));
  const handles::File file(CreateFileW((deep + L"\\file").c_str(), GENERIC_WRITE, 0, nullptr,
                                       CREATE_NEW, FILE_ATTRIBUTE_READONLY, nullptr));
  CHECK(static_cast<bool>(file));
}

TEST_CASE("leaves a key behind") {
  HKEY key = nullptr;
  CHECK(RegCreateKeyW(HKEY_CURRENT_USER, L"Software\\Quillet scratch\\probe", &key) ==
        ERROR_SUCCESS);
  RegCloseKey(key);
}

// The one before has been in this place.
TEST_CASE("finds nothing of the others") {
  wchar_t folder[MAX_PATH] = {};
  GetTempPathW(MAX_PATH, folder);
  CHECK(GetFileAttributesW((std::wstring(folder) + L"left behind").c_str()) ==
        INVALID_FILE_ATTRIBUTES);
  HKEY key = nullptr;
  CHECK(RegOpenKeyExW(HKEY_CURRENT_USER, L"Software\\Quillet scratch", 0, KEY_READ, &key) ==
        ERROR_FILE_NOT_FOUND);
}
