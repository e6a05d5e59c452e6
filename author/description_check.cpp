#include "author/description_check.h"

#include <algorithm>
#include <array>

#include "author/DescriptionLines.h"
#include "author/template_check.h"
#include "catalogue/Preview.h"
#include "catalogue/TemplateInfo.h"
#include "common/NameSet.h"
#include "common/ansi.h"
#include "common/description_file.h"
#include "common/ini_file.h"
#include "common/letter_case.h"
#include "common/paths.h"
#include "common/text.h"
#include "online/archive/entry_names.h"

namespace author {
namespace {

constexpr std::uint64_t largestDescription = 256u << 10;
// The system's reader looks at no more of a line.
constexpr unsigned longestValue = 0x7FFF;
constexpr std::array<const wchar_t*, 5> keys = {L"Title", L"Description", L"Preview", L"Readme",
                                                L"Theme"};

bool hasHighBytes(std::string_view bytes) {
  return std::any_of(bytes.begin(), bytes.end(),
                     [](char byte) { return static_cast<unsigned char>(byte) >= 0x80; });
}

class DescriptionCheck {
 public:
  DescriptionCheck(const FolderReport& report, const AddFinding& add)
      : report_(report),
        add_(add),
        file_(report.folder + L"\\" + descriptionFileName),
        shown_(report.shown + L"\\" + descriptionFileName) {}

  void run() {
    if (!modCommon::fileExists(file_)) return;
    std::string bytes;
    try {
      bytes = readFile(file_, largestDescription);
    } catch (const Error& error) {
      add(L"unreadable", 0, std::wstring(error.description()),
          L"The browser knows nothing of the templates but their names.",
          L"See that the file can be read and is of a usual size.");
      return;
    }
    checkEncoding(bytes);
    lines_ = readDescription(text::fromAnsi(bytes));
    for (const ListedTemplate& each : report_.templates)
      names_.insert(templateBaseName(relative(each.file)));
    checkLines();
    for (const ListedTemplate& each : report_.templates) checkTemplate(each);
  }

 private:
  void add(const wchar_t* rule, int line, const std::wstring& what, const std::wstring& effect,
           const std::wstring& advice) {
    add_({rule, shown_, line, what, effect, advice});
  }

  void checkEncoding(std::string_view bytes);
  void checkLines();
  void checkSection(const DescriptionSection& section, text::NameSet& seen);
  void checkTemplate(const ListedTemplate& listed);
  void checkLength(const wchar_t* key, unsigned length);
  void checkPreview(const ListedTemplate& listed);
  void checkNotes(const ListedTemplate& listed);
  void checkTheme();
  void checkFlags(const std::wstring& value);
  bool checkPlace(const wchar_t* key, const std::wstring& named);
  std::wstring whole(const wchar_t* key) const {
    return text::trimBlanks(readIniValue(file_, base_, key, {}, longestValue));
  }
  std::wstring value(const wchar_t* key) const {
    return text::trimBlanks(readIniValue(file_, base_, key, {}, descriptionValueLength));
  }
  int line(const wchar_t* key) const { return lines_.lineOf(base_, key); }
  std::wstring relative(const std::wstring& path) const {
    return text::beginsIgnoringCase(path, report_.folder + L"\\")
               ? path.substr(report_.folder.size() + 1)
               : path;
  }

  const FolderReport& report_;
  const AddFinding& add_;
  std::wstring file_;
  std::wstring shown_;
  DescriptionLines lines_;
  text::NameSet names_;  // of the templates' sections
  std::wstring base_;    // of the template at hand
};

void DescriptionCheck::checkEncoding(std::string_view bytes) {
  if (bytes.starts_with("\xEF\xBB\xBF"))
    add(L"description-encoding", 1, L"The file begins with the mark of UTF-8.",
        L"The system's reader takes the mark for a part of the first section's name.",
        L"Save it in the code page of its readers (\"ANSI\"), without a mark.");
  else if (bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF"))
    add(L"description-encoding", 1, L"The file is in UTF-16.", L"Older systems read nothing of it.",
        L"Save it in the code page of its readers (\"ANSI\").");
  else if (hasHighBytes(bytes) && archive::fromUtf8(bytes) && GetACP() != CP_UTF8)
    add(L"description-encoding", 0, L"The file is in UTF-8.",
        L"The browser shows two or three odd characters for each letter beyond the English ones.",
        L"Save it in the code page of its readers (\"ANSI\").");
}

void DescriptionCheck::checkLines() {
  for (const int number : lines_.strayLines)
    add(L"description-line", number, L"The line belongs to no section, or is no \"key=value\".",
        L"It is passed over.", L"Take it away, or put a \";\" in front of it.");
  text::NameSet seen;
  for (const DescriptionSection& section : lines_.sections) checkSection(section, seen);
}

void DescriptionCheck::checkSection(const DescriptionSection& section, text::NameSet& seen) {
  if (!seen.insert(section.name)) {
    add(L"description-repeated", section.line,
        L"The section [" + section.name + L"] stands in the file before.",
        L"Only the first one is read.", L"Put all lines of a template into one section.");
    return;
  }
  if (!names_.has(section.name)) {
    add(L"description-section", section.line,
        L"No template of the folder is named like the section [" + section.name + L"].",
        L"The section is passed over.",
        L"Name the section like the template's file, without \".dwt\".");
    return;
  }
  text::NameSet keysBefore;
  for (const DescriptionKey& key : section.keys) {
    const bool isKnown = std::any_of(keys.begin(), keys.end(), [&](const wchar_t* each) {
      return text::equalIgnoringCase(key.name, each);
    });
    if (!isKnown)
      add(L"description-key", key.line, L"The key \"" + key.name + L"\" is not known.",
          L"The line is passed over.",
          L"The keys are Title, Description, Preview, Readme and Theme.");
    else if (!keysBefore.insert(key.name))
      add(L"description-repeated", key.line,
          L"The key \"" + key.name + L"\" stands in the section before.",
          L"Only the first one is read.", L"Keep one of the two.");
    if (key.hasNul)
      add(L"value-nul", key.line, L"The value of \"" + key.name + L"\" holds a NUL character.",
          L"It is cut there.", L"Take the character out.");
  }
}

void DescriptionCheck::checkTemplate(const ListedTemplate& listed) {
  base_ = templateBaseName(relative(listed.file));
  for (const wchar_t* const key : keys)
    checkLength(key, key == keys.back() ? themeValueLength : descriptionValueLength);
  checkPreview(listed);
  checkNotes(listed);
  checkTheme();
}

void DescriptionCheck::checkLength(const wchar_t* key, unsigned length) {
  const std::wstring all = whole(key);
  if (text::toAnsi(all).size() < length) return;
  add(L"value-length", line(key),
      text::join({L"The value of \"", key, L"\" has ",
                  text::decimal(static_cast<long long>(text::toAnsi(all).size())),
                  L" characters."}),
      text::join({L"Only the first ", text::decimal(length - 1), L" are read."}),
      L"Make it shorter.");
}

// False for one that leads out of the folder, of which that is said.
bool DescriptionCheck::checkPlace(const wchar_t* key, const std::wstring& named) {
  const bool leadsOut =
      !text::beginsIgnoringCase(fullPath(report_.folder + L"\\" + named), report_.folder + L"\\");
  if (leadsOut)
    add(L"value-outside", line(key),
        text::join({L"\"", key, L"\" names a file outside of the template folder: ", named}),
        L"Whoever downloads the template does not get it.",
        L"Put the file into the template folder and name it from there.");
  return !leadsOut;
}

void DescriptionCheck::checkPreview(const ListedTemplate& listed) {
  const std::wstring named = value(L"Preview");
  if (named.empty() || !checkPlace(L"Preview", named)) return;
  if (!modCommon::fileExists(report_.folder + L"\\" + named))
    add(L"preview-missing", line(L"Preview"), L"There is no preview " + named + L".",
        L"The browser shows " + relative(listed.preview) + L" instead.",
        L"Put the picture or page there, or name one that is there.");
  else if (!listed.isPicture && !isPageFile(listed.preview))
    add(L"preview-kind", line(L"Preview"),
        named + L" is neither a picture nor a page that the browser shows.",
        L"The preview stays empty.", L"Name a GIF or JPEG picture, or a page.");
}

void DescriptionCheck::checkNotes(const ListedTemplate& listed) {
  const std::wstring named = value(L"Readme");
  if (named.empty() || !checkPlace(L"Readme", named)) return;
  if (!modCommon::fileExists(report_.folder + L"\\" + named))
    add(L"notes-missing", line(L"Readme"), L"There are no notes " + named + L".",
        L"The button \"Notes...\" shows " + relative(listed.notes) + L" instead.",
        L"Put the page there, or name one that is there.");
}

void DescriptionCheck::checkTheme() {
  const std::wstring value = readIniValue(file_, base_, L"Theme", {}, themeValueLength);
  if (value.empty()) return;
  const auto theme = parseThemeValue(value);
  if (theme) return checkFlags(value);
  const bool hasBlank = value.find(L' ') != value.npos;
  add(hasBlank ? L"theme-flags-short" : L"theme-flags-missing", line(L"Theme"),
      hasBlank ? L"The theme's flags have fewer than two characters: " + value
               : L"No flags stand behind the theme's name: " + value,
      L"The line is ignored, and the template is copied without a theme.",
      L"Write the name, one blank and four digits, as in \"nightferry 1111\".");
}

void DescriptionCheck::checkFlags(const std::wstring& value) {
  const std::wstring name = value.substr(0, value.find(L' '));
  const std::wstring flags = value.substr(name.size() + 1);
  if (flags.find(L' ') != flags.npos) {
    add(L"theme-name-blank", line(L"Theme"), L"The theme's name has a blank: " + value,
        L"The name ends at the first blank: the host is asked for the theme \"" + name + L"\".",
        L"Give the theme's folder a name without blanks. Exactly one stands before the flags.");
    return;
  }
  if (flags.find_first_not_of(L"0123456789ABCDEFabcdef") < 4)
    add(L"theme-flags-digits", line(L"Theme"),
        L"The theme's flags are no hexadecimal digits: " + flags,
        L"They are read as far as they are some, and as 0 where the first is none.",
        L"Add up 1 background picture, 10 active graphics, 100 vivid colours, 1000 style sheets.");
  if (flags.size() > 4)
    add(L"theme-flags-long", line(L"Theme"),
        L"The theme's flags have more than four characters: " + flags,
        L"Only the first four count: " + flags.substr(0, 4), L"Write four digits.");
}

}  // namespace

std::optional<ThemeValue> themeOf(const std::wstring& folder, const std::wstring& baseName) {
  return parseThemeValue(
      readIniValue(folder + L"\\" + descriptionFileName, baseName, L"Theme", {}, themeValueLength));
}

void checkDescription(const FolderReport& report, const AddFinding& add) {
  DescriptionCheck(report, add).run();
}

}  // namespace author
