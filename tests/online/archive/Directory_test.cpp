// How an archive's directory is read, whatever its size.
#include "online/archive/Directory.h"

#include <doctest/doctest.h>

#include <algorithm>
#include <cstring>

#include "tests/online/archive/ZipMaker.h"

namespace {

// An archive in memory that counts what is read of it.
class Memory final : public archive::ByteSource {
 public:
  explicit Memory(std::string bytes) : bytes_(std::move(bytes)) {}
  std::uint64_t size() const override { return bytes_.size(); }
  std::size_t read(std::uint64_t offset, char* buffer, std::size_t count) override {
    const auto at = static_cast<std::size_t>(offset);
    count = std::min(count, bytes_.size() - at);
    std::memcpy(buffer, bytes_.data() + at, count);
    bytesRead += count;
    return count;
  }
  std::uint64_t bytesRead = 0;

 private:
  std::string bytes_;
};

struct Run : KeepGoing {
  bool keepGoing() override { return ++asked != stopAt; }
  int asked = 0;
  int stopAt = 0;
};

std::string files(int count, const ZipMaker::Extras& extras = {}) {
  ZipMaker zip;
  for (int i = 0; i < count; ++i) zip.add("page" + std::to_string(i) + ".htm", "x", extras);
  return zip.bytes();
}

}  // namespace

TEST_CASE("an archive's directory and headers are read once, whatever its size") {
  ZipMaker::Extras described;
  described.descriptor = ZipMaker::Descriptor{};
  for (const auto& bytes : {files(5'000), files(5'000, described)}) {
    Memory memory(bytes);
    Run run;
    CHECK_FALSE(archive::readDirectory(memory, run).finding);
    CHECK(memory.bytesRead < 2 * bytes.size());
  }
}

TEST_CASE("headers in another order than the directory's are read once") {
  constexpr int count = 3'000;
  const std::string bytes = files(count);
  // The directory's entries the other way round.
  const std::size_t directory = bytes.find("PK\1\2");
  std::string turned;
  std::size_t end = bytes.size() - 22;
  while (end > directory) {
    const std::size_t start = bytes.rfind("PK\1\2", end - 4);
    turned += bytes.substr(start, end - start);
    end = start;
  }
  Memory memory(bytes.substr(0, directory) + turned + bytes.substr(bytes.size() - 22));
  Run run;
  const auto read = archive::readDirectory(memory, run);
  CHECK_FALSE(read.finding);
  CHECK(read.entries.size() == count);
  CHECK(memory.bytesRead < 2 * bytes.size());
}

TEST_CASE("an archive with more files than a short number counts is too large") {
  Run run;
  Memory full(files(65'535));
  CHECK_FALSE(archive::readDirectory(full, run).finding);
  Memory more(files(65'536));
  CHECK(archive::readDirectory(more, run).finding.fault == archive::Fault::tooMany);
}

TEST_CASE("a record for long numbers is found behind a program where its locator begins") {
  const auto readBehindProgram = [](char signature) {
    std::string bytes = "a program" + ZipMaker().add("page.htm", "x").bytesWithLongNumbers();
    bytes[bytes.size() - 98] = signature;
    Run run;
    Memory memory(bytes);
    return archive::readDirectory(memory, run);
  };
  CHECK_FALSE(readBehindProgram('P').finding);
  CHECK(readBehindProgram('P').entries.size() == 1);
  CHECK(readBehindProgram('p').finding.fault == archive::Fault::directory);
}

// What it holds is not to be known; that it holds more than ten bytes is.
TEST_CASE("an encrypted file that is far longer than it claims to become holds more") {
  const auto faultOf = [](std::uint32_t claimed) {
    ZipMaker::Extras extras;
    extras.password = "secret";
    extras.claimedSize = claimed;
    Run run;
    Memory memory(ZipMaker().addDeflated("page.htm", std::string(10'000'000, 'x'), extras).bytes());
    return archive::readDirectory(memory, run).finding.fault;
  };
  CHECK(faultOf(10) == archive::Fault::tooMuch);
  CHECK(faultOf(5'000) == archive::Fault::tooMuch);
  CHECK(faultOf(10'000'000) == archive::Fault::none);
}

TEST_CASE("the window stays alive while a large directory is read") {
  const std::string bytes = files(5'000);
  Run whole;
  Memory memory(bytes);
  archive::readDirectory(memory, whole);
  CHECK(whole.asked > 50);
  for (int at = 1; at <= whole.asked; ++at) {
    Run run;
    run.stopAt = at;
    CHECK(archive::readDirectory(memory, run).finding.fault == archive::Fault::stopped);
    CHECK(run.asked == at);
  }
}
