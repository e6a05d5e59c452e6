// The first pass over a download: checks every address and adds up the sizes.
#pragma once

#include <string>

#include "online/transfer/DownloadSteps.h"
#include "online/transfer/DownloadTable.h"

class UrlValidation : private DownloadSteps {
 public:
  UrlValidation(DownloadTable& table, InternetSession& session, DownloadView& view)
      : DownloadSteps(session, view), table_(table) {}

  // Fills in the sizes. False when a file cannot be had or the user cancelled: that has been shown
  // and logged, and nothing must be transferred.
  bool ValidateURLs() noexcept;

  // How many addresses' sizes were found, and their sum in bytes.
  short addressCount() const noexcept { return addressCount_; }
  double totalSize() const noexcept { return totalSize_; }

 private:
  void GetTotalDownloadSize();
  void begin();
  void measureItem(std::size_t column);
  void measure(std::size_t column, DownloadTable::Row kind);
  void measureHttp(std::size_t column, DownloadTable::Row kind, const std::wstring& address);
  void measureFtp(std::size_t column, DownloadTable::Row kind, const std::wstring& address,
                  modWINInetURL::CrackedUrl parts);
  void measureDirectFtp(std::size_t column, DownloadTable::Row kind,
                        const modWINInetURL::CrackedUrl& parts);
  void measureProxiedFtp(std::size_t column, DownloadTable::Row kind, const std::wstring& address);
  void take(std::size_t column, DownloadTable::Row kind, unsigned long long bytes);

  DownloadTable& table_;
  short addressCount_ = 0;
  double totalSize_ = 0;
};
