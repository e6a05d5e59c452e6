#include "common/log.h"
#include "common/log_switch.h"

#include <windows.h>

#include "common/report.h"
#include "tests/support/DebugOutput.h"
#include "tests/support/ImportPatch.h"
#include "tests/support/ScratchRegistry.h"
#include "tests/support/text_output.h"

using namespace modCommon;

namespace {

using Lines = std::vector<std::wstring>;

constexpr wchar_t key[] = L"Software\\VB and VBA Program Settings\\Quillet Viewer\\Settings";

// A log in a state that the test names, and off again behind it.
struct LogState {
  explicit LogState(int flag) {
    setLoggingFlag(flag);
    SetLogIndent(0);
  }
  ~LogState() {
    setLoggingFlag(0);
    SetLogIndent(0);
  }
};

// What the log's start makes of a setting.
int flagAfter(const std::wstring& setting) {
  ScratchRegistry registry;
  registry.setString(HKEY_CURRENT_USER, key, L"Logging", setting);
  InitLog();
  return loggingFlag();
}

void WINAPI earlyMorning(LPSYSTEMTIME time) {
  *time = {};
  time->wHour = 0;
  time->wMinute = 5;
  time->wSecond = 9;
}

void WINAPI lateEvening(LPSYSTEMTIME time) {
  *time = {};
  time->wHour = 23;
  time->wMinute = 59;
  time->wSecond = 10;
}

int calls = 0;
void WINAPI countCall(LPCSTR) { ++calls; }

}  // namespace

TEST_CASE("with the flag 0 nothing reaches the debug output and no error report does") {
  LogState state(0);
  DebugOutput output;
  WriteLog(L"line");
  reportFormError(L"Form_Load", L"frmQuillet", Error(5));
  reportModuleError(L"GetDWTInfo", Error(5));
  CHECK(output.lines().empty());
}

TEST_CASE("a flag of 2 counts as off") {
  LogState state(0);
  CHECK(flagAfter(L"2") == 2);
  DebugOutput output;
  WriteLog(L"line");
  CHECK(output.lines().empty());
}

TEST_CASE("the log stays off when no setting exists") {
  LogState state(1);
  ScratchRegistry registry;
  InitLog();
  CHECK(loggingFlag() == 0);
}

TEST_CASE("a setting of 1 switches the log on and 0 switches it off") {
  LogState state(0);
  CHECK(flagAfter(L"1") == 1);
  CHECK(flagAfter(L"0") == 0);
}

TEST_CASE("a line is the time of day then one blank and the message without a line end") {
  LogState state(1);
  DebugOutput output;
  {
    ImportPatch clock(nullptr, "kernel32.dll", "GetLocalTime", earlyMorning);
    WriteLog(L"Saving DWT list...");
  }
  {
    ImportPatch clock(nullptr, "kernel32.dll", "GetLocalTime", lateEvening);
    WriteLog(L"");
  }
  CHECK(output.lines() == Lines{L"00:05:09 Saving DWT list...", L"23:59:10 "});
}

TEST_CASE("a line is handed over in one call") {
  LogState state(1);
  calls = 0;
  ImportPatch patch(nullptr, "kernel32.dll", "OutputDebugStringA", countCall);
  WriteLog(std::wstring(100000, L'x'));
  WriteLog(L"one\r\ntwo");
  CHECK(calls == 2);
}

TEST_CASE("after two steps deeper the message stands five blanks behind the time") {
  LogState state(1);
  DebugOutput output;
  LogIndent(true);
  LogIndent(true);
  WriteLog(L"nested");
  LogIndent(false);
  WriteLog(L"less");
  REQUIRE(output.lines().size() == 2);
  CHECK(output.lines()[0].substr(8) == L"     nested");
  CHECK(output.lines()[1].substr(8) == L"   less");
}

TEST_CASE("a step back at level 0 keeps the level at 0") {
  LogState state(1);
  DebugOutput output;
  LogIndent(false);
  WriteLog(L"line");
  LogIndent(true);
  WriteLog(L"deeper");
  REQUIRE(output.lines().size() == 2);
  CHECK(output.lines()[0].substr(8) == L" line");
  CHECK(output.lines()[1].substr(8) == L"   deeper");
}

TEST_CASE("a step back from level 1 ends at level 0") {
  LogState state(1);
  DebugOutput output;
  SetLogIndent(1);
  LogIndent(false);
  WriteLog(L"line");
  REQUIRE(output.lines().size() == 1);
  CHECK(output.lines()[0].substr(8) == L" line");
}

TEST_CASE("the indentation stays within sixteen bits") {
  LogState state(1);
  SetLogIndent(32767);
  LogIndent(true);
  DebugOutput output;
  WriteLog(L"x");
  REQUIRE(output.lines().size() == 1);
  CHECK(output.lines()[0].size() == 8 + 32768 + 1);
  output.clear();
  SetLogIndent(-5);
  WriteLog(L"x");
  CHECK(output.lines()[0].substr(8) == L" x");
}

TEST_CASE("starting the log resets the indentation also when its flag cannot be read") {
  LogState state(0);
  SetLogIndent(8);
  CHECK(flagAfter(L"1") == 1);
  DebugOutput output;
  WriteLog(L"line");
  SetLogIndent(8);
  CHECK(flagAfter(L"rubbish") == 1);
  output.clear();
  WriteLog(L"line");
  CHECK(output.lines()[0].substr(8) == L" line");
}

TEST_CASE("a setting that is no number leaves the flag as it was") {
  LogState state(0);
  for (const auto* rubbish : {L"", L"on", L"1x", L"--1", L"40000", L"99999999999999999999"}) {
    CAPTURE(std::wstring(rubbish));
    setLoggingFlag(0);
    CHECK(flagAfter(rubbish) == 0);
    setLoggingFlag(1);
    CHECK(flagAfter(rubbish) == 1);
  }
}

TEST_CASE("a setting that is no number is reported when the log was on before") {
  LogState state(1);
  DebugOutput output;
  flagAfter(L"rubbish");
  flagAfter(L"40000");
  CHECK(output.messages() ==
        Lines{L"Error 13 (Type mismatch) in procedure InitLog of Module modCommon",
              L"Error 6 (Overflow) in procedure InitLog of Module modCommon"});
}

TEST_CASE("a setting is converted as a number with halves to the even neighbour") {
  LogState state(0);
  CHECK(flagAfter(L" 1 ") == 1);
  CHECK(flagAfter(L"1.4") == 1);
  CHECK(flagAfter(L"0.5") == 0);
  CHECK(flagAfter(L"1.5") == 2);
  CHECK(flagAfter(L"-1") == -1);
  CHECK(flagAfter(L"32767") == 32767);
}

TEST_CASE("characters outside the code page and NULs do not stop a line") {
  LogState state(1);
  DebugOutput output;
  WriteLog(L"\u00e4\u0416");
  WriteLog(std::wstring(L"seen\0lost", 9));
  CHECK(output.messages() == Lines{L"\u00e4?", L"seen"});
}

TEST_CASE("an error in a window becomes the line with number tab and description") {
  LogState state(1);
  DebugOutput output;
  reportFormError(L"cmdAdd_Click", L"frmManageDWTFolders", Error(76));
  reportFormError(L"Form_Load", L"frmQuillet", Error(-2147467259, L"The host says no."));
  CHECK(output.messages() == Lines{L"ERROR in procedure cmdAdd_Click of Form frmManageDWTFolders. "
                                   L"Error : 76\tPath not found",
                                   L"ERROR in procedure Form_Load of Form frmQuillet. Error : "
                                   L"-2147467259\tThe host says no."});
}

TEST_CASE("an error in a module becomes the line with number and description") {
  LogState state(1);
  DebugOutput output;
  reportModuleError(L"UnzipFiles", Error(53));
  reportModuleError(L"OpenURL", Error(440), L"modWINInetURL");
  CHECK(output.messages() ==
        Lines{L"Error 53 (File not found) in procedure UnzipFiles of Module modCommon",
              L"Error 440 (Automation error) in procedure OpenURL of Module modWINInetURL"});
}

TEST_CASE("a handled procedure tells whether it came to its end and reports what stopped it") {
  LogState state(1);
  DebugOutput output;
  CHECK(handle(L"Quiet", [] {}));
  CHECK_FALSE(handle(L"Stopped", [] { throw errors::operationCancelled(); }));
  CHECK_FALSE(handle(L"Odd", [] { throw 7; }));
  CHECK(
      output.messages() ==
      Lines{L"Error 512 (Operation Cancelled.) in procedure Stopped of Module modCommon",
            L"Error 5 (Invalid procedure call or argument) in procedure Odd of Module modCommon"});
}

TEST_CASE("the line between two sessions has 53 hyphens") {
  CHECK(std::wstring(logSeparator) == std::wstring(53, L'-'));
}
