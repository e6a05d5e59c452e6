// Drawings as files: pictures for the system, but no bitmaps.
#pragma once

#include <windows.h>

#include <olectl.h>

#include <cstdint>
#include <stdexcept>
#include <string>

#include "common/com.h"

namespace metafiles {

// A black square.
inline std::string enhanced() {
  const HDC drawing = CreateEnhMetaFileW(nullptr, nullptr, nullptr, nullptr);
  PatBlt(drawing, 0, 0, 50, 50, BLACKNESS);
  const HENHMETAFILE metafile = CloseEnhMetaFile(drawing);
  std::string file(GetEnhMetaFileBits(metafile, 0, nullptr), '\0');
  GetEnhMetaFileBits(metafile, static_cast<UINT>(file.size()),
                     reinterpret_cast<BYTE*>(file.data()));
  DeleteEnhMetaFile(metafile);
  return file;
}

// The same in the older format, with the header that tells its size.
inline std::string placeable() {
  const HDC drawing = CreateMetaFileW(nullptr);
  PatBlt(drawing, 0, 0, 50, 50, BLACKNESS);
  const HMETAFILE metafile = CloseMetaFile(drawing);
  std::string records(GetMetaFileBitsEx(metafile, 0, nullptr), '\0');
  GetMetaFileBitsEx(metafile, static_cast<UINT>(records.size()), records.data());
  DeleteMetaFile(metafile);
  std::uint16_t header[11] = {0xCDD7, 0x9AC6, 0, 0, 0, 50, 50, 96};
  for (int word = 0; word < 10; ++word) header[10] ^= header[word];
  return std::string(reinterpret_cast<const char*>(header), sizeof header) + records;
}

// What kind of picture the system makes of a file; PICTYPE_UNINITIALIZED for none.
inline short kindOf(const std::string& file) {
  ComPtr<IStream> stream;
  if (FAILED(CreateStreamOnHGlobal(nullptr, TRUE, stream.put())))
    throw std::runtime_error("No memory");
  stream->Write(file.data(), static_cast<ULONG>(file.size()), nullptr);
  stream->Seek({}, STREAM_SEEK_SET, nullptr);
  ComPtr<IPicture> picture;
  OleLoadPicture(stream.get(), static_cast<LONG>(file.size()), FALSE, IID_IPicture,
                 reinterpret_cast<void**>(picture.put()));
  short kind = PICTYPE_UNINITIALIZED;
  if (picture) picture->get_Type(&kind);
  return kind;
}

}  // namespace metafiles
