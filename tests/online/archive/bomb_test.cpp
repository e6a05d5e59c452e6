#include "online/archive/bomb.h"

#include "tests/support/text_output.h"

TEST_CASE("an archive is a bomb when its contents are large and out of proportion") {
  constexpr double megabyte = 1024.0 * 1024.0;
  CHECK_FALSE(archive::isBomb(64 * megabyte, 1));
  CHECK(archive::isBomb(65 * megabyte, 1));
  CHECK_FALSE(archive::isBomb(250 * megabyte, megabyte));
  CHECK(archive::isBomb(251 * megabyte, megabyte));
  CHECK_FALSE(archive::isBomb(5000 * megabyte, 100 * megabyte));
}
