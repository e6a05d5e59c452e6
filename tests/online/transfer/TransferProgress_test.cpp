#include "online/transfer/TransferProgress.h"

#include "tests/online/transfer/RecordingView.h"
#include "tests/support/text_output.h"

TEST_CASE("a transfer shows what has come of what is to come") {
  RecordingView view;
  TransferProgress progress(1000, view);
  CHECK(view.currentMaximum == 100);
  progress.show(255);
  CHECK(view.currentSizes.back() == L"255 bytes of 1000 bytes");
  CHECK(view.currentValue == 25);
  progress.show(1000);
  CHECK(view.currentSizes.back() == L"1000 bytes of 1000 bytes");
  CHECK(view.currentValue == 100);
}

TEST_CASE("a large transfer touches bar and label only when what they show changes") {
  constexpr unsigned long long size = 100ull * 1024 * 1024;
  RecordingView view;
  TransferProgress progress(size, view);
  for (unsigned long long received = 255; received < size; received += 255) progress.show(received);
  progress.show(size);
  CHECK(view.currentValue == 100);
  CHECK(view.currentSteps == 100);
  CHECK(view.currentSizes.back() == L"100 MB of 100 MB");
  CHECK(view.currentSizes.size() < 4000);
  for (std::size_t i = 1; i < view.currentSizes.size(); ++i)
    REQUIRE(view.currentSizes[i] != view.currentSizes[i - 1]);
}

TEST_CASE("a size is shown as soon as another digit of it can differ") {
  RecordingView view;
  TransferProgress progress(20480, view);
  progress.show(10234);
  CHECK(view.currentSizes.back() == L"9.99 KB of 20.0 KB");
  progress.show(10243);  // a thousandth more
  CHECK(view.currentSizes.back() == L"10.0 KB of 20.0 KB");
}

TEST_CASE("more than was announced does not pass the end of the bar") {
  RecordingView view;
  TransferProgress progress(100, view);
  progress.show(255);
  CHECK(view.currentValue == 100);
}
