#include "author/PageSet.h"

#include <windows.h>

#include "author/SitePlace.h"
#include "author/disk.h"
#include "common/errors.h"
#include "common/text.h"

namespace author {
namespace {

struct OwnPage {
  const wchar_t* path;
  const wchar_t* resource;
};
constexpr OwnPage pages[] = {
    {L"DWTOnlineDownload.htm", L"PAGE_DOWNLOAD"},
    {L"catalogue.css", L"PAGE_STYLE"},
    {L"done.htm", L"PAGE_DONE"},
    {L"images\\mark.gif", L"PAGE_MARK"},
    {L"images\\none.gif", L"PAGE_NO_PICTURE"},
    {L"index.htm", L"PAGE_INDEX"},
    {L"template.htm", L"PAGE_TEMPLATE"},
    {L"theme.htm", L"PAGE_THEME"},
};

constexpr std::uint64_t largestPage = 16u << 20;

std::string resource(const wchar_t* name) {
  const HRSRC found = FindResourceW(nullptr, name, RT_RCDATA);
  const HGLOBAL loaded = found ? LoadResource(nullptr, found) : nullptr;
  const void* const bytes = loaded ? LockResource(loaded) : nullptr;
  if (!bytes) throw errors::fromLastError();
  return {static_cast<const char*>(bytes), SizeofResource(nullptr, found)};
}

}  // namespace

PageSet ownPages() {
  PageSet set;
  for (const OwnPage& page : pages) set[page.path] = resource(page.resource);
  return set;
}

PageSet pagesWith(const std::wstring& folder, KeepGoing& run) {
  PageSet set = ownPages();
  if (!isFolder(folder))
    throw Error(errors::pathNotFound, folder + L": There is no such folder of pages.");
  for (const FolderEntry& entry : listTree(folder, run).entries)
    if (!entry.isFolder()) set[entry.path] = readFile(folder + L"\\" + entry.path, largestPage);
  return set;
}

void writePages(const std::wstring& folder) {
  if (isThere(folder) && (!isFolder(folder) || !namesIn(folder).empty()))
    throw Error(errors::fileAlreadyExists, folder + L": There is something already.");
  SitePlace place(folder);
  for (const auto& [path, bytes] : ownPages()) {
    const std::wstring file = place.staging() + L"\\" + path;
    makeFolders(std::wstring(text::beforeLast(file, L'\\')));
    writeFile(file, bytes);
  }
  place.take();
}

}  // namespace author
