// quillet-template.exe: for those who make templates and keep catalogues.
#include <windows.h>
#include <objbase.h>
#include <shellapi.h>

#include "author/Console.h"
#include "author/program.h"

namespace {

// The system's own reading of the command line, in wide characters.
std::vector<std::wstring> argumentsOfProcess() {
  int count = 0;
  wchar_t** const words = CommandLineToArgvW(GetCommandLineW(), &count);
  std::vector<std::wstring> arguments;
  for (int i = 1; i < count; ++i) arguments.emplace_back(words[i]);
  LocalFree(static_cast<void*>(words));
  return arguments;
}

}  // namespace

int main() {
  // The decoders of pictures are objects of the system's.
  const HRESULT initialised = CoInitialize(nullptr);
  int code = author::findingsOrFailure;
  {
    author::SystemConsole console;
    code = author::runProgram(argumentsOfProcess(), console);
    if (console.hasLost() && code == author::fine) code = author::findingsOrFailure;
  }
  if (SUCCEEDED(initialised)) CoUninitialize();
  return code;
}
