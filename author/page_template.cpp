#include "author/page_template.h"

#include <algorithm>

#include "author/page_text.h"
#include "common/errors.h"
#include "common/text.h"

namespace author {
namespace {

constexpr std::wstring_view opening = L"{{";
constexpr std::wstring_view closing = L"}}";

// What lists within lists repeat is multiplied at each step.
constexpr std::size_t deepestList = 8;

class Filler {
 public:
  explicit Filler(std::wstring_view page) : page_(page) {}

  std::wstring fill(const Values& values) {
    scopes_ = {&values};
    std::wstring result;
    fillUntil({}, true, result);
    return result;
  }

 private:
  [[noreturn]] void fail(std::size_t at, const std::wstring& why) const {
    throw Error(errors::invalidArgument,
                text::join({L"Line ", text::decimal(lineOf(page_, at)), L": ", why}));
  }

  // On to the end of the list that is open, or of the page. What is not to be shown is still read.
  void fillUntil(const std::wstring& list, bool isShown, std::wstring& result) {
    const std::size_t start = at_;
    for (;;) {
      const auto gap = page_.find(opening, at_);
      const auto end = gap == page_.npos ? gap : page_.find(closing, gap);
      if (isShown) result += page_.substr(at_, gap == page_.npos ? gap : gap - at_);
      if (gap == page_.npos) {
        at_ = page_.size();
        if (!list.empty()) fail(start, L"The list \"" + list + L"\" does not end.");
        return;
      }
      if (end == page_.npos) fail(gap, L"A gap does not end.");
      at_ = end + closing.size();
      const std::wstring name =
          withoutSpace(page_.substr(gap + opening.size(), end - gap - opening.size()));
      if (name.starts_with(L'/')) {
        if (name.substr(1) != list)
          fail(gap, L"\"" + name.substr(1) + L"\" ends, but has not begun.");
        return;
      }
      if (name.starts_with(L'#') || name.starts_with(L'^'))
        fillList(gap, name.substr(1), name.front() == L'^', isShown, result);
      else if (isShown)
        result += escapedForPage(textOf(gap, name));
    }
  }

  void fillList(std::size_t gap, const std::wstring& name, bool isForNone, bool isShown,
                std::wstring& result) {
    static const std::vector<Values> none;
    if (open_.size() == deepestList) fail(gap, L"There are too many lists within lists.");
    const std::vector<Values>& items = isShown ? listOf(gap, name) : none;
    if (!items.empty() && std::find(open_.begin(), open_.end(), &items) != open_.end())
      fail(gap, L"The list \"" + name + L"\" stands within itself.");
    open_.push_back(&items);
    const std::size_t start = at_;
    if (isForNone || items.empty())
      fillUntil(name, isShown && isForNone && items.empty(), result);
    else
      for (const Values& item : items) {
        at_ = start;
        scopes_.push_back(&item);
        fillUntil(name, true, result);
        scopes_.pop_back();
      }
    open_.pop_back();
  }

  const std::wstring& textOf(std::size_t gap, const std::wstring& name) const {
    const auto scope = std::find_if(scopes_.rbegin(), scopes_.rend(),
                                    [&](const Values* each) { return each->texts.contains(name); });
    if (scope != scopes_.rend()) return (*scope)->texts.at(name);
    fail(gap, L"There is no text \"" + name + L"\" here.");
  }

  const std::vector<Values>& listOf(std::size_t gap, const std::wstring& name) const {
    const auto scope = std::find_if(scopes_.rbegin(), scopes_.rend(),
                                    [&](const Values* each) { return each->lists.contains(name); });
    if (scope != scopes_.rend()) return (*scope)->lists.at(name);
    fail(gap, L"There is no list \"" + name + L"\" here.");
  }

  std::wstring_view page_;
  std::size_t at_ = 0;
  std::vector<const Values*> scopes_;
  std::vector<const std::vector<Values>*> open_;  // the lists around the place
};

}  // namespace

std::wstring escapedForPage(std::wstring_view text) {
  std::wstring result;
  for (const wchar_t letter : text) {
    if (letter == L'&')
      result += L"&amp;";
    else if (letter == L'<')
      result += L"&lt;";
    else if (letter == L'>')
      result += L"&gt;";
    else if (letter == L'"')
      result += L"&quot;";
    else
      result += letter;
  }
  return result;
}

std::wstring fillIn(std::wstring_view page, const Values& values) {
  return Filler(page).fill(values);
}

}  // namespace author
