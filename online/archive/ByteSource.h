// Bytes that can be read from anywhere: an archive, wherever it lies.
#pragma once

#include <cstddef>
#include <cstdint>

namespace archive {

class ByteSource {
 public:
  virtual std::uint64_t size() const = 0;
  // As many bytes as there are from `offset` on, `count` at most. What keeps them from being read
  // is raised.
  virtual std::size_t read(std::uint64_t offset, char* buffer, std::size_t count) = 0;

 protected:
  ~ByteSource() = default;
};

}  // namespace archive
