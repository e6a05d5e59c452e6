// An archive and what unpacks it, on a real disk.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "common/forms/resource.h"
#include "common/log.h"
#include "tests/online/archive/UnpackingBoxes.h"
#include "tests/online/archive/ZipMaker.h"
#include "tests/support/ModalDriver.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/text_output.h"

using Tree = std::vector<std::wstring>;

// An archive and the folder it is unpacked into, inside a folder that must stay as it was.
struct Unpacking {
  ScratchFolder scratch;
  std::wstring archive;
  std::wstring folder;

  explicit Unpacking(const std::string& bytes)
      : archive(scratch.writeFile(L"staging\\theme.zip", bytes)),
        folder(scratch.makeFolder(L"inside")) {}
  explicit Unpacking(const ZipMaker& zip) : Unpacking(zip.bytes()) {}

  bool run() const { return unzipFiles(archive, folder); }
  std::string read(std::wstring_view name) const {
    return scratch.readFile(L"inside\\" + std::wstring(name));
  }
  bool untouched() const {
    return scratch.tree() == Tree{L"inside\\", L"staging\\", L"staging\\theme.zip"};
  }
};

struct Logging {
  Logging() { modCommon::setLoggingFlag(1); }
  ~Logging() { modCommon::setLoggingFlag(0); }
};

inline ZipMaker onePage() { return ZipMaker().add("page.htm", "new page"); }

// The answer to the next question for a password.
inline void typePassword(ModalDriver& driver, const std::wstring& password, int button = IDOK) {
  driver.onDialog(L"Quillet Viewer", [=](HWND dialog) {
    CHECK(windowText(dialog, IDC_INPUTBOX_LBLPROMPT) == L"Please Enter The Password!");
    SetDlgItemTextW(dialog, IDC_INPUTBOX_TXTINPUT, password.c_str());
    press(dialog, button);
  });
}

// "one two three ", forty times, as the format compresses it.
inline constexpr char deflated[] =
    "\313\317\113\125\050\051\317\127\050\311\050\112\115\125\310\037\345\215\362\360\362\000";

inline std::wstring notAnArchive(const std::wstring& path) {
  return L"Cannot unzip file: \" " + path +
         L" \".\r\nIt does not appear to be a valid archive. If you downloaded this file, try "
         L"downloading the file again.";
}
