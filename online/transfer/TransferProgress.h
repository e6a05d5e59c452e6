// How much of a file has come, as its bar and label show it.
#pragma once

#include <string>

#include "online/transfer/DownloadView.h"

class TransferProgress {
 public:
  TransferProgress(unsigned long long size, DownloadView& view);

  // `received` bytes in all. Reads are small and files can be large: the view is touched only when
  // what it shows changes.
  void show(unsigned long long received);

 private:
  unsigned long long size_;
  DownloadView& view_;
  std::wstring sizeText_;
  std::wstring shown_;
  unsigned long long nextText_ = 0;
  short percent_ = 0;
};
