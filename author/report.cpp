#include "author/report.h"

#include "common/letter_case.h"
#include "common/text.h"

namespace author {
namespace {

std::wstring counted(std::size_t count, const wchar_t* one, const wchar_t* several) {
  return text::join(
      {text::decimal(static_cast<long long>(count)), L" ", count == 1 ? one : several});
}

std::wstring relative(const FolderReport& report, const std::wstring& path) {
  return text::beginsIgnoringCase(path, report.folder + L"\\")
             ? path.substr(report.folder.size() + 1)
             : path;
}

std::wstring row(const wchar_t* name, const std::wstring& value) {
  std::wstring line = L"  " + std::wstring(name);
  line.resize(15, L' ');
  return line + value + L"\n";
}

std::wstring previewInWords(const FolderReport& report, const ListedTemplate& listed) {
  std::wstring words = relative(report, listed.preview);
  if (listed.width > 0)
    words += text::join(
        {L", a picture of ", text::decimal(listed.width), L" x ", text::decimal(listed.height)});
  else if (listed.preview == listed.file)
    words += L", the template's own page";
  return words;
}

std::wstring themeInWords(const ListedTemplate& listed) {
  return listed.theme ? listed.theme->name + L", with the flags " + flagsText(listed.theme->flags)
                      : std::wstring(L"none");
}

std::wstring regionsInWords(const ListedTemplate& listed) {
  std::wstring words;
  for (const std::wstring& each : listed.regions) words += (words.empty() ? L"" : L", ") + each;
  return words.empty() ? std::wstring(L"none") : words;
}

std::wstring inWords(const FolderReport& report, const ListedTemplate& listed) {
  return listed.title + L"\n" + row(L"file", report.shown + L"\\" + relative(report, listed.file)) +
         row(L"description", listed.description) + row(L"preview", previewInWords(report, listed)) +
         row(L"notes", relative(report, listed.notes)) + row(L"theme", themeInWords(listed)) +
         row(L"regions", regionsInWords(listed)) + L"\n";
}

void write(Json& json, const FolderReport& report, const ListedTemplate& listed) {
  json.openObject()
      .text(L"title", listed.title)
      .text(L"file", relative(report, listed.file))
      .text(L"description", listed.description)
      .text(L"preview", relative(report, listed.preview))
      .truth(L"previewIsPicture", listed.isPicture)
      .number(L"previewWidth", listed.width)
      .number(L"previewHeight", listed.height)
      .text(L"notes", relative(report, listed.notes));
  if (listed.theme)
    json.openObject(L"theme")
        .text(L"name", listed.theme->name)
        .number(L"flags", listed.theme->flags)
        .closeObject();
  else
    json.nothing(L"theme");
  json.openList(L"regions");
  for (const std::wstring& each : listed.regions) json.text({}, each);
  json.closeList().closeObject();
}

}  // namespace

std::wstring flagsText(long flags) {
  constexpr std::wstring_view digits = L"0123456789ABCDEF";
  std::wstring words;
  for (int shift = 12; shift >= 0; shift -= 4)
    words += digits[static_cast<std::size_t>(flags >> shift & 0xF)];
  return words;
}

std::wstring countInWords(const Findings& findings) {
  return findings.empty() ? std::wstring(L"no finding.")
                          : counted(findings.size(), L"finding.", L"findings.");
}

std::wstring inWords(const Findings& findings) {
  std::wstring words;
  for (const Finding& each : findings) {
    words += each.file;
    if (each.line > 0) words += L":" + text::decimal(each.line);
    words += L": " + each.what + L" [" + each.rule + L"]\n    What happens: " + each.effect +
             L"\n    What to do:   " + each.advice + L"\n\n";
  }
  return words;
}

std::wstring inWords(const Selection& selection) {
  std::wstring words;
  std::size_t templates = 0;
  for (const FolderReport& report : selection.templates) {
    templates += report.templates.size();
    for (const ListedTemplate& listed : report.templates) words += inWords(report, listed);
  }
  for (const ThemeReport& theme : selection.themes)
    words += theme.title + L"\n" + row(L"theme", theme.shown) + row(L"name", theme.name) + L"\n";
  const Findings findings = selection.findings();
  return words + inWords(findings) + counted(templates, L"template", L"templates") + L" and " +
         counted(selection.themes.size(), L"theme", L"themes") + L": " + countInWords(findings) +
         L"\n";
}

std::wstring inWords(const Package& package) {
  return counted(package.files, L"file", L"files") + L", " +
         text::decimal(static_cast<long long>(package.size)) + L" bytes\nSHA-256 " +
         package.sha256 + L"\n";
}

void write(Json& json, const Package& package) {
  json.number(L"files", static_cast<long long>(package.files))
      .number(L"bytes", static_cast<long long>(package.size))
      .text(L"sha256", package.sha256);
}

std::wstring inWords(const Site& site) {
  std::wstring words;
  for (const Site::Archive& each : site.archives)
    words += each.name + L": " + inWords(each.package);
  for (const std::wstring& note : site.notes) words += L"Note: " + note + L"\n";
  return words + counted(site.pages, L"page", L"pages") + L" and " +
         counted(site.archives.size(), L"archive", L"archives") + L". ";
}

void write(Json& json, const Site& site) {
  json.openList(L"archives");
  for (const Site::Archive& each : site.archives) {
    json.openObject().text(L"file", each.name);
    write(json, each.package);
    json.closeObject();
  }
  json.closeList().openList(L"notes");
  for (const std::wstring& note : site.notes) json.text({}, note);
  json.closeList().number(L"pages", static_cast<long long>(site.pages));
}

std::wstring inWords(const PublishedReport& report) {
  return inWords(report.findings) + counted(report.pages, L"page", L"pages") + L", " +
         counted(report.downloads, L"download", L"downloads") + L" and " +
         counted(report.archives, L"archive", L"archives") + L": " + countInWords(report.findings) +
         L"\n";
}

void write(Json& json, const PublishedReport& report) {
  json.number(L"pages", static_cast<long long>(report.pages))
      .number(L"downloads", static_cast<long long>(report.downloads))
      .number(L"archives", static_cast<long long>(report.archives));
  write(json, report.findings);
}

void write(Json& json, const Findings& findings) {
  json.openList(L"findings");
  for (const Finding& each : findings)
    json.openObject()
        .text(L"rule", each.rule)
        .text(L"file", each.file)
        .number(L"line", each.line)
        .text(L"what", each.what)
        .text(L"effect", each.effect)
        .text(L"advice", each.advice)
        .closeObject();
  json.closeList();
}

void write(Json& json, const Selection& selection) {
  json.openList(L"folders");
  for (const FolderReport& report : selection.templates) {
    json.openObject().text(L"folder", report.shown).openList(L"templates");
    for (const ListedTemplate& listed : report.templates) write(json, report, listed);
    json.closeList().closeObject();
  }
  json.closeList().openList(L"themes");
  for (const ThemeReport& theme : selection.themes)
    json.openObject()
        .text(L"folder", theme.shown)
        .text(L"name", theme.name)
        .text(L"title", theme.title)
        .closeObject();
  json.closeList();
  write(json, selection.findings());
}

}  // namespace author
