// Runs a script against the program's real windows, on a thread of its own, so that modal loops do
// not stop it. See host/README.md for the language.
#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <string_view>

#include "host/model/AutomationObject.h"
#include "host/script/CallHold.h"
#include "host/script/ScriptLine.h"
#include "host/script/desktop.h"

namespace standin {

class ScriptRunner {
 public:
  struct Places {
    std::wstring webFolder;
    std::wstring pictures;
  };

  ScriptRunner(HWND mainWindow, Places places, SharedSession session);

  // One command; raises a ScriptError when it fails or its time is over.
  void run(const ScriptLine& line);
  bool ended() const noexcept { return ended_; }  // "exit" was met

  // Closes whatever is open, the main window last; false when it does not close.
  bool closeAll();

 private:
  using Arguments = std::vector<std::wstring>;

  bool isReady() const;  // started, and no dialog is open
  bool until(const std::function<bool()>& condition) const;
  void require(const std::function<bool()>& condition, const std::wstring& failure) const;
  bool anyWindow(const std::wstring& caption, const std::function<bool(HWND)>& condition) const;
  HWND windowWith(const std::wstring& caption, const std::function<bool(HWND)>& condition) const;

  void runWait(const std::wstring& what, const Arguments& arguments);
  void runExpect(const std::wstring& what, const Arguments& arguments);
  void runControl(const std::wstring& what, const Arguments& arguments);
  bool runModel(const std::wstring& what, const Arguments& arguments);
  void menu(const Arguments& path);
  void showMenu(const Arguments& path);
  void hideMenu();
  void drop(const std::wstring& caption, const std::wstring& label);
  void choose(const std::wstring& entry);
  void press(const std::wstring& caption, const std::wstring& button);
  void post(const std::wstring& caption, const std::wstring& command);
  void point(const Arguments& arguments);
  void follow(const std::wstring& caption, const std::wstring& link);
  using Find = std::function<desktop::Spot(HWND)>;
  desktop::Spot spotIn(const std::wstring& caption, const Find& find,
                       const std::wstring& failure) const;
  void type(const Arguments& arguments);
  void check(const Arguments& arguments);
  void expectText(const std::wstring& caption, const std::wstring& text);
  void changeAddIn(const std::wstring& progId, const std::wstring& button);
  void picture(const Arguments& arguments);
  void runProgram(const std::wstring& commandLine) const;
  void tree(const std::wstring& below) const;
  void cat(const std::wstring& file) const;
  std::wstring webPath(const std::wstring& relative) const;

  HWND main_;
  Places places_;
  SharedSession session_;
  CallHold hold_;
  DWORD timeout_ = 30000;
  bool ended_ = false;
};

// The program's standard output, in UTF-8, a line at a time.
void printLine(std::wstring_view text);

// Runs every line of the script ("-": the standard input) and closes the program's windows, but
// leaves them open when `stay` is set and the script neither failed nor ended with "exit". 0 when
// all went well, otherwise 1.
int runScript(const std::wstring& script, HWND mainWindow, const ScriptRunner::Places& places,
              const SharedSession& session, bool stay);

}  // namespace standin
