#include "catalogue/Preview.h"

#include <algorithm>
#include <iterator>

#include "common/letter_case.h"
#include "common/text.h"

namespace {

// Templates and the pages that FrontPage edits. Not among them: XML, whose style sheets are scripts
// of a kind, and archives of pages, which count as another place than the disk.
constexpr const wchar_t* pageEndings[] = {L"dwt", L"htm", L"html", L"xhtml", L"shtm", L"shtml",
                                          L"stm", L"asp", L"aspx", L"php",   L"cfm",  L"jsp",
                                          L"txt", L"gif", L"jpg",  L"jpeg",  L"png",  L"bmp"};

}  // namespace

Preview previewOf(const std::wstring& templateFile, const TemplateInfo& info) {
  Preview preview;
  preview.description = info.description;
  preview.file = info.preview.empty() ? templateFile : info.preview;
  preview.notes = info.readme.empty() ? preview.file : info.readme;
  preview.isImage = IsImageFile(preview.file);
  preview.heading = emptyHeading + info.title + L"     " +
                    (preview.isImage ? L"[Image Preview]" : L"[HTML Preview]");
  return preview;
}

bool isPageFile(std::wstring_view path) {
  const std::wstring_view name = text::afterLast(path, L'\\');
  if (name.find(L'.') == name.npos) return false;
  const std::wstring ending = text::toLower(text::afterLast(name, L'.'));
  return std::find(std::begin(pageEndings), std::end(pageEndings), ending) != std::end(pageEndings);
}

std::wstring wrappable(std::wstring_view path) { return text::replaceAll(path, L"\\", L"\\ "); }

long zoomed(long length, long percent) {
  const long long hundredfold = static_cast<long long>(length) * percent;
  const long long whole = hundredfold / 100;
  const long long rest = hundredfold % 100;
  const bool up = rest > 50 || (rest == 50 && whole % 2 != 0);
  return static_cast<long>(whole + (up ? 1 : 0));
}
