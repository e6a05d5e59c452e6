// Takes the place of tests/support/main.cpp in the build of ./dev mutate: the test cases run in an
// order that is given, each told of as it begins and ends, until one fails.
#define DOCTEST_CONFIG_IMPLEMENT
#include <windows.h>
#include <objbase.h>
#include <doctest/doctest.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "tests/mutation/switch.h"

namespace {

int run(int argc, char** argv, int number) {
  doctest::Context context(argc, argv);
  context.setOption("no-path-filenames", true);
  if (number > 0) {
    context.setOption("first", number);
    context.setOption("last", number);
    context.setOption("abort-after", 1);
  }
  return context.run();
}

// "began 7", "ended 7 120 passed 3 5": the test case's number, the milliseconds it took, what
// became of it, and the changes that it has reached.
int runInOrder(int argc, char** argv, const char* order, const char* told) {
  std::FILE* numbers = std::fopen(order, "r");
  std::FILE* teller = std::fopen(told, "w");
  if (!numbers || !teller) return 2;
  int result = 0;
  for (int number = 0; result == 0 && std::fscanf(numbers, "%d", &number) == 1;) {
    if (mutation::reached()) std::memset(mutation::reached(), 0, mutation::highest + 1);
    std::fprintf(teller, "began %d\n", number);
    std::fflush(teller);
    const DWORD began = GetTickCount();
    result = run(argc, argv, number);
    std::fprintf(teller, "ended %d %lu %s", number, GetTickCount() - began,
                 result == 0 ? "passed" : "failed");
    for (int change = 1; mutation::reached() && change <= mutation::highest; ++change)
      if (mutation::reached()[change]) std::fprintf(teller, " %d", change);
    std::fprintf(teller, "\n");
    std::fflush(teller);
  }
  return result;
}

// What the environment says to this program, and to none that it starts.
std::string taken(const char* name) {
  const char* value = std::getenv(name);
  std::string result = value ? value : "";
  _putenv((std::string(name) + "=").c_str());
  return result;
}

}  // namespace

// Tests run on one thread, as the add-in does in its host: a single-threaded apartment.
int main(int argc, char** argv) {
  OleInitialize(nullptr);
  const std::string order = taken("QUILLET_MUTATION_ORDER");
  const std::string told = taken("QUILLET_MUTATION_TOLD");
  const int result =
      order.empty() ? run(argc, argv, 0) : runInOrder(argc, argv, order.c_str(), told.c_str());
  OleUninitialize();
  return result;
}
