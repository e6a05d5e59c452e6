// The clipboard, borrowed for a moment and given back with what the user had on it.
#pragma once

#include <windows.h>

#include <variant>
#include <vector>

#include "common/handles.h"

namespace clipboard {

// METAFILEPICT records own the metafile inside.
struct MetafilePictureTraits {
  using type = HGLOBAL;
  static type none() noexcept { return nullptr; }
  static void close(type handle) noexcept;
};
struct EnhancedMetafileTraits {
  using type = HENHMETAFILE;
  static type none() noexcept { return nullptr; }
  static void close(type handle) noexcept { DeleteEnhMetaFile(handle); }
};
struct WindowTraits {
  using type = HWND;
  static type none() noexcept { return nullptr; }
  static void close(type handle) noexcept { DestroyWindow(handle); }
};

// Data for the clipboard in one format.
struct Item {
  UINT format;
  std::variant<handles::Global, handles::Gdi, handles::Unique<MetafilePictureTraits>,
               handles::Unique<EnhancedMetafileTraits>>
      data;
};
using Contents = std::vector<Item>;

}  // namespace clipboard

// Text of every kind, pictures, metafiles, palettes and every registered format that is plain
// memory survive. What only its owner can draw or free (owner-display, private and GDI-object
// formats, the live link to a running program's data object) cannot be kept by anybody else and
// goes.
class ClipboardKeeper {
 public:
  ClipboardKeeper() noexcept = default;
  // Gives back what the user had, unless another program has put something there meanwhile.
  ~ClipboardKeeper();
  ClipboardKeeper(const ClipboardKeeper&) = delete;
  ClipboardKeeper& operator=(const ClipboardKeeper&) = delete;

  // The clipboard then holds `contents` and nothing else. The first time, the user's data is taken
  // aside. False, and nothing is touched, when another program holds the clipboard and does not let
  // go of it soon. Raises an Error (7), with nothing touched either, when there is no memory for a
  // copy of all that the user has there; the keeper then offers nothing any more.
  bool offer(clipboard::Contents contents);
  // Whether what was offered last is still there.
  bool holdsOffer() const noexcept { return offered_ && GetClipboardOwner() == owner_.get(); }

 private:
  void save();
  void putBack(UINT format);

  // Data set without a window would have no owner, and setting it may then be refused.
  handles::Unique<clipboard::WindowTraits> owner_;
  clipboard::Contents saved_;
  bool offered_ = false;
  bool unsavable_ = false;
};
