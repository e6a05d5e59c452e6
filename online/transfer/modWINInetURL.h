// Addresses taken apart, and the texts of the system's errors.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace modWINInetURL {

// The schemes that are told apart, by the system's numbers.
inline constexpr int schemeFtp = 1;
inline constexpr int schemeHttp = 3;

// An address in its parts, nothing decoded.
struct CrackedUrl {
  std::wstring host;
  std::wstring user;
  std::wstring password;
  std::wstring path;
  std::wstring extraInfo;  // the query with its "?", or the fragment with its "#"
  int scheme = 0;
  unsigned short port = 0;
  std::wstring schemeName;
};

// Nothing when the system cannot take the address apart: no scheme, a part of 1024 characters or
// more, or characters that the code page lacks.
std::optional<CrackedUrl> CrackUrl(std::wstring_view url);

// What the system says about an error, up to its first line break. Empty for the errors of its
// internet functions (12001 to 12171), for a bad argument (87), and where there was no error.
std::wstring ErrorText(unsigned long code);

}  // namespace modWINInetURL
