// Writes an archive in the format that our unpacking reads, see online/archive/Directory.h: stored
// or deflated, no program in front, no comment, one record at the end. What is written depends on
// nothing but names and contents.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "author/disk.h"

namespace author {

class ZipWriter {
 public:
  explicit ZipWriter(NewFile& file) : file_(file) {}

  // `name` with "/" between its parts. Raises an Error, also where an archive of this kind ends: at
  // 4 GB and at 65,535 entries.
  void addFile(const std::wstring& name, std::string_view contents);
  void addFolder(const std::wstring& name);
  void finish();

  std::size_t count() const noexcept { return count_; }
  std::uint64_t size() const noexcept { return offset_; }

 private:
  struct Entry;
  void add(const Entry& entry, std::string_view data);
  void write(std::string_view bytes);

  NewFile& file_;
  std::string directory_;
  std::uint64_t offset_ = 0;
  std::size_t count_ = 0;
};

}  // namespace author
