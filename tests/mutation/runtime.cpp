// The switch of every change that ./dev mutate writes into a copy of the sources, see
// docs/mutation.md. It is in each program and in the module, and asks for nothing but the system.
#include <windows.h>

#include "tests/mutation/switch.h"

namespace mutation {
namespace {

int current = -1;  // not known yet
unsigned char* marks = nullptr;
bool asked = false;  // for the marks

int number(const char* digits) noexcept {
  int value = 0;
  for (; *digits; ++digits) value = 10 * value + (*digits - '0');
  return value;
}

// The section is the same for all modules and programs of a run. The test program holds it; the
// others keep only the view, so that whoever counts handles finds as many as ever.
void openMarks(const char* name, bool holds) noexcept {
  const HANDLE section =
      CreateFileMappingA(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, highest + 1, name);
  if (!section) return;
  marks = static_cast<unsigned char*>(MapViewOfFile(section, FILE_MAP_WRITE, 0, 0, 0));
  if (!holds) CloseHandle(section);
}

void readOnce(bool holds = false) noexcept {
  const DWORD code = GetLastError();
  char text[64];
  const DWORD digits = GetEnvironmentVariableA("QUILLET_MUTANT", text, sizeof text);
  current = digits > 0 && digits < sizeof text ? number(text) : 0;
  const DWORD letters = GetEnvironmentVariableA("QUILLET_MUTATION_MARKS", text, sizeof text);
  if (letters > 0 && letters < sizeof text) openMarks(text, holds);
  SetLastError(code);
}

}  // namespace

bool on(int change) noexcept {
  if (current < 0) readOnce();
  if (marks && change <= highest) marks[change] = 1;
  return change == current;
}

unsigned char* reached() noexcept {
  if (!asked) readOnce(true);
  asked = true;
  return marks;
}

}  // namespace mutation
