// A catalogue as a web site of plain files, for the online window.
//
//     index.htm                 the start page
//     <template>.htm            a page for each template and each theme
//     done.htm                  what is shown after a download
//     DWTOnlineDownload.htm     the download page, for those who come by another browser
//     archives\<folder>.zip     what is downloaded, and SHA256SUMS beside it
//     images\                   the previews
//     catalogue.json            the same for programs; by it the folder is known for a catalogue
#pragma once

#include <string>
#include <vector>

#include "author/Package.h"
#include "author/PageSet.h"
#include "author/Selection.h"
#include "author/Work.h"

namespace author {

struct SiteOrder {
  const Selection& selection;
  std::wstring title;
  std::wstring address;  // where it will be, "/" at its end or not
  PageSet pages;
  std::wstring folder;  // full path
};

struct Site {
  struct Archive {
    std::wstring name;  // of the file
    Package package;
  };
  std::vector<Archive> archives;  // templates first
  std::size_t pages = 0;
  std::vector<std::wstring> notes;  // what a keeper may want to know, as sentences
};

// Why a catalogue cannot be at that address, as a sentence; empty when it can.
std::wstring addressFault(const std::wstring& address);

// Makes the site beside its folder and puts it there when it is whole; an earlier one makes room.
// Whatever fails is raised and leaves what was there. 512 when `work` does not go on.
Site buildSite(const SiteOrder& order, Work& work);

}  // namespace author
