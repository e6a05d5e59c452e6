#include "common/placement_record.h"

#include "tests/support/text_output.h"

namespace {

placement::Record recordOf(const RECT& window) {
  placement::Record record = {};
  record.pixelsPerInch = 96;
  record.placement.rcNormalPosition = window;
  return record;
}

bool isTaken(const RECT& window) {
  return placement::rectangleOf(recordOf(window), 96).has_value();
}

}  // namespace

TEST_CASE("no side of a window lies where no window can") {
  CHECK(isTaken({-32768, -32768, 32767, 32767}));
  CHECK_FALSE(isTaken({-32769, 0, 100, 100}));
  CHECK_FALSE(isTaken({0, -32769, 100, 100}));
  CHECK_FALSE(isTaken({0, 0, 32768, 100}));
  CHECK_FALSE(isTaken({0, 0, 100, 32768}));
  CHECK_FALSE(placement::rectangleOf(recordOf({0, 0, 100, 100}), 120));
}

TEST_CASE("a window is cut to the room on a screen that does not begin at nought") {
  placement::Screen screen = {};
  screen.all = {2000, 1000};
  screen.area = {1000, 100, 1800, 700};
  const RECT large = placement::cutDown({1100, 200, 3101, 1201}, screen);
  CHECK(large.left == 1100);
  CHECK(large.top == 200);
  CHECK(large.right == 1900);
  CHECK(large.bottom == 800);
  const RECT fits = placement::cutDown({1100, 200, 3100, 1200}, screen);
  CHECK(fits.right == 3100);
  CHECK(fits.bottom == 1200);
}
