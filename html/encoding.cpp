#include "html/encoding.h"

#include <windows.h>

#include <algorithm>
#include <cstdlib>

namespace html {
namespace {

constexpr std::size_t beginning = 1024;

struct Encoding {
  std::string_view name;
  UINT codePage;
};
constexpr Encoding encodings[] = {
    {"utf-8", CP_UTF8},      {"utf8", CP_UTF8},    {"us-ascii", 1252}, {"iso-8859-1", 1252},
    {"latin1", 1252},        {"shift_jis", 932},   {"gb2312", 936},    {"gbk", 936},
    {"ks_c_5601-1987", 949}, {"euc-kr", 949},      {"big5", 950},      {"koi8-r", 20866},
    {"koi8-u", 21866},       {"macintosh", 10000}, {"tis-620", 874},
};
constexpr std::string_view windowsFamily = "windows-";
constexpr std::string_view isoFamily = "iso-8859-";

// The number behind the name of a family of encodings; 0 for a name of another kind.
UINT numberBehind(std::string_view name, std::string_view family) {
  if (!name.starts_with(family)) return 0;
  return static_cast<UINT>(std::atoi(std::string(name.substr(family.size())).c_str()));
}

UINT codePageOf(std::string_view name) {
  for (const Encoding& each : encodings)
    if (each.name == name) return each.codePage;
  if (const UINT number = numberBehind(name, windowsFamily)) return number;
  if (const UINT number = numberBehind(name, isoFamily)) return 28590 + number;
  return CP_ACP;
}

// The name behind "charset=", in lower case; empty when the page does not say.
std::string namedIn(std::string_view bytes) {
  constexpr std::string_view mark = "charset=";
  std::string head(bytes.substr(0, beginning));
  std::ranges::transform(head, head.begin(), [](char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
  });
  auto from = head.find(mark);
  if (from == head.npos) return {};
  from = std::min(head.find_first_not_of("\"' ", from + mark.size()), head.size());
  return head.substr(from, head.find_first_of("\"' >;/", from) - from);
}

std::wstring converted(UINT codePage, DWORD flags, std::string_view bytes) {
  std::wstring text(bytes.size(), L'\0');
  const int length =
      MultiByteToWideChar(codePage, flags, bytes.data(), static_cast<int>(bytes.size()),
                          text.data(), static_cast<int>(text.size()));
  text.resize(static_cast<std::size_t>(length));
  return text;
}

std::wstring fromUtf16(std::string_view bytes, bool bigEndian) {
  std::wstring text;
  for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
    const auto one = static_cast<unsigned char>(bytes[i]);
    const auto other = static_cast<unsigned char>(bytes[i + 1]);
    text += static_cast<wchar_t>(bigEndian ? one << 8 | other : other << 8 | one);
  }
  return text;
}

}  // namespace

std::wstring decodePage(std::string_view bytes) {
  if (bytes.starts_with("\xFF\xFE")) return fromUtf16(bytes.substr(2), false);
  if (bytes.starts_with("\xFE\xFF")) return fromUtf16(bytes.substr(2), true);
  if (bytes.starts_with("\xEF\xBB\xBF")) return converted(CP_UTF8, 0, bytes.substr(3));
  const UINT codePage = codePageOf(namedIn(bytes));
  // The system's own code page takes any bytes; another one only those that are its.
  std::wstring text =
      codePage == CP_ACP ? std::wstring() : converted(codePage, MB_ERR_INVALID_CHARS, bytes);
  return text.empty() ? converted(CP_ACP, 0, bytes) : text;
}

}  // namespace html
