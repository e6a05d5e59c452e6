// The catalogue's download page: the page whose address carries the list of files to download, so
// that navigating to it starts a download instead.
#pragma once

#include <optional>
#include <string>
#include <string_view>

// True when the last segment of a URL path begins with "DWTOnlineDownload.htm", in any letter case;
// what follows the name does not count.
bool isDownloadPage(std::wstring_view urlPath);

// The same for a whole address, for one that the system's function does not take apart.
bool isDownloadAddress(std::wstring_view address);

// The page to show after a completed download: the value of the first part named "success" (in any
// letter case) of a URL's extra information, the query with its "?". Nothing without such a part.
std::optional<std::wstring> successAddress(std::wstring_view extraInformation);

// True for an address that a page may name for success: one of the network (http, https, ftp) with
// a host, or the blank page. The page comes from elsewhere and has just put files on this disk, so
// nothing else is shown, nor what a browser would first have to complete (a relative address: it
// would take it for a host, a search or a file) or to clean (control characters, backslashes).
bool isShowable(std::wstring_view address);
