// The program itself, driven by scripts through its real windows.
#include "common/ansi.h"
#include "tests/host/Program.h"
#include "tests/support/ModalDriver.h"
#include "tests/support/text_output.h"

namespace {

// From the picture's header: big numbers first, behind the signature and the name of the chunk.
SIZE pngSize(const std::string& bytes) {
  if (bytes.size() < 24 || bytes.compare(1, 3, "PNG") != 0) return {};
  const auto number = [&](std::size_t at) {
    long value = 0;
    for (std::size_t i = 0; i < 4; ++i)
      value = value * 256 + static_cast<unsigned char>(bytes[at + i]);
    return value;
  };
  return {number(16), number(20)};
}

}  // namespace

TEST_CASE("a script prints and ends with 0") {
  const Program program;
  const Outcome outcome =
      program.script("# a script\nwait main\nprint \"gr\xC3\xBC\xC3\x9F\x65\"\n");
  CHECK(outcome.code == 0);
  CHECK(outcome.output == "gr\xC3\xBC\xC3\x9F\x65\n");
}

TEST_CASE("a script can come from the standard input") {
  const Program program;
  const Outcome outcome = program.run(L"--script -", "print \"one\"\nexit\nprint \"two\"\n");
  CHECK(outcome.code == 0);
  CHECK(outcome.output == "one\n");
}

TEST_CASE("a script chooses menu entries and presses buttons") {
  const Program program;
  const Outcome outcome = program.script(
      "menu \"Help\" \"About...\"\n"
      "wait box \"About\"\n"
      "expect text \"About\" \"A stand-in for the web editor, to run add-ins in.\"\n"
      "press \"About\" \"OK\"\n"
      "wait gone \"About\"\n"
      "wait main\n");
  CHECK(outcome.output == "");
  CHECK(outcome.code == 0);
}

TEST_CASE("a failing command is named and everything open is closed") {
  const Program program;
  const Outcome outcome = program.script(
      "menu \"Tools\" \"Add-ins...\"\n"
      "wait window \"Add-ins\"\n"
      "timeout 0\n"
      "press \"Add-ins\" \"Fly\"\n");
  CHECK(outcome.code == 1);
  CHECK(outcome.output ==
        "script: line 4: press \"Add-ins\" \"Fly\": there is no such button that can be pressed\n"
        "script: in front is \"Add-ins\"\n");
}

TEST_CASE("a text that is not there is answered with those that are") {
  const Program program;
  const Outcome outcome = program.script(
      "menu \"About...\"\nwait box \"About\"\ntimeout 0\nexpect text \"About\" \"Hello\"\n");
  CHECK(outcome.code == 1);
  CHECK(outcome.output.find("the text is not there; what is there:") != std::string::npos);
  CHECK(outcome.output.find("\"A stand-in for the web editor, to run add-ins in.\"") !=
        std::string::npos);
}

TEST_CASE("a script with a mistake fails at its line") {
  const Program program;
  const Outcome outcome = program.script("print \"a\"\njump\n");
  CHECK(outcome.code == 1);
  CHECK(outcome.output == "a\nscript: line 2: jump: there is no such command\n");
}

TEST_CASE("a script that is not there fails") {
  const Program program;
  CHECK(program.run(L"--script C:\\none.txt").code == 1);
}

TEST_CASE("a wrong command line is named and ends with 2") {
  const Program program;
  const Outcome outcome = program.run(L"--colour");
  CHECK(outcome.code == 2);
  CHECK(outcome.output == "quillet-host: There is no such switch: --colour\n");
}

TEST_CASE("a script prints the tree of the web and its files") {
  const Program program;
  program.folder.writeFile(L"My Web\\dwts\\a.dwt", "12345");
  program.folder.writeFile(L"My Web\\index.htm", "<html>");
  const Outcome outcome = program.script("tree\ntree \"dwts\"\ncat \"dwts/a.dwt\"\n");
  const std::string web = text::toAnsi(program.web);
  CHECK(outcome.output ==
        web + "\n  dwts/\n    a.dwt  5\n  index.htm  6\n" + web + "\\dwts\n  a.dwt  5\n12345\n");
  CHECK(outcome.code == 0);
}

TEST_CASE("the window shows the web's folders and files and its address") {
  const Program program;
  program.folder.writeFile(L"My Web\\dwts\\Blue\\a.dwt", "12345");
  program.folder.writeFile(L"My Web\\index.htm");
  const Outcome outcome = program.script(
      "timeout 5\n"
      "expect row \"Microsoft FrontPage*\" \"index.htm\"\n"
      "expand \"Microsoft FrontPage*\" \"dwts/Blue\"\n"
      "expect row \"Microsoft FrontPage*\" \"a.dwt\"\n"
      "expect row \"Microsoft FrontPage*\" \"5\"\n"
      "expect no row \"Microsoft FrontPage*\" \"index.htm\"\n");
  CHECK(outcome.output == "");
  CHECK(outcome.code == 0);
}

TEST_CASE("closing the web empties the window and changes its caption") {
  const Program program;
  program.folder.writeFile(L"My Web\\index.htm");
  const Outcome outcome = program.script(
      "timeout 5\n"
      "menu \"File\" \"Close Web\"\n"
      "wait window \"Microsoft FrontPage\"\n"
      "expect no row \"Microsoft FrontPage\" \"index.htm\"\n"
      "expect text \"Microsoft FrontPage\" \"No web is open.\"\n");
  CHECK(outcome.output == "");
  CHECK(outcome.code == 0);
}

TEST_CASE("a script checks what stands in the web") {
  const Program program;
  program.folder.writeFile(L"My Web\\dwts\\a.dwt", "content");
  const Outcome outcome = program.script(
      "timeout 0\n"
      "expect file \"dwts/a.dwt\"\n"
      "expect no file \"dwts/b.dwt\"\n"
      "expect in file \"dwts/a.dwt\" \"tent\"\n"
      "expect in file \"dwts/a.dwt\" \"tant\"\n");
  CHECK(outcome.code == 1);
  CHECK(outcome.output ==
        "script: line 5: expect in file \"dwts/a.dwt\" \"tant\": the file does not hold "
        "that\n");
}

TEST_CASE("a script runs a program and waits for its end") {
  const Program program;
  const Outcome outcome = program.script("run \"cmd /c mkdir \"\"" + text::toAnsi(program.web) +
                                         "\\made\"\"\"\n"
                                         "expect file \"made\"\n"
                                         "run \"cmd /c exit 3\"\n");
  CHECK(outcome.code == 1);
  CHECK(outcome.output == "script: line 3: run \"cmd /c exit 3\": the program ends with 3\n");
}

TEST_CASE("a program that is not there fails the script") {
  const Program program;
  CHECK(program.script("run \"C:\\none.exe\"\n").output ==
        "script: line 1: run \"C:\\none.exe\": the program cannot be started\n");
}

TEST_CASE("a script can neither hold nor refuse what no object has") {
  const Program program;
  CHECK(program.script("hold \"WebFiles.Fly\"\n").output ==
        "script: line 1: hold \"WebFiles.Fly\": the host has no such member\n");
  CHECK(program.script("refuse \"Fly\" \"No.\"\n").output ==
        "script: line 1: refuse \"Fly\" \"No.\": the host has no such member\n");
}

TEST_CASE("waiting for a held call ends when there is none") {
  const Program program;
  CHECK(program.script("timeout 1\nhold \"WebFiles.Add\"\nwait held\n").output ==
        "script: line 3: wait held: no call is held\n");
}

TEST_CASE("a missing menu entry is a failure and can be expected") {
  const Program program;
  const Outcome outcome = program.script(
      "wait main\n"
      "timeout 0\n"
      "expect menu \"Format\" \"Dynamic Web Template\" \"Update All Pages\"\n"
      "expect menu \"Update All Pages\"\n"
      "expect no menu \"Insert\" \"Update All Pages\"\n"
      "menu \"Format\" \"Fly...\"\n");
  CHECK(outcome.code == 1);
  CHECK(outcome.output ==
        "script: line 6: menu \"Format\" \"Fly...\": there is no such menu entry\n");
}

TEST_CASE("what a script wants to click on has to be there") {
  const Program program;
  const auto failure = [&](const std::string& line) {
    const std::string output = program.script("timeout 1\n" + line + "\n").output;
    const std::string start = "script: line 2: " + line + ": ";
    return output.rfind(start, 0) == 0 ? output.substr(start.size()) : output;
  };
  CHECK(failure("follow \"Microsoft FrontPage*\" \"link\"") == "there is no such link\n");
  CHECK(failure("drop \"Microsoft FrontPage*\" \"label\"") == "there is no such tool bar\n");
  CHECK(failure("choose \"Entry\"") == "no menu is open that has such an entry\n");
  CHECK(failure("wait bar \"Microsoft FrontPage*\" 1") == "no progress bar has come that far\n");
}

TEST_CASE("a script chooses an entry of the menu that is open") {
  const Program program;
  const Outcome outcome = program.script(
      "timeout 5\n"
      "show menu \"Help\"\n"
      "choose \"About...\"\n"
      "wait box \"About\"\n"
      "press \"About\" \"OK\"\n");
  CHECK(outcome.output == "");
  CHECK(outcome.code == 0);
}

TEST_CASE("a menu can be opened by its accelerators and closed again") {
  const Program program;
  const Outcome outcome = program.script(
      "timeout 5\n"
      "show menu \"Format\" \"Dynamic Web Template\"\n"
      "hide menu\n"
      "menu \"About...\"\n"
      "press \"About\" \"OK\"\n");
  CHECK(outcome.output == "");
  CHECK(outcome.code == 0);
}

TEST_CASE("a script that leaves a menu open does not keep the program") {
  const Program program;
  CHECK(program.script("show menu \"File\"\n").code == 0);
}

TEST_CASE("the exit entry of the menu closes the program") {
  const Program program;
  const Outcome outcome = program.script("menu \"File\" \"Exit\"\nwait gone \"Microsoft*\"\n");
  CHECK(outcome.code == 0);
}

TEST_CASE("a web or theme folder that is not there is named and ends with 2") {
  const Program program;
  const Outcome outcome = program.run(L"C:\\none");
  CHECK(outcome.code == 2);
  CHECK(outcome.output == "quillet-host: There is no such folder: C:\\none\n");
  CHECK(program.run(L"--themes C:\\none").code == 2);
}

TEST_CASE("a script closes a window as by its title bar") {
  const Program program;
  const Outcome outcome = program.script(
      "timeout 5\n"
      "menu \"Help\" \"About...\"\n"
      "wait box \"About\"\n"
      "close \"About\"\n"
      "wait gone \"About\"\n"
      "menu \"Tools\" \"Add-ins...\"\n"
      "wait window \"Add-ins\"\n"
      "close \"Add-ins\"\n"
      "wait gone \"Add-ins\"\n"
      "close \"Missing\"\n");
  CHECK(outcome.output == "script: line 10: close \"Missing\": there is no such window\n");
  CHECK(outcome.code == 1);
}

TEST_CASE("a script posts the number of a command to a window") {
  const Program program;
  const Outcome outcome = program.script(
      "timeout 5\n"
      "menu \"Tools\" \"Add-ins...\"\n"
      "post \"Add-ins\" 2\n"
      "wait gone \"Add-ins\"\n"
      "post \"Missing\" 2\n");
  CHECK(outcome.output == "script: line 5: post \"Missing\" 2: there is no such window\n");
  CHECK(outcome.code == 1);
}

TEST_CASE("a script prints every window and control with its number and its text") {
  const Program program;
  const Outcome outcome = program.script(
      "timeout 5\n"
      "menu \"Tools\" \"Add-ins...\"\n"
      "wait window \"Add-ins\"\n"
      "windows\n");
  CHECK(outcome.output.find("#32770 0 \"Add-ins\"\n") != std::string::npos);
  CHECK(outcome.output.find("  Static -1 \"Available &add-ins:\"\n") != std::string::npos);
  CHECK(outcome.output.find("  Button 102 \"&Load\" disabled\n") != std::string::npos);
  CHECK(outcome.output.find("  Button 2 \"Close\"\n") != std::string::npos);
  CHECK(outcome.output.find("FrontPageExplorerWindow40 0 \"Microsoft FrontPage - ") !=
        std::string::npos);
  CHECK(outcome.code == 0);
}

TEST_CASE("a script waits until a button can be pressed and fails when it never can") {
  const Program program;
  const Outcome outcome = program.script(
      "timeout 1\n"
      "menu \"Tools\" \"Add-ins...\"\n"
      "wait enabled \"Add-ins\" \"Close\"\n"
      "wait enabled \"Add-ins\" \"Unload\"\n");
  CHECK(outcome.output ==
        "script: line 4: wait enabled \"Add-ins\" \"Unload\": the button is not there or "
        "disabled\n"
        "script: in front is \"Add-ins\"\n");
  CHECK(outcome.code == 1);
}

TEST_CASE("a script takes pictures of the screen and of one window") {
  const Program program;
  program.folder.makeFolder(L"pictures");
  const Outcome outcome = program.script(
      "timeout 5\n"
      "wait main\n"
      "picture \"screen.png\"\n"
      "menu \"Tools\" \"Add-ins...\"\n"
      "wait window \"Add-ins\"\n"
      "picture \"window.png\" \"Add-ins\"\n"
      "picture \"none.png\" \"Missing\"\n",
      L"--pictures \"" + (program.folder / L"pictures") + L"\"");
  CHECK(outcome.output.find("picture \"none.png\" \"Missing\": there is no such window\n") !=
        std::string::npos);
  CHECK(outcome.code == 1);
  const auto size = [&](const wchar_t* file) { return pngSize(program.folder.readFile(file)); };
  CHECK(size(L"pictures\\screen.png").cx == GetSystemMetrics(SM_CXSCREEN));
  CHECK(size(L"pictures\\screen.png").cy == GetSystemMetrics(SM_CYSCREEN));
  const SIZE window = size(L"pictures\\window.png");
  CHECK(window.cx > 300);
  CHECK(window.cx < GetSystemMetrics(SM_CXSCREEN));
  CHECK(window.cy > 150);
  CHECK(window.cy < GetSystemMetrics(SM_CYSCREEN));
  CHECK_FALSE(program.folder.exists(L"pictures\\none.png"));
}

TEST_CASE("the program stays open behind a script when it is told to") {
  const Program program;
  program.start(program.scriptArguments("wait main\nprint \"done\"\n") + L"--stay");
  REQUIRE(pumpUntil([&] { return program.output() == "done\n" || !program.isRunning(); }, 30000));
  // What closes a program behind its script does so at once.
  CHECK_FALSE(pumpUntil([&] { return !program.isRunning(); }, 1000));
  const HWND window = program.mainWindow();
  REQUIRE(window);
  PostMessageW(window, WM_CLOSE, 0, 0);
  CHECK(program.end().code == 0);
}

TEST_CASE("a script that fails or exits closes a program that was told to stay") {
  const Program program;
  CHECK(program.script("exit\n", L"--stay").code == 0);
  CHECK(program.script("jump\n", L"--stay").code == 1);
}
