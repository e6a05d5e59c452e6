#include "online/transfer/TransferProgress.h"

#include <algorithm>

#include "common/byte_size.h"
#include "common/text.h"

namespace {

constexpr short wholeBar = 100;

}  // namespace

TransferProgress::TransferProgress(unsigned long long size, DownloadView& view)
    : size_(size), view_(view), sizeText_(text::byteSize(static_cast<double>(size))) {
  view_.resetCurrent(wholeBar);
}

void TransferProgress::show(unsigned long long received) {
  const auto percent =
      static_cast<short>(size_ == 0 ? wholeBar : std::min(received, size_) * wholeBar / size_);
  if (percent > percent_) {
    view_.stepCurrent(static_cast<short>(percent - percent_));
    percent_ = percent;
  }
  // A size is shown with three digits, so nothing smaller than a thousandth can change it.
  if (received < nextText_ && received < size_) return;
  nextText_ = received + received / 1024;
  std::wstring sizes =
      text::join({text::byteSize(static_cast<double>(received)), L" of ", sizeText_});
  if (sizes == shown_) return;
  view_.showCurrentSize(sizes);
  shown_ = std::move(sizes);
}
