// The pages that were shown, and the way back and forward among them.
#pragma once

#include <string>
#include <vector>

namespace help {

class History {
 public:
  // What lay forward from here is forgotten. The page that is shown is not visited again.
  void visit(const std::wstring& page) {
    if (!pages_.empty() && pages_[at_] == page) return;
    pages_.resize(pages_.empty() ? 0 : at_ + 1);
    pages_.push_back(page);
    at_ = pages_.size() - 1;
  }

  bool canGoBack() const noexcept { return at_ > 0; }
  bool canGoForward() const noexcept { return at_ + 1 < pages_.size(); }
  // Only where the above say so.
  const std::wstring& back() noexcept { return pages_[--at_]; }
  const std::wstring& forward() noexcept { return pages_[++at_]; }

 private:
  std::vector<std::wstring> pages_;
  std::size_t at_ = 0;
};

}  // namespace help
