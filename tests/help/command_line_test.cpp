#include "help/command_line.h"

#include "tests/support/text_output.h"

using namespace help;

TEST_CASE("a help folder in quotes may end in a backslash") {
  const HelpRequest request =
      helpRequestOf(LR"("C:\Program Files\KorvelHelp.exe" "C:\Program Files\QuilletHelp\")");
  CHECK(request.folder == LR"(C:\Program Files\QuilletHelp\)");
  CHECK(request.topic.empty());
}

TEST_CASE("a help topic stands directly behind its switch") {
  const HelpRequest request =
      helpRequestOf(LR"(C:\KorvelHelp.exe "C:\QuilletHelp\" /cHowToApply )");
  CHECK(request.folder == LR"(C:\QuilletHelp\)");
  CHECK(request.topic == L"HowToApply");
}

TEST_CASE("a help request of nothing has neither folder nor topic") {
  for (const wchar_t* line : {L"", L"KorvelHelp.exe", L"\"KorvelHelp.exe\"", L"\"KorvelHelp.exe"}) {
    CAPTURE(line);
    CHECK(helpRequestOf(line).folder.empty());
    CHECK(helpRequestOf(line).topic.empty());
  }
}

TEST_CASE("a remainder that is no topic is passed over") {
  CHECK(helpRequestOf(L"h.exe \"C:\\h\\\" something else").topic.empty());
}

TEST_CASE("quick help takes a file and a title in quotes") {
  const QuickHelpRequest request =
      quickHelpRequestOf(LR"("C:\q.exe" "C:\My Templates\read me.htm" "DWTNotes")");
  CHECK(request.file == LR"(C:\My Templates\read me.htm)");
  CHECK(request.title == L"DWTNotes");
}

TEST_CASE("quick help without a file has none") {
  CHECK(quickHelpRequestOf(LR"("C:\q.exe" "" "DWTNotes")").file.empty());
  CHECK(quickHelpRequestOf(LR"("C:\q.exe" "" "DWTNotes")").title == L"DWTNotes");
  CHECK(quickHelpRequestOf(L"q.exe").title.empty());
}
