#include "catalogue/TemplateScan.h"

#include "catalogue/TemplateInfo.h"
#include "common/FileSearch.h"
#include "common/errors.h"
#include "common/letter_case.h"
#include "common/log.h"
#include "common/paths.h"
#include "common/report.h"
#include "common/text.h"
#include "folders/TemplateFolderList.h"

namespace {

// What the host's private folders begin with.
constexpr wchar_t privateFolder[] = L"_vti";

std::wstring unopened(const std::wstring& path) {
  return text::replaceAll(L"Could not open \" %s \"", L"%s", path);
}

void logUnopened(const std::wstring& path) { modCommon::WriteLog(unopened(path)); }

// A readable folder without a match: most file systems say the first, some redirectors the other.
bool isNothingFound(DWORD code) {
  return code == ERROR_FILE_NOT_FOUND || code == ERROR_NO_MORE_FILES;
}

// The search puts "?" where the code page lacks a character. No call could open such a name.
bool isOpenable(const std::wstring& name) { return name.find(L'?') == name.npos; }

}  // namespace

bool isHostFolder(std::wstring_view name) { return text::beginsIgnoringCase(name, privateFolder); }

Unlisted reasonUnlisted(std::wstring_view folder, const FileEntry& entry) {
  // Exactly this bit: it also keeps folders out whose name ends in .dwt.
  if ((entry.attributes & FILE_ATTRIBUTE_ARCHIVE) == 0) return Unlisted::archiveAttribute;
  if (text::containsIgnoringCase(std::wstring(folder) + entry.name, privateFolder))
    return Unlisted::hostsOwn;
  return isOpenable(entry.name) ? Unlisted::no : Unlisted::unopenable;
}

// The wait cursor from the outermost of these to its end.
class TemplateScan::Waiting {
 public:
  explicit Waiting(TemplateScan& scan) : scan_(scan) {
    if (scan_.waits_++ == 0) scan_.view_.showWaitCursor(true);
  }
  ~Waiting() {
    if (--scan_.waits_ == 0) scan_.view_.showWaitCursor(false);
  }
  Waiting(const Waiting&) = delete;
  Waiting& operator=(const Waiting&) = delete;

 private:
  TemplateScan& scan_;
};

void TemplateScan::ListTemplates() {
  const Waiting waiting(*this);
  TemplateFolderList folders;
  if (modCommon::ReadTemplateFolderList(folders) == 0) return;
  modCommon::WriteLog(L"Enumerating DWTs...");
  for (const ListedFolder& folder : folders) ScanFolder(folder.path);
  modCommon::WriteLog(
      {L"DWT enumeration complete. ", text::decimal(view_.count()), L" DWTs listed."});
}

void TemplateScan::ScanFolder(std::wstring_view folder) {
  modCommon::WriteLog({L"Scanning folder: ", folder});
  const Waiting waiting(*this);
  view_.showFolder(folder);
  const std::wstring path = modCommon::withBackslash(folder);
  FileSearch search(path + L"*.*");
  if (!search.found()) {
    reportUnreadable(path, search.startError());
    return;
  }
  do scanEntry(path, search.entry());
  while (search.next());
  if (search.endError()) reportUnreadable(path, search.endError());
}

void TemplateScan::scanEntry(const std::wstring& folder, const FileEntry& entry) {
  goOnOrCancel();
  if (!entry.isFolder() || entry.isDots()) return;
  if (isHostFolder(entry.name)) return;
  goOnOrCancel();
  RecurseFiles(folder + entry.name);
}

void TemplateScan::reportUnreadable(const std::wstring& folder, unsigned long code) {
  if (code == ERROR_NOT_READY)
    view_.showNotReady(L"Could not access " + folder + L".\r\n" + errors::systemMessage(code));
  logUnopened(folder);
  view_.showUnopened(unopened(folder));
}

void TemplateScan::RecurseFiles(std::wstring_view folder) {
  try {
    listFiles(folder);
  } catch (...) {
    const Error error = errors::current();
    if (error.number() == errors::cancelled) throw;
    modCommon::reportFormError(L"RecurseFiles", L"frmQuillet", error);
  }
}

void TemplateScan::listFiles(std::wstring_view folder) {
  const std::wstring path = modCommon::withBackslash(folder);
  FileSearch search(path + L"*.dwt");
  if (!search.found()) {
    if (!isNothingFound(search.startError())) logUnopened(path);
    return;
  }
  do {
    goOnOrCancel();
    const Waiting waiting(*this);
    listFile(folder, search.entry());
  } while (search.next());
  if (search.endError()) logUnopened(path);
}

void TemplateScan::listFile(std::wstring_view folder, const FileEntry& entry) {
  const Unlisted reason = reasonUnlisted(folder, entry);
  const std::wstring key = modCommon::withBackslash(folder) + entry.name;
  if (reason == Unlisted::unopenable) logUnopened(key);
  if (reason != Unlisted::no) return;
  if (IsTemplateListed(key)) return;
  const std::wstring title = templateTitle(folder, templateBaseName(entry.name));
  view_.add({key, title, std::wstring(folder)});
  modCommon::WriteLog(title);
}

void TemplateScan::goOnOrCancel() {
  if (!view_.keepGoing()) throw errors::operationCancelled();
}
