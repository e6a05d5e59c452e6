// Where a site comes to be: beside its folder, until it is whole.
#pragma once

#include <string>

namespace author {

class SitePlace {
 public:
  // The file by which a folder is known for a catalogue that may be replaced.
  static constexpr wchar_t mark[] = L"catalogue.json";

  // Raises an Error when there is something else at `folder`, a full path.
  explicit SitePlace(std::wstring folder);
  // What was not taken goes.
  ~SitePlace();
  SitePlace(const SitePlace&) = delete;
  SitePlace& operator=(const SitePlace&) = delete;

  // An empty folder to make the site in.
  const std::wstring& staging() const noexcept { return staging_; }

  // Puts it into its place. Raises an Error, with the earlier site still there.
  void take();

 private:
  std::wstring folder_;
  std::wstring staging_;
};

}  // namespace author
