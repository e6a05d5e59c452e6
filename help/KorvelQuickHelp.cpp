// KorvelQuickHelp.exe "<file>" "<title>"
#include "help/command_line.h"
#include "help/frmQuickHelp.h"
#include "help/program.h"

int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR, int) {
  return help::runProgram(
      [] { frmQuickHelp().ShowQuickHelp(help::quickHelpRequestOf(GetCommandLineW())); });
}
