// Some of what ./dev torture tries in full, so that it is seen at once when something gives way.
#include <functional>
#include <random>
#include <string_view>

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

bool isCopying() {
  const HWND window = FindWindowW(L"#32770", L"Copying Files To Web...");
  return window && IsWindowVisible(window);
}

// The dialog of a download has come and gone, and its window waits for a page.
class AfterDownload {
 public:
  bool operator()() {
    const auto dialogs = torture::ownDialogs();
    wasShown_ = wasShown_ || dialogs.size() > 1;
    return wasShown_ && dialogs.size() == 1 && !IsWindowEnabled(dialogs.front());
  }

 private:
  bool wasShown_ = false;
};

// The number of the first allocation of the course while that is so.
int firstAllocation(torture::World& world, void (torture::World::*course)(),
                    const std::function<bool()>& isSo) {
  int first = 0;
  world.begin();
  world.connect();
  world.look([&] {
    world.system().watch(Kind::memory,
                         [&](const torture::SystemCall& call) -> const torture::SystemFailure* {
                           if (first == 0 && isSo()) first = call.number;
                           return nullptr;
                         });
    (world.*course)();
    world.system().unwatch();
  });
  world.end();
  return first;
}

void checkWithoutMemory(torture::Trial& trial, int first, int last, int step = 1) {
  REQUIRE(first > 0);
  for (const SystemWay& way : torture::systemWays())
    if (way.kind == Kind::memory)
      for (int number = first; number <= last; number += step) check(trial, way, number);
}

}  // namespace

// An entry is made with the first 60 allocations of a connection or so.
TEST_CASE("An entry for which there is no memory is given up and the host goes on") {
  const Watchdog watchdog(patience);
  torture::World world;
  torture::Trial trial(world, torture::journeyOf("connection"));
  checkWithoutMemory(trial, 34, 40);
}

// Each of these once left an entry in the menu, or made none, without a word.
TEST_CASE("A look-up of the host's for which there is no memory is told of") {
  const Watchdog watchdog(patience);
  torture::World world;
  torture::Trial connection(world, torture::journeyOf("connection"));
  checkWithoutMemory(connection, 7, 9);
  torture::Trial disconnection(world, torture::journeyOf("disconnection"));
  checkWithoutMemory(disconnection, 4, 6, 2);
}

TEST_CASE("A click and a page's address for which there is no memory are told of") {
  const Watchdog watchdog(patience);
  torture::World world;
  torture::Trial trial(world, torture::journeyOf("download"));
  checkWithoutMemory(trial, 1, 1);
  for (const SystemWay& way : torture::systemWays())
    if (way.name == std::string_view("COM out of memory")) check(trial, way, 17);
}

TEST_CASE("A copy that gets no memory when it begins takes its window away") {
  const Watchdog watchdog(patience);
  torture::World world;
  torture::Trial trial(world, torture::journeyOf("copy"));
  const int first = firstAllocation(world, &torture::World::copy, isCopying);
  checkWithoutMemory(trial, first, first + 1);
}

TEST_CASE("A download that gets no memory for its last page switches its window on again") {
  const Watchdog watchdog(patience);
  torture::World world;
  torture::Trial trial(world, torture::journeyOf("download"));
  const int first = firstAllocation(world, &torture::World::download, AfterDownload());
  // What is allocated for the last page is allocated in threes.
  checkWithoutMemory(trial, first, first + 18, 3);
}

TEST_CASE("A copy stands a cancel wherever it lets messages through") {
  checkSome("copy", 3, [](const SystemWay& way) { return way.kind == Kind::yields; });
}

TEST_CASE("A copy stands a call of each kind that fails") {
  const Watchdog watchdog(patience);
  torture::World world;
  torture::Trial trial(world, torture::journeyOf("copy"));
  for (const SystemWay& way : torture::systemWays()) {
    const bool isTried = way.kind != Kind::memory && way.kind != Kind::yields &&
                         way.kind != Kind::network && way.name != std::string_view("file missing");
    if (isTried) check(trial, way, way.kind == Kind::files ? 107 : 9);
  }
}

TEST_CASE("A download stands a call of the network that fails") {
  const Watchdog watchdog(patience);
  torture::World world;
  torture::Trial trial(world, torture::journeyOf("download"));
  for (const SystemWay& way : torture::systemWays())
    if (way.kind == Kind::network)
      for (const int number : {1, 5}) check(trial, way, number);
}

TEST_CASE("A folder of downloads that cannot be added to the user's list is told of") {
  const Watchdog watchdog(patience);
  torture::World world;
  torture::Trial trial(world, torture::journeyOf("download"));
  const auto& registryDenied = torture::systemWays().front();
  for (const int number : {31, 32}) {
    const torture::Verdict verdict = trial.withSystemTrouble(registryDenied, number);
    CHECK(verdict.where ==
          (number == 31 ? L"RegCreateKeyA DWT Folders" : L"RegSetValueExA downloads"));
    CHECK(verdict.outcome == "a line");
    CHECK(verdict.complaints == torture::Lines());
  }
}

TEST_CASE("A registration stands keys that are denied") {
  const Watchdog watchdog(patience);
  torture::World world;
  torture::Trial trial(world, torture::journeyOf("registration"));
  for (int number = 1; number <= 5; ++number) check(trial, torture::systemWays().front(), number);
}

TEST_CASE("A connection that is made again and again holds no more than the first") {
  torture::World world;
  torture::Trial trial(world, torture::journeyOf("connection"));
  for (int time = 0; time < 10; ++time) CHECK(trial.again().complaints == torture::Lines());
}
