#include "common/forms/PictureDecoder.h"

#include <olectl.h>

#include <algorithm>

#include "common/Counted.h"
#include "common/com.h"
#include "common/errors.h"
#include "common/forms/BitmapContext.h"

namespace forms {
namespace {

constexpr ULONG betweenQuestions = 4096;  // bytes: some decoders read a few at a time

Error notAPicture() { return Error(PictureDecoder::invalidPicture, L"Invalid picture"); }

// The part of the file that shows. Later frames of a GIF stay out: they are not shown, and some
// decoders unpack them all at once.
ComPtr<IStream> streamOver(const std::string& file, const PictureHeader& header) {
  const std::string_view ending = header.isGif ? ";" : "";
  handles::Global memory(GlobalAlloc(GMEM_MOVEABLE, header.length + ending.size()));
  if (!memory) throw Error(errors::outOfMemory);
  auto* const bytes = static_cast<char*>(GlobalLock(memory.get()));
  std::copy_n(file.data(), header.length, bytes);
  std::copy(ending.begin(), ending.end(), bytes + header.length);
  GlobalUnlock(memory.get());
  ComPtr<IStream> stream;
  if (FAILED(CreateStreamOnHGlobal(memory.get(), TRUE, stream.put())))
    throw Error(errors::outOfMemory);   // Not run by tests: no memory.
  static_cast<void>(memory.release());  // the stream frees it
  return stream;
}

// Another stream, which fails from when it is stopped: a decoder knows no other way to be told.
class StoppableStream final : public com::Counted<IStream> {
 public:
  StoppableStream(ComPtr<IStream> stream, PictureDecoder::Stop stop) noexcept
      : stream_(std::move(stream)), stop_(stop) {}

  bool isStopped() noexcept { return stopped_ || (stopped_ = stop_ && stop_()); }
  bool wasStopped() const noexcept { return stopped_; }

  STDMETHODIMP QueryInterface(REFIID id, void** object) noexcept override {
    *object = nullptr;
    if (id != IID_IUnknown && id != IID_ISequentialStream && id != IID_IStream)
      return E_NOINTERFACE;
    AddRef();
    *object = static_cast<IStream*>(this);
    return S_OK;
  }
  STDMETHODIMP Read(void* bytes, ULONG size, ULONG* done) noexcept override {
    if (size < untilQuestion_) {
      untilQuestion_ -= size;
    } else {
      untilQuestion_ = betweenQuestions;
      isStopped();
    }
    return stopped_ ? E_ABORT : stream_->Read(bytes, size, done);
  }
  STDMETHODIMP Write(const void* bytes, ULONG size, ULONG* done) noexcept override {
    return stream_->Write(bytes, size, done);
  }
  STDMETHODIMP Seek(LARGE_INTEGER by, DWORD from, ULARGE_INTEGER* position) noexcept override {
    return stream_->Seek(by, from, position);
  }
  STDMETHODIMP SetSize(ULARGE_INTEGER size) noexcept override { return stream_->SetSize(size); }
  STDMETHODIMP CopyTo(IStream* target, ULARGE_INTEGER size, ULARGE_INTEGER* read,
                      ULARGE_INTEGER* written) noexcept override {
    return stream_->CopyTo(target, size, read, written);
  }
  STDMETHODIMP Commit(DWORD how) noexcept override { return stream_->Commit(how); }
  STDMETHODIMP Revert() noexcept override { return stream_->Revert(); }
  STDMETHODIMP LockRegion(ULARGE_INTEGER at, ULARGE_INTEGER size, DWORD how) noexcept override {
    return stream_->LockRegion(at, size, how);
  }
  STDMETHODIMP UnlockRegion(ULARGE_INTEGER at, ULARGE_INTEGER size, DWORD how) noexcept override {
    return stream_->UnlockRegion(at, size, how);
  }
  STDMETHODIMP Stat(STATSTG* state, DWORD how) noexcept override {
    return stream_->Stat(state, how);
  }
  STDMETHODIMP Clone(IStream** copy) noexcept override { return stream_->Clone(copy); }

 private:
  ComPtr<IStream> stream_;
  PictureDecoder::Stop stop_;
  ULONG untilQuestion_ = 0;
  bool stopped_ = false;
};

// Rows from the top, each a multiple of four bytes long.
struct Bitmap {
  handles::Gdi handle;
  void* bits = nullptr;
  int stride = 0;
};

Bitmap blankBitmap(const PictureHeader& header, WORD bitsPerPixel) {
  BITMAPINFO info = {};
  info.bmiHeader.biSize = sizeof info.bmiHeader;
  info.bmiHeader.biWidth = header.width;
  info.bmiHeader.biHeight = -header.height;
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = bitsPerPixel;
  Bitmap bitmap;
  bitmap.handle.reset(CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bitmap.bits, nullptr, 0));
  if (!bitmap.handle) throw Error(errors::outOfMemory);
  bitmap.stride = (header.width * bitsPerPixel + 31) / 32 * 4;
  return bitmap;
}

// Colours with their opacity in the fourth byte, laid on one colour.
void layOn(COLORREF background, DWORD* pixels, std::size_t count) {
  const DWORD parts[] = {GetBValue(background), GetGValue(background), GetRValue(background)};
  for (; count > 0; --count, ++pixels) {
    const DWORD opacity = *pixels >> 24;
    if (opacity == 255) continue;
    DWORD mixed = 0;
    for (int part = 0; part < 3; ++part) {
      const DWORD own = *pixels >> (8 * part) & 0xFF;
      mixed |= (own * opacity + parts[part] * (255 - opacity)) / 255 << (8 * part);
    }
    *pixels = mixed | 0xFF000000;
  }
}

// By the automation library, which every system has; it needs twice the memory.
handles::Gdi decodeByAutomation(StoppableStream& stream, const PictureHeader& header,
                                COLORREF background) {
  ComPtr<IPicture> picture;
  // False: the picture owns its bitmap.
  const HRESULT result =
      OleLoadPicture(&stream, 0, FALSE, IID_IPicture, reinterpret_cast<void**>(picture.put()));
  if (result == E_OUTOFMEMORY) throw Error(errors::outOfMemory);
  short type = PICTYPE_NONE;
  if (FAILED(result) || !picture || FAILED(picture->get_Type(&type)) || type != PICTYPE_BITMAP)
    throw notAPicture();
  OLE_XSIZE_HIMETRIC width = 0;
  OLE_YSIZE_HIMETRIC height = 0;
  picture->get_Width(&width);
  picture->get_Height(&height);

  Bitmap bitmap = blankBitmap(header, 24);
  const handles::ScreenContext screen;
  const BitmapContext target(screen.get(), bitmap.handle.get());
  const RECT all = {0, 0, header.width, header.height};
  const handles::Gdi brush(CreateSolidBrush(background));
  FillRect(target.get(), &all, static_cast<HBRUSH>(brush.get()));
  // A picture's origin is its lower left corner.
  if (FAILED(picture->Render(target.get(), 0, 0, header.width, header.height, 0, height, width,
                             -height, nullptr)))
    throw notAPicture();  // Not run by tests: what was loaded is drawn.
  return std::move(bitmap.handle);
}

}  // namespace

// The graphics library that comes with the system from Windows XP on, and with the host's family of
// programs before. Its published flat interface, looked up at run time; every function gives 0 for
// success.
class PictureDecoder::Library {
 public:
  // Null where there is none.
  static std::unique_ptr<Library> load() {
    std::unique_ptr<Library> library(new Library);
    return library->start() ? std::move(library) : nullptr;
  }
  ~Library() {
    if (token_) shutdown_(token_);
    if (module_) FreeLibrary(module_);
  }
  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;

  handles::Gdi decode(StoppableStream& stream, const PictureHeader& header,
                      COLORREF background) const {
    const Image image(*this, stream);
    if (stream.isStopped()) return {};  // some decoders have done all of their work by now
    UINT width = 0;
    UINT height = 0;
    if (getWidth_(image.get(), &width) || getHeight_(image.get(), &height) ||
        width != static_cast<UINT>(header.width) || height != static_cast<UINT>(header.height))
      throw notAPicture();  // Not run by tests: the library reads the header as we do.
    Bitmap bitmap = blankBitmap(header, header.isGif ? 32 : 24);
    read(image, bitmap, header);
    if (header.isGif)
      layOn(background, static_cast<DWORD*>(bitmap.bits),
            static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    return std::move(bitmap.handle);
  }

 private:
  struct StartupInput {
    UINT32 version;
    void* debugCallback;
    BOOL withoutThread;
    BOOL withoutCodecs;
  };
  struct PixelRows {
    UINT width;
    UINT height;
    INT stride;
    INT format;
    void* first;
    UINT_PTR reserved;
  };
  struct Area {
    INT x;
    INT y;
    INT width;
    INT height;
  };

  static constexpr INT rgb24 = 0x21808;
  static constexpr INT argb32 = 0x26200A;
  static constexpr UINT readIntoBuffer = 1 | 4;

  class Image {
   public:
    Image(const Library& library, IStream& stream) : library_(library) {
      if (library.create_(&stream, &image_) || !image_) throw notAPicture();
    }
    ~Image() { library_.dispose_(image_); }
    Image(const Image&) = delete;
    Image& operator=(const Image&) = delete;
    void* get() const noexcept { return image_; }

   private:
    const Library& library_;
    void* image_ = nullptr;
  };

  Library() noexcept : module_(LoadLibraryW(L"gdiplus.dll")) {}

  template <class Function>
  bool find(Function*& function, const char* name) const noexcept {
    function = reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(module_, name)));
    return function != nullptr;
  }

  bool start() noexcept {
    if (!module_ || !find(startup_, "GdiplusStartup") || !find(shutdown_, "GdiplusShutdown") ||
        !find(create_, "GdipCreateBitmapFromStream") || !find(dispose_, "GdipDisposeImage") ||
        !find(getWidth_, "GdipGetImageWidth") || !find(getHeight_, "GdipGetImageHeight") ||
        !find(lock_, "GdipBitmapLockBits") || !find(unlock_, "GdipBitmapUnlockBits"))
      return false;
    const StartupInput input = {1, nullptr, FALSE, FALSE};
    if (startup_(&token_, &input, nullptr)) token_ = 0;
    return token_ != 0;
  }

  // Straight into our bitmap: the library makes no second copy.
  void read(const Image& image, const Bitmap& bitmap, const PictureHeader& header) const {
    const Area all = {0, 0, header.width, header.height};
    const INT format = header.isGif ? argb32 : rgb24;
    PixelRows rows = {static_cast<UINT>(header.width),
                      static_cast<UINT>(header.height),
                      bitmap.stride,
                      format,
                      bitmap.bits,
                      0};
    if (lock_(image.get(), &all, readIntoBuffer, format, &rows)) throw notAPicture();
    unlock_(image.get(), &rows);
  }

  HMODULE module_;
  ULONG_PTR token_ = 0;
  int(WINAPI* startup_)(ULONG_PTR*, const StartupInput*, void*) = nullptr;
  void(WINAPI* shutdown_)(ULONG_PTR) = nullptr;
  int(WINAPI* create_)(IStream*, void**) = nullptr;
  int(WINAPI* dispose_)(void*) = nullptr;
  int(WINAPI* getWidth_)(void*, UINT*) = nullptr;
  int(WINAPI* getHeight_)(void*, UINT*) = nullptr;
  int(WINAPI* lock_)(void*, const Area*, UINT, INT, PixelRows*) = nullptr;
  int(WINAPI* unlock_)(void*, PixelRows*) = nullptr;
};

PictureDecoder::PictureDecoder() = default;
PictureDecoder::~PictureDecoder() = default;

PictureHeader PictureDecoder::headerOf(const std::string& file) {
  const auto header = readPictureHeader(file);
  if (!header || !isWithinBounds(*header)) throw notAPicture();
  return *header;
}

handles::Gdi PictureDecoder::decode(const std::string& file, const PictureHeader& header,
                                    COLORREF background, Stop stop) {
  const auto stream =
      ComPtr<StoppableStream>::adopt(new StoppableStream(streamOver(file, header), stop));
  if (!std::exchange(looked_, true)) library_ = Library::load();
  handles::Gdi bitmap;
  try {
    bitmap = library_ ? library_->decode(*stream.get(), header, background)
                      : decodeByAutomation(*stream.get(), header, background);
  } catch (...) {
    if (!stream->wasStopped()) throw;
  }
  // Not every decoder fails when its stream does: the rest of the picture may be missing.
  if (stream->wasStopped()) bitmap.reset();
  return bitmap;
}

}  // namespace forms
