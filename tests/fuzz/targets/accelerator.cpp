// The letter that a menu entry gets, beside whatever the host has in the menu.
#include "addin/accelerator.h"

#include "common/letter_case.h"
#include "tests/fuzz/Target.h"

using fuzz::promise;

namespace {

const fuzz::Target target("accelerator", [](fuzz::Input input) {
  const std::wstring caption = input.text();
  const std::vector<std::wstring> others = input.texts();
  for (const std::wstring& other : others) {
    const auto letter = accelerator::ofCaption(other);
    promise(letter.size() <= 1, "an accelerator is one character");
    promise(letter.empty() || other.find(L"&" + std::wstring(letter)) != other.npos,
            "an accelerator stands behind its mark");
    promise(letter != L"&", "the mark is no accelerator");
  }

  const std::wstring marked = accelerator::add(others, caption);
  if (marked == caption) return;
  promise(marked.size() == caption.size() + 1, "one mark is added");
  std::size_t place = 0;
  while (place < caption.size() && marked[place] == caption[place]) ++place;
  promise(marked.substr(place).starts_with(L'&') || (place > 0 && marked[place - 1] == L'&'),
          "what is added is a mark");
  // The mark may stand anywhere in a run of its like: some place of it has to be right.
  bool isRight = false;
  for (std::size_t at = 0; at < caption.size() && !isRight; ++at) {
    std::wstring expected = caption;
    expected.insert(at, 1, L'&');
    if (expected != marked || caption[at] == L' ') continue;
    isRight = true;
    for (const std::wstring& other : others)
      if (text::equalIgnoringCase(accelerator::ofCaption(other), caption.substr(at, 1)))
        isRight = false;
  }
  promise(isRight, "the letter is free and no blank");
});

}  // namespace
