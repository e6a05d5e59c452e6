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

// A copy of what the clipboard held in one format.
struct Saved {
  UINT format;
  std::variant<handles::Global, handles::Gdi, handles::Unique<MetafilePictureTraits>,
               handles::Unique<EnhancedMetafileTraits>>
      data;
};

}  // namespace clipboard

// Text of every kind, pictures, metafiles, palettes and every registered format that is plain
// memory survive. What only its owner can draw or free (owner-display, private and GDI-object
// formats, the live link to a running program's data object) cannot be kept by anybody else and
// goes.
class ClipboardKeeper {
 public:
  ClipboardKeeper();
  // Gives back what was saved.
  ~ClipboardKeeper();
  ClipboardKeeper(const ClipboardKeeper&) = delete;
  ClipboardKeeper& operator=(const ClipboardKeeper&) = delete;

  // Takes the user's data aside; false, and nothing is touched, when another program holds the
  // clipboard and does not let go of it soon.
  bool save();
  // The clipboard then holds a copy of `picture` and nothing else. Only after `save`.
  bool offer(HBITMAP picture);

 private:
  void putBack(UINT format);

  // Data set without a window would have no owner, and setting it may then be refused.
  handles::Unique<clipboard::WindowTraits> owner_;
  std::vector<clipboard::Saved> saved_;
  bool changed_ = false;
};
