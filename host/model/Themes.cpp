#include "host/model/Themes.h"

#include <windows.h>

#include <algorithm>
#include <cstdio>

#include "common/ansi.h"
#include "common/text.h"
#include "host/model/disk.h"

namespace standin {
namespace {

const MemberTable themeMembers(L"Theme", {{L"Name", Kind::get, {}, call<&Theme::getName>},
                                          {L"Label", Kind::get, {}, call<&Theme::getLabel>},
                                          {L"Format", Kind::get, {}, call<&Theme::getFormat>}});

const MemberTable themesMembers(
    L"Themes", {{L"Count", Kind::get, {}, call<&Themes::getCount>},
                {L"Item", Kind::get, {{L"Index", Takes::number}}, call<&Themes::getItem>}});

bool isPage(const std::wstring& file) {
  const std::wstring name(text::afterLast(file, L'\\'));
  const std::wstring extension(text::afterLast(name, L'.'));
  constexpr std::wstring_view known[] = {L"htm", L"html", L"dwt", L"asp", L"aspx", L"shtml"};
  return std::ranges::any_of(known,
                             [&](std::wstring_view one) { return sameName(extension, one); });
}

bool isWide(const std::string& page) {
  return page.size() > 1 &&
         (page.compare(0, 2, "\xFF\xFE") == 0 || page.compare(0, 2, "\xFE\xFF") == 0);
}

std::string lowered(std::string value) {
  for (char& letter : value)
    if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter - 'A' + 'a');
  return value;
}

// Behind the ">" of the first tag of that name; npos when there is none.
std::size_t behindTag(const std::string& page, const std::string& tag) {
  const std::string lower = lowered(page);
  for (auto start = lower.find("<" + tag); start != lower.npos;
       start = lower.find("<" + tag, start + 1)) {
    const std::size_t next = start + tag.size() + 1;
    if (next < lower.size() && (lower[next] == '>' || lower[next] == ' ' || lower[next] == '\r' ||
                                lower[next] == '\n' || lower[next] == '\t')) {
      const auto end = page.find('>', next);
      return end == page.npos ? end : end + 1;
    }
  }
  return page.npos;
}

void removeMark(std::string& page) {
  const auto start = lowered(page).find(R"(<meta name="microsoft theme")");
  if (start == page.npos) return;
  auto end = page.find('>', start);
  if (end == page.npos) return;
  ++end;
  if (page.compare(end, 2, "\r\n") == 0) end += 2;
  page.erase(start, end - start);
}

}  // namespace

std::vector<std::wstring> installedThemes(const Session& session) {
  if (!disk::isFolder(session.themesFolder)) return {};
  auto names = disk::folderNames(session.themesFolder);
  std::erase_if(names, [&](const std::wstring& name) {
    const std::wstring file = session.themesFolder + L"\\" + name + L"\\" + name;
    return !disk::isFile(file + L".inf") || !disk::isFile(file + L".elm");
  });
  return names;
}

std::string markedPage(std::string page, const std::string& theme, long properties) {
  char flags[8];
  std::snprintf(flags, sizeof flags, "%04lX", static_cast<unsigned long>(properties) & 0xFFFF);
  removeMark(page);
  std::string mark = "<meta name=\"Microsoft Theme\" content=\"" + theme + " " + flags + "\">\r\n";
  std::size_t place = behindTag(page, "head");
  if (place == page.npos) {
    mark = "<head>\r\n" + mark + "</head>\r\n";
    place = behindTag(page, "html");
  }
  if (place == page.npos) place = 0;
  if (place > 0) {
    if (page.compare(place, 2, "\r\n") == 0)
      place += 2;
    else if (page.compare(place, 1, "\n") == 0)
      ++place;
    else
      mark.insert(0, "\r\n");
  }
  page.insert(place, mark);
  return page;
}

void applyThemeToPage(const Session& session, const std::wstring& page, const std::wstring& theme,
                      long properties) {
  const auto installed = installedThemes(session);
  const auto found = std::find_if(installed.begin(), installed.end(),
                                  [&](const auto& name) { return sameName(name, theme); });
  if (found == installed.end())
    throw Refusal{E_INVALIDARG, L"The theme \"" + theme + L"\" is not installed."};
  const std::string bytes = disk::readBytes(page);
  if (!isPage(page) || isWide(bytes))
    throw Refusal{E_FAIL, L"A theme cannot be applied to this file."};
  const std::wstring themes = session.webFolder + L"\\_themes";
  if (!disk::isFolder(themes)) disk::makeFolder(themes);
  disk::copyTree(session.themesFolder + L"\\" + *found, themes + L"\\" + *found);
  disk::writeBytes(page, markedPage(bytes, text::toAnsi(*found), properties));
}

Theme::Theme(SharedSession session, std::wstring name)
    : AutomationObject(std::move(session)), name_(std::move(name)) {}

const MemberTable& Theme::members() const { return themeMembers; }

std::wstring Theme::info(const wchar_t* key, const std::wstring& otherwise) const {
  wchar_t value[256];
  const std::wstring file = session()->themesFolder + L"\\" + name_ + L"\\" + name_ + L".inf";
  GetPrivateProfileStringW(L"info", key, otherwise.c_str(), value, 256, file.c_str());
  return value;
}

com::Variant Theme::getName(const Arguments&) { return name_; }
com::Variant Theme::getLabel(const Arguments&) { return info(L"title", name_); }
com::Variant Theme::getFormat(const Arguments&) { return info(L"format", L"1.00"); }

const MemberTable& Themes::members() const { return themesMembers; }

com::Variant Themes::getCount(const Arguments&) {
  return static_cast<long>(installedThemes(*session()).size());
}

com::Variant Themes::getItem(const Arguments& arguments) {
  const auto names = installedThemes(*session());
  const long index = arguments.number(0);
  if (index < 0 || static_cast<std::size_t>(index) >= names.size())
    throw Refusal{DISP_E_BADINDEX, L"There is no theme of that index."};
  return objectValue(make<Theme>(session(), names[static_cast<std::size_t>(index)]));
}

}  // namespace standin
