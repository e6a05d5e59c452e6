// Some of what ./dev torture monkey tries in full.
#include "tests/support/Watchdog.h"
#include "tests/support/machine.h"
#include "tests/support/text_output.h"
#include "tests/torture/Torture.h"

TEST_CASE("Whatever is done in the windows leaves everything as it was") {
  machine::mayChange("chooses folders and menu entries at random");
  constexpr DWORD patience = 50000;  // milliseconds
  const Watchdog watchdog(patience);
  torture::World world;
  torture::Trial trial(world, torture::journeyOf("copy"));
  const torture::Verdict verdict = trial.withMonkey(3, 80);
  CHECK(verdict.complaints == torture::Lines());
  CHECK(verdict.outcome == "as always");
}
