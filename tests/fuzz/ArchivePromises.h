// What the gate in front of the unzip library promises, in words of its own: none of the gate's
// rules is asked.
#pragma once

#include <string_view>

#include "online/archive/CodePages.h"
#include "online/archive/Directory.h"
#include "online/archive/contents.h"

namespace fuzz {

// Goes on for some steps, or for ever.
class EveryStep final : public KeepGoing {
 public:
  EveryStep() = default;
  explicit EveryStep(unsigned steps) : left_(steps), ends_(true) {}

  bool keepGoing() override {
    ++taken_;
    return !ends_ || (left_ > 0 && left_-- > 0);
  }
  std::size_t taken() const noexcept { return taken_; }

 private:
  unsigned left_ = 0;
  bool ends_ = false;
  std::size_t taken_ = 0;
};

// An archive in memory that counts what is read of it.
class Bytes final : public archive::ByteSource {
 public:
  explicit Bytes(std::string_view bytes) : bytes_(bytes) {}

  std::uint64_t size() const override { return bytes_.size(); }
  std::size_t read(std::uint64_t offset, char* buffer, std::size_t count) override;
  std::uint64_t taken() const noexcept { return taken_; }
  std::size_t reads() const noexcept { return reads_; }

 private:
  std::string_view bytes_;
  std::uint64_t taken_ = 0;
  std::size_t reads_ = 0;
};

const archive::CodePages& codePages();

// As the product's gate does it, step by step.
archive::Finding passGate(archive::ByteSource& source, archive::Directory& directory,
                          std::size_t longestPath, KeepGoing& run);

void checkNamesStayInside(const archive::Directory& directory, std::size_t longestPath);
void checkAccepted(const Bytes& source, const archive::Directory& directory,
                   std::size_t longestPath);
// Whatever an archive says, the work that it makes is in proportion to its size.
void checkEffort(const Bytes& source, const archive::Directory& directory, const EveryStep& run);

}  // namespace fuzz
