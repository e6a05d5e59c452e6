// What the tests of the samples share.
#pragma once

#include <algorithm>
#include <iterator>
#include <string>
#include <vector>

#include "common/FileSearch.h"
#include "common/forms/PictureDecoder.h"
#include "common/module.h"
#include "help/local_page.h"
#include "tests/support/text_output.h"

inline std::wstring samples() { return module::folder() + L"QuilletSamples"; }

// Every file below a folder, by its full path.
inline std::vector<std::wstring> filesBelow(const std::wstring& folder) {
  std::vector<std::wstring> files;
  FileSearch search(folder + L"\\*.*");
  for (bool more = search.found(); more; more = search.next()) {
    const FileEntry& entry = search.entry();
    if (entry.isDots()) continue;
    const std::wstring path = folder + L"\\" + entry.name;
    if (entry.isFolder())
      std::ranges::copy(filesBelow(path), std::back_inserter(files));
    else
      files.push_back(path);
  }
  return files;
}

// A picture that the browser's frame shows whole at the size that the window has at first.
inline void checkPreview(const std::wstring& file) {
  forms::PictureDecoder decoder;
  const std::string bytes = help::readPicture(file);
  const PictureHeader header = forms::PictureDecoder::headerOf(bytes);
  CHECK(header.width == 332);
  CHECK(header.height == 234);
  CHECK(decoder.decode(bytes, header, 0));
}
