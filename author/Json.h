// JSON as it is written out, two blanks for each level. A pure rule.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace author {

class Json {
 public:
  // A key is for what stands in an object; what stands in a list has none.
  Json& openObject(std::wstring_view key = {}) { return open(key, L'{'); }
  Json& closeObject() { return close(L'}'); }
  Json& openList(std::wstring_view key = {}) { return open(key, L'['); }
  Json& closeList() { return close(L']'); }
  Json& text(std::wstring_view key, std::wstring_view value);
  Json& number(std::wstring_view key, long long value);
  Json& truth(std::wstring_view key, bool value);
  Json& nothing(std::wstring_view key);

  const std::wstring& written() const noexcept { return written_; }

 private:
  Json& open(std::wstring_view key, wchar_t bracket);
  Json& close(wchar_t bracket);
  void begin(std::wstring_view key);

  std::wstring written_;
  std::size_t level_ = 0;
  bool isFirst_ = true;  // in what is open
};

// With its quotes.
std::wstring jsonText(std::wstring_view value);

}  // namespace author
