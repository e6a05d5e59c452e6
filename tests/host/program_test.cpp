// The program itself, driven by scripts through its real windows.
#include <windows.h>

#include "common/ansi.h"
#include "common/handles.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/text_output.h"

namespace {

struct Outcome {
  DWORD code = 0;
  std::string output;
};

std::wstring programPath() {
  wchar_t path[MAX_PATH] = {};
  GetModuleFileNameW(nullptr, path, MAX_PATH);
  const std::wstring own = path;
  return own.substr(0, own.rfind(L'\\') + 1) + L"quillet-host.exe";
}

handles::File inherited(const std::wstring& path, DWORD access, DWORD disposition) {
  SECURITY_ATTRIBUTES security = {sizeof security, nullptr, TRUE};
  return handles::File(CreateFileW(path.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                   &security, disposition, FILE_ATTRIBUTE_NORMAL, nullptr));
}

// A run of the program with a folder of its own.
struct Program {
  ScratchFolder folder;
  std::wstring web = folder.makeFolder(L"My Web");

  Outcome run(const std::wstring& arguments, const std::string& input = {}) const {
    folder.writeFile(L"input", input);
    const handles::File in = inherited(folder / L"input", GENERIC_READ, OPEN_EXISTING);
    handles::File out = inherited(folder / L"output", GENERIC_WRITE, CREATE_ALWAYS);
    STARTUPINFOW start = {};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdInput = in.get();
    start.hStdOutput = start.hStdError = out.get();
    std::wstring line = L"\"" + programPath() + L"\" --no-addins " + arguments;
    PROCESS_INFORMATION process = {};
    REQUIRE(CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr,
                           &start, &process));
    const handles::Kernel thread(process.hThread);
    const handles::Kernel running(process.hProcess);
    Outcome outcome;
    if (WaitForSingleObject(running.get(), 40000) != WAIT_OBJECT_0)
      TerminateProcess(running.get(), 99);
    GetExitCodeProcess(running.get(), &outcome.code);
    out.reset();
    outcome.output = folder.readFile(L"output");
    return outcome;
  }

  Outcome script(const std::string& lines, const std::wstring& arguments = {}) const {
    folder.writeFile(L"script.txt", lines);
    return run(L"\"" + web + L"\" --script \"" + (folder / L"script.txt") + L"\" " + arguments);
  }
};

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
