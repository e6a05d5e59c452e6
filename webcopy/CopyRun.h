// Copying one template folder into the open web, as a run that knows no window.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "addin/host/HostApplication.h"
#include "common/KeepGoing.h"

// The row of the browser's list that is copied.
struct SourceItem {
  std::wstring text;  // the template's title
  std::wstring tag;   // the local template folder, or its file URL
};

// What shows a run. Progress never fails the run.
class CopyRunView : public KeepGoing {
 public:
  virtual void showWeb(const std::wstring& url) = 0;
  virtual void showTemplate(const std::wstring& title) = 0;
  virtual void showOverallStatus(const std::wstring& text) = 0;
  virtual void showCurrentStatus(const std::wstring& text) = 0;
  virtual void resetOverall(short maximum) = 0;
  virtual void stepOverall() = 0;
  virtual void resetCurrent(short maximum) = 0;
  virtual void stepCurrent() = 0;
  virtual void finishCurrent() = 0;  // the bar to its maximum

  // A Yes/No question and messages, titled with the window's caption.
  virtual bool ask(const std::wstring& text) = 0;
  virtual void inform(const std::wstring& text) = 0;  // information icon
  virtual void fail(const std::wstring& text) = 0;    // critical icon
  virtual std::wstring caption() const = 0;

  // The run wants its window gone; the run itself may go on for a while, and may want it again.
  virtual void unload() = 0;

 protected:
  ~CopyRunView() = default;
};

// One run; its host objects are held no longer than it lives.
class CopyRun {
 public:
  CopyRun(HostApplication host, std::wstring destinationFolder, SourceItem item, CopyRunView& view);

  // The whole run, in the order that the steps are shown. Raises 512 once more when it was
  // cancelled; every other failure has been logged, and shown where it has a message.
  void EH_CopyDWTToWeb();

  // The run's result: true until a cancel, a declined overwrite or an error.
  bool continueFlag() const noexcept { return ContinueFlag_; }
  // The run ends at its next check.
  void cancel() noexcept { ContinueFlag_ = false; }

  // What a tag means as a local folder: a file URL loses its "file:///" and turns its slashes.
  static std::wstring sourcePathOf(std::wstring_view tag);

 private:
  void runSteps();
  void startRun();
  void initialise();
  void prepare();
  void copy();
  bool overwriteAgreed();
  void optimise();
  void applyThemes();
  void endRun();

  void CountFilesAndFolders(const std::wstring& folder);
  void countEntries(const std::wstring& folder);
  // `below` is where the folder lies in the template; empty for the template's own.
  HostFolder createFolder(const std::wstring& path, const std::wstring& below);
  void spareTemplate(const std::wstring& below) const;
  std::vector<std::wstring> findTargetPlaces() const;
  void CopyFolderTree(const std::wstring& sourceFolder, const std::wstring& webFolder);
  void copyEntries(const std::wstring& sourceFolder, const std::wstring& webFolder);
  void copyFolder(const std::wstring& source, const std::wstring& target, const std::wstring& name);
  void copyFile(const std::wstring& sourceFolder, const std::wstring& webFolder,
                const std::wstring& name);
  void importFile(const std::wstring& source, const std::wstring& webFolder,
                  const std::wstring& name);
  void CleanUploadedFolder();
  void ApplyTemplateTheme(const HostFile& file, const std::wstring& templateFolder);

  // Lets pending events run and raises 512 when the run shall not go on.
  void check();
  const HostWeb& web() const;

  HostApplication host_;
  std::wstring DestinationFolder_;
  SourceItem item_;
  CopyRunView& view_;
  std::optional<HostWeb> web_;
  std::wstring SourcePath_;
  std::wstring targetPath_;                 // the template's folder in the web
  std::vector<std::wstring> targetPlaces_;  // where that may lie on the local disk
  std::optional<HostFolder> existing_;
  bool OverwriteChosen_ = false;
  short FileCount_ = 0;
  short FolderCount_ = 0;
  bool ContinueFlag_ = true;
  std::vector<HostFile> ImportedTemplates_;
};
