#include "addin/ClipboardKeeper.h"

#include <cstring>
#include <iterator>
#include <optional>
#include <string_view>

namespace clipboard {

void MetafilePictureTraits::close(HGLOBAL handle) noexcept {
  if (const auto* picture = static_cast<const METAFILEPICT*>(GlobalLock(handle))) {
    DeleteMetaFile(picture->hMF);
    GlobalUnlock(handle);
  }
  GlobalFree(handle);
}

namespace {

using MetafilePicture = handles::Unique<MetafilePictureTraits>;
using EnhancedMetafile = handles::Unique<EnhancedMetafileTraits>;

constexpr DWORD pause = 10;  // milliseconds
constexpr int attemptsToTake = 20;
// The user's data is at stake then.
constexpr int attemptsToGiveBack = 200;

// The clipboard open for this thread. Another program may hold it for a moment.
class Access {
 public:
  Access(HWND owner, int attempts) noexcept {
    while (!(open_ = OpenClipboard(owner) != FALSE) && --attempts > 0) Sleep(pause);
  }
  ~Access() {
    if (open_) CloseClipboard();
  }
  Access(const Access&) = delete;
  Access& operator=(const Access&) = delete;
  explicit operator bool() const noexcept { return open_; }

 private:
  bool open_ = false;
};

// Formats that mean something only in their owner's hands, and the one that the system makes anew
// from the other texts.
bool staysBehind(UINT format) noexcept {
  if (format == CF_OEMTEXT || format == CF_OWNERDISPLAY) return true;
  if (format == CF_DSPTEXT || format == CF_DSPBITMAP || format == CF_DSPMETAFILEPICT ||
      format == CF_DSPENHMETAFILE)
    return true;
  if (format >= CF_PRIVATEFIRST && format <= CF_GDIOBJLAST) return true;
  wchar_t name[32] = {};
  GetClipboardFormatNameW(format, name, static_cast<int>(std::size(name)));
  return std::wstring_view(name) == L"DataObject" || std::wstring_view(name) == L"Ole Private Data";
}

handles::Global copyMemory(HANDLE memory) noexcept {
  const SIZE_T size = GlobalSize(memory);
  handles::Global copy(size ? GlobalAlloc(GMEM_MOVEABLE, size) : nullptr);
  if (!copy) return copy;
  const void* source = GlobalLock(memory);
  void* target = GlobalLock(copy.get());
  const bool copied = source && target;
  if (copied) std::memcpy(target, source, size);
  if (source) GlobalUnlock(memory);
  if (target) GlobalUnlock(copy.get());
  if (!copied) copy.reset();
  return copy;
}

handles::Gdi copyPalette(HANDLE handle) {
  const auto palette = static_cast<HPALETTE>(handle);
  const UINT count = GetPaletteEntries(palette, 0, 0, nullptr);
  if (count == 0) return {};
  std::vector<BYTE> memory(sizeof(LOGPALETTE) + count * sizeof(PALETTEENTRY));
  auto* record = reinterpret_cast<LOGPALETTE*>(memory.data());
  record->palVersion = 0x300;
  record->palNumEntries = static_cast<WORD>(count);
  GetPaletteEntries(palette, 0, count, record->palPalEntry);
  return handles::Gdi(CreatePalette(record));
}

MetafilePicture copyMetafilePicture(HANDLE handle) noexcept {
  handles::Global record = copyMemory(handle);
  if (!record || GlobalSize(record.get()) < sizeof(METAFILEPICT)) return {};
  auto* picture = static_cast<METAFILEPICT*>(GlobalLock(record.get()));
  if (!picture) return {};
  picture->hMF = CopyMetaFileW(picture->hMF, nullptr);
  const bool copied = picture->hMF != nullptr;
  GlobalUnlock(record.get());
  return MetafilePicture(copied ? record.release() : nullptr);
}

template <class Handle>
std::optional<Saved> kept(UINT format, Handle copy) {
  if (!copy) return std::nullopt;
  return Saved{format, std::move(copy)};
}

// Nothing when the clipboard's owner, asked to render its data only now, fails to.
std::optional<Saved> copyFormat(UINT format) {
  const HANDLE data = GetClipboardData(format);
  if (!data) return std::nullopt;
  switch (format) {
    case CF_BITMAP:
      return kept(format, handles::Gdi(CopyImage(data, IMAGE_BITMAP, 0, 0, 0)));
    case CF_PALETTE:
      return kept(format, copyPalette(data));
    case CF_METAFILEPICT:
      return kept(format, copyMetafilePicture(data));
    case CF_ENHMETAFILE:
      return kept(format,
                  EnhancedMetafile(CopyEnhMetaFileW(static_cast<HENHMETAFILE>(data), nullptr)));
    default:
      return kept(format, copyMemory(data));
  }
}

// The clipboard owns the data from now on.
void give(Saved& saved) {
  std::visit(
      [&](auto& data) {
        if (data && SetClipboardData(saved.format, data.get())) static_cast<void>(data.release());
      },
      saved.data);
}

}  // namespace
}  // namespace clipboard

ClipboardKeeper::ClipboardKeeper()
    : owner_(CreateWindowExW(0, L"Static", nullptr, 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr,
                             nullptr)) {}

ClipboardKeeper::~ClipboardKeeper() {
  if (!changed_) return;
  const clipboard::Access access(owner_.get(), clipboard::attemptsToGiveBack);
  if (!access) return;
  EmptyClipboard();
  const UINT order[] = {CF_PALETTE,
                        CF_DIB,
                        CF_BITMAP,
                        CF_METAFILEPICT,
                        CF_TEXT,
                        RegisterClipboardFormatW(L"Rich Text Format"),
                        RegisterClipboardFormatW(L"Link")};
  for (const UINT format : order) putBack(format);
  for (auto& saved : saved_) clipboard::give(saved);
}

void ClipboardKeeper::putBack(UINT format) {
  for (auto& saved : saved_)
    if (saved.format == format) clipboard::give(saved);
}

bool ClipboardKeeper::save() {
  const clipboard::Access access(owner_.get(), clipboard::attemptsToTake);
  if (!access) return false;
  for (UINT format = EnumClipboardFormats(0); format; format = EnumClipboardFormats(format)) {
    if (clipboard::staysBehind(format)) continue;
    if (auto saved = clipboard::copyFormat(format)) saved_.push_back(std::move(*saved));
  }
  return true;
}

bool ClipboardKeeper::offer(HBITMAP picture) {
  handles::Gdi copy(CopyImage(picture, IMAGE_BITMAP, 0, 0, 0));
  const clipboard::Access access(owner_.get(), clipboard::attemptsToTake);
  if (!copy || !access) return false;
  changed_ = true;
  EmptyClipboard();
  if (!SetClipboardData(CF_BITMAP, copy.get())) return false;
  static_cast<void>(copy.release());
  return true;
}
