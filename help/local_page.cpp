#include "help/local_page.h"

#include <windows.h>

#include <algorithm>

#include "common/handles.h"
#include "common/letter_case.h"
#include "common/paths.h"
#include "common/text.h"
#include "help/references.h"
#include "html/encoding.h"

namespace help {
namespace {

constexpr std::wstring_view pageEndings[] = {L"htm", L"html", L"dwt", L"shtml", L"asp", L"aspx"};
constexpr std::wstring_view textEndings[] = {L"txt", L"css", L"ini", L"log", L"md", L"xml", L"js"};
constexpr std::wstring_view pictureEndings[] = {L"gif", L"jpg", L"jpeg", L"bmp"};

bool isOneOf(std::wstring_view ending, const auto& endings) {
  return std::ranges::any_of(
      endings, [&](std::wstring_view each) { return text::equalIgnoringCase(each, ending); });
}

std::wstring_view endingOf(std::wstring_view file) {
  const std::wstring_view name = text::afterLast(file, L'\\');
  return name.find(L'.') == name.npos ? std::wstring_view() : text::afterLast(name, L'.');
}

std::string readBytes(const std::wstring& file, unsigned long long most) {
  const handles::File open(CreateFileW(file.c_str(), GENERIC_READ,
                                       FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                       nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!open) throw modCommon::openingError(GetLastError());
  std::string bytes(static_cast<std::size_t>(std::min(modCommon::fileSize(file), most)), '\0');
  DWORD read = 0;
  if (!ReadFile(open.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr))
    throw errors::fromLastError();
  bytes.resize(read);
  return bytes;
}

// Text that is to show as it stands.
std::wstring escaped(std::wstring_view value) {
  return text::replaceAll(text::replaceAll(text::replaceAll(value, L"&", L"&amp;"), L"<", L"&lt;"),
                          L"\n", L"<br>");
}

html::Page saying(const std::wstring& file, std::wstring_view what) {
  return html::parsePage(text::join({L"<title>", escaped(text::afterLast(file, L'\\')),
                                     L"</title><h3>", what, L"</h3><p>", escaped(file)}));
}

html::Page pageOfText(const PageText& page, bool plain) {
  std::wstring html = plain ? L"<tt>" + escaped(page.text) + L"</tt>" : page.text;
  if (!page.whole) html += L"<hr><p>The page goes on, but is too long to be shown whole.";
  return html::parsePage(html);
}

}  // namespace

PageText readPage(const std::wstring& file) {
  PageText page;
  if (!modCommon::fileExists(file)) return page;
  page.found = true;
  page.whole = modCommon::fileSize(file) <= longestPage;
  page.text = html::decodePage(readBytes(file, longestPage));
  return page;
}

html::Page pageOf(const std::wstring& file) {
  if (file.empty() || !modCommon::fileExists(file)) return saying(file, L"This page is not there.");
  const std::wstring_view ending = endingOf(file);
  try {
    if (isOneOf(ending, pageEndings)) return pageOfText(readPage(file), false);
    if (isOneOf(ending, textEndings)) return pageOfText(readPage(file), true);
  } catch (const Error& error) {
    return saying(file, text::join({L"This page cannot be read: ", error.description()}));
  }
  if (!isOneOf(ending, pictureEndings)) return saying(file, L"This is no page that can be shown.");
  const std::wstring name(text::afterLast(file, L'\\'));
  return html::parsePage(text::join({L"<title>", escaped(name), L"</title><img src=\"",
                                     text::replaceAll(name, L"%", L"%25"), L"\">"}));
}

std::optional<std::wstring> pictureBeside(const std::wstring& file, const std::wstring& address) {
  auto picture = fileBeside(file, address);
  if (picture && !isOneOf(endingOf(*picture), pictureEndings)) picture.reset();
  return picture;
}

std::string readPicture(const std::wstring& path) {
  try {
    if (!modCommon::fileExists(path) || modCommon::fileSize(path) > largestPicture) return {};
    return readBytes(path, largestPicture);
  } catch (const Error&) {
    return {};
  }
}

}  // namespace help
