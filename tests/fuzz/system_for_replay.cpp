// The system itself, and the product's own way of unpacking.
#include <windows.h>

#include <optional>

#include "common/errors.h"
#include "online/archive/modZipUnzip.h"
#include "tests/fuzz/System.h"
#include "tests/fuzz/Unpacked.h"
#include "tests/support/ScratchFolder.h"

namespace {

// Whatever is asked is agreed to.
class Agreeing final : public UnpackingQuestions {
 public:
  Overwrite overwrite(const std::wstring&) override { return Overwrite::yes; }
  std::optional<std::wstring> password(int) override { return L"secret"; }
  void fail(std::wstring_view, std::wstring_view) noexcept override {}
  bool keepGoing() override { return true; }
};

bool unpackInto(const std::wstring& archive, const std::wstring& folder) {
  modZipUnzip::Options options;
  options.ZipFileName = archive;
  options.ExtractDir = folder;
  options.HonorDirectories = true;
  options.OverWriteFiles = true;
  std::wstring lastMessage;
  Agreeing questions;
  constexpr long notAnArchive = 9;
  try {
    return modZipUnzip::Unzip(options, lastMessage, questions) != notAnArchive;
  } catch (const Error&) {
    return false;
  }
}

}  // namespace

void fuzz::chooseCodePage(unsigned) {}

std::wstring fuzz::descriptionFile(std::string_view bytes) {
  static const ScratchFolder folder;
  return folder.writeFile(L"quillet.ini", bytes);
}

fuzz::Unpacked fuzz::unpack(std::string_view archive, bool) {
  const ScratchFolder scratch;
  const std::wstring file = scratch.writeFile(L"staging\\archive.zip", archive);
  const std::wstring folder = scratch.makeFolder(L"inside");
  Unpacked result;
  result.passed = unpackInto(file, folder);
  for (const std::wstring& path : scratch.tree()) {
    if (path.starts_with(L"inside\\") && path.size() > 7) {
      ++result.files;
      if (!path.ends_with(L"\\")) result.bytes += scratch.readFile(path).size();
    } else if (path != L"inside\\" && path != L"staging\\" && path != L"staging\\archive.zip") {
      result.isElsewhere = true;
    }
  }
  // What is open cannot be taken away.
  result.leftOpen = !DeleteFileW(file.c_str());
  for (const std::wstring& path : scratch.tree())
    if (path.starts_with(L"inside\\") && !path.ends_with(L"\\")) {
      SetFileAttributesW((scratch / path).c_str(), FILE_ATTRIBUTE_NORMAL);
      if (!DeleteFileW((scratch / path).c_str())) result.leftOpen = true;
    }
  return result;
}
