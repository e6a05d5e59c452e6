// The second pass over a download: brings every archive into the staging folder.
#pragma once

#include <string>
#include <vector>

#include "online/transfer/DownloadSteps.h"
#include "online/transfer/DownloadTable.h"
#include "online/transfer/IncomingFile.h"
#include "online/transfer/StagedFiles.h"

class FileTransfer : private DownloadSteps {
 public:
  FileTransfer(const DownloadTable& table, InternetSession& session,
               const std::wstring& stagingFolder, DownloadView& view);

  struct Archive {
    DownloadTable::Kind kind;
    std::wstring path;
  };
  // Transfers the files one after another and tells where each is. What ends it is raised.
  std::vector<Archive> run();

 private:
  using Place = DownloadTable::Place;

  std::wstring transfer(std::size_t index);
  handles::Internet locate(const Place& place, const modWINInetURL::CrackedUrl& parts);
  bool mayWrite(const std::wstring& path);
  // Raises an Error (61) when this file and those behind it are more than the disk has room for.
  void requireSpace(std::size_t index) const;
  bool isStaged(const Place& place) const noexcept;
  void receive(const handles::Internet& source, const Place& place, const std::wstring& path);
  void copyBytes(const handles::Internet& source, unsigned long long size, IncomingFile& file);
  [[noreturn]] void readFailed(IncomingFile& file, DWORD code);

  const DownloadTable& table_;
  std::vector<Place> places_;
  StagedFiles staged_;
};
