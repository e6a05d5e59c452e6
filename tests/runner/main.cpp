// Runs the test programs that stand beside it on somebody's own machine and writes one report. See
// ReadMe.txt.
#include <windows.h>
#include <conio.h>
#include <shellapi.h>
#include <shlobj.h>

#include <cwchar>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "common/module.h"
#include "common/version.h"
#include "tests/runner/ClipboardText.h"
#include "tests/runner/TestRun.h"
#include "tests/runner/this_machine.h"
#include "tests/support/machine.h"

namespace {

constexpr int nothingFailed = 0, somethingFailed = 1, nothingWasRun = 2;

struct Wish {
  bool isQuiet = false;
  bool isAll = false;
  bool isUnknown = false;  // there is a switch that nobody knows
  DWORD limit = 60;        // seconds for a case
  std::vector<std::wstring> programs;
};

void say(const std::wstring& text) {
  const std::wstring line = text + L"\r\n";
  const HANDLE output = GetStdHandle(STD_OUTPUT_HANDLE);
  const auto length = static_cast<int>(line.size());
  DWORD done = 0;
  if (WriteConsoleW(output, line.data(), static_cast<DWORD>(length), &done, nullptr)) return;
  std::string bytes(line.size() * 3, '\0');
  const int size = WideCharToMultiByte(CP_UTF8, 0, line.data(), length, bytes.data(),
                                       static_cast<int>(bytes.size()), nullptr, nullptr);
  WriteFile(output, bytes.data(), static_cast<DWORD>(size), &done, nullptr);
}

std::wstring wide(const std::string& ascii) { return {ascii.begin(), ascii.end()}; }
std::string narrow(const std::wstring& ascii) {
  std::string result;
  for (const wchar_t letter : ascii) result += static_cast<char>(letter);
  return result;
}

bool isSwitch(const wchar_t* word, const wchar_t* name) { return lstrcmpiW(word, name) == 0; }

// 0 when it is no number of seconds.
DWORD readLimit(const std::wstring& word) {
  constexpr unsigned long day = 86400;
  constexpr std::wstring_view name = L"/timeout:";
  if (!word.starts_with(name)) return 0;
  const unsigned long seconds = std::wcstoul(word.c_str() + name.size(), nullptr, 10);
  return seconds > day ? 0 : seconds;
}

Wish readCommandLine() {
  Wish wish;
  int count = 0;
  LPWSTR* const words = CommandLineToArgvW(GetCommandLineW(), &count);
  for (int index = 1; index < count; ++index) {
    const wchar_t* const word = words[index];
    if (isSwitch(word, L"/quiet"))
      wish.isQuiet = true;
    else if (isSwitch(word, L"/all"))
      wish.isAll = true;
    else if (const DWORD limit = readLimit(word))
      wish.limit = limit;
    else if (word[0] == L'/')
      wish.isUnknown = true;
    else
      wish.programs.emplace_back(word);
  }
  LocalFree(words);
  return wish;
}

bool isRegistered(const wchar_t* progId) {
  HKEY key = nullptr;
  if (RegOpenKeyExW(HKEY_CLASSES_ROOT, progId, 0, KEY_READ, &key) != ERROR_SUCCESS) return false;
  RegCloseKey(key);
  return true;
}

// What the tests register is taken back as if it had not been there before.
void requireMachineToGive() {
  if (!IsUserAnAdmin())
    throw std::runtime_error("/all needs an administrator's rights, as it registers components.");
  for (const wchar_t* const progId : {L"FrontPage.Application", L"DWT.DWTemplate"})
    if (isRegistered(progId))
      throw std::runtime_error("/all would take away the registration of " + narrow(progId) +
                               ", which is on this machine.");
}

void waitForKey(const wchar_t* why) {
  say(why);
  _getch();
}

std::size_t countCases(const std::vector<TestRun::Program>& programs) {
  std::size_t count = 0;
  for (const auto& program : programs) count += program.cases.size();
  return count;
}

void writeHead(Report& report, const Wish& wish) {
  report.line("Quillet " QUILLET_VERSION_TEXT ", report of its tests");
  report.line("");
  for (const std::string& line : machine::description()) report.line(line);
  report.line(wish.isAll ? "Run as:      run.cmd /all" : "Run as:      run.cmd");
  report.line("Begun:       " + machine::timeNow());
}

void runPrograms(const TestRun& run, const std::vector<TestRun::Program>& programs,
                 Report& report) {
  for (const auto& program : programs) {
    say(program.name);
    report.line("");
    report.line(narrow(program.name));
    run.run(program, report);
  }
  report.line("");
  report.line("Ended:       " + machine::timeNow());
  report.line(report.summary());
}

int runAll(const Wish& wish) {
  if (wish.isUnknown) throw std::runtime_error("There is no such switch; ReadMe.txt has them all.");
  if (wish.isAll)
    requireMachineToGive();
  else
    SetEnvironmentVariableW(machine::isKept, L"1");
  const std::wstring folder = module::folder();
  const std::wstring path =
      folder.substr(0, folder.rfind(L'\\', folder.size() - 2) + 1) + L"report.txt";
  const TestRun run(folder, wish.limit * 1000);
  const auto programs = run.find(wish.programs);
  if (programs.empty()) throw std::runtime_error("There is no such test program.");
  say(std::to_wstring(countCases(programs)) +
      L" tests will run, one after another. Windows open "
      L"and close by themselves meanwhile:\r\nplease leave the mouse and the keyboard alone.");
  if (!wish.isQuiet) waitForKey(L"Press a key to begin, or close this window.");
  Report report(path);
  writeHead(report, wish);
  {
    const ClipboardText clipboard;
    runPrograms(run, programs, report);
  }
  say(wide(report.summary()) + L"\r\nThe report is " + path);
  if (!wish.isQuiet) waitForKey(L"Press a key to end.");
  return report.count(Result::failed) == 0 ? nothingFailed : somethingFailed;
}

}  // namespace

int main() {
  // A program that crashes is to end, and not to ask.
  SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX | SEM_NOOPENFILEERRORBOX);
  const Wish wish = readCommandLine();
  try {
    return runAll(wish);
  } catch (const std::exception& error) {
    say(wide(error.what()));
    if (!wish.isQuiet) waitForKey(L"Press a key to end.");
    return nothingWasRun;
  }
}
