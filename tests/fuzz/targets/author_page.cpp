// A template's files as the authors' program reads them: pages, style sheets, the description.
#include "author/DescriptionLines.h"
#include "author/EditableRegions.h"
#include "author/page_text.h"
#include "tests/fuzz/System.h"
#include "tests/fuzz/Target.h"

using fuzz::promise;

namespace {

void checkLinks(const std::vector<author::Link>& links, const std::wstring& text) {
  for (const author::Link& link : links) {
    promise(link.offset <= text.size(), "a link stands in its page");
    for (const wchar_t* page : {L"a.dwt", L"sub\\deeper\\b.htm"}) {
      const author::Target target = author::targetOf(link.address, page);
      if (target.kind != author::Target::Kind::inFolder) continue;
      const std::wstring path = L"\\" + target.path + L"\\";
      promise(path.find(L"\\..\\") == path.npos && path.find(L'/') == path.npos,
              "a file of the template is not above its folder");
      promise(!target.path.starts_with(L'\\') && !target.path.ends_with(L'\\'),
              "a path is below its folder");
    }
  }
}

void checkRegions(const std::wstring& page) {
  const author::EditableRegions regions = author::readRegions(page);
  std::size_t last = 0;
  for (const author::EditableRegion& region : regions.regions) {
    promise(region.offset >= last && region.offset < page.size(), "regions are in order");
    promise(!region.name.empty(), "a region has a name");
    last = region.offset;
  }
  for (const author::RegionFinding& finding : regions.findings)
    promise(finding.offset < page.size() && finding.other <= page.size(), "a finding has a place");
}

void checkDescription(const std::wstring& text) {
  int last = 0;
  for (const author::DescriptionSection& section : author::readDescription(text).sections) {
    promise(section.line > last, "sections are in order");
    last = section.line;
    for (const author::DescriptionKey& key : section.keys) {
      promise(key.line > last, "a key is in its section");
      last = key.line;
    }
  }
}

const fuzz::Target target("author_page", [](fuzz::Input input) {
  fuzz::chooseCodePage(input.byte());
  const std::wstring text = input.restAsText();
  checkLinks(author::linksOfPage(text), text);
  checkLinks(author::linksOfStyleSheet(text), text);
  promise(author::scriptsOf(text).size() <= 2 * text.size(), "scripts stand in their page");
  for (const author::Comment& comment : author::commentsOf(text))
    promise(text.find(comment.text, comment.offset) != text.npos, "a comment stands in its page");
  checkRegions(text);
  checkDescription(text);

  const author::LineNumbers lines(text);
  int line = 1;
  for (std::size_t offset = 0; offset < text.size(); ++offset) {
    promise(lines.of(offset) == line, "lines are counted");
    if (offset % 64 == 0) promise(author::lineOf(text, offset) == line, "lines are counted");
    if (text[offset] == L'\n') ++line;
  }
});

}  // namespace
