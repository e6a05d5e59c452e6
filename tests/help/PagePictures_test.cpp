#include "help/PagePictures.h"

#include "common/PictureHeader.h"
#include "tests/support/ImportPatch.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/metafiles.h"
#include "tests/support/pictures.h"
#include "tests/support/text_output.h"

using namespace help;

namespace {

// A page in a folder of its own, and what stands beside it.
struct Notes {
  Notes() { pictures.begin(page); }
  SIZE sizeOf(const std::wstring& address) {
    const auto picture = pictures.at(address);
    return picture ? picture->size() : SIZE{};
  }

  ScratchFolder disk;
  std::wstring page = disk.writeFile(L"readme.htm", "<img src=a.gif>");
  PagePictures pictures;
};

// What the system is given to decode.
class Decodings {
 public:
  Decodings() { current_ = this; }
  std::vector<std::string> files;

 private:
  static HRESULT WINAPI load(LPSTREAM stream, LONG size, BOOL keep, REFIID id, void** picture) {
    std::string file(static_cast<std::size_t>(size), '\0');
    ULONG read = 0;
    stream->Read(file.data(), static_cast<ULONG>(size), &read);
    stream->Seek({}, STREAM_SEEK_SET, nullptr);
    file.resize(read);
    current_->files.push_back(file);
    return current_->patch_.original<decltype(load)>()(stream, size, keep, id, picture);
  }

  static inline Decodings* current_ = nullptr;
  ImportPatch patch_{nullptr, "oleaut32.dll", "OleLoadPicture", load};
};

// How often a file is opened.
class Openings {
 public:
  Openings() {
    current_ = this;
    count_ = 0;
  }
  static int count() { return count_; }

 private:
  static HANDLE WINAPI open(LPCWSTR name, DWORD access, DWORD share, SECURITY_ATTRIBUTES* security,
                            DWORD how, DWORD flags, HANDLE like) {
    ++count_;
    return current_->patch_.original<decltype(open)>()(name, access, share, security, how, flags,
                                                       like);
  }

  static inline Openings* current_ = nullptr;
  static inline int count_ = 0;
  ImportPatch patch_{nullptr, "kernel32.dll", "CreateFileW", open};
};

// A picture that says it is larger than it is.
std::string gifClaiming(int width, int height) {
  std::string file = pictures::bytes(pictures::blueGif);
  for (const std::size_t place : {6u, 32u}) {
    file[place] = static_cast<char>(width);
    file[place + 1] = static_cast<char>(width >> 8);
    file[place + 2] = static_cast<char>(height);
    file[place + 3] = static_cast<char>(height >> 8);
  }
  return file;
}
std::string jpegClaiming(int width, int height) {
  std::string file = pictures::bytes(pictures::blueJpeg);
  const std::size_t place = file.find("\xFF\xC0") + 5;
  file[place] = static_cast<char>(height >> 8);
  file[place + 1] = static_cast<char>(height);
  file[place + 2] = static_cast<char>(width >> 8);
  file[place + 3] = static_cast<char>(width);
  return file;
}
std::string bmpClaiming(int width, int height) {
  return pictures::blueBmpOf(width, height).substr(0, 62);
}

}  // namespace

TEST_CASE("notes show GIF and JPEG and BMP pictures") {
  Notes notes;
  notes.disk.writeFile(L"a.gif", pictures::bytes(pictures::blueGif));
  notes.disk.writeFile(L"a.jpg", pictures::bytes(pictures::blueJpeg));
  notes.disk.writeFile(L"a.jpeg", pictures::bytes(pictures::blueJpeg));
  notes.disk.writeFile(L"a.bmp", pictures::blueBmpOf(201, 100));
  for (const wchar_t* address : {L"a.gif", L"a.jpg", L"a.jpeg", L"a.bmp"}) {
    CAPTURE(address);
    CHECK(notes.sizeOf(address).cx == 201);
    CHECK(notes.sizeOf(address).cy == 100);
  }
}

TEST_CASE("what is missing, elsewhere or no picture is not shown in notes") {
  Notes notes;
  notes.disk.writeFile(L"b.gif", "<html>");
  notes.disk.writeFile(L"c.gif");
  for (const wchar_t* address : {L"a.gif", L"b.gif", L"c.gif", L"../a.gif", L"readme.htm", L""}) {
    CAPTURE(address);
    CHECK(notes.pictures.at(address) == nullptr);
  }
}

TEST_CASE("a drawing under the name of a picture is not given to the system") {
  Notes notes;
  notes.disk.writeFile(L"a.gif", metafiles::enhanced());
  notes.disk.writeFile(L"b.gif", metafiles::placeable());
  CHECK(metafiles::kindOf(metafiles::enhanced()) == PICTYPE_ENHMETAFILE);
  CHECK(metafiles::kindOf(metafiles::placeable()) == PICTYPE_METAFILE);
  const Decodings decodings;
  CHECK(notes.pictures.at(L"a.gif") == nullptr);
  CHECK(notes.pictures.at(L"b.gif") == nullptr);
  CHECK(decodings.files.empty());
}

TEST_CASE("a picture of absurd size in notes is refused before anything is decoded") {
  Notes notes;
  const SIZE sizes[] = {{6000, 6000}, {longestPictureSide + 1, 10}, {10, longestPictureSide + 1}};
  const Decodings decodings;
  for (const SIZE& size : sizes)
    for (const std::string& file : {gifClaiming(size.cx, size.cy), jpegClaiming(size.cx, size.cy),
                                    bmpClaiming(size.cx, size.cy)}) {
      CAPTURE(size.cx);
      CAPTURE(size.cy);
      CAPTURE(static_cast<int>(file[0]));
      notes.pictures.begin(notes.page);
      notes.disk.writeFile(L"a.gif", file);
      CHECK(notes.pictures.at(L"a.gif") == nullptr);
    }
  CHECK(decodings.files.empty());
}

TEST_CASE("of a GIF file in notes only the first frame is decoded") {
  Notes notes;
  const std::string first = pictures::bytes(pictures::blueGif);
  const std::string more = gifClaiming(30000, 30000);
  notes.disk.writeFile(L"a.gif", first.substr(0, first.size() - 1) + more.substr(19));
  const Decodings decodings;
  CHECK(notes.sizeOf(L"a.gif").cx == 201);
  CHECK(decodings.files == std::vector<std::string>{first});
}

TEST_CASE("of a JPEG or BMP file in notes all is decoded and nothing else") {
  Notes notes;
  const std::vector<std::string> files = {pictures::bytes(pictures::blueJpeg),
                                          pictures::blueBmpOf(201, 100)};
  notes.disk.writeFile(L"a.jpg", files[0]);
  notes.disk.writeFile(L"a.bmp", files[1]);
  const Decodings decodings;
  notes.pictures.at(L"a.jpg");
  notes.pictures.at(L"a.bmp");
  CHECK(decodings.files == files);
}

TEST_CASE("a picture is decoded once however its address is written") {
  Notes notes;
  notes.disk.writeFile(L"sub a\\b.gif", pictures::bytes(pictures::blueGif));
  const Decodings decodings;
  const auto picture = notes.pictures.at(L"sub a/b.gif");
  REQUIRE(picture != nullptr);
  const Openings openings;
  for (const wchar_t* address : {L"sub a/b.gif", L"SUB A/B.GIF", L"sub%20a\\%62.gif",
                                 L"sub a/b.gif?1", L"sub a/b.gif?2", L"sub a/b.gif#1"}) {
    CAPTURE(address);
    CHECK(notes.pictures.at(address) == picture);
  }
  CHECK(openings.count() == 0);
  for (const wchar_t* address : {L"sub a//b.gif", L"./sub a/./b.gif"}) {
    CAPTURE(address);
    CHECK(notes.pictures.at(address) == picture);
  }
  CHECK(decodings.files.size() == 1);
}

TEST_CASE("a file of two names is one picture") {
  Notes notes;
  const auto file = notes.disk.writeFile(L"a.gif", pictures::bytes(pictures::blueGif));
  REQUIRE(CreateHardLinkW((notes.disk / L"b.gif").c_str(), file.c_str(), nullptr));
  notes.disk.writeFile(L"c.gif", pictures::bytes(pictures::blueGif));
  REQUIRE(notes.pictures.at(L"a.gif") != nullptr);
  CHECK(notes.pictures.at(L"b.gif") == notes.pictures.at(L"a.gif"));
  REQUIRE(notes.pictures.at(L"c.gif") != nullptr);
  CHECK(notes.pictures.at(L"c.gif") != notes.pictures.at(L"a.gif"));
}

TEST_CASE("a picture that is refused is read once however its address is written") {
  Notes notes;
  notes.disk.writeFile(L"a.gif", gifClaiming(6000, 6000));
  CHECK(notes.pictures.at(L"a.gif") == nullptr);
  const Openings openings;
  CHECK(notes.pictures.at(L"A.GIF?1") == nullptr);
  CHECK(openings.count() == 0);
}

TEST_CASE("the pictures of a page are decoded up to a sum of pixels") {
  Notes notes;
  // All but 64 x 64 of the pixels, for which there is no data.
  constexpr int height = static_cast<int>(mostPicturePixels / 4096) - 1;
  notes.disk.writeFile(L"large.gif", gifClaiming(4096, height).substr(0, 37) + "\x02" + '\0');
  notes.disk.writeFile(L"a.gif", pictures::blueGifOf(64, 65));
  notes.disk.writeFile(L"b.gif", pictures::blueGifOf(64, 64));
  notes.disk.writeFile(L"c.gif", pictures::blueGifOf(1, 1));
  const Decodings decodings;
  notes.pictures.at(L"large.gif");
  CHECK(decodings.files.size() == 1);
  CHECK(notes.pictures.at(L"a.gif") == nullptr);
  CHECK(notes.sizeOf(L"b.gif").cx == 64);
  CHECK(notes.pictures.at(L"c.gif") == nullptr);
  CHECK(notes.sizeOf(L"b.gif").cx == 64);
  CHECK(decodings.files.size() == 2);
}

TEST_CASE("another page has pictures of its own and room for all of them") {
  Notes notes;
  constexpr int height = static_cast<int>(mostPicturePixels / 4096);
  notes.disk.writeFile(L"large.gif", gifClaiming(4096, height).substr(0, 37) + "\x02" + '\0');
  notes.disk.writeFile(L"a.gif", pictures::blueGifOf(64, 64));
  notes.disk.writeFile(L"sub\\a.gif", pictures::blueGifOf(32, 32));
  notes.pictures.at(L"large.gif");
  CHECK(notes.pictures.at(L"a.gif") == nullptr);
  notes.pictures.begin(notes.page);
  CHECK(notes.sizeOf(L"a.gif").cx == 64);
  notes.pictures.begin(notes.disk / L"sub\\page.htm");
  CHECK(notes.sizeOf(L"a.gif").cx == 32);
}
