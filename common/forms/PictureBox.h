// A place that shows one picture at any size, with scroll bars when the picture is larger; the
// mouse drags that about.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "common/forms/PictureDecoder.h"
#include "common/forms/WindowClass.h"
#include "common/forms/controls.h"

namespace forms {

// In the dialog resource: CONTROL of class "QuilletPictureBox". Sizes are pixels.
class PictureBox : public Control {
 public:
  static constexpr wchar_t className[] = L"QuilletPictureBox";
  static constexpr long invalidPicture = PictureDecoder::invalidPicture;

  PictureBox(Form& form, int id);
  ~PictureBox() override;

  // The size at which a picture is shown, from its natural size.
  using Scale = std::function<SIZE(SIZE natural)>;

  // Shows a GIF or JPEG file, at its natural size without a scale. The file is not kept open. On an
  // Error the box stays as it was.
  //
  // A large picture takes its time to decode: that is done when the box is painted, which is after
  // every key that waits, and is put off again for a key or a click that comes meanwhile; until
  // then the box stays as it was painted last. One that is left before its turn costs nothing, and
  // one that turns out to be none then fires onFailed from the message loop, with the box empty.
  void load(const std::wstring& path, const Scale& scale = {});
  std::function<void(const Error&)> onFailed;
  // Small pictures are kept for when they are shown again; a large one is let go.
  void clear() noexcept;

  bool hasPicture() const noexcept { return !picture_.path.empty(); }
  const std::wstring& path() const noexcept { return picture_.path; }  // empty without a picture
  SIZE naturalSize() const noexcept;
  SIZE pictureSize() const noexcept { return shown_; }
  // Stretches the picture to that size and shows its upper left part.
  void setPictureSize(SIZE size);

 private:
  void onAttached() override;
  static LRESULT CALLBACK windowProcedure(HWND, UINT, WPARAM, LPARAM) noexcept;
  LRESULT onMessage(UINT message, WPARAM wParam, LPARAM lParam);
  struct Picture {
    std::wstring path;
    DWORD bytes = 0;
    FILETIME written = {};
    PictureHeader header;
    handles::Gdi bitmap;  // at natural size, on the window's background; null until it is decoded
  };
  struct Bar {
    int length = -1;
    int page = 0;
    int position = 0;
  };

  static bool isSame(const Picture& one, const Picture& other) noexcept;
  bool takeKept(const Picture& wanted);
  void keep(Picture left) noexcept;
  void decodeWaiting(PictureDecoder::Stop stop) noexcept;
  void onNotDecoded();
  void onNewColours() noexcept;
  void paint(HDC target) const;
  void paintPicture(HDC target) const;
  void setBar(int bar, int length, int page, int position) noexcept;
  void updateScrollBars() noexcept;
  void scrollTo(int bar, int position) noexcept;
  void onScroll(int bar, WORD request) noexcept;
  void onKey(WPARAM key) noexcept;
  void onWheel(int delta, bool sideways) noexcept;
  void onDrag(LPARAM mouse) noexcept;
  bool isLarger() const noexcept;
  SIZE clientSize() const noexcept;

  WindowClass class_;
  PictureDecoder decoder_;
  Picture picture_;
  std::string waiting_;        // the file of the shown picture until it is decoded
  std::vector<Picture> kept_;  // the newest first
  unsigned turn_ = 0;          // of the pictures that have been shown
  Error failure_{0};
  Bar bars_[2];  // as the window has them, by SB_HORZ and SB_VERT
  SIZE shown_ = {};
  POINT offset_ = {};
  int wheelRest_ = 0;
  POINT grabbed_ = {};  // the part of the picture that the mouse has hold of
};

}  // namespace forms
