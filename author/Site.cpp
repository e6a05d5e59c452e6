#include "author/Site.h"

#include <algorithm>
#include <map>
#include <optional>

#include "author/Console.h"
#include "author/Json.h"
#include "author/PictureLook.h"
#include "author/SitePlace.h"
#include "author/page_template.h"
#include "author/page_text.h"
#include "author/slug.h"
#include "catalogue/TemplateInfo.h"
#include "common/ansi.h"
#include "common/byte_size.h"
#include "common/errors.h"
#include "common/letter_case.h"
#include "common/text.h"
#include "html/encoding.h"
#include "online/download_page.h"
#include "online/transfer/DownloadTable.h"
#include "online/transfer/file_address.h"
#include "online/transfer/modWINInetURL.h"

namespace author {
namespace {

constexpr wchar_t downloadPage[] = L"DWTOnlineDownload.htm";
constexpr wchar_t successPage[] = L"done.htm";
constexpr wchar_t noPicture[] = L"images\\none.gif";
constexpr std::uint64_t largestPicture = 64u << 20;
constexpr std::size_t itemsInRow = 3;

// Pixels that a picture is shown in, on the start page and on its own page.
struct Frame {
  long width;
  long height;
};
constexpr Frame small = {204, 136};
constexpr Frame large = {420, 420};

// As large as the frame allows, never larger than it is.
Frame fitted(long width, long height, Frame frame) {
  if (width <= 0 || height <= 0) return frame;
  if (width > frame.width) {
    height = std::max(1L, height * frame.width / width);
    width = frame.width;
  }
  if (height > frame.height) {
    width = std::max(1L, width * frame.height / height);
    height = frame.height;
  }
  return {width, height};
}

std::wstring number(std::uint64_t value) { return text::decimal(static_cast<long long>(value)); }

// Whatever a page was in: it says what it is in now, by its head or else by a mark at its
// beginning.
std::string inUtf8(std::wstring page) {
  constexpr std::wstring_view mark = L"charset=";
  constexpr std::size_t beginning = 1024;
  auto at = text::toLower(page.substr(0, beginning)).find(mark);
  if (at == page.npos) return "\xEF\xBB\xBF" + toUtf8(page);
  at = std::min(page.find_first_not_of(L"\"' ", at + mark.size()), page.size());
  const auto end = std::min(page.find_first_of(L"\"' >;/", at), page.size());
  return toUtf8(page.replace(at, end - at, L"utf-8"));
}

struct Picture {
  std::wstring source;  // full path; empty for none
  std::wstring name;    // below the site
  long width = 0;
  long height = 0;
};

struct Item {
  const FolderTree* tree = nullptr;
  std::wstring folder;
  std::wstring archive;  // its file's name
  Package package;
};

struct ThemePage {
  const ThemeReport* theme = nullptr;
  std::wstring title;
  std::wstring description;
  std::wstring page;
  Picture picture;
  std::size_t item = 0;
};

struct TemplatePage {
  const FolderReport* folder = nullptr;
  const ListedTemplate* listed = nullptr;
  std::wstring page;
  Picture picture;
  std::size_t item = 0;
  const ThemePage* theme = nullptr;
};

class Builder {
 public:
  Builder(const SiteOrder& order, Work& work) : order_(order), work_(work) {
    address_ = order.address;
    while (address_.ends_with(L'/')) address_.pop_back();
  }

  Site build() {
    planNames();
    checkDownloads();
    SitePlace place(order_.folder);
    staging_ = place.staging();
    makeFolders(staging_ + L"\\archives");
    makeFolders(staging_ + L"\\images");
    packAll();
    copyPictures();
    writeSums();
    writePages();
    writeFile(staging_ + L"\\" + SitePlace::mark, toUtf8(asJson()));
    checkLinks();
    goOnOrCancel(work_);
    place.take();
    return std::move(site_);
  }

 private:
  void planNames();
  std::size_t planItem(const FolderTree& tree, const std::wstring& folder);
  void planTheme(const ThemeReport& theme);
  void planTemplate(const FolderReport& report, const ListedTemplate& listed, std::size_t item);
  Picture planPicture(const std::wstring& source, bool isPicture, const std::wstring& slug) const;
  void checkDownloads() const;
  void checkDownload(const std::wstring& download, std::size_t archives,
                     const std::wstring& title) const;
  void packAll();
  void copyPictures() const;
  void writeSums() const;
  void writePages();
  void writePage(const std::wstring& path, const std::string& bytes, const Values& values);
  void checkLinks();
  std::wstring asJson() const;

  std::wstring archiveAddress(std::size_t item) const {
    return address_ + L"/archives/" + items_[item].archive;
  }
  std::wstring success() const { return text::join({L"&success=", address_, L"/", successPage}); }
  std::wstring downloadOf(const TemplatePage& page) const;
  std::wstring downloadOf(const ThemePage& page) const;

  Values globalValues() const;
  void addArchive(Values& values, std::size_t item) const;
  static void addPicture(Values& values, const Picture& picture, const std::wstring& title);
  Values valuesOf(const TemplatePage& page) const;
  Values valuesOf(const ThemePage& page) const;
  static Values nameOnly(const std::wstring& name);

  const SiteOrder& order_;
  Work& work_;
  std::wstring address_;  // without a "/" at its end
  std::wstring staging_;
  std::vector<Item> items_;
  std::vector<ThemePage> themes_;
  std::vector<TemplatePage> templates_;
  text::NameSet pageNames_;     // without their endings
  text::NameSet archiveNames_;  // without their endings
  Site site_;
};

void Builder::planNames() {
  for (const auto& [path, bytes] : order_.pages)
    if (path.find(L'\\') == path.npos) pageNames_.insert(text::beforeLast(path, L'.'));
  std::vector<std::size_t> templateItems;
  for (const FolderReport& each : order_.selection.templates)
    templateItems.push_back(planItem(each.tree, each.folder));
  for (const ThemeReport& each : order_.selection.themes) planTheme(each);
  for (std::size_t i = 0; i < templateItems.size(); ++i) {
    const FolderReport& report = order_.selection.templates[i];
    for (const ListedTemplate& listed : report.templates)
      planTemplate(report, listed, templateItems[i]);
  }
  if (templates_.empty() && themes_.empty())
    throw Error(errors::invalidArgument, L"There is neither a template nor a theme to offer.");
}

std::size_t Builder::planItem(const FolderTree& tree, const std::wstring& folder) {
  items_.push_back({&tree, folder, freeSlug(nameOf(folder), archiveNames_) + L".zip", {}});
  return items_.size() - 1;
}

// A theme's folder may hold a description file and a picture as a template's does.
void Builder::planTheme(const ThemeReport& theme) {
  ThemePage page;
  page.theme = &theme;
  const TemplateInfo info = GetDWTInfo(theme.folder, theme.name);
  page.title = info.title == theme.name ? theme.title : info.title;
  page.description = info.description == L"<not available>" ? std::wstring() : info.description;
  const std::wstring slug = freeSlug(L"theme " + page.title, pageNames_);
  page.page = slug + L".htm";
  page.picture = planPicture(info.preview, IsImageFile(info.preview), slug);
  page.item = planItem(theme.tree, theme.folder);
  themes_.push_back(std::move(page));
}

void Builder::planTemplate(const FolderReport& report, const ListedTemplate& listed,
                           std::size_t item) {
  TemplatePage page;
  page.folder = &report;
  page.listed = &listed;
  page.item = item;
  const std::wstring slug = freeSlug(listed.title, pageNames_);
  page.page = slug + L".htm";
  page.picture = planPicture(listed.preview, listed.isPicture, slug);
  if (listed.theme) {
    for (const ThemePage& theme : themes_)
      if (text::equalIgnoringCase(theme.theme->name, listed.theme->name)) page.theme = &theme;
    if (!page.theme)
      site_.notes.push_back(
          text::join({listed.title, L" is made for the theme \"", listed.theme->name,
                      L"\", which the catalogue does not offer. Who does not have it gets the "
                      L"template without a theme."}));
  }
  templates_.push_back(page);
}

Picture Builder::planPicture(const std::wstring& source, bool isPicture,
                             const std::wstring& slug) const {
  Picture picture;
  picture.name = noPicture;
  std::wstring file = isPicture ? source : std::wstring();
  PictureLook look = file.empty() ? PictureLook() : lookAtPicture(file);
  if (!look.isShown) return picture;
  picture.source = file;
  picture.name = text::join({L"images\\", slug, L".", text::toLower(text::afterLast(file, L'.'))});
  picture.width = look.width;
  picture.height = look.height;
  return picture;
}

std::wstring Builder::downloadOf(const TemplatePage& page) const {
  std::wstring list = std::wstring(downloadPage) + L"?";
  if (page.theme) list += L"theme1=" + archiveAddress(page.theme->item) + L"&";
  return list + L"dwt1=" + archiveAddress(page.item);
}

std::wstring Builder::downloadOf(const ThemePage& page) const {
  return std::wstring(downloadPage) + L"?theme1=" + archiveAddress(page.item);
}

void Builder::checkDownloads() const {
  for (const TemplatePage& page : templates_)
    checkDownload(downloadOf(page), page.theme ? 2 : 1, page.listed->title);
  for (const ThemePage& page : themes_) checkDownload(downloadOf(page), 1, page.title);
}

// As the download itself will read it.
void Builder::checkDownload(const std::wstring& download, std::size_t archives,
                            const std::wstring& title) const {
  const std::wstring address = address_ + L"/" + download + success();
  const auto parts = modWINInetURL::CrackUrl(address);
  DownloadTable table;
  if (parts) table.fill(parts->extraInfo);
  bool isGood = parts && isDownloadPage(parts->path) && table.places().size() == archives;
  for (const auto& place : table.places())
    if (!online::isFileAddress(modWINInetURL::CrackUrl(table.address(place.column, place.kind))))
      isGood = false;
  if (!isGood)
    throw Error(errors::invalidArgument,
                text::join({L"The download of ", title, L" would have an address of ",
                            number(address.size()),
                            (L" characters, which the download cannot read. Choose a shorter one "
                             L"for the catalogue.")}));
}

void Builder::packAll() {
  for (Item& item : items_) {
    work_.show(L"Packing " + item.archive + L"...");
    item.package =
        packFolder(item.folder, *item.tree, staging_ + L"\\archives\\" + item.archive, work_);
    site_.archives.push_back({item.archive, item.package});
  }
}

void Builder::copyPictures() const {
  const auto copy = [&](const Picture& picture) {
    if (!picture.source.empty())
      writeFile(staging_ + L"\\" + picture.name, readFile(picture.source, largestPicture));
  };
  for (const TemplatePage& page : templates_) copy(page.picture);
  for (const ThemePage& page : themes_) copy(page.picture);
}

// As the usual tools read them.
void Builder::writeSums() const {
  std::wstring sums;
  for (const Item& item : items_) sums += item.package.sha256 + L"  " + item.archive + L"\n";
  writeFile(staging_ + L"\\archives\\SHA256SUMS", toUtf8(sums));
}

Values Builder::nameOnly(const std::wstring& name) {
  Values values;
  values.texts[L"name"] = name;
  return values;
}

void Builder::addArchive(Values& values, std::size_t number) const {
  const Item& item = items_[number];
  values.texts[L"folder"] = nameOf(item.folder);
  values.texts[L"archive"] = L"archives/" + item.archive;
  values.texts[L"size"] = text::byteSize(static_cast<double>(item.package.size));
  values.texts[L"files"] = author::number(item.package.files);
  values.texts[L"sha256"] = item.package.sha256;
}

void Builder::addPicture(Values& values, const Picture& picture, const std::wstring& title) {
  const Frame preview = fitted(picture.width, picture.height, small);
  const Frame view = fitted(picture.width, picture.height, picture.width > 0 ? large : small);
  values.texts[L"picture"] = text::replaceAll(picture.name, L"\\", L"/");
  values.texts[L"pictureText"] =
      picture.source.empty() ? L"There is no picture of " + title : L"Preview of " + title;
  values.texts[L"pictureWidth"] = text::decimal(preview.width);
  values.texts[L"pictureHeight"] = text::decimal(preview.height);
  values.texts[L"viewWidth"] = text::decimal(view.width);
  values.texts[L"viewHeight"] = text::decimal(view.height);
}

Values Builder::valuesOf(const TemplatePage& page) const {
  const ListedTemplate& listed = *page.listed;
  Values values;
  values.texts[L"name"] = listed.title;
  values.texts[L"description"] =
      listed.description == L"<not available>" ? std::wstring() : listed.description;
  values.texts[L"page"] = page.page;
  values.texts[L"downloadAndClose"] = downloadOf(page);
  values.texts[L"download"] = downloadOf(page) + success();
  addArchive(values, page.item);
  addPicture(values, page.picture, listed.title);
  auto& regions = values.lists[L"regions"];
  for (const std::wstring& each : listed.regions) regions.push_back(nameOnly(each));
  auto& others = values.lists[L"others"];
  for (const TemplatePage& each : templates_) {
    if (each.item != page.item || each.listed == page.listed) continue;
    others.push_back(nameOnly(each.listed->title));
    others.back().texts[L"page"] = each.page;
  }
  auto& theme = values.lists[L"theme"];
  if (page.theme) {
    theme.push_back(nameOnly(page.theme->title));
    theme.back().texts[L"page"] = page.theme->page;
  }
  return values;
}

Values Builder::valuesOf(const ThemePage& page) const {
  Values values;
  values.texts[L"name"] = page.title;
  values.texts[L"description"] = page.description;
  values.texts[L"page"] = page.page;
  values.texts[L"downloadAndClose"] = downloadOf(page);
  values.texts[L"download"] = downloadOf(page) + success();
  addArchive(values, page.item);
  addPicture(values, page.picture, page.title);
  auto& users = values.lists[L"templates"];
  for (const TemplatePage& each : templates_) {
    if (each.theme != &page) continue;
    users.push_back(nameOnly(each.listed->title));
    users.back().texts[L"page"] = each.page;
  }
  return values;
}

Values Builder::globalValues() const {
  Values values;
  values.texts[L"title"] = order_.title;
  values.texts[L"url"] = address_;
  // A row of the start page ends behind so many.
  const auto add = [](std::vector<Values>& list, Values item) {
    item.lists[L"newRow"].resize(!list.empty() && list.size() % itemsInRow == 0 ? 1 : 0);
    list.push_back(std::move(item));
  };
  auto& templates = values.lists[L"templates"];
  for (const TemplatePage& each : templates_) add(templates, valuesOf(each));
  auto& themes = values.lists[L"themes"];
  for (const ThemePage& each : themes_) add(themes, valuesOf(each));
  values.lists[L"anyTemplates"].resize(templates.empty() ? 0 : 1);
  values.lists[L"anyThemes"].resize(themes.empty() ? 0 : 1);
  return values;
}

void Builder::writePages() {
  const Values global = globalValues();
  const auto one = [&](const Values& item) {
    Values values = item;
    values.texts[L"title"] = order_.title;
    values.texts[L"url"] = address_;
    return values;
  };
  bool needsNoPicture = false;
  for (const TemplatePage& each : templates_) needsNoPicture |= each.picture.source.empty();
  for (const ThemePage& each : themes_) needsNoPicture |= each.picture.source.empty();
  for (const auto& [path, bytes] : order_.pages) {
    goOnOrCancel(work_);
    if (path == L"template.htm") {
      for (std::size_t i = 0; i < templates_.size(); ++i)
        writePage(templates_[i].page, bytes, one(global.lists.at(L"templates")[i]));
    } else if (path == L"theme.htm") {
      for (std::size_t i = 0; i < themes_.size(); ++i)
        writePage(themes_[i].page, bytes, one(global.lists.at(L"themes")[i]));
    } else if (path != noPicture || needsNoPicture) {
      writePage(path, bytes, global);
    }
  }
}

void Builder::writePage(const std::wstring& path, const std::string& bytes, const Values& values) {
  const std::wstring file = staging_ + L"\\" + path;
  makeFolders(std::wstring(text::beforeLast(file, L'\\')));
  if (!text::toLower(path).ends_with(L".htm")) return writeFile(file, bytes);
  try {
    writeFile(file, inUtf8(fillIn(html::decodePage(bytes), values)));
  } catch (const Error& error) {
    if (error.number() != errors::invalidArgument) throw;
    throw Error(error.number(), L"The page " + path + L": " + std::wstring(error.description()));
  }
  ++site_.pages;
}

// An author's own pages may forget a file.
void Builder::checkLinks() {
  const FolderTree tree = listTree(staging_, work_);
  text::NameSet names;
  for (const FolderEntry& each : tree.entries) names.insert(each.path);
  for (const FolderEntry& each : tree.entries) {
    if (!text::toLower(each.path).ends_with(L".htm")) continue;
    const std::wstring page = html::decodePage(readFile(staging_ + L"\\" + each.path, ~0u));
    for (const Link& link : linksOfPage(page)) {
      const Target target = targetOf(link.address, each.path);
      const bool leadsSomewhere =
          target.kind == Target::Kind::elsewhere || target.path.empty() || names.has(target.path);
      if (!leadsSomewhere)
        site_.notes.push_back(
            text::join({each.path, L", line ", text::decimal(lineOf(page, link.offset)), L": \"",
                        link.address, L"\" leads to no file of the catalogue."}));
    }
  }
}

std::wstring Builder::asJson() const {
  Json json;
  json.openObject().text(L"title", order_.title).text(L"address", address_);
  json.openList(L"templates");
  for (const TemplatePage& each : templates_)
    json.openObject()
        .text(L"title", each.listed->title)
        .text(L"description", each.listed->description)
        .text(L"page", each.page)
        .text(L"archive", L"archives/" + items_[each.item].archive)
        .text(L"download", address_ + L"/" + downloadOf(each) + success())
        .closeObject();
  json.closeList().openList(L"themes");
  for (const ThemePage& each : themes_)
    json.openObject()
        .text(L"title", each.title)
        .text(L"name", each.theme->name)
        .text(L"page", each.page)
        .text(L"archive", L"archives/" + items_[each.item].archive)
        .text(L"download", address_ + L"/" + downloadOf(each) + success())
        .closeObject();
  json.closeList().openList(L"archives");
  for (const Item& each : items_)
    json.openObject()
        .text(L"file", L"archives/" + each.archive)
        .number(L"bytes", static_cast<long long>(each.package.size))
        .text(L"sha256", each.package.sha256)
        .closeObject();
  return json.closeList().closeObject().written();
}

bool isPlain(std::wstring_view address) {
  return std::all_of(address.begin(), address.end(), [](wchar_t letter) {
    return letter > L' ' && letter < 0x7F &&
           std::wstring_view(L"?#&\"<>\\{}|^`").find(letter) == std::wstring_view::npos;
  });
}

}  // namespace

std::wstring addressFault(const std::wstring& address) {
  const auto parts = modWINInetURL::CrackUrl(address);
  const bool isKnown = parts && (parts->scheme == modWINInetURL::schemeHttp ||
                                 parts->scheme == modWINInetURL::schemeFtp);
  if (!isKnown || parts->host.empty())
    return L"The address " + address +
           L" is none that templates can be downloaded from: it has to begin with http:// or "
           L"ftp://.";
  if (!isPlain(address) || !parts->extraInfo.empty())
    return L"The address " + address +
           L" holds a character that the download's list cannot: letters, digits, \".\", \"-\", "
           L"\"_\", \"/\" and escapes like %20 are good.";
  return {};
}

Site buildSite(const SiteOrder& order, Work& work) { return Builder(order, work).build(); }

}  // namespace author
