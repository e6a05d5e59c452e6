// An archive as a file.
#pragma once

#include <string>

#include "common/handles.h"
#include "online/archive/ByteSource.h"

namespace archive {

// Open for reading as long as it lives. Others may read the file meanwhile, but neither write nor
// replace it: what was checked is what is unpacked.
class ArchiveFile final : public ByteSource {
 public:
  // Raises an Error when the file cannot be opened.
  explicit ArchiveFile(const std::wstring& path);

  std::uint64_t size() const override { return size_; }
  std::size_t read(std::uint64_t offset, char* buffer, std::size_t count) override;

 private:
  handles::File file_;
  std::uint64_t size_ = 0;
};

}  // namespace archive
