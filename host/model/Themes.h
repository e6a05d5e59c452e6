// The installed themes, and what applying one does to a page.
//
// A theme is a folder of its own name that holds "<name>.inf". Applied, it is copied below the
// web's
// "_themes" folder, and the page's head gets
//   <meta name="Microsoft Theme" content="<name> <flags>">
// with the folder's name as it is spelled on disk and the low 16 bits of the properties as four
// upper-case hexadecimal digits: one digit for each of the flags 0x1 (background image), 0x10
// (active graphics), 0x100 (vivid colours) and 0x1000 (style sheets). 31 becomes "001F", 272
// "0110".
#pragma once

#include <string>
#include <vector>

#include "host/model/AutomationObject.h"

namespace standin {

// In the order of their names.
std::vector<std::wstring> installedThemes(const Session& session);

void applyThemeToPage(const Session& session, const std::wstring& page, const std::wstring& theme,
                      long properties);

// The page with the theme's mark in its head; an older mark is replaced.
std::string markedPage(std::string page, const std::string& theme, long properties);

class Theme : public AutomationObject {
 public:
  Theme(SharedSession session, std::wstring name);

  com::Variant getName(const Arguments&);
  com::Variant getLabel(const Arguments&);
  com::Variant getFormat(const Arguments&);

 protected:
  const MemberTable& members() const override;

 private:
  std::wstring info(const wchar_t* key, const std::wstring& otherwise) const;

  std::wstring name_;
};

class Themes : public AutomationObject {
 public:
  explicit Themes(SharedSession session) : AutomationObject(std::move(session)) {}

  com::Variant getCount(const Arguments&);
  com::Variant getItem(const Arguments&);

 protected:
  const MemberTable& members() const override;
};

}  // namespace standin
