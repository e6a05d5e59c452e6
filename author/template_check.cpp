#include "author/template_check.h"

#include <algorithm>
#include <map>
#include <tuple>
#include <unordered_map>
#include <utility>

#include "author/EditableRegions.h"
#include "author/PictureLook.h"
#include "author/description_check.h"
#include "author/page_text.h"
#include "catalogue/Preview.h"
#include "catalogue/TemplateInfo.h"
#include "catalogue/TemplateScan.h"
#include "common/FileSearch.h"
#include "common/NameSet.h"
#include "common/ansi.h"
#include "common/errors.h"
#include "common/letter_case.h"
#include "common/text.h"
#include "html/encoding.h"
#include "webcopy/copied_files.h"

namespace author {
namespace {

// A page of more bytes is not what somebody wrote.
constexpr std::uint64_t largestPage = 8u << 20;
constexpr std::uint64_t largestScript = 1u << 20;

bool endsIn(std::wstring_view name, std::wstring_view ending) {
  return name.size() > ending.size() &&
         text::equalIgnoringCase(name.substr(name.size() - ending.size()), ending);
}

bool isTemplateName(std::wstring_view name) { return endsIn(name, L".dwt"); }
bool isStyleSheet(std::wstring_view name) { return endsIn(name, L".css"); }
bool isScript(std::wstring_view name) { return endsIn(name, L".js") || endsIn(name, L".vbs"); }

bool isPicture(std::wstring_view name) {
  return IsImageFile(name) || endsIn(name, L".png") || endsIn(name, L".bmp");
}

bool isPage(std::wstring_view name) {
  return isPageFile(name) && !isPicture(name) && !endsIn(name, L".txt");
}

// The rows that the browser would show of one template folder.
class Rows final : public TemplateScanView {
 public:
  explicit Rows(Work& work) : work_(work) {}
  bool keepGoing() override { return work_.keepGoing(); }
  bool isListed(std::wstring_view key) override { return keys_.has(key); }
  void add(const TemplateEntry& entry) override {
    keys_.insert(entry.key);
    rows.push_back(entry);
  }
  // Not run by tests: what is found in one folder is not counted.
  int count() override { return static_cast<int>(rows.size()); }
  void showFolder(std::wstring_view) override {}      // Not run by tests: there is only one.
  void showUnopened(std::wstring_view) override {}    // Not run by tests: it was opened before.
  void showNotReady(const std::wstring&) override {}  // Not run by tests: it was read before.
  void showWaitCursor(bool) noexcept override {}

  std::vector<TemplateEntry> rows;

 private:
  Work& work_;
  text::NameSet keys_;
};

class Check {
 public:
  Check(const std::wstring& folder, const std::wstring& shown, Work& work) : work_(work) {
    report_.folder = folder;
    report_.shown = shown;
  }

  FolderReport run() {
    report_.tree = listTree(report_.folder, work_);
    for (const FolderEntry& entry : report_.tree.entries)
      index_.emplace(text::toLower(entry.path), &entry);
    checkTree();
    listTemplates();
    checkUnlisted();
    checkDescription(report_, findingsInto());
    for (const ListedTemplate& each : report_.templates) addRoots(each);
    followLinks();
    checkUnlinked();
    addCounts();
    sortFindings();
    return std::move(report_);
  }

 private:
  AddFinding findingsInto() {
    return [this](Finding finding) { add(std::move(finding)); };
  }

  // Of a kind so many are told, and how many more there are.
  static constexpr int mostOfKind = 100;

  bool isFull(const std::wstring& rule) { return counts_[rule] >= mostOfKind; }

  void add(Finding finding) {
    auto& all = report_.findings;
    if (isFull(finding.rule)) {
      ++counts_[finding.rule];
    } else if (std::find(all.begin(), all.end(), finding) == all.end()) {
      ++counts_[finding.rule];
      all.push_back(std::move(finding));
    }
  }

  void addCounts() {
    for (const auto& [rule, count] : counts_)
      if (count > mostOfKind) {
        const std::wstring more =
            text::decimal(count - mostOfKind) + L" more findings of this kind are not told.";
        report_.findings.push_back({rule, shown({}), 0, more, L"What happens is the same.",
                                    L"Start with those that are told."});
      }
  }

  std::wstring shown(std::wstring_view below) const {
    return below.empty() ? report_.shown : text::join({report_.shown, L"\\", below});
  }
  std::wstring below(std::wstring_view path) const {
    return std::wstring(path.substr(report_.folder.size() + 1));
  }
  bool isBelow(std::wstring_view path) const {
    return text::beginsIgnoringCase(path, report_.folder + L"\\");
  }
  const FolderEntry* find(std::wstring_view path) const {
    const auto found = index_.find(text::toLower(path));
    return found == index_.end() ? nullptr : found->second;
  }
  // A template in the folder itself, where templates are looked for.
  static bool isOnTop(const FolderEntry& entry) {
    return entry.path.find(L'\\') == entry.path.npos;
  }

  void checkTree();
  void checkName(const FolderEntry& entry);
  void listTemplates();
  void listTemplate(const TemplateEntry& row);
  void checkUnlisted();
  void checkUnlisted(const FolderEntry& entry);
  void addRoots(const ListedTemplate& listed);
  void addRoot(const std::wstring& path);
  void followLinks();
  void readLinked(const std::wstring& path);
  void readPage(const std::wstring& path);
  void readRegions(const std::wstring& path, const std::wstring& page);
  void addRegionFinding(const std::wstring& path, const LineNumbers& lines,
                        const RegionFinding& fault);
  void follow(const std::wstring& page, std::wstring_view text, const std::vector<Link>& links);
  void followOne(const std::wstring& page, const Link& link, int line);
  void checkTarget(const std::wstring& page, const Link& link, int line, const Target& target);
  void reach(const std::wstring& path);
  void checkUnlinked();
  void sortFindings();

  Work& work_;
  FolderReport report_;
  std::map<std::wstring, int> counts_;                          // of findings, by rule
  std::unordered_map<std::wstring, const FolderEntry*> index_;  // by lower-case path
  text::NameSet listed_;                                        // full paths
  std::unordered_map<std::wstring, bool> reached_;              // by lower-case path
  std::vector<std::wstring> waiting_;
  std::wstring scripts_;  // of every page and script that is reached
};

void Check::checkTree() {
  if (isHostsOwn(report_.folder))
    add({L"host-folder", shown({}), 0, L"The folder's path contains \"_vti\".",
         L"The host keeps its own files below such folders: nothing in it is listed or copied.",
         L"Give the folder, or the one above it, another name."});
  for (const FolderEntry& entry : report_.tree.entries) checkName(entry);
  for (const std::wstring& path : report_.tree.unreadable)
    add({L"unreadable", shown(path), 0, L"The folder cannot be read.",
         L"A copy of the template ends here with a message.",
         L"Give yourself the right to read it."});
  for (const std::wstring& path : report_.tree.leadElsewhere)
    add({L"link-folder", shown(path), 0, L"The folder is a link to another place of the disk.",
         L"What it leads to is copied, but not packed.",
         L"Put the files themselves into the template folder."});
  if (!report_.tree.isWhole)
    add({L"too-many", shown({}), 0, L"The folder holds more than 65,535 files and folders.",
         L"It cannot be packed, and what is said here is not all.",
         L"Take out what does not belong to the template."});
}

void Check::checkName(const FolderEntry& entry) {
  if (!text::fitsAnsi(entry.name()) && isCopied(report_, entry))
    add({L"code-page", shown(entry.path), 0,
         L"The name has a character that this system's code page lacks.",
         L"No program of the host's kind can open it; copying the template fails.",
         L"Give it a name of letters, digits, \"-\" and \"_\"."});
  const std::size_t length = nameOf(report_.folder).size() + 1 + entry.path.size();
  const std::size_t now = report_.folder.size() + 1 + entry.path.size();
  if (length <= longestPathBelow && now <= longestLocalPath) return;
  // What lies in a folder that is too deep is no news.
  const auto above = entry.path.rfind(L'\\');
  const std::size_t aboveLength = above == std::wstring::npos ? 0 : above;
  if (length - (entry.path.size() - aboveLength) > longestPathBelow) return;
  add({L"path-length", shown(entry.path), 0,
       text::join({L"The path has ", text::decimal(static_cast<long long>(length)),
                   L" characters from the template folder's name on."}),
       L"The host takes 259 for a whole path. With more than 170 here, the template cannot be "
       L"downloaded or copied by everybody.",
       L"Use shorter names, or fewer folders inside of each other."});
}

void Check::listTemplates() {
  Rows rows(work_);
  TemplateScan(rows).RecurseFiles(report_.folder);
  std::sort(rows.rows.begin(), rows.rows.end(),
            [](const auto& left, const auto& right) { return left.key < right.key; });
  for (const TemplateEntry& row : rows.rows) listTemplate(row);
}

void Check::listTemplate(const TemplateEntry& row) {
  goOnOrCancel(work_);
  const std::wstring base = templateBaseName(below(row.key));
  const TemplateInfo info = GetDWTInfo(report_.folder, base);
  const Preview preview = previewOf(row.key, info);
  ListedTemplate listed;
  listed.file = row.key;
  listed.title = row.title;
  listed.description = info.description;
  listed.preview = preview.file;
  listed.isPicture = preview.isImage;
  listed.notes = preview.notes;
  listed.theme = themeOf(report_.folder, base);
  if (preview.isImage) {
    const PictureLook look = lookAtPicture(preview.file);
    listed.width = look.width;
    listed.height = look.height;
    if (!look.isShown)
      add({L"preview-undecodable",
           isBelow(preview.file) ? shown(below(preview.file)) : preview.file, 0,
           L"The preview is no picture that can be shown: " + look.reason,
           L"The browser shows \"Error in preview\" in its place.",
           L"Save the picture anew as GIF or JPEG."});
  }
  listed_.insert(listed.file);
  report_.templates.push_back(std::move(listed));
}

void Check::checkUnlisted() {
  const auto& entries = report_.tree.entries;
  bool any = false;
  for (const FolderEntry& entry : entries) {
    if (!isTemplateName(entry.name())) continue;
    any = true;
    checkUnlisted(entry);
  }
  if (!any)
    add({L"no-template", shown({}), 0, L"There is no file that ends in .dwt.",
         L"The browser lists nothing for this folder.",
         L"Put the template into the folder itself, under a name that ends in .dwt."});
}

void Check::checkUnlisted(const FolderEntry& entry) {
  const std::wstring path = report_.folder + L"\\" + entry.path;
  if (listed_.has(path)) return;
  if (isHostsOwn(path) && !isHostsOwn(report_.folder)) return;  // the host's copy of a template
  const std::wstring place = shown(entry.path);
  constexpr wchar_t notListed[] = L"The browser does not list it.";
  if (!isOnTop(entry)) {
    if (!entry.isFolder())
      add({L"template-too-deep", place, 0,
           L"The template lies in a folder below the template folder.", notListed,
           L"Move it, and what belongs to it, one level up."});
    return;
  }
  if (entry.isFolder())
    add({L"folder-as-template", place, 0, L"It is a folder whose name ends in .dwt.", notListed,
         L"Give the folder another name."});
  else if (!text::fitsAnsi(entry.name()))
    return;  // said of its name already
  else if (reasonUnlisted(report_.folder, {entry.name(), entry.attributes}) ==
           Unlisted::archiveAttribute)
    add({L"archive-attribute", place, 0, L"The file's archive attribute is cleared.", notListed,
         L"Set it: attrib +a \"" + entry.name() + L"\""});
  else if (!isHostsOwn(path))
    add({L"not-listed", place, 0, L"The search for templates does not find the file.", notListed,
         L"Look whether the path is too long or the file cannot be read."});
}

void Check::addRoots(const ListedTemplate& listed) {
  addRoot(listed.file);
  addRoot(listed.preview);
  addRoot(listed.notes);
}

// A description may write "images/../quay.gif".
void Check::addRoot(const std::wstring& path) {
  const std::wstring plain = fullPath(path);
  if (isBelow(plain)) reach(below(plain));
}

void Check::reach(const std::wstring& path) {
  if (reached_.emplace(text::toLower(path), true).second) waiting_.push_back(path);
}

void Check::followLinks() {
  // One that is not listed has its finding; what it needs is not superfluous for that.
  for (const FolderEntry& entry : report_.tree.entries)
    if (isOnTop(entry) && !entry.isFolder() && isTemplateName(entry.name())) reach(entry.path);
  while (!waiting_.empty()) {
    goOnOrCancel(work_);
    const std::wstring path = std::move(waiting_.back());
    waiting_.pop_back();
    readLinked(path);
  }
}

void Check::readLinked(const std::wstring& path) {
  const FolderEntry* const entry = find(path);
  if (!entry || entry->isFolder()) return;
  try {
    const std::wstring file = report_.folder + L"\\" + entry->path;
    if (isPage(path)) {
      readPage(entry->path);
    } else if (isStyleSheet(path)) {
      const std::wstring css = html::decodePage(readFile(file, largestPage));
      follow(entry->path, css, linksOfStyleSheet(css));
    } else if (isScript(path)) {
      scripts_ += html::decodePage(readFile(file, largestScript));
    }
  } catch (const Error& error) {
    if (error.number() == errors::cancelled) throw;
    add({L"unreadable", shown(entry->path), 0, std::wstring(error.description()),
         L"What it links to is not known, and a copy of the template may end here.",
         L"See that the file can be read and is a page of a usual size."});
  }
}

void Check::readPage(const std::wstring& path) {
  const std::wstring page = html::decodePage(readFile(report_.folder + L"\\" + path, largestPage));
  if (isTemplateName(path) && path.find(L'\\') == path.npos) readRegions(path, page);
  scripts_ += scriptsOf(page);
  follow(path, page, linksOfPage(page));
}

void Check::readRegions(const std::wstring& path, const std::wstring& page) {
  const EditableRegions regions = author::readRegions(page);
  for (ListedTemplate& listed : report_.templates)
    if (text::equalIgnoringCase(listed.file, report_.folder + L"\\" + path))
      for (const EditableRegion& each : regions.regions) listed.regions.push_back(each.name);
  if (regions.regions.empty() && regions.findings.empty())
    add({L"regions-missing", shown(path), 0, L"The template has no editable region.",
         L"Nothing can be changed in the pages that are made of it.",
         L"Mark what is to be filled in: <!-- #BeginEditable \"body\" --> ... <!-- #EndEditable "
         L"-->"});
  const LineNumbers lines(page);
  for (const RegionFinding& each : regions.findings) addRegionFinding(path, lines, each);
}

void Check::addRegionFinding(const std::wstring& path, const LineNumbers& lines,
                             const RegionFinding& fault) {
  Finding finding;
  finding.file = shown(path);
  finding.line = lines.of(fault.offset);
  const std::wstring other = text::decimal(lines.of(fault.other));
  switch (fault.fault) {
    case RegionFault::unnamed:
      finding.rule = L"region-unnamed";
      finding.what = L"The editable region has no name.";
      finding.effect = L"The host cannot tell which part of a page belongs into it.";
      finding.advice = L"Name it: <!-- #BeginEditable \"body\" -->";
      break;
    case RegionFault::repeated:
      finding.rule = L"region-repeated";
      finding.what = text::join(
          {L"The editable region \"", fault.name, L"\" begins in line ", other, L" already."});
      finding.effect = L"Pages lose what stands in one of the two when the template changes.";
      finding.advice = L"Give each region a name of its own.";
      break;
    case RegionFault::nested:
      finding.rule = L"region-unbalanced";
      finding.what = text::join({L"The editable region \"", fault.name,
                                 L"\" begins before the one of line ", other, L" has ended."});
      finding.effect = L"The host does not attach pages to such a template.";
      finding.advice = L"End the first one before: <!-- #EndEditable -->";
      break;
    case RegionFault::unclosed:
      finding.rule = L"region-unbalanced";
      finding.what = text::join({L"The editable region \"", fault.name, L"\" does not end."});
      finding.effect = L"The host does not attach pages to such a template.";
      finding.advice = L"End it: <!-- #EndEditable -->";
      break;
    case RegionFault::unopened:
      finding.rule = L"region-unbalanced";
      finding.what = L"An editable region ends that has not begun.";
      finding.effect = L"The host does not attach pages to such a template.";
      finding.advice = L"Take the mark away, or begin the region before it.";
      break;
  }
  add(std::move(finding));
}

void Check::follow(const std::wstring& page, std::wstring_view text,
                   const std::vector<Link>& links) {
  const LineNumbers lines(text);
  for (const Link& link : links) {
    goOnOrCancel(work_);
    followOne(page, link, lines.of(link.offset));
  }
}

void Check::followOne(const std::wstring& page, const Link& link, int line) {
  using Kind = Target::Kind;
  const Target target = targetOf(link.address, page);
  const std::wstring what = L"The address \"" + link.address + L"\"";
  if (target.kind == Kind::inFolder)
    checkTarget(page, link, line, target);
  else if (target.kind == Kind::outside)
    add({L"link-outside", shown(page), line, what + L" leads out of the template folder.",
         L"What it leads to is not copied with the template.",
         L"Put the file into the template folder and name it from there."});
  else if (target.kind == Kind::localDisk)
    add({L"link-local", shown(page), line, what + L" names a place of this computer's disk.",
         L"Nobody else can see it.",
         L"Put the file into the template folder and name it from there."});
}

void Check::checkTarget(const std::wstring& page, const Link& link, int line,
                        const Target& target) {
  if (target.path.empty()) return;  // the web's own start page, whatever its name
  const FolderEntry* const entry = find(target.path);
  if (!entry || !isCopied(report_, *entry)) {
    add({L"link-missing", shown(page), line,
         L"The address \"" + link.address + L"\" leads to " +
             (entry ? L"a file that is not copied." : L"no file of the template folder."),
         L"Pages of the template show a gap or a broken link there.",
         L"Put the file where the address says, or take the link out."});
    return;
  }
  reach(entry->path);
  if (entry->path != target.path)
    add({L"link-case", shown(page), line,
         L"The address \"" + link.address + L"\" differs from the file's name, " +
             text::replaceAll(entry->path, L"\\", L"/") + L", in capital letters.",
         L"Web servers that tell capital letters apart do not find the file.",
         L"Write the address as the file is named."});
}

void Check::checkUnlinked() {
  const std::wstring scripts = text::toLower(scripts_);
  for (const FolderEntry& entry : report_.tree.entries) {
    if (entry.isFolder() || !isCopied(report_, entry)) continue;
    if (isTemplateName(entry.name())) continue;  // said before
    if (reached_.contains(text::toLower(entry.path))) continue;
    goOnOrCancel(work_);
    if (!isFull(L"unlinked") && scripts.find(text::toLower(entry.name())) != scripts.npos) continue;
    add({L"unlinked", shown(entry.path), 0,
         L"No template and no page that they lead to names the file.",
         L"It is copied into every web, and nobody sees it.",
         L"Take it out of the folder, or link to it."});
  }
}

void Check::sortFindings() {
  std::stable_sort(report_.findings.begin(), report_.findings.end(),
                   [](const Finding& left, const Finding& right) {
                     return std::tie(left.file, left.line) < std::tie(right.file, right.line);
                   });
}

}  // namespace

bool isCopied(const FolderReport& report, const FolderEntry& entry) {
  return !isHostsOwn(report.folder + L"\\" + entry.path) && !isDescriptionFile(entry.name());
}

FolderReport checkTemplateFolder(const std::wstring& folder, const std::wstring& shown,
                                 Work& work) {
  return Check(folder, shown, work).run();
}

}  // namespace author
