#include "author/archive_trial.h"

#include <algorithm>

#include "author/Package.h"
#include "author/disk.h"
#include "common/ansi.h"
#include "common/errors.h"
#include "common/letter_case.h"
#include "common/text.h"
#include "online/archive/ArchiveFile.h"
#include "online/archive/Directory.h"
#include "online/archive/gate.h"
#include "online/transfer/FileTransfer.h"
#include "online/transfer/SilentView.h"
#include "online/transfer/UrlValidation.h"

namespace author {
namespace {

using Fault = ArchiveVerdict::Fault;

// Keeps the messages that the dialog would show.
class Listener final : public SilentView {
 public:
  explicit Listener(Work& work) : work_(work) {}

  bool keepGoing() override { return work_.keepGoing(); }
  void fail(std::wstring_view text, std::wstring_view) noexcept override {
    try {
      message = text;
    } catch (...) {  // Not run by tests: no memory.
    }
  }
  // Not run by tests: nothing lies in a new folder.
  bool ask(const std::wstring&) override { return true; }
  // Not run by tests: unpacking's.
  Overwrite overwrite(const std::wstring&) override { return Overwrite::none; }
  // Not run by tests: unpacking's.
  std::optional<std::wstring> password(int) override { return std::nullopt; }

  std::wstring message;

 private:
  Work& work_;
};

// A folder for what is downloaded.
class Staging {
 public:
  Staging() {
    wchar_t temporary[MAX_PATH] = {};
    GetTempPathW(MAX_PATH, temporary);
    path_ = pathBeside(text::join({temporary, L"Quillet catalogue ",
                                   text::decimal(static_cast<long long>(GetCurrentProcessId()))}));
    if (!CreateDirectoryW(path_.c_str(), nullptr)) throw errorAbout(path_, GetLastError());
  }
  ~Staging() { removeTree(path_); }
  Staging(const Staging&) = delete;
  Staging& operator=(const Staging&) = delete;
  const std::wstring& path() const noexcept { return path_; }

 private:
  std::wstring path_;
};

// A name's parts, however many separators stand between them.
std::vector<std::string> partsOf(const std::string& name) {
  std::vector<std::string> parts;
  std::size_t from = 0;
  while (from < name.size()) {
    const auto end = std::min(name.find('/', from), name.size());
    if (end > from) parts.push_back(name.substr(from, end - from));
    from = end + 1;
  }
  return parts;
}

bool endsIn(const std::string& name, const wchar_t* ending) {
  return text::toLower(text::fromAnsi(name)).ends_with(ending);
}

// What is unpacked lies where it is looked for: L\T\a.dwt, or themes\t\t.inf.
bool isInPlace(const std::vector<archive::Entry>& entries, DownloadTable::Kind kind) {
  return std::any_of(entries.begin(), entries.end(), [&](const archive::Entry& entry) {
    const auto parts = partsOf(entry.name);
    if (parts.size() != 2) return false;
    if (kind == DownloadTable::dwt) return endsIn(parts[1], L".dwt");
    return text::equalIgnoringCase(text::fromAnsi(parts[1]), text::fromAnsi(parts[0]) + L".inf");
  });
}

ArchiveVerdict lookInto(const std::wstring& path, const std::wstring& address,
                        DownloadTable::Kind kind, Work& work) {
  archive::ArchiveFile file(path);
  try {
    const auto damage = archive::damageOf(file, {address, longestDownloadFolder()}, work);
    if (damage) return {Fault::damaged, *damage};
  } catch (const Error& error) {
    if (error.number() == errors::cancelled) throw;
    return {Fault::refused, std::wstring(error.description())};
  }
  const archive::Directory directory = archive::readDirectory(file, work);
  if (!isInPlace(directory.entries, kind)) return {Fault::wrongPlace, {}};
  return {};
}

}  // namespace

ArchiveVerdict tryArchive(const std::wstring& address, DownloadTable::Kind kind,
                          InternetSession& session, Work& work) {
  Listener listener(work);
  DownloadTable table;
  table.fill(text::join({L"?", kind == DownloadTable::theme ? L"theme1=" : L"dwt1=", address}));
  if (!UrlValidation(table, session, listener).ValidateURLs()) {
    goOnOrCancel(work);
    return {Fault::unreachable, listener.message};
  }
  if (table.size(0, kind) == 0) return {Fault::withoutLength, {}};
  const Staging staging;
  try {
    const auto archives = FileTransfer(table, session, staging.path(), listener).run();
    return lookInto(archives.front().path, address, kind, work);
  } catch (...) {
    const Error error = errors::current();
    goOnOrCancel(work);
    return {Fault::brokenOff,
            listener.message.empty() ? std::wstring(error.description()) : listener.message};
  }
}

}  // namespace author
