#include "catalogue/TemplateInfo.h"

#include "common/description_file.h"
#include "common/ini_file.h"
#include "common/letter_case.h"
#include "common/paths.h"
#include "common/text.h"

namespace {

// One template's section of the description file in its folder.
class Description {
 public:
  Description(const std::wstring& folder, std::wstring_view section)
      : file_(folder + descriptionFileName), section_(section) {}

  std::wstring value(std::wstring_view key, std::wstring_view fallback = {}) const {
    return text::trimBlanks(readIniValue(file_, section_, key, fallback, descriptionValueLength));
  }
  std::wstring title() const { return value(L"Title", section_); }

 private:
  std::wstring file_;
  std::wstring section_;
};

std::wstring previewBesideTemplate(const std::wstring& folder, std::wstring_view baseName) {
  for (const auto& extension : text::split(L".gif|.jpg|.jpeg", L'|')) {
    const std::wstring path = folder + L"preview" + std::wstring(baseName) + extension;
    if (modCommon::fileExists(path)) return path;
  }
  return {};
}

std::wstring findPreview(const std::wstring& folder, std::wstring_view baseName,
                         const std::wstring& named) {
  const std::wstring path = named.empty() ? named : folder + named;
  if (!path.empty() && modCommon::fileExists(path)) return path;
  return previewBesideTemplate(folder, baseName);
}

std::wstring findReadme(const std::wstring& folder, const std::wstring& named,
                        const std::wstring& preview) {
  if (!named.empty() && modCommon::fileExists(folder + named)) return folder + named;
  const std::wstring usual = folder + L"readme.htm";
  // A template without notes shows its preview page as notes.
  return modCommon::fileExists(usual) ? usual : preview;
}

}  // namespace

TemplateInfo GetDWTInfo(std::wstring_view folder, std::wstring_view baseName) {
  const std::wstring path = modCommon::withBackslash(folder);
  const Description description(path, baseName);
  TemplateInfo info;
  info.title = description.title();
  info.description = description.value(L"Description", L"<not available>");
  info.preview = findPreview(path, baseName, description.value(L"Preview"));
  info.readme = findReadme(path, description.value(L"Readme"), info.preview);
  return info;
}

std::wstring templateTitle(std::wstring_view folder, std::wstring_view baseName) {
  return Description(modCommon::withBackslash(folder), baseName).title();
}

bool IsImageFile(std::wstring_view path) {
  const std::wstring_view name = text::afterLast(path, L'\\');
  if (name.find(L'.') == name.npos) return false;
  const std::wstring extension = text::toLower(text::afterLast(name, L'.'));
  return extension == L"gif" || extension == L"jpg" || extension == L"jpeg";
}

std::wstring templateBaseName(std::wstring_view fileName) {
  return std::wstring(text::beforeLast(fileName, L'.'));
}
