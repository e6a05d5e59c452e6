// One download, from the page's address to unpacked archives, as a run that knows no window.
#pragma once

#include <string>
#include <vector>

#include "online/transfer/DownloadTable.h"
#include "online/transfer/DownloadView.h"
#include "online/transfer/FileTransfer.h"
#include "online/transfer/InternetSession.h"

struct DownloadRequest {
  std::wstring pageAddress;
  std::wstring destinationFolder;
  bool machineWide = false;  // the destination belongs to the list of all users
  std::wstring hostVersion;  // the host application's version text
};

class DownloadRun {
 public:
  DownloadRun(DownloadRequest request, DownloadView& view);

  // Fills the table from the page's address. Without an address in it there is nothing to show.
  void ExtractAndCanonicalizeUrl() noexcept;
  const DownloadTable& table() const noexcept { return table_; }

  // Before the dialog is shown: opens the internet and makes the folders. False when the run is
  // over; why has been logged, and shown where the user can do something about it.
  bool load() noexcept;

  // The whole run, once the dialog is shown: sizes, transfer, unpacking. What ends it early has
  // been shown and logged.
  void run() noexcept;

  // Closes what the run holds open: at once, or when run() returns if that is under way. Its file
  // lives on the session.
  void unload() noexcept;

  // True when every archive was handled and none failed to unpack.
  bool completed() const noexcept { return completed_; }
  const std::wstring& destinationFolder() const noexcept { return request_.destinationFolder; }

 private:
  void prepare();
  void openInternet();
  void makeFolders();
  void transferAndInstall();
  void install(const std::vector<FileTransfer::Archive>& archives);
  bool unpack(const FileTransfer::Archive& archive, const std::wstring& themesFolder);
  std::wstring chooseThemesFolder() const;

  DownloadRequest request_;
  DownloadView& view_;
  DownloadTable table_;
  InternetSession session_;
  std::wstring stagingFolder_;
  bool running_ = false;
  bool themeInstalled_ = false;
  bool completed_ = false;
};
