#include "author/PictureLook.h"

#include "author/disk.h"
#include "common/errors.h"
#include "common/forms/PictureDecoder.h"

namespace author {
namespace {

constexpr std::uint64_t largestPicture = 64u << 20;

}  // namespace

// The very decoder that the browser shows it with.
PictureLook lookAtPicture(const std::wstring& path) {
  PictureLook look;
  try {
    const std::string file = readFile(path, largestPicture);
    const PictureHeader header = forms::PictureDecoder::headerOf(file);
    forms::PictureDecoder().decode(file, header, RGB(255, 255, 255));
    look.width = header.width;
    look.height = header.height;
    look.isShown = true;
  } catch (const Error& error) {
    look.reason = error.number() == forms::PictureDecoder::invalidPicture
                      ? L"it is damaged, or not what its name says."
                      : std::wstring(error.description());
  }
  return look;
}

}  // namespace author
