// A test program that does not come to its end, for the test of what ends it.
#include <windows.h>
#include <doctest/doctest.h>

TEST_CASE("hangs") { Sleep(INFINITE); }
