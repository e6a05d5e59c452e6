#include "webcopy/CopyRun.h"

#include <windows.h>

#include <limits>
#include <utility>

#include "addin/host/web_path.h"
#include "common/FileSearch.h"
#include "common/IniFile.h"
#include "common/NameSet.h"
#include "common/NoSystemBoxes.h"
#include "common/description_file.h"
#include "common/errors.h"
#include "common/handles.h"
#include "common/letter_case.h"
#include "common/log.h"
#include "common/paths.h"
#include "common/text.h"
#include "webcopy/ThemeValue.h"

namespace {

constexpr wchar_t formName[] = L"frmCopyToWeb";
constexpr wchar_t fileUrlPrefix[] = L"file:///";
constexpr short overallSteps = 5;
constexpr unsigned themeValueLength = 256;

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

// The host's own folders and what lies in them stay where they are.
bool isHostOwn(std::wstring_view path) { return text::containsIgnoringCase(path, L"_vti"); }

bool isTemplateFile(std::wstring_view name) {
  return name.size() >= 3 && text::equalIgnoringCase(name.substr(name.size() - 3), L"dwt");
}

bool isDescriptionFile(std::wstring_view name) {
  return text::equalIgnoringCase(name, descriptionFileName);
}

void logError(const wchar_t* procedure, const Error& error) {
  WriteLog({L"ERROR in procedure ", procedure, L" of Form ", formName, L". Error : ",
            error.description()});
}

std::wstring baseNameOf(const HostFile& file) {
  const std::wstring name = file.name();
  const std::size_t behindBase = file.extension().size() + 1;
  if (behindBase > name.size()) throw Error(errors::invalidArgument);
  return name.substr(0, name.size() - behindBase);
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

std::wstring CopyRun::sourcePathOf(std::wstring_view tag) {
  if (!text::beginsIgnoringCase(tag, fileUrlPrefix)) return std::wstring(tag);
  // The prefix is recognised in any letter case, but taken out only as it is written here.
  return text::replaceAll(text::replaceAll(tag, fileUrlPrefix, L""), L"/", L"\\");
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
    logError(L"EH_CopyDWTToWeb", error);
    view_.fail(L"An error was encountered while copying the DWT's.");
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
  view_.showWeb(web().url());
  WriteLog(
      {L"Preparing to copy DWT Folder : \"", text::afterLast(item_.tag, L'\\'), L"\" to web..."});
  WriteLog({L"DWT Path : ", item_.tag});
  LogIndent(true);
}

void CopyRun::initialise() {
  WriteLog(L"Performing initialisation of the variables...");
  view_.showOverallStatus(L"Initializing...");
  ImportedTemplates_.clear();
  check();
  view_.resetCurrent(2);
  view_.stepCurrent();
  view_.showTemplate(item_.text);
  FileCount_ = FolderCount_ = 0;
  OverwriteChosen_ = false;
  SourcePath_ = sourcePathOf(item_.tag);
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
  targetPath_ = text::replaceAll(
      DestinationFolder_ + std::wstring(text::afterLast(SourcePath_, L'\\')), L"\\", L"/");
  existing_ = web().locateFolder(targetPath_);
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
  if (existing_) {
    OverwriteChosen_ = overwriteAgreed();
    // Nothing is checked from here on: the steps that remain run over no template at all.
    if (!OverwriteChosen_) return;
  }
  WriteLog(L"Copying files and folders to the web.");
  targetPlaces_ = findTargetPlaces();
  const HostFolder folder = createFolder(targetPath_, {});
  check();
  LogIndent(true);
  CopyFolderTree(SourcePath_, folder.url());
  LogIndent(false);
  LogIndent(false);
  WriteLog(L"DWT copied successfully");
  if (OverwriteChosen_) WriteLog({L"Overwritten DWT : ", folder.name()});
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
  WriteLog({L"Applying themes to DWTs ( count: ", std::to_wstring(count), L")..."});
  LogIndent(true);
  view_.resetCurrent(count);
  for (const HostFile& file : ImportedTemplates_) {
    ApplyTemplateTheme(file, item_.tag);
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
    logError(L"CountFilesAndFolders", errors::current());
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
    if (entry.isDots() || isHostOwn(name)) continue;
    if (entry.isFolder()) {
      countEntries(name);
      FolderCount_ = sum16(FolderCount_, 1);
    } else if (!isDescriptionFile(entry.name)) {
      FileCount_ = sum16(FileCount_, 1);
    }
  } while (search.next());
}

HostFolder CopyRun::createFolder(const std::wstring& path, const std::wstring& below) {
  WriteLog({L"Creating folder : ", host_.makeAbsolute(web().url(), path)});
  spareTemplate(below);
  return web().createFolder(path);
}

// A folder of the web that is the template's own, or lies in it, is none to copy to: the web's
// file would be deleted to make room for itself, and the walk would never leave what it makes.
void CopyRun::spareTemplate(const std::wstring& below) const {
  for (const auto& place : targetPlaces_)
    if (modCommon::liesWithin(text::join({place, L"\\", below}), SourcePath_))
      throw Error(errors::pathFileAccess);
}

// Whether a host escapes what it tells of the destination is its own affair; names that come from
// the disk are never escaped.
std::vector<std::wstring> CopyRun::findTargetPlaces() const {
  std::vector<std::wstring> places;
  const auto add = [&](const std::wstring& address, const std::wstring& rest) {
    for (const auto& path : modCommon::localPathsOf(address))
      places.push_back(modCommon::withBackslash(path) + rest);
  };
  const std::wstring name(text::afterLast(SourcePath_, L'\\'));
  const std::wstring rest = web().relative(DestinationFolder_ + name);
  if (webpath::isAbsolute(DestinationFolder_)) add(DestinationFolder_, name);
  if (!webpath::isAbsolute(rest)) add(web().url(), rest);
  return places;
}

// An error other than a cancel leaves the whole walk without a message; the run still comes to its
// end, and its result tells.
void CopyRun::CopyFolderTree(const std::wstring& sourceFolder, const std::wstring& webFolder) {
  try {
    copyEntries(sourceFolder, webFolder);
  } catch (...) {
    if (errors::current().number() == errors::cancelled) throw errors::operationCancelled();
    ContinueFlag_ = false;
    view_.unload();
  }
}

void CopyRun::copyEntries(const std::wstring& sourceFolder, const std::wstring& webFolder) {
  FileSearch search(sourceFolder + L"\\*.*");
  if (!search.found()) {
    view_.inform(L"Could not open : \r\n" + sourceFolder);
    ContinueFlag_ = false;
    throw errors::operationCancelled();
  }
  const std::wstring source = text::withEnding(sourceFolder, L'\\');
  const std::wstring target = text::withEnding(webFolder, L'/');
  text::NameSet seen;
  // Not undone here: a folder's line goes back one level itself, the caller of the walk the last.
  LogIndent(true);
  do {
    check();
    const FileEntry& entry = search.entry();
    if (entry.isDots() || isHostOwn(source + entry.name)) continue;
    // Names outside the code page can come under one that is taken: what they mean is out of reach.
    if (!seen.insert(entry.name)) throw Error(errors::badFileName);
    if (entry.isFolder())
      copyFolder(source, target, entry.name);
    else
      copyFile(source, target, entry.name);
  } while (search.next());
  if (search.endError()) throw errors::fromSystemCode(search.endError());
}

void CopyRun::copyFolder(const std::wstring& source, const std::wstring& target,
                         const std::wstring& name) {
  check();
  LogIndent(false);
  createFolder(target + name, (source + name).substr(modCommon::withBackslash(SourcePath_).size()));
  view_.showCurrentStatus(name);
  copyEntries(source + name, target + name);
  view_.stepCurrent();
  view_.showCurrentStatus({});
}

void CopyRun::copyFile(const std::wstring& sourceFolder, const std::wstring& webFolder,
                       const std::wstring& name) {
  check();
  view_.showCurrentStatus(name);
  if (isDescriptionFile(name)) return;
  WriteLog({L"Copying file : ", name});
  importFile(sourceFolder + name, webFolder, name);
  view_.stepCurrent();
}

void CopyRun::importFile(const std::wstring& source, const std::wstring& webFolder,
                         const std::wstring& name) {
  const auto old = web().locateFile(webFolder + name);
  // One that has gone meanwhile, or whose name the code page lacks, must not cost its namesake.
  if (!modCommon::fileExists(source)) throw Error(errors::fileNotFound);
  if (old) {
    // The web's file may be the source itself under a name that does not tell, as on a server.
    const handles::File held = holdFile(source);
    old->remove();
  }
  const auto folder = web().locateFolder(webFolder);
  if (!folder) throw Error(errors::objectNotSet);
  HostFile imported = folder->importFile(source);
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
  for (const std::wstring& installed : host_.themeNames()) {
    if (!text::equalIgnoringCase(installed, theme->name)) continue;
    file.applyTheme(theme->name, theme->flags);
    return;
  }
  WriteLog(L"  Theme not available in FP");
}
