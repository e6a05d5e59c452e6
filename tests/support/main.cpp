#define DOCTEST_CONFIG_IMPLEMENT
#include <windows.h>
#include <objbase.h>
#include <doctest/doctest.h>

// Tests run on one thread, as the add-in does in its host: a single-threaded apartment.
int main(int argc, char** argv) {
  OleInitialize(nullptr);
  doctest::Context context(argc, argv);
  context.setOption("no-path-filenames", true);
  const int result = context.run();
  OleUninitialize();
  return result;
}
