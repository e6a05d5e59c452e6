// Finding the templates below the listed folders.
//
// A template is a .dwt file inside an immediate sub-folder of a listed folder; files directly in a
// listed folder or deeper than one level are none.
#pragma once

#include <string>
#include <string_view>

#include "catalogue/TemplateList.h"
#include "common/KeepGoing.h"

struct FileEntry;

// True for a sub-folder of a listed folder that is the host's own and not looked into.
bool isHostFolder(std::wstring_view name);

// Why a *.dwt file of a template folder is none of its templates.
enum class Unlisted {
  no,  // it is one
  archiveAttribute,
  hostsOwn,    // "_vti" in its path
  unopenable,  // the code page lacks a character of its name
};
// `folder` without a trailing backslash, `entry` as the search found it.
Unlisted reasonUnlisted(std::wstring_view folder, const FileEntry& entry);

// Where found templates go, and what the scan asks meanwhile.
class TemplateScanView : public KeepGoing {
 public:
  virtual bool isListed(std::wstring_view key) = 0;
  virtual void add(const TemplateEntry& entry) = 0;
  // How many rows the list has.
  virtual int count() = 0;
  // The listed folder that is searched from now on.
  virtual void showFolder(std::wstring_view folder) = 0;
  // One that is missing or cannot be read; the scan goes on.
  virtual void showUnopened(std::wstring_view text) = 0;
  // A listed folder's drive is not ready.
  virtual void showNotReady(const std::wstring& message) = 0;
  // Shown and taken back in turns; never twice the same.
  virtual void showWaitCursor(bool shown) noexcept = 0;

 protected:
  ~TemplateScanView() = default;
};

class TemplateScan {
 public:
  explicit TemplateScan(TemplateScanView& view) : view_(view) {}

  // Every template of the template folder list, added to a list that the view has cleared. Raises
  // 512 when the view says stop; what was added stays.
  void ListTemplates();

  // The template folders of one listed folder. Raises 512 when the view says stop.
  void ScanFolder(std::wstring_view folder);

  // The template files of one template folder. Despite its name it does not descend further. Raises
  // 512 when the view says stop; other errors end it with a log line.
  void RecurseFiles(std::wstring_view folder);

 private:
  class Waiting;

  void scanEntry(const std::wstring& folder, const FileEntry& entry);
  void listFiles(std::wstring_view folder);
  void listFile(std::wstring_view folder, const FileEntry& entry);
  void reportUnreadable(const std::wstring& folder, unsigned long code);
  bool IsTemplateListed(std::wstring_view key) { return view_.isListed(key); }
  void goOnOrCancel();

  TemplateScanView& view_;
  int waits_ = 0;
};
