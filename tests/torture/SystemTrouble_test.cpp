// Some of what ./dev torture tries in full, so that it is seen at once when something gives way.
#include <random>

#include "tests/support/Watchdog.h"
#include "tests/support/text_output.h"
#include "tests/torture/Torture.h"

using torture::Kind;
using torture::SystemWay;

namespace {

constexpr unsigned seed = 1;
constexpr DWORD patience = 55000;  // milliseconds for all of a test

void check(torture::Trial& trial, const SystemWay& way, int number) {
  const torture::Verdict verdict = trial.withSystemTrouble(way, number);
  CAPTURE(std::string(way.name));
  CAPTURE(number);
  CAPTURE(verdict.where);
  CHECK(verdict.complaints == torture::Lines());
}

// One call each of some ways, always the same ones.
void checkSome(const char* name, std::size_t tries, bool (*belongs)(const SystemWay&)) {
  const Watchdog watchdog(patience);
  torture::World world;
  torture::Trial trial(world, torture::journeyOf(name));
  std::vector<const SystemWay*> ways;
  for (const SystemWay& way : torture::systemWays())
    if (belongs(way)) ways.push_back(&way);
  std::mt19937 random(seed);
  for (std::size_t time = 0; time < tries; ++time) {
    const SystemWay& way = *ways[random() % ways.size()];
    const int calls = trial.systemCalls(way.kind);
    if (calls > 0) check(trial, way, 1 + static_cast<int>(random() % static_cast<unsigned>(calls)));
  }
}

// The number of the first allocation while that window is up.
int firstAllocationUnder(torture::World& world, const wchar_t* caption) {
  int first = 0;
  world.begin();
  world.connect();
  world.look([&] {
    world.system().watch(Kind::memory,
                         [&](const torture::SystemCall& call) -> const torture::SystemFailure* {
                           const HWND window = first ? nullptr : FindWindowW(L"#32770", caption);
                           if (window && IsWindowVisible(window)) first = call.number;
                           return nullptr;
                         });
    world.copy();
    world.system().unwatch();
  });
  world.end();
  return first;
}

}  // namespace

// An entry is made with the first 60 allocations of a connection or so.
TEST_CASE("An entry for which there is no memory is given up and the host goes on") {
  const Watchdog watchdog(patience);
  torture::World world;
  torture::Trial trial(world, torture::journeyOf("connection"));
  for (const SystemWay& way : torture::systemWays())
    if (way.kind == Kind::memory)
      for (int number = 34; number < 41; ++number) check(trial, way, number);
}

TEST_CASE("A copy that gets no memory when it begins takes its window away") {
  const Watchdog watchdog(patience);
  torture::World world;
  torture::Trial trial(world, torture::journeyOf("copy"));
  const int first = firstAllocationUnder(world, L"Copying Files To Web...");
  REQUIRE(first > 0);
  for (const SystemWay& way : torture::systemWays())
    if (way.kind == Kind::memory)
      for (int number = first; number < first + 2; ++number) check(trial, way, number);
}

TEST_CASE("A copy stands a cancel wherever it lets messages through") {
  checkSome("copy", 3, [](const SystemWay& way) { return way.kind == Kind::yields; });
}

TEST_CASE("A connection that is made again and again holds no more than the first") {
  torture::World world;
  torture::Trial trial(world, torture::journeyOf("connection"));
  for (int time = 0; time < 10; ++time) CHECK(trial.again().complaints == torture::Lines());
}
