// The second pass over a download: brings every archive into the staging folder.
#pragma once

#include <string>

#include "common/handles.h"
#include "online/transfer/DownloadSteps.h"
#include "online/transfer/DownloadTable.h"

// Where the archive of an address is kept: below `folder`, under the address's own file name, with
// "%20" as a blank. Raises an Error (52) when that cannot be a file's name on this system: it could
// lead out of the folder.
std::wstring stagingFile(const std::wstring& folder, const std::wstring& address);

class FileTransfer : private DownloadSteps {
 public:
  FileTransfer(const DownloadTable& table, InternetSession& session, std::wstring stagingFolder,
               DownloadView& view);

  // Transfers the files one after another. What ends it is raised.
  void run();

 private:
  using Place = DownloadTable::Place;

  void transfer(const Place& place);
  handles::Internet locate(const std::wstring& address, const modWINInetURL::CrackedUrl& parts);
  bool mayWrite(const std::wstring& path);
  void receive(const handles::Internet& source, const Place& place, const std::wstring& path);
  void copyBytes(const handles::Internet& source, const Place& place, handles::File& file);
  // Ends a file that is being received when the run was cancelled.
  void checkReceiving(const Place& place, handles::File& file);
  [[noreturn]] void readFailed(const Place& place, handles::File& file, DWORD code);
  void DeleteRelatedFiles(const Place& place) noexcept;

  const DownloadTable& table_;
  std::wstring stagingFolder_;
};
