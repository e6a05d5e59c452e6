// Ways in which a test program can end, for the tests of the runner.
#include <windows.h>
#include <doctest/doctest.h>

TEST_CASE("passes") { CHECK(true); }

TEST_CASE("fails") { CHECK(false); }

TEST_CASE("crashes") { RaiseException(EXCEPTION_ACCESS_VIOLATION, 0, 0, nullptr); }

// As a crash that the system reports as a success.
TEST_CASE("ends the process") { ExitProcess(0); }

TEST_CASE("ends the process without a word") { TerminateProcess(GetCurrentProcess(), 0); }
