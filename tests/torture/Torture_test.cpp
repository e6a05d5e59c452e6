// Whether what a journey leaves behind is noticed.
#include <string>

#include "common/settings.h"
#include "tests/support/text_output.h"
#include "tests/torture/Torture.h"

using torture::HostWay;
using torture::Lines;
using torture::World;

namespace {

// An application that is held holds its bars.
constexpr wchar_t twoObjects[] = L"not given back: objects of the host, 2";
constexpr int never = 100000;  // more calls than there are

// The journey's visits since it began to go wrong, and what it does in each of them.
int visits = 0;
void (*misdeed)(World&, int visit) = nullptr;

void visit(World& world) {
  world.disk.writeFile(L"data\\made.txt", "made");
  if (misdeed) misdeed(world, ++visits);
}

// What is said of a journey that does so in its first visit and in its second.
torture::Verdict verdictOn(void (*wrong)(World&, int visit)) {
  static const torture::Journey journey = {"misdeed", [](World& world) { world.connect(); }, visit,
                                           [](World&) {}, L"data\\made.txt"};
  misdeed = nullptr;
  World world;
  torture::Trial trial(world, journey);
  visits = 0;
  misdeed = wrong;
  return trial.again();
}

// What a journey's body opens.
Lines windowsOf(World& world, const char* name) {
  const torture::Journey& journey = torture::journeyOf(name);
  world.begin();
  journey.before(world);
  const Lines opened = world.look([&] { journey.body(world); }).dialogs;
  world.end();
  return opened;
}

bool isFirst(int visit) { return visit % 2 == 1; }

}  // namespace

TEST_CASE("A journey that leaves everything as it was is not complained of") {
  CHECK(verdictOn([](World&, int) {}).complaints == Lines());
}

TEST_CASE("An object of the host that is kept is complained of") {
  const auto verdict = verdictOn([](World& world, int visit) {
    if (isFirst(visit)) world.host().application()->AddRef();
  });
  CHECK(verdict.complaints == Lines{twoObjects});
}

TEST_CASE("An object of the host that is kept each time is not taken for one kept on purpose") {
  World world;
  torture::Journey journey = torture::journeyOf("connection");
  misdeed = nullptr;
  journey.body = [](World& there) {
    there.connect();
    if (misdeed) there.host().application()->AddRef();
  };
  torture::Trial trial(world, journey);
  misdeed = [](World&, int) {};
  const auto verdict = trial.withHostTrouble(HostWay::slow, 1);
  CHECK(verdict.complaints == Lines{twoObjects});
}

TEST_CASE("A box and a line of the second visit alone are complained of") {
  const auto verdict = verdictOn([](World&, int visit) {
    if (isFirst(visit)) return;
    MessageBoxW(nullptr, L"It is in use.", L"A box", MB_OK);
    OutputDebugStringA("12:00:00 It is in use.");
  });
  CHECK(verdict.complaints == Lines{L"the second time shows: A box | It is in use.",
                                    L"the second time logs: It is in use."});
}

TEST_CASE("A window that only the undisturbed journey opens is complained of") {
  torture::Journey journey = torture::journeyOf("windows");
  misdeed = nullptr;
  journey.body = [](World& there) {
    if (!misdeed || isFirst(++visits)) there.openEverything();
  };
  World world;
  torture::Trial trial(world, journey);
  visits = 0;
  misdeed = [](World&, int) {};
  const auto verdict = trial.again();
  CHECK(verdict.complaints ==
        Lines{L"the second time does not open Dynamic Web Template Browser",
              L"the second time does not open About Quillet",
              L"the second time does not open Manage Dynamic Web Template Folders",
              L"the second time does not open Browse for Folder",
              L"the second time does not open Select a web folder",
              L"the second time does not open Create New Folder",
              L"the second time does not open DWT Online",
              L"the second time does not open a menu"});
}

TEST_CASE("A file that the second visit does not make anew is complained of") {
  const auto verdict = verdictOn([](World& world, int visit) {
    if (!isFirst(visit)) world.disk.writeFile(L"data\\made.txt", "spoiled");
  });
  CHECK(verdict.complaints == Lines{L"the second time does not make data\\made.txt"});
}

TEST_CASE("A user's file that is changed for a while is complained of") {
  const auto verdict = verdictOn([](World& world, int visit) {
    world.disk.writeFile(L"downloads\\mine.txt", isFirst(visit) ? "other" : "the user's own file");
  });
  CHECK(verdict.complaints == Lines{L"lost: downloads\\mine.txt", L"it went otherwise"});
}

TEST_CASE("A user who does not want a template overwritten keeps it") {
  World world;
  torture::Trial trial(world, torture::journeyOf("refusal"));
  const auto verdict = trial.again();
  CHECK(verdict.complaints == Lines());
}

TEST_CASE("A template that is overwritten against the user's will is complained of") {
  torture::Journey journey = torture::journeyOf("refusal");
  misdeed = nullptr;
  journey.body = [](World& there) {
    there.copy();
    if (misdeed)
      there.disk.writeFile(L"webs\\my site\\dwts\\Night Ferry\\css\\ferry.css", "another");
  };
  World world;
  torture::Trial trial(world, journey);
  misdeed = [](World&, int) {};
  const std::wstring file = L"webs\\my site\\dwts\\Night Ferry\\css\\ferry.css";
  CHECK(trial.again().complaints == Lines{L"lost: " + file, L"lost the second time: " + file,
                                          L"the second time does not make " + file,
                                          L"it went otherwise"});
}

TEST_CASE("A setting that is not stored without a word is complained of") {
  torture::Journey journey = torture::journeyOf("copy");
  misdeed = nullptr;
  journey.body = [](World& there) {
    there.copy();
    if (!misdeed)
      there.registry->setString(
          HKEY_CURRENT_USER, settings::keyPath(L"Quillet Viewer", L"Settings"), L"Colour", L"navy");
  };
  World world;
  torture::Trial trial(world, journey);
  misdeed = [](World&, int) {};
  const auto& registryDenied = torture::systemWays().front();
  CHECK(trial.withSystemTrouble(registryDenied, 2).complaints ==
        Lines{L"nothing is told of what is not stored: Colour = navy"});
}

TEST_CASE("A download with a password asks for it and leaves everything as it was") {
  World world;
  CHECK(windowsOf(world, "password") == Lines{L"DWT Online", L"Downloading...", L"Quillet Viewer"});
  torture::Trial trial(world, torture::journeyOf("password"));
  const auto verdict = trial.again();
  CHECK(verdict.complaints == Lines());
}

TEST_CASE("The viewers of help and notes leave everything as it was") {
  World world;
  CHECK(windowsOf(world, "viewers") ==
        Lines{L"Dynamic Web Template Browser", L"a viewer, number 1", L"a viewer, number 2"});
  torture::Trial trial(world, torture::journeyOf("viewers"));
  const auto verdict = trial.again();
  CHECK(verdict.complaints == Lines());
}

TEST_CASE("Memory that is lost bit by bit is complained of") {
  torture::Journey journey = torture::journeyOf("connection");
  misdeed = nullptr;
  journey.body = [](World& there) {
    constexpr SIZE_T bit = 150000;
    there.connect();
    if (misdeed) HeapAlloc(GetProcessHeap(), HEAP_ZERO_MEMORY, bit);
  };
  World world;
  torture::Trial trial(world, journey);
  misdeed = [](World&, int) {};
  Lines complaints;
  for (int time = 0; time < 16; ++time) complaints = trial.again().complaints;
  REQUIRE(complaints.size() == 1);
  CHECK(complaints.front().starts_with(L"memory has grown by "));
}

TEST_CASE("What the system loses when the clipboard is read is not counted as the module's") {
  World world;
  world.begin();
  const auto& looks = world.clipboardLooks();
  const long before = looks.count();
  world.connect();
  CHECK(looks.count() > before);
  const SIZE_T lost = looks.lost();
  CHECK(lost <= static_cast<SIZE_T>(looks.count()) * 1100);
  world.end();
}

TEST_CASE("A call that never comes is not counted as one that went as always") {
  World world;
  torture::Trial trial(world, torture::journeyOf("connection"));
  CHECK(trial.withHostTrouble(HostWay::slow, never).outcome == "never came");
  const auto& cancelled = torture::systemWays().back();
  CHECK(trial.withSystemTrouble(cancelled, never).outcome == "never came");
}
