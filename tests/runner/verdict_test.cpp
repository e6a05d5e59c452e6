#include "tests/runner/verdict.h"

#include <doctest/doctest.h>

#include <stdexcept>

namespace {

using Lines = std::vector<std::string>;

const std::string name = "the sun rises";
const std::string head =
    "[doctest] doctest version is \"2.4.9\"\r\n"
    "[doctest] run with \"--help\" for options\r\n"
    "===============================================================================\r\n"
    "sky_test.cpp:12:\r\n"
    "TEST CASE:  the sun rises\r\n\r\n";
const std::string time = "0.010000 s: the sun rises\r\n";
const std::string separator =
    "===============================================================================\r\n";
const std::string success = separator +
                            "[doctest] test cases: 7 | 7 passed | 0 failed | 0 skipped\r\n"
                            "[doctest] assertions: 2 | 2 passed | 0 failed |\r\n"
                            "[doctest] Status: SUCCESS!\r\n";

std::string failure(const std::string& assertions) {
  return separator + "[doctest] test cases: 7 | 6 passed | 1 failed | 0 skipped\r\n" +
         "[doctest] assertions: " + assertions + " |\r\n[doctest] Status: FAILURE!\r\n";
}

const std::string skip =
    "sky_test.cpp:12: ERROR: test case THREW exception: skipped: there is no sky\r\n\r\n";

}  // namespace

TEST_CASE("a case has passed when doctest says so at the end and it has run") {
  const Verdict verdict = judge(true, 0, head + time + success, name);
  CHECK(verdict.result == Result::passed);
  CHECK(verdict.lines.empty());
}

TEST_CASE("a case that has not run has failed") {
  const Verdict verdict = judge(true, 0, success, name);
  CHECK(verdict.result == Result::failed);
  CHECK(verdict.lines == Lines{"It has not run."});
}

TEST_CASE("a case that succeeded and ends with another code has failed") {
  const Verdict verdict = judge(true, 3, head + time + success, name);
  CHECK(verdict.result == Result::failed);
  CHECK(verdict.lines == Lines{"It ended with code 3."});
}

TEST_CASE("a failed case tells what it was without what surrounds every case") {
  const Verdict verdict =
      judge(true, 1,
            head + "sky_test.cpp:13: ERROR: CHECK( sun() == 1 ) is NOT correct!\r\n" +
                "  values: CHECK( 2 == 1 )\r\n\r\n" + time + failure("2 | 1 passed | 1 failed"),
            name);
  CHECK(verdict.result == Result::failed);
  CHECK(verdict.lines == Lines{"sky_test.cpp:13: ERROR: CHECK( sun() == 1 ) is NOT correct!",
                               "  values: CHECK( 2 == 1 )"});
}

TEST_CASE("a case that ends without doctest's last word has failed whatever its code") {
  const Verdict verdict = judge(true, 0, head, name);
  CHECK(verdict.result == Result::failed);
  CHECK(verdict.lines == Lines{"It ended before its end, with code 0."});
}

TEST_CASE("the code of a crash is told in hexadecimal digits") {
  const Verdict verdict = judge(true, 0xC0000005, head, name);
  CHECK(verdict.lines == Lines{"It ended before its end, with code 0xC0000005."});
}

TEST_CASE("a case whose time was over has failed and tells what it had said") {
  const Verdict verdict = judge(false, 0, head + "half a sky\r\n", name);
  CHECK(verdict.result == Result::failed);
  CHECK(verdict.lines == Lines{"half a sky", "It was not done when its time was over."});
}

TEST_CASE("a case that asks to be left out is skipped with its reason") {
  const Verdict verdict =
      judge(true, 1, head + skip + time + failure("2 | 2 passed | 0 failed"), name);
  CHECK(verdict.result == Result::skipped);
  CHECK(verdict.lines == Lines{"there is no sky"});
}

TEST_CASE("a case of which something failed before it asks to be left out has failed") {
  const Verdict verdict =
      judge(true, 1, head + skip + time + failure("2 | 1 passed | 1 failed"), name);
  CHECK(verdict.result == Result::failed);
}

TEST_CASE("the names of the cases come out of doctest's list in its order") {
  CHECK(namesOf("[doctest] listing all test case names\r\n" + separator + "b, c\r\na\r\n" +
                separator + "[doctest] unskipped test cases passing the current filters: 2\r\n") ==
        Lines{"b, c", "a"});
}

TEST_CASE("a list that was cut off or is none raises an error") {
  CHECK_THROWS_AS(namesOf("[doctest] listing all test case names\r\n" + separator + "b\r\n"),
                  std::runtime_error);
  CHECK_THROWS_AS(namesOf(separator + "b\r\n" + separator +
                          "[doctest] unskipped test cases passing the current filters: 2\r\n"),
                  std::runtime_error);
  CHECK_THROWS_AS(namesOf("a window"), std::runtime_error);
  CHECK_THROWS_AS(namesOf(""), std::runtime_error);
}
