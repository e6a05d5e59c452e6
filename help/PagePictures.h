// The pictures of a page of the disk. Both may come from anywhere, so what a picture is decoded to
// is told by its header first, and is bounded for each picture and for all of a page.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "common/FileIdentity.h"
#include "html/Picture.h"

namespace help {

class PagePictures {
 public:
  using Shared = std::shared_ptr<const html::Picture>;

  // Another page, whose pictures are none of those before.
  void begin(std::wstring page);

  // The picture at an address as it is written in the page: one for each file, however that is
  // addressed. Null for what is no GIF, JPEG or BMP picture beside the page, for one beyond the
  // bounds of a picture, and for one that the page's sum of pixels, which is a single picture's
  // bound, has no room for.
  Shared at(const std::wstring& address);

 private:
  Shared ofFile(const std::wstring& path);
  Shared load(const std::wstring& path);

  std::wstring page_;
  std::map<std::wstring, Shared> byPath_;  // lowered
  std::vector<std::pair<modCommon::FileIdentity, Shared>> byFile_;
  std::uint64_t pixels_ = 0;  // of all that a decoder was given
};

}  // namespace help
