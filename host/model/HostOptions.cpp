#include "host/model/HostOptions.h"

#include <variant>

namespace standin {
namespace {

using Field = std::variant<bool HostOptions::*, long HostOptions::*, std::wstring HostOptions::*>;

struct Row {
  const wchar_t* name;
  Field field;
};

const Row rows[] = {
    {L"version", &HostOptions::version},
    {L"webUrl", &HostOptions::webUrl},
    {L"nothingIsEmpty", &HostOptions::nothingIsEmpty},
    {L"noWebIsError", &HostOptions::noWebIsError},
    {L"absentFolderIsError", &HostOptions::absentFolderIsError},
    {L"absentFileIsError", &HostOptions::absentFileIsError},
    {L"addExistingFolderGivesIt", &HostOptions::addExistingFolderGivesIt},
    {L"addMakesLevels", &HostOptions::addMakesLevels},
    {L"addTakesUrl", &HostOptions::addTakesUrl},
    {L"leadingSlashTaken", &HostOptions::leadingSlashTaken},
    {L"trailingSlashTaken", &HostOptions::trailingSlashTaken},
    {L"makeAbsFromServer", &HostOptions::makeAbsFromServer},
    {L"webUrlEscaped", &HostOptions::webUrlEscaped},
    {L"itemUrlsEscaped", &HostOptions::itemUrlsEscaped},
    {L"locateUnescapes", &HostOptions::locateUnescapes},
    {L"addUnescapes", &HostOptions::addUnescapes},
    {L"listedUnsorted", &HostOptions::listedUnsorted},
    {L"rootIsWeb", &HostOptions::rootIsWeb},
    {L"vtiFoldersListed", &HostOptions::vtiFoldersListed},
    {L"beforePastEndRefused", &HostOptions::beforePastEndRefused},
    {L"maskedFaces", &HostOptions::maskedFaces},
    {L"explorerObject", &HostOptions::explorerObject},
    {L"importMilliseconds", &HostOptions::importMilliseconds},
    {L"addInsOfVersion", &HostOptions::addInsOfVersion},
    {L"menuBar", &HostOptions::menuBar},
    {L"menuBarType", &HostOptions::menuBarType},
    {L"templatesMenu", &HostOptions::templatesMenu},
    {L"templatesMenuType", &HostOptions::templatesMenuType},
    {L"copyAnchor", &HostOptions::copyAnchor},
    {L"onlineAnchor", &HostOptions::onlineAnchor},
    {L"toolbar", &HostOptions::toolbar},
};

bool assign(bool& field, std::wstring_view value) {
  field = value == L"1" || value == L"true";
  return field || value == L"0" || value == L"false";
}

bool assign(long& field, std::wstring_view value) {
  if (value.empty() || value.size() > 6) return false;
  long number = 0;
  for (const wchar_t digit : value) {
    if (digit < L'0' || digit > L'9') return false;
    number = number * 10 + (digit - L'0');
  }
  field = number;
  return true;
}

bool assign(std::wstring& field, std::wstring_view value) {
  field = value;
  return true;
}

}  // namespace

bool HostOptions::set(std::wstring_view name, std::wstring_view value) {
  for (const Row& row : rows)
    if (row.name == name)
      return std::visit([&](auto field) { return assign(this->*field, value); }, row.field);
  return false;
}

std::vector<std::wstring> HostOptions::names() {
  std::vector<std::wstring> result;
  for (const Row& row : rows) result.emplace_back(row.name);
  return result;
}

}  // namespace standin
