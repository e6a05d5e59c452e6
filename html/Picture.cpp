#include "html/Picture.h"

#include <olectl.h>

#include "common/handles.h"

namespace html {
namespace {

constexpr int himetricPerInch = 2540;

}  // namespace

Picture::Picture(const std::string& bytes) {
  ComPtr<IStream> stream;
  if (FAILED(CreateStreamOnHGlobal(nullptr, TRUE, stream.put()))) return;
  stream->Write(bytes.data(), static_cast<ULONG>(bytes.size()), nullptr);
  stream->Seek({}, STREAM_SEEK_SET, nullptr);
  OleLoadPicture(stream.get(), static_cast<LONG>(bytes.size()), FALSE, IID_IPicture,
                 reinterpret_cast<void**>(picture_.put()));
  // A metafile would not be drawn but played.
  short kind = PICTYPE_NONE;
  if (picture_ && (FAILED(picture_->get_Type(&kind)) || kind != PICTYPE_BITMAP)) picture_.reset();
}

SIZE Picture::size() const {
  OLE_XSIZE_HIMETRIC width = 0;
  OLE_YSIZE_HIMETRIC height = 0;
  if (!picture_ || FAILED(picture_->get_Width(&width)) || FAILED(picture_->get_Height(&height)))
    return {};
  const handles::ScreenContext screen;
  return {MulDiv(width, GetDeviceCaps(screen.get(), LOGPIXELSX), himetricPerInch),
          MulDiv(height, GetDeviceCaps(screen.get(), LOGPIXELSY), himetricPerInch)};
}

void Picture::draw(HDC target, const RECT& place) const {
  OLE_XSIZE_HIMETRIC width = 0;
  OLE_YSIZE_HIMETRIC height = 0;
  if (!picture_ || FAILED(picture_->get_Width(&width)) || FAILED(picture_->get_Height(&height)))
    return;
  // The picture's own coordinates run upwards.
  picture_->Render(target, place.left, place.top, place.right - place.left,
                   place.bottom - place.top, 0, height, width, -height, nullptr);
}

}  // namespace html
