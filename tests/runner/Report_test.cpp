#include "tests/runner/Report.h"

#include <stdexcept>

#include "tests/support/ScratchFolder.h"
#include "tests/support/text_output.h"

TEST_CASE("a report has a line for each test with its reasons below it and counts them") {
  const ScratchFolder disk;
  {
    Report report(disk / L"report.txt");
    report.line("some-tests");
    report.add("gr\xC3\xBC\xC3\x9F\x65", {Result::passed, {}});
    report.add("b", {Result::failed, {"one", "two"}});
    report.add("c", {Result::skipped, {"three"}});
    report.add("d", {Result::failed, {}});
    CHECK(report.count(Result::passed) == 1);
    CHECK(report.count(Result::failed) == 2);
    report.line(report.summary());
  }
  CHECK(disk.readFile(L"report.txt") ==
        "\xEF\xBB\xBFsome-tests\r\n"
        "  passed   gr\xC3\xBC\xC3\x9F\x65\r\n"
        "  FAILED   b\r\n"
        "             one\r\n"
        "             two\r\n"
        "  skipped  c\r\n"
        "             three\r\n"
        "  FAILED   d\r\n"
        "4 tests: 1 passed, 2 failed, 1 skipped\r\n");
}

TEST_CASE("what a report is told at once stands in it at once") {
  const ScratchFolder disk;
  Report report(disk / L"report.txt");
  report.line("a");
  CHECK(disk.readFile(L"report.txt") == "\xEF\xBB\xBF\x61\r\n");
}

TEST_CASE("a line of a report that is no UTF-8 loses the letters that are none") {
  const ScratchFolder disk;
  Report report(disk / L"report.txt");
  report.line("gr\xFC\xDF\x65");
  CHECK(disk.readFile(L"report.txt") == "\xEF\xBB\xBFgr??e\r\n");
}

TEST_CASE("a report that cannot be written raises an error") {
  const ScratchFolder disk;
  CHECK_THROWS_WITH_AS(Report(disk / L"none\\report.txt"), "the report cannot be written",
                       std::runtime_error);
}
