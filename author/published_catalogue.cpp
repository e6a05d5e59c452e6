#include "author/published_catalogue.h"

#include <windows.h>
#include <shlwapi.h>
#include <wininet.h>

#include <algorithm>
#include <map>
#include <utility>

#include "author/PageSource.h"
#include "author/archive_trial.h"
#include "author/disk.h"
#include "author/page_text.h"
#include "common/errors.h"
#include "common/letter_case.h"
#include "common/text.h"
#include "html/encoding.h"
#include "online/download_page.h"
#include "online/transfer/modWINInetURL.h"

namespace author {
namespace {

constexpr std::size_t mostPages = 1000;
constexpr std::size_t mostArchives = 1000;
constexpr std::size_t mostLinks = 10000;

std::wstring withoutFragment(const std::wstring& address) {
  return address.substr(0, address.find(L'#'));
}

// A server's name alone means its root.
std::wstring withPath(const std::wstring& address) {
  const auto parts = modWINInetURL::CrackUrl(address);
  return parts && parts->path.empty() && parts->extraInfo.empty() ? address + L"/" : address;
}

// As the browser completes it; empty for what is no address.
std::wstring completed(const std::wstring& page, const std::wstring& address) {
  wchar_t buffer[INTERNET_MAX_URL_LENGTH] = {};
  DWORD length = INTERNET_MAX_URL_LENGTH;
  if (FAILED(UrlCombineW(page.c_str(), address.c_str(), buffer, &length, 0))) return {};
  return {buffer, length};
}

bool isPageAddress(const std::wstring& address) {
  const std::wstring path = text::toLower(address.substr(0, address.find(L'?')));
  const std::wstring_view name = text::afterLast(path, L'/');
  return name.find(L'.') == name.npos || name.ends_with(L".htm") || name.ends_with(L".html") ||
         name.ends_with(L".asp") || name.ends_with(L".php");
}

class Reader {
 public:
  explicit Reader(Work& work) : work_(work) {}

  PublishedReport read(const std::wstring& startPage) {
    const std::wstring start = withPath(withoutFragment(startPage));
    const std::wstring path = start.substr(0, start.find(L'?'));
    base_ = path.substr(0, path.rfind(L'/') + 1);
    queue(start);
    for (std::size_t i = 0; i < pages_.size(); ++i) readPage(i);
    std::stable_sort(report_.findings.begin(), report_.findings.end(),
                     [](const Finding& left, const Finding& right) {
                       return std::pair(left.file, left.line) < std::pair(right.file, right.line);
                     });
    return std::move(report_);
  }

 private:
  // Where something is named.
  struct Place {
    std::wstring page;
    int line = 0;
  };

  void add(const wchar_t* rule, const Place& place, const std::wstring& what,
           const std::wstring& effect, const std::wstring& advice) {
    report_.findings.push_back({rule, place.page, place.line, what, effect, advice});
  }

  void queue(const std::wstring& page) {
    const std::wstring address = withoutFragment(page);
    if (std::find(pages_.begin(), pages_.end(), address) == pages_.end() &&
        pages_.size() < mostPages)
      pages_.push_back(address);
  }

  void readPage(std::size_t number);
  void follow(const std::wstring& address, const Place& place);
  bool isAnswered(const std::wstring& address);
  void checkDownload(const std::wstring& address, const Place& place);
  void checkParts(const std::wstring& list, const Place& place);
  void checkSuccess(const std::wstring& list, const Place& place);
  void checkArchive(const std::wstring& address, DownloadTable::Kind kind, const Place& place);
  void tell(const ArchiveVerdict& verdict, const std::wstring& address, DownloadTable::Kind kind,
            const Place& place);

  Work& work_;
  PageSource source_;
  std::wstring base_;
  std::vector<std::wstring> pages_;
  std::map<std::wstring, bool> answered_;  // addresses that were asked for
  std::map<std::wstring, bool> downloads_;
  std::map<std::pair<std::wstring, int>, ArchiveVerdict> archives_;
  PublishedReport report_;
};

void Reader::readPage(std::size_t number) {
  goOnOrCancel(work_);
  const std::wstring address = pages_[number];
  work_.show(L"Reading " + address + L"...");
  const PageSource::Page page = source_.read(address);
  answered_[address] = page.isThere();
  if (number == 0 && !page.isReached)
    throw Error(errors::pathNotFound, address + L": The attempt to connect to the server failed.");
  if (number == 0 && !page.isThere())
    throw Error(errors::fileNotFound, text::join({address, L": The server answers with ",
                                                  text::decimal(page.status), L"."}));
  if (!page.isThere()) return;  // said where it is linked
  ++report_.pages;
  if (!page.isWhole)
    add(L"page-too-large", {address, 0}, L"The page is larger than 4 MB, or ends early.",
        L"It is shown after a long time, or not at all.",
        L"Make several pages of it, or see why the server breaks it off.");
  const std::wstring html = html::decodePage(page.bytes);
  const LineNumbers lines(html);
  for (const Link& link : linksOfPage(html))
    follow(completed(address, link.address), {address, lines.of(link.offset)});
}

void Reader::follow(const std::wstring& address, const Place& place) {
  if (isDownloadAddress(address)) return checkDownload(address, place);
  const std::wstring plain = withoutFragment(address);
  if (!text::beginsIgnoringCase(plain, base_)) return;
  if (isPageAddress(plain)) queue(plain);
  if (!isAnswered(plain))
    add(L"link-missing", place, L"The address \"" + plain + L"\" leads to nothing.",
        L"The page shows a gap or a broken link there.",
        L"Publish the file, or take the link out.");
}

bool Reader::isAnswered(const std::wstring& address) {
  const auto known = answered_.find(address);
  if (known != answered_.end()) return known->second;
  goOnOrCancel(work_);
  if (answered_.size() >= mostLinks) return true;  // nobody can say
  return answered_[address] = source_.ask(address).isThere();
}

void Reader::checkDownload(const std::wstring& address, const Place& place) {
  if (!downloads_.emplace(address, true).second) return;
  const auto parts = modWINInetURL::CrackUrl(address);
  DownloadTable table;
  if (parts) table.fill(parts->extraInfo);
  ++report_.downloads;
  if (!parts) {
    add(L"download-address", place,
        text::join({L"The download's address has ",
                    text::decimal(static_cast<long long>(address.size())),
                    L" characters, or holds some that cannot be read."}),
        L"The download says: Could not extract download information.",
        L"Use shorter addresses, or several downloads. The list may have 1023 characters.");
    return;
  }
  if (table.addressCount() == 0)
    add(L"download-empty", place, L"The download's address lists no archive: " + parts->extraInfo,
        L"The download says: Could not extract download information.",
        L"List archives as dwt1=http://... and theme1=http://..., with \"&\" between.");
  checkParts(parts->extraInfo, place);
  checkSuccess(parts->extraInfo, place);
  if (static_cast<std::size_t>(table.addressCount()) > table.places().size())
    add(L"download-repeated", place, L"Two archives of the download have the same number.",
        L"Only the last of them is downloaded.", L"Give each item a number of its own.");
  for (const auto& each : table.places())
    checkArchive(table.address(each.column, each.kind), each.kind, place);
}

// Each part for itself: what the table does not take nobody looks at.
void Reader::checkParts(const std::wstring& list, const Place& place) {
  for (const std::wstring& part : text::split(list.substr(list.find(L'?') + 1), L'&')) {
    if (part.empty() || successAddress(part)) continue;
    DownloadTable table;
    table.fill(part);
    if (table.addressCount() > 0) continue;
    add(L"download-part", place,
        L"The part \"" + part + L"\" of the download's list is no archive's.",
        L"It is passed over.",
        L"Write dwt or theme, a number, \"=\" and an address. In a page's text \"&\" is written "
        L"\"&amp;\".");
  }
}

void Reader::checkSuccess(const std::wstring& list, const Place& place) {
  const auto success = successAddress(list);
  if (!success) return;
  if (!isShowable(*success))
    add(L"success-address", place, L"The page for success cannot be shown: " + *success,
        L"After the download nothing is shown.",
        L"Give its whole address, beginning with http:// or https://.");
  else if (text::beginsIgnoringCase(*success, L"http://") && !isAnswered(*success))
    add(L"success-missing", place, L"There is no page for success at " + *success + L".",
        L"After the download the window shows the server's or the browser's error.",
        L"Publish the page, or take the part out: then the window closes.");
}

void Reader::checkArchive(const std::wstring& address, DownloadTable::Kind kind,
                          const Place& place) {
  const std::pair<std::wstring, int> key(address, kind);
  auto known = archives_.find(key);
  if (known == archives_.end()) {
    if (archives_.size() == mostArchives) return;
    goOnOrCancel(work_);
    work_.show(L"Trying " + address + L"...");
    known = archives_.emplace(key, tryArchive(address, kind, source_.session(), work_)).first;
    ++report_.archives;
  }
  tell(known->second, address, kind, place);
}

void Reader::tell(const ArchiveVerdict& verdict, const std::wstring& address,
                  DownloadTable::Kind kind, const Place& place) {
  using Fault = ArchiveVerdict::Fault;
  const std::wstring says = L"The download ends with the message: " + verdict.message;
  switch (verdict.fault) {
    case Fault::none:
      break;
    case Fault::unreachable:
      add(L"archive-unreachable", place, L"The archive " + address + L" cannot be had.", says,
          L"Publish it there, or correct the address. It has to begin with http:// or ftp://, and "
          L"its "
          L"file's name with neither a point nor a blank.");
      break;
    case Fault::withoutLength:
      add(L"archive-without-length", place,
          L"The server does not tell the length of the archive " + address + L", or it is empty.",
          L"The download reads nothing of it, and fails when it unpacks that.",
          L"Let the server send the header Content-Length: serve the archive as a plain file.");
      break;
    case Fault::brokenOff:
      add(L"archive-broken-off", place, L"The archive " + address + L" does not come as a whole.",
          says, L"Publish it anew, under a name that a file can have.");
      break;
    case Fault::damaged:
      add(L"archive-damaged", place, L"The archive " + address + L" is none: " + verdict.message,
          L"The download says that it does not appear to be a valid archive.",
          L"Make it anew with quillet-template pack, and publish it unchanged.");
      break;
    case Fault::refused:
      add(L"archive-refused", place, L"The archive " + address + L" is not unpacked.", says,
          L"Make it anew with quillet-template pack.");
      break;
    case Fault::wrongPlace:
      add(L"archive-layout", place,
          kind == DownloadTable::dwt
              ? L"The archive " + address + L" has no .dwt file in a folder of its own."
              : L"The archive " + address +
                    L" has no theme: no folder \"name\" with a \"name.inf\".",
          kind == DownloadTable::dwt ? L"It is unpacked, but the browser lists nothing of it."
                                     : L"It is unpacked, but the host lists no theme of it.",
          L"Make it anew with quillet-template pack.");
      break;
  }
}

}  // namespace

std::wstring readingFault(const std::wstring& address) {
  const auto parts = modWINInetURL::CrackUrl(address);
  const bool isReadable =
      parts && !parts->host.empty() &&
      (parts->scheme == modWINInetURL::schemeHttp || parts->schemeName == L"https");
  return isReadable ? std::wstring()
                    : L"The address " + address + L" is none of a web server's pages.";
}

PublishedReport checkPublished(const std::wstring& startPage, Work& work) {
  return Reader(work).read(startPage);
}

}  // namespace author
