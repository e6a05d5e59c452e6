// Some of what ./dev torture tries in full, so that it is seen at once when something gives way.
#include <random>

#include "tests/support/Watchdog.h"
#include "tests/support/text_output.h"
#include "tests/torture/Torture.h"

using torture::HostWay;

namespace {

constexpr unsigned seed = 1;
constexpr DWORD patience = 50000;  // milliseconds for all of them

void checkSome(const char* name, int tries) {
  const Watchdog watchdog(patience);
  torture::World world;
  torture::Trial trial(world, torture::journeyOf(name));
  REQUIRE(trial.hostCalls() > 0);
  std::mt19937 random(seed);
  for (int time = 0; time < tries; ++time) {
    const auto way = static_cast<HostWay>(random() % torture::hostWays);
    const int number = 1 + static_cast<int>(random() % static_cast<unsigned>(trial.hostCalls()));
    const torture::Verdict verdict = trial.withHostTrouble(way, number);
    CAPTURE(nameOf(way));
    CAPTURE(number);
    CAPTURE(verdict.where);
    CHECK_FALSE(verdict.where.empty());
    CHECK(verdict.complaints == torture::Lines());
  }
}

}  // namespace

TEST_CASE("A connection stands what the host does to it") { checkSome("connection", 14); }
TEST_CASE("A copy stands what the host does to it") { checkSome("copy", 4); }
TEST_CASE("A download stands what the host does to it") { checkSome("download", 2); }
TEST_CASE("A disconnection stands what the host does to it") { checkSome("disconnection", 14); }

TEST_CASE("What a refusal is told of is noticed") {
  torture::World world;
  torture::Trial trial(world, torture::journeyOf("connection"));
  const torture::Verdict verdict = trial.withHostTrouble(HostWay::refusedWithText, 2);
  CHECK(verdict.where == L"Application.CommandBars");
  CHECK(verdict.outcome == "a line");
  CHECK(verdict.said == torture::Lines{L"line: Error -2147467259 (The host does not want to.) in "
                                       L"procedure IDTExtensibility2_OnConnection of Module "
                                       L"DWTemplate"});
}
