// Copying one template folder into the open web, as a run that knows no window.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "addin/host/HostApplication.h"
#include "common/KeepGoing.h"
#include "common/paths.h"

// The template that is copied.
struct SourceItem {
  std::wstring title;
  std::wstring folder;  // a local path, or its file URL
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

  // The run wants its window gone as soon as it is over, which may be a while yet. It may ask
  // twice.
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

  // The local folder that is meant: a file URL loses its "file:///" and turns its slashes.
  static std::wstring sourcePathOf(std::wstring_view folder);

 private:
  // A folder of the web that files are copied to.
  struct Target {
    HostFolder folder;
    std::wstring url;                // as the host told of the first one
    std::wstring path;               // in the web
    std::optional<HostFiles> files;  // asked for with the first file
  };

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
  void spareTemplate();
  bool meetsTemplate();
  bool isBelow(const std::wstring& place, const modCommon::KnownFolder& source,
               const std::wstring& folder);
  std::vector<std::wstring> findTargetPlaces() const;
  std::optional<HostFolder> createTarget();
  void logCreation(const std::wstring& path) const;
  void CopyFolderTree(const std::wstring& sourceFolder, Target target);
  void copyEntries(const std::wstring& sourceFolder, Target& target);
  void copyFolder(const std::wstring& source, const Target& target, const std::wstring& name);
  void copyFile(const std::wstring& sourceFolder, Target& target, const std::wstring& name);
  void importFile(const std::wstring& source, Target& target, const std::wstring& name);
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
  std::wstring webUrl_;
  std::wstring SourcePath_;
  std::wstring targetPath_;   // the template's folder in the web, as it is shown
  std::wstring targetPlace_;  // the same as the host takes it
  std::optional<HostFolder> existing_;
  bool OverwriteChosen_ = false;
  short FileCount_ = 0;
  short FolderCount_ = 0;
  bool ContinueFlag_ = true;
  // What the user is told of an error; there before the run, so that its first step can fail.
  std::wstring failure_ = L"An error was encountered while copying the DWT's.";
  std::vector<HostFile> ImportedTemplates_;
};
