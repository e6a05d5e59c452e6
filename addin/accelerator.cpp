#include "addin/accelerator.h"

#include <algorithm>

#include "common/letter_case.h"

namespace accelerator {

std::wstring_view ofCaption(std::wstring_view caption) {
  auto mark = caption.find(L'&');
  while (mark != caption.npos) {
    if (caption.substr(mark + 1, 1) != L"&") return caption.substr(mark + 1, 1);
    const auto next = mark + 2;
    // A search may start before the caption's last character, not at it.
    if (next + 1 >= caption.size()) return {};
    mark = caption.find(L'&', next);
  }
  return {};
}

std::wstring add(const std::vector<std::wstring>& captions, const std::wstring& caption) {
  std::vector<std::wstring_view> used;
  used.reserve(captions.size());
  for (const auto& other : captions) used.push_back(ofCaption(other));

  const auto isFree = [&](std::wstring_view letter) {
    return std::none_of(used.begin(), used.end(), [&](std::wstring_view taken) {
      return text::equalIgnoringCase(taken, letter);
    });
  };
  for (std::size_t index = 0; index < caption.size(); ++index) {
    if (caption[index] != L' ' && isFree(std::wstring_view(caption).substr(index, 1)))
      return std::wstring(caption).insert(index, 1, L'&');
  }
  return caption;
}

}  // namespace accelerator
