// KorvelQuickHelp.exe "<file>" "<title>"
#include "help/command_line.h"
#include "help/frmQuickHelp.h"
#include "help/program.h"

// Not run by tests: they show the window without the program.
int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR, int) {
  return help::runProgram(
      [] { frmQuickHelp().ShowQuickHelp(help::quickHelpRequestOf(GetCommandLineW())); });
}
