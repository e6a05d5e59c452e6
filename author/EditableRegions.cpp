#include "author/EditableRegions.h"

#include <optional>
#include <unordered_map>
#include <utility>

#include "author/page_text.h"
#include "common/letter_case.h"
#include "common/text.h"

namespace author {
namespace {

constexpr std::wstring_view beginning = L"#BeginEditable";
constexpr std::wstring_view ending = L"#EndEditable";

// With or without quotes around it.
std::wstring nameIn(std::wstring_view rest) {
  std::wstring name = text::trimBlanks(rest);
  if (name.size() >= 2 && (name.front() == L'"' || name.front() == L'\'') &&
      name.back() == name.front())
    name = name.substr(1, name.size() - 2);
  return text::trimBlanks(name);
}

class Reader {
 public:
  EditableRegions read(std::wstring_view html) {
    for (const Comment& comment : commentsOf(html)) take(comment);
    if (open_) add(RegionFault::unclosed, open_->name, open_->offset);
    return std::move(result_);
  }

 private:
  void take(const Comment& comment) {
    const std::wstring words = withoutSpace(comment.text);
    if (text::beginsIgnoringCase(words, beginning))
      begin({nameIn(std::wstring_view(words).substr(beginning.size())), comment.offset});
    else if (text::beginsIgnoringCase(words, ending))
      end(comment.offset);
  }

  void begin(EditableRegion region) {
    if (open_) add(RegionFault::nested, region.name, region.offset, open_->offset);
    if (region.name.empty()) {
      add(RegionFault::unnamed, {}, region.offset);
    } else if (const auto [first, isNew] =
                   offsets_.emplace(text::toLower(region.name), region.offset);
               isNew) {
      result_.regions.push_back(region);
    } else {
      add(RegionFault::repeated, region.name, region.offset, first->second);
    }
    open_ = std::move(region);
  }

  void end(std::size_t offset) {
    if (!open_) add(RegionFault::unopened, {}, offset);
    open_.reset();
  }

  void add(RegionFault fault, const std::wstring& name, std::size_t offset, std::size_t other = 0) {
    result_.findings.push_back({fault, name, offset, other});
  }

  EditableRegions result_;
  std::unordered_map<std::wstring, std::size_t> offsets_;  // by lower-case name
  std::optional<EditableRegion> open_;
};

}  // namespace

EditableRegions readRegions(std::wstring_view html) { return Reader().read(html); }

}  // namespace author
