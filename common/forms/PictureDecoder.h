// Makes bitmaps of GIF and JPEG files, with the system's own decoders.
#pragma once

#include <windows.h>

#include <memory>
#include <string>

#include "common/PictureHeader.h"
#include "common/handles.h"

namespace forms {

class PictureDecoder {
 public:
  // What is no picture raises this number, as the run-time's pictures do.
  static constexpr long invalidPicture = 481;

  PictureDecoder();
  ~PictureDecoder();
  PictureDecoder(const PictureDecoder&) = delete;
  PictureDecoder& operator=(const PictureDecoder&) = delete;

  // The header of a file's contents. Raises invalidPicture, also for a picture beyond the bounds.
  static PictureHeader headerOf(const std::string& file);

  // Asked all along while a picture is decoded; true ends that.
  using Stop = bool (*)() noexcept;

  // A device-independent bitmap of the size that the header tells, transparent parts on
  // `background`; null when it was stopped. The library is loaded when it is first needed. Raises
  // invalidPicture or errors::outOfMemory.
  handles::Gdi decode(const std::string& file, const PictureHeader& header, COLORREF background,
                      Stop stop = nullptr);

 private:
  class Library;
  std::unique_ptr<Library> library_;
  bool looked_ = false;
};

}  // namespace forms
