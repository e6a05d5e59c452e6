// Runs the setup program and the one that removes, silently or page by page as a user does.
#pragma once

#include <windows.h>

#include <string>

#include "common/handles.h"
#include "tests/installer/Machine.h"

namespace package {

inline const std::wstring removalKey =
    L"Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\Quillet";
inline const std::wstring makerKey = L"Software\\Korvel Software";
inline const std::wstring machineKey = makerKey + L"\\Quillet Viewer";
inline const std::wstring machineFolders = machineKey + L"\\DWT Folders";
inline const std::wstring settingsKey = L"Software\\VB and VBA Program Settings\\Quillet Viewer";
inline const std::wstring userFolders = settingsKey + L"\\DWT Folders";
inline const std::wstring addInKey =
    L"Software\\Microsoft\\Office\\FrontPage\\Addins\\DWT.DWTemplate";
inline const std::wstring classKey =
    L"Software\\Classes\\CLSID\\{EA65D517-CDCA-46D0-BD68-449BB8328D69}";

std::wstring setupProgram();
std::wstring olderSetupProgram();  // of version 0.9.0
std::wstring shippedFolder();
std::wstring version();

// Where it goes without /D=.
std::wstring machineFolder();
std::wstring userFolder();

// A program of ours that runs.
class Run {
 public:
  enum class As { administrator, user };

  explicit Run(std::wstring commandLine, As as = As::administrator);
  ~Run();  // ends it, when it is still there
  Run(const Run&) = delete;
  Run& operator=(const Run&) = delete;

  DWORD exitCode();  // waits for the end

 private:
  PROCESS_INFORMATION process_ = {};
};

// Silently, with these switches; the exit code.
DWORD install(const std::wstring& switches, const std::wstring& program = setupProgram(),
              Run::As as = Run::As::administrator);
DWORD remove(const std::wstring& folder, const std::wstring& switches = {},
             Run::As as = Run::As::administrator);

// A web on the machine's disk, and the stand-in host on it. Both are gone afterwards.
class Web {
 public:
  Web();
  ~Web();
  Web(const Web&) = delete;
  Web& operator=(const Web&) = delete;

  // The host's exit code after that script.
  DWORD runHost(const std::string& script, const std::wstring& switches = {}) const;
  std::wstring path(const std::wstring& name) const { return folder_ + name; }
  std::string read(const std::wstring& name) const { return machine::bytes(path(name)); }

 private:
  std::wstring folder_ = L"C:\\package-test\\web\\";
};

// The pages of the program that runs now.
class Pages {
 public:
  // The window's caption: "Quillet Setup" or "Quillet Uninstall".
  explicit Pages(std::wstring caption);

  // Waits until the window shows that text among others, and tells everything that it shows.
  std::wstring waitFor(const std::wstring& text);
  // Waits until the page's own button is there and enabled, and presses it.
  void next() { press(1); }
  void cancel() { press(2); }
  // A button, option or check box by its caption without "&".
  void choose(const std::wstring& caption);
  bool isChosen(const std::wstring& caption);
  bool isEnabled(const std::wstring& caption);
  void type(const std::wstring& text);  // into the page's text box
  std::wstring typed();

  // Waits for a message box, answers it with that button and tells its text.
  std::wstring answerBox(int button);
  bool isOpen() const;

 private:
  HWND window() const;
  HWND box() const;
  HWND control(const std::wstring& caption) const;
  void press(int button);

  std::wstring caption_;
};

// Nothing is installed before, and nothing after, whatever a test has come to.
class CleanMachine {
 public:
  CleanMachine();
  ~CleanMachine();
  CleanMachine(const CleanMachine&) = delete;
  CleanMachine& operator=(const CleanMachine&) = delete;
};

}  // namespace package
