#include "help/PagePictures.h"

#include <optional>

#include "common/PictureHeader.h"
#include "common/letter_case.h"
#include "help/bitmap_header.h"
#include "help/local_page.h"

namespace help {
namespace {

std::optional<PictureHeader> headerOf(std::string_view file) {
  const auto header = readPictureHeader(file);
  return header ? header : readBitmapHeader(file);
}

}  // namespace

void PagePictures::begin(std::wstring page) {
  page_ = std::move(page);
  byPath_.clear();
  byFile_.clear();
  pixels_ = 0;
}

PagePictures::Shared PagePictures::at(const std::wstring& address) {
  const auto path = pictureBeside(page_, address);
  if (!path) return nullptr;
  const auto [known, isNew] = byPath_.try_emplace(text::toLower(*path));
  if (isNew) known->second = ofFile(*path);
  return known->second;
}

PagePictures::Shared PagePictures::ofFile(const std::wstring& path) {
  const modCommon::FileIdentity identity = modCommon::identityOf(path);
  for (const auto& [file, picture] : byFile_)
    if (file == identity) return picture;
  Shared picture = load(path);
  if (identity) byFile_.emplace_back(identity, picture);
  return picture;
}

// Later frames of a GIF stay out: they are not shown, and some decoders unpack them all at once.
PagePictures::Shared PagePictures::load(const std::wstring& path) {
  std::string file = readPicture(path);
  const auto header = headerOf(file);
  if (!header || !isWithinBounds(*header) || header->pixels > mostPicturePixels - pixels_)
    return nullptr;
  pixels_ += header->pixels;
  file.resize(header->length);
  if (header->isGif) file += ';';
  return std::make_shared<html::Picture>(file);
}

}  // namespace help
