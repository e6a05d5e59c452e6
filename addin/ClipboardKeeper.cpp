#include "addin/ClipboardKeeper.h"

#include <cstring>
#include <iterator>
#include <optional>
#include <string_view>

#include "common/errors.h"

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
// Where a host's own run-time puts rich text and link text, beside the registered formats.
constexpr UINT hostRichText = 0xBF01;
constexpr UINT hostLinkText = 0xBF00;
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
  handles::Global copy(GlobalAlloc(GMEM_MOVEABLE, size));
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

// Without all of it the user's clipboard could not be given back.
template <class Handle>
Item kept(UINT format, Handle copy) {
  if (!copy) throw Error(errors::outOfMemory);
  return {format, std::move(copy)};
}

// Nothing when the clipboard's owner, asked to render its data only now, fails to, or when there is
// nothing in it.
std::optional<Item> copyFormat(UINT format) {
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
      if (GlobalSize(data) == 0) return std::nullopt;
      return kept(format, copyMemory(data));
  }
}

// The clipboard owns the data from now on.
bool give(Item& item) {
  return std::visit(
      [&](auto& data) {
        const bool given = data && SetClipboardData(item.format, data.get());
        if (given) static_cast<void>(data.release());
        return given;
      },
      item.data);
}

}  // namespace
}  // namespace clipboard

ClipboardKeeper::~ClipboardKeeper() {
  if (!offered_) return;
  const clipboard::Access access(owner_.get(), clipboard::attemptsToGiveBack);
  if (!access || !holdsOffer()) return;
  EmptyClipboard();
  if (saved_.empty()) return;
  const UINT order[] = {CF_PALETTE,
                        CF_DIB,
                        CF_BITMAP,
                        CF_METAFILEPICT,
                        CF_TEXT,
                        clipboard::hostRichText,
                        RegisterClipboardFormatW(L"Rich Text Format"),
                        clipboard::hostLinkText,
                        RegisterClipboardFormatW(L"Link")};
  for (const UINT format : order) putBack(format);
  for (auto& item : saved_) clipboard::give(item);
}

void ClipboardKeeper::putBack(UINT format) {
  for (auto& item : saved_)
    if (item.format == format) clipboard::give(item);
}

bool ClipboardKeeper::offer(clipboard::Contents contents) {
  if (unsavable_) return false;
  // Without a caption, which the system would measure: most of what such a window takes.
  if (!owner_)
    owner_.reset(CreateWindowExW(0, L"Static", nullptr, WS_POPUP, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                                 nullptr, nullptr));
  if (!owner_) return false;  // nothing could be put on a clipboard without an owner
  const clipboard::Access access(owner_.get(), clipboard::attemptsToTake);
  if (!access) return false;
  if (!holdsOffer()) save();
  offered_ = true;
  EmptyClipboard();
  bool complete = true;
  for (auto& item : contents) complete = clipboard::give(item) && complete;
  return complete;
}

// With the clipboard open.
void ClipboardKeeper::save() {
  saved_.clear();
  try {
    for (UINT format = EnumClipboardFormats(0); format; format = EnumClipboardFormats(format)) {
      if (clipboard::staysBehind(format)) continue;
      if (auto item = clipboard::copyFormat(format)) saved_.push_back(std::move(*item));
    }
  } catch (...) {
    saved_.clear();
    unsavable_ = true;
    throw;
  }
}
