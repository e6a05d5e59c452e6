// Addresses of the open web, and the folder on disk behind them.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "host/model/Session.h"

namespace standin {

// "file:///C:/My Webs/site" of "C:\My Webs\site".
std::wstring fileUrl(std::wstring_view path);

// The open web's address, without a "/" at its end.
std::wstring webUrl(const Session& session);

bool isAbsoluteUrl(std::wstring_view address);

// Paths inside the web are kept with "/" between their levels and none at either end; the root is
// empty.
std::wstring urlOf(const Session& session, const std::wstring& relative);
std::wstring diskPathOf(const Session& session, const std::wstring& relative);
std::wstring joined(const std::wstring& folder, const std::wstring& name);

// The path inside the web that an address means, web-relative or absolute; nothing when the host
// does not take it or it lies outside.
std::optional<std::wstring> relativePath(const Session& session, std::wstring_view address);

// An address as a page would mean it: up to "#", with what its escapes stand for.
std::wstring unescapedAddress(std::wstring_view address);

// The same as `relativePath` for what is to be located.
std::optional<std::wstring> locatedPath(const Session& session, std::wstring_view address);

// `url` seen from `base`; an absolute one stays as it is.
std::wstring absoluteUrl(const Session& session, std::wstring_view base, std::wstring_view url);

// True for the root of a web below the open one: it has service files of its own.
bool isSubWeb(const std::wstring& diskPath);

}  // namespace standin
