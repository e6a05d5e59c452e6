// Pages with gaps, and what is put into them:
//
//     {{title}}                       a text, fit to stand in a page or an attribute
//     {{#templates}} ... {{/templates}}   once for each; its own texts hide those around it
//     {{^theme}} ... {{/theme}}       when there is none
//
// Pure rules.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace author {

struct Values {
  std::map<std::wstring, std::wstring> texts;
  std::map<std::wstring, std::vector<Values>> lists;
};

// Raises an Error whose description names the line: of a gap that there is no value for, or a list
// that does not end, stands within itself or too deep in others.
std::wstring fillIn(std::wstring_view page, const Values& values);

// "&lt;" for "<".
std::wstring escapedForPage(std::wstring_view text);

}  // namespace author
