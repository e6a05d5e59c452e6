// A small web browser control in the place of the system's, for machines where that one shows
// nothing.
#pragma once

#include <windows.h>

namespace standin::pages {

// While it lives, objects of the class CLSID_WebBrowser that this process creates are made here.
// They fetch pages over HTTP or from the disk, show them, follow links and fire the events of
// DWebBrowserEvents2 as the system's does; they have no document object.
class PageBrowsers {
 public:
  PageBrowsers();
  ~PageBrowsers();
  PageBrowsers(const PageBrowsers&) = delete;
  PageBrowsers& operator=(const PageBrowsers&) = delete;

 private:
  DWORD cookie_ = 0;
};

}  // namespace standin::pages
