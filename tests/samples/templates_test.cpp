// The sample templates: what a user sees of each, and what their authors promise.
#include <algorithm>
#include <map>

#include "catalogue/Preview.h"
#include "catalogue/TemplateInfo.h"
#include "common/description_file.h"
#include "common/forms/PictureDecoder.h"
#include "common/ini_file.h"
#include "common/paths.h"
#include "common/text.h"
#include "help/local_page.h"
#include "html/TokenReader.h"
#include "tests/author/Tool.h"
#include "tests/catalogue/catalogue_support.h"
#include "tests/samples/samples_support.h"
#include "tests/support/text_output.h"
#include "webcopy/ThemeValue.h"

namespace {

std::vector<TemplateEntry> templates() {
  ListedTemplates list;
  TemplateScan(list).ScanFolder(samples() + L"\\templates");
  std::ranges::sort(list.rows, {}, &TemplateEntry::title);
  return list.rows;
}

std::wstring baseNameOf(const TemplateEntry& entry) {
  return templateBaseName(text::afterLast(entry.key, L'\\'));
}

Preview previewOf(const TemplateEntry& entry) {
  return previewOf(entry.key, GetDWTInfo(entry.folder, baseNameOf(entry)));
}

bool isPage(const std::wstring& file) { return file.ends_with(L".dwt") || file.ends_with(L".htm"); }

Lines pages() {
  Lines files = filesBelow(samples() + L"\\templates");
  std::erase_if(files, [](const std::wstring& file) { return !isPage(file); });
  return files;
}

}  // namespace

TEST_CASE("the sample templates are listed under their titles") {
  Lines titles;
  for (const TemplateEntry& entry : templates()) titles.push_back(entry.title);
  CHECK(titles == Lines{L"Class Four", L"Gr\xFCner Daumen", L"Harbour Light",
                        L"Harbour Light - Notice", L"Night Ferry", L"Print Room", L"True Joint"});
}

TEST_CASE("every sample template has a description that fits the window") {
  for (const TemplateEntry& entry : templates()) {
    CAPTURE(entry.title);
    const std::wstring description = previewOf(entry).description;
    CHECK(description != L"<not available>");
    CHECK(description.ends_with(L"."));
    CHECK(description.size() <= 115);
  }
}

TEST_CASE("every sample template has a preview that can be shown") {
  int pictures = 0;
  for (const TemplateEntry& entry : templates()) {
    CAPTURE(entry.title);
    const Preview preview = previewOf(entry);
    CHECK(preview.file != entry.key);
    REQUIRE(modCommon::fileExists(preview.file));
    if (!preview.isImage) {
      CHECK(isPageFile(preview.file));
      continue;
    }
    ++pictures;
    checkPreview(preview.file);
  }
  CHECK(pictures == 6);
}

TEST_CASE("every sample template has notes of its own with a title") {
  for (const TemplateEntry& entry : templates()) {
    CAPTURE(entry.title);
    const Preview preview = previewOf(entry);
    CHECK(preview.notes != preview.file);
    const std::wstring title = html::parsePage(help::readPage(preview.notes).text).title;
    const bool english = title.starts_with(L"Notes on ");
    CHECK((english || title.starts_with(L"Hinweise zu ")));
  }
}

TEST_CASE("the theme of a sample template is among the sample themes") {
  Lines themes;
  for (const TemplateEntry& entry : templates()) {
    const auto value = parseThemeValue(readIniValue(entry.folder + L"\\" + descriptionFileName,
                                                    baseNameOf(entry), L"Theme", L"", 256));
    if (!value) continue;
    themes.push_back(value->name);
    const std::wstring theme = samples() + L"\\themes\\" + value->name + L"\\" + value->name;
    CHECK(modCommon::fileExists(theme + L".inf"));
    CHECK(modCommon::fileExists(theme + L".elm"));
  }
  CHECK(themes == Lines{L"nightferry", L"limewash"});
}

TEST_CASE("the program for authors finds nothing about the samples") {
  const Tool::Outcome outcome =
      Tool().run(L"check \"" + samples() + L"\\templates\" \"" + samples() + L"\\themes\"");
  CHECK(outcome.code == 0);
  CHECK(outcome.output.ends_with("\n7 templates and 2 themes: no finding.\n"));
  CHECK(outcome.errors == "");
}

TEST_CASE("every sample template is small") {
  std::map<std::wstring, unsigned long long> sizes;
  for (const TemplateEntry& entry : templates()) sizes[entry.folder] = 0;
  for (auto& [folder, size] : sizes)
    for (const std::wstring& file : filesBelow(folder)) size += modCommon::fileSize(file);
  CHECK(sizes.size() == 6);
  for (const auto& each : sizes) {
    CAPTURE(each.first);
    CHECK(each.second < 150000);
  }
}

TEST_CASE("every picture of a sample page has a text for those who do not see it and its size") {
  int pictures = 0;
  for (const std::wstring& page : pages()) {
    const std::wstring content = help::readPage(page).text;
    html::TokenReader reader(content);
    for (html::Token token; reader.next(token);) {
      if (token.tag != L"img") continue;
      CAPTURE(page);
      CAPTURE(token.attribute(L"src"));
      ++pictures;
      CHECK(std::ranges::count(token.attributes, L"alt", [](const auto& each) {
              return std::wstring_view(each.first);
            }) == 1);
      const auto file = help::pictureBeside(page, token.attribute(L"src"));
      REQUIRE(file.has_value());
      const PictureHeader header = forms::PictureDecoder::headerOf(help::readPicture(*file));
      CHECK(token.attribute(L"width") == std::to_wstring(header.width));
      CHECK(token.attribute(L"height") == std::to_wstring(header.height));
    }
  }
  CHECK(pictures > 40);
}
