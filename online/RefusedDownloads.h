// Keeps a page from asking for a download again and again after one has been refused: by the user,
// by the server, by the disk.
#pragma once

// After a refusal the next page that is shown may ask once more. When that is refused, too, nothing
// but the user's own mouse and keys let a page ask anew: a page can load itself as often as it
// likes. Every refusal has been shown, so none may follow another by itself for ever.
class RefusedDownloads {
 public:
  bool mayAsk() const noexcept { return refused_ == 0 || (refused_ == 1 && next_ == shown); }

  void add() noexcept {
    ++refused_;
    next_ = awaited;
  }
  // The next page is on its way; it is shown. What is shown without having begun after the refusal
  // is still the page that was refused.
  void pageBegins() noexcept { next_ = begun; }
  void pageIsShown() noexcept {
    if (next_ == begun) next_ = shown;
  }
  void userActs() noexcept { refused_ = 0; }

 private:
  enum NextPage { awaited, begun, shown };

  int refused_ = 0;  // since the user has acted
  NextPage next_ = awaited;
};
