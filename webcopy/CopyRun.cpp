#include "webcopy/CopyRun.h"

#include <windows.h>

#include <limits>
#include <utility>

#include "addin/host/web_path.h"
#include "common/FileSearch.h"
#include "common/NameSet.h"
#include "common/NoSystemBoxes.h"
#include "common/description_file.h"
#include "common/errors.h"
#include "common/handles.h"
#include "common/ini_file.h"
#include "common/letter_case.h"
#include "common/log.h"
#include "common/report.h"
#include "common/text.h"
#include "webcopy/ThemeValue.h"
#include "webcopy/copied_files.h"
#include "webcopy/same_place.h"

namespace {

constexpr wchar_t formName[] = L"frmCopyToWeb";
constexpr wchar_t fileUrlPrefix[] = L"file:///";
constexpr short overallSteps = 5;

using modCommon::LogIndent;
using modCommon::WriteLog;

// Counts are 16-bit numbers: one that no longer fits is an error, never a wrong number.
short count16(std::size_t value) {
  if (value > static_cast<std::size_t>(std::numeric_limits<short>::max()))
    throw Error(errors::overflow);
  return static_cast<short>(value);
}

short sum16(short left, short right) {
  return count16(static_cast<std::size_t>(left) + static_cast<std::size_t>(right));
}

bool isTemplateFile(std::wstring_view name) {
  return name.size() >= 3 && text::equalIgnoringCase(name.substr(name.size() - 3), L"dwt");
}

std::wstring baseNameOf(const HostFile& file) {
  const std::wstring name = file.name();
  const std::size_t behindBase = file.extension().size() + 1;
  if (behindBase > name.size()) throw Error(errors::invalidArgument);
  return name.substr(0, name.size() - behindBase);
}

std::wstring joined(const std::wstring& webFolder, const std::wstring& name) {
  return webFolder.empty() ? name : webFolder + L"/" + name;
}

// A host may list the private folders that it makes in each new one.
bool hasFoldersOfItsUser(const HostFolder& folder) {
  for (const HostFolder& each : folder.folders())
    if (!text::beginsIgnoringCase(each.name(), L"_vti")) return true;
  return false;
}

// Whether a folder that is said to be new holds something already. A host that cannot tell has its
// word taken.
bool isInUse(const HostFolder& folder) noexcept {
  try {
    return folder.files().count() > 0 || hasFoldersOfItsUser(folder);
  } catch (...) {
    return false;
  }
}

// While it is held, nobody can delete the file.
handles::File holdFile(const std::wstring& path) {
  const NoSystemBoxes quiet;
  handles::File file(CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                 nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!file) throw errors::fromLastError();
  return file;
}

}  // namespace

CopyRun::CopyRun(HostApplication host, std::wstring destinationFolder, SourceItem item,
                 CopyRunView& view)
    : host_(std::move(host)),
      DestinationFolder_(std::move(destinationFolder)),
      item_(std::move(item)),
      view_(view) {}

std::wstring CopyRun::sourcePathOf(std::wstring_view folder) {
  if (!text::beginsIgnoringCase(folder, fileUrlPrefix)) return std::wstring(folder);
  // The prefix is recognised in any letter case, but taken out only as it is written here.
  return text::replaceAll(text::replaceAll(folder, fileUrlPrefix, L""), L"/", L"\\");
}

void CopyRun::check() {
  if (!view_.keepGoing()) ContinueFlag_ = false;
  if (!ContinueFlag_) throw errors::operationCancelled();
}

const HostWeb& CopyRun::web() const {
  if (!web_) throw Error(errors::objectNotSet);
  return *web_;
}

void CopyRun::EH_CopyDWTToWeb() {
  try {
    runSteps();
  } catch (...) {
    const Error error = errors::current();
    ContinueFlag_ = false;
    if (error.number() == errors::cancelled) {
      WriteLog(L"Copy to web operation has been cancelled!!!");
      modCommon::SetLogIndent(0);
      throw errors::operationCancelled(view_.caption());
    }
    modCommon::reportFormErrorText(L"EH_CopyDWTToWeb", formName, error);
    view_.fail(failure_);
    view_.unload();
  }
}

void CopyRun::runSteps() {
  startRun();
  initialise();
  prepare();
  copy();
  optimise();
  applyThemes();
  endRun();
}

void CopyRun::startRun() {
  WriteLog(L"Begin process of copying DWT's to the web...");
  view_.resetOverall(overallSteps);
  web_ = host_.activeWeb();
  webUrl_ = web().url();
  view_.showWeb(webUrl_);
  WriteLog({L"Preparing to copy DWT Folder : \"", text::afterLast(item_.folder, L'\\'),
            L"\" to web..."});
  WriteLog({L"DWT Path : ", item_.folder});
  LogIndent(true);
}

void CopyRun::initialise() {
  WriteLog(L"Performing initialisation of the variables...");
  view_.showOverallStatus(L"Initializing...");
  ImportedTemplates_.clear();
  check();
  view_.resetCurrent(2);
  view_.stepCurrent();
  view_.showTemplate(item_.title);
  FileCount_ = FolderCount_ = 0;
  OverwriteChosen_ = false;
  SourcePath_ = sourcePathOf(item_.folder);
  view_.stepCurrent();
  view_.stepOverall();
  view_.showOverallStatus({});
  WriteLog(L"Completed initialization of the variables...");
  check();
}

void CopyRun::prepare() {
  WriteLog(L"Preparing to copy files and folders to the web...");
  view_.showOverallStatus(L"Preparing to copy files and folders to the web...");
  view_.resetCurrent(2);
  CountFilesAndFolders(SourcePath_);
  view_.stepCurrent();
  DestinationFolder_ = text::withEnding(DestinationFolder_, L'/');
  const std::wstring name(text::afterLast(SourcePath_, L'\\'));
  targetPath_ = text::replaceAll(DestinationFolder_ + name, L"\\", L"/");
  targetPlace_ = joined(web().relative(DestinationFolder_), name);
  existing_ = web().locateFolder(targetPlace_);
  view_.stepCurrent();
  view_.stepOverall();
  view_.showOverallStatus({});
  check();
}

bool CopyRun::overwriteAgreed() {
  constexpr wchar_t pattern[] =
      L"The DWT named | \" %s. \"| already exists. Do you want to overwrite the existing DWT with "
      L"the new DWT?";
  if (view_.ask(text::message(pattern, targetPath_))) {
    WriteLog({L"Overwriting DWT : ", existing_->name()});
    return true;
  }
  WriteLog(L"Existing DWT not to be overwritten. New DWT will not be copied");
  ContinueFlag_ = false;
  view_.unload();
  return false;
}

void CopyRun::copy() {
  view_.showOverallStatus(L"Copying files and folders to the web...");
  view_.resetCurrent(sum16(FileCount_, FolderCount_));
  spareTemplate();
  if (existing_) {
    OverwriteChosen_ = overwriteAgreed();
    // Nothing is checked from here on: the steps that remain run over no template at all.
    if (!OverwriteChosen_) return;
  }
  WriteLog(L"Copying files and folders to the web.");
  const auto folder = createTarget();
  if (!folder) return;
  check();
  LogIndent(true);
  CopyFolderTree(SourcePath_, {*folder, folder->url(), targetPlace_, {}});
  LogIndent(false);
  LogIndent(false);
  WriteLog(L"DWT copied successfully");
  if (OverwriteChosen_) WriteLog({L"Overwritten DWT : ", folder->name()});
}

// Nothing when the folder turns out to be there and is not to be overwritten: a host may fail to
// find what it then gives for a new one.
std::optional<HostFolder> CopyRun::createTarget() {
  logCreation(targetPath_);
  const MadeFolder made = web().createFolder(targetPlace_);
  if (!existing_ && (!made.isNew || isInUse(made.folder))) {
    existing_ = made.folder;
    OverwriteChosen_ = overwriteAgreed();
    if (!OverwriteChosen_) return std::nullopt;
  }
  return made.folder;
}

void CopyRun::logCreation(const std::wstring& path) const {
  WriteLog({L"Creating folder : ", host_.makeAbsolute(webUrl_, path)});
}

void CopyRun::optimise() {
  view_.showCurrentStatus({});
  view_.stepOverall();
  view_.showOverallStatus({});
  view_.showOverallStatus(L"optimizing DWT folder...");
  // A bar without a range could not be filled.
  view_.resetCurrent(ImportedTemplates_.empty() ? short{1} : count16(ImportedTemplates_.size()));
  CleanUploadedFolder();
  view_.finishCurrent();
  view_.stepOverall();
}

void CopyRun::applyThemes() {
  const short count = count16(ImportedTemplates_.size());
  view_.showOverallStatus(L"Applying themes to the DWTs...");
  WriteLog({L"Applying themes to DWTs ( count: ", text::decimal(count), L")..."});
  LogIndent(true);
  view_.resetCurrent(count);
  for (const HostFile& file : ImportedTemplates_) {
    ApplyTemplateTheme(file, item_.folder);
    view_.stepCurrent();
  }
  LogIndent(false);
  view_.stepOverall();
}

void CopyRun::endRun() {
  ImportedTemplates_.clear();
  view_.showCurrentStatus({});
  LogIndent(false);
  web().refresh();
  view_.unload();
}

// A count that ends early only makes the bar inexact; a cancel is noticed at the next check.
void CopyRun::CountFilesAndFolders(const std::wstring& folder) {
  try {
    countEntries(folder);
  } catch (...) {
    modCommon::reportFormErrorText(L"CountFilesAndFolders", formName, errors::current());
  }
}

void CopyRun::countEntries(const std::wstring& folder) {
  FileSearch search(folder + L"\\*.*");
  if (!search.found()) return;
  const std::wstring path = text::withEnding(folder, L'\\');
  do {
    check();
    const FileEntry& entry = search.entry();
    const std::wstring name = path + entry.name;
    if (entry.isDots() || isHostsOwn(name)) continue;
    if (entry.isFolder()) {
      countEntries(name);
      FolderCount_ = sum16(FolderCount_, 1);
    } else if (!isDescriptionFile(entry.name)) {
      FileCount_ = sum16(FileCount_, 1);
    }
  } while (search.next());
}

// A folder of the web that is the template's own, or lies in it, is none to copy to: the web's
// file would be deleted to make room for itself, and the walk would never leave what it makes.
void CopyRun::spareTemplate() {
  if (!meetsTemplate()) return;
  failure_ = samePlaceMessage(SourcePath_);
  throw Error(errors::pathFileAccess);
}

bool CopyRun::meetsTemplate() {
  const modCommon::KnownFolder source(SourcePath_);
  for (const auto& place : findTargetPlaces())
    if (source.holds(place) || isBelow(place, source, SourcePath_)) return true;
  return false;
}

// Whether a folder that `folder` of the template would be copied to, below `place`, is the
// template. Only one that is there already can be.
bool CopyRun::isBelow(const std::wstring& place, const modCommon::KnownFolder& source,
                      const std::wstring& folder) {
  if (!modCommon::folderExists(place)) return false;
  FileSearch search(folder + L"\\*.*");
  for (bool more = search.found(); more; more = search.next()) {
    const FileEntry& entry = search.entry();
    const std::wstring path = modCommon::withBackslash(folder) + entry.name;
    if (!entry.isFolder() || entry.isDots() || isHostsOwn(path)) continue;
    check();
    const std::wstring target = modCommon::withBackslash(place) + entry.name;
    if (source.isAt(target) || isBelow(target, source, path)) return true;
  }
  return false;
}

// Whether a host escapes what it tells of the web is its own affair; names that come from the disk
// are never escaped.
std::vector<std::wstring> CopyRun::findTargetPlaces() const {
  std::vector<std::wstring> places;
  const auto add = [&](const std::wstring& address, std::wstring_view rest) {
    for (const auto& path : modCommon::localPathsOf(address))
      places.push_back(modCommon::withBackslash(path).append(rest));
  };
  if (webpath::isAbsolute(DestinationFolder_))
    add(DestinationFolder_, text::afterLast(SourcePath_, L'\\'));
  if (!webpath::isAbsolute(targetPlace_)) add(webUrl_, targetPlace_);
  return places;
}

// An error other than a cancel leaves the whole walk without a message; the run still comes to its
// end, and its result tells.
void CopyRun::CopyFolderTree(const std::wstring& sourceFolder, Target target) {
  try {
    copyEntries(sourceFolder, target);
  } catch (...) {
    const Error error = errors::current();
    if (error.number() == errors::cancelled) throw errors::operationCancelled();
    modCommon::reportFormErrorText(L"CopyFolderTree", formName, error);
    ContinueFlag_ = false;
    view_.unload();
  }
}

void CopyRun::copyEntries(const std::wstring& sourceFolder, Target& target) {
  FileSearch search(sourceFolder + L"\\*.*");
  if (!search.found()) {
    view_.inform(L"Could not open : \r\n" + sourceFolder);
    ContinueFlag_ = false;
    throw errors::operationCancelled();
  }
  const std::wstring source = text::withEnding(sourceFolder, L'\\');
  text::NameSet seen;
  // Not undone here: a folder's line goes back one level itself, the caller of the walk the last.
  LogIndent(true);
  do {
    check();
    const FileEntry& entry = search.entry();
    if (entry.isDots() || isHostsOwn(source + entry.name)) continue;
    // Names outside the code page can come under one that is taken: what they mean is out of reach.
    if (!seen.insert(entry.name)) throw Error(errors::badFileName);
    if (entry.isFolder())
      copyFolder(source, target, entry.name);
    else
      copyFile(source, target, entry.name);
  } while (search.next());
  if (search.endError()) throw errors::fromSystemCode(search.endError());
}

void CopyRun::copyFolder(const std::wstring& source, const Target& target,
                         const std::wstring& name) {
  check();
  LogIndent(false);
  const std::wstring url = text::withEnding(target.url, L'/') + name;
  const std::wstring path = joined(target.path, name);
  logCreation(url);
  Target made = {web().createSubfolder(target.folder, name, path).folder, url, path, {}};
  view_.showCurrentStatus(name);
  copyEntries(source + name, made);
  view_.stepCurrent();
  view_.showCurrentStatus({});
}

void CopyRun::copyFile(const std::wstring& sourceFolder, Target& target, const std::wstring& name) {
  check();
  view_.showCurrentStatus(name);
  if (isDescriptionFile(name)) return;
  WriteLog({L"Copying file : ", name});
  importFile(sourceFolder + name, target, name);
  view_.stepCurrent();
}

void CopyRun::importFile(const std::wstring& source, Target& target, const std::wstring& name) {
  const auto old = web().locateFile(joined(target.path, name));
  // One that has gone meanwhile, or whose name the code page lacks, must not cost its namesake.
  if (!modCommon::fileExists(source)) throw Error(errors::fileNotFound);
  if (old) {
    // The web's file may be the source itself under a name that does not tell, as on a server.
    const handles::File held = holdFile(source);
    old->remove();
  }
  if (!target.files) target.files = target.folder.files();
  HostFile imported = target.files->import(source);
  if (isTemplateFile(name)) ImportedTemplates_.push_back(std::move(imported));
}

// The walk never imports a description file; this removes one that an earlier copy left.
void CopyRun::CleanUploadedFolder() {
  WriteLog(L"Cleaning uploaded folder...");
  LogIndent(true);
  if (!ImportedTemplates_.empty()) {
    const std::wstring url = ImportedTemplates_.front().url();
    const std::wstring folder = url.substr(0, url.rfind(L'/') + 1);
    if (const auto file = web().locateFile(folder + descriptionFileName)) {
      file->remove();
      WriteLog(L"Quillet ini file found and deleted");
    }
  }
  LogIndent(false);
  WriteLog(L"Folder cleaned.");
}

void CopyRun::ApplyTemplateTheme(const HostFile& file, const std::wstring& templateFolder) {
  const std::wstring baseName = baseNameOf(file);
  view_.showCurrentStatus(L"Applying theme to " + baseName + L"...");
  const std::wstring value = readIniValue(templateFolder + L"\\" + descriptionFileName, baseName,
                                          L"Theme", {}, themeValueLength);
  if (value.empty()) return;
  WriteLog({L"DWT: ", baseName, L", Theme: ", value});
  const auto theme = parseThemeValue(value);
  if (!theme) return;
  if (host_.hasTheme(theme->name))
    file.applyTheme(theme->name, theme->flags);
  else
    WriteLog(L"  Theme not available in FP");
}
