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
