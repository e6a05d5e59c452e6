// Writes ZIP archives of any kind: whole ones, encrypted ones and ones that lie.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

class ZipMaker {
 public:
  // What stands behind the data of an entry whose sizes were not known before.
  struct Descriptor {
    bool hasSignature = true;
    bool hasLongNumbers = false;
  };
  struct Extras {
    std::string password;                       // traditional encryption when not empty
    std::optional<std::uint32_t> claimedSize;   // what both headers say instead of the truth
    std::optional<std::string> directoryName;   // a name in the directory that differs
    std::uint16_t method = 0;                   // 8: `data` is deflated already
    std::optional<std::uint32_t> unpackedCrc;   // with method 8
    std::optional<std::uint32_t> unpackedSize;  // with method 8
    std::string extraField;                     // in both headers
    std::optional<std::string> localExtraField;
    std::uint16_t flags = 0;       // besides those that follow from the rest
    std::uint16_t localFlags = 0;  // turned around in the entry's own header
    std::optional<std::uint16_t> localMethod;
    std::optional<std::uint32_t> localSize;
    std::optional<std::uint32_t> localCrc;
    std::optional<Descriptor> descriptor;
    std::optional<std::uint32_t> packedSize;  // in both headers
    std::optional<std::uint32_t> offset;      // of the entry's own header
    std::uint16_t madeBy = 0x0314;            // Unix: names are taken as they stand
    std::uint16_t versionNeeded = 20;
    std::uint16_t part = 0;
    std::optional<std::uint32_t> attributes;
    std::uint16_t internalAttributes = 0;
  };

  // Names as they stand in the archive, "/" between folders; a folder's own name ends in "/".
  ZipMaker& add(std::string_view name, std::string_view data) { return add(name, data, {}); }
  ZipMaker& add(std::string_view name, std::string_view data, const Extras& extras);
  // Compressed on the way.
  ZipMaker& addDeflated(std::string_view name, std::string_view data) {
    return addDeflated(name, data, {});
  }
  ZipMaker& addDeflated(std::string_view name, std::string_view data, Extras extras);
  std::string bytes() const;

  // With a record for long numbers before the last one, which leaves its own numbers out.
  std::string bytesWithLongNumbers() const;
  // With another number of entries.
  std::string bytesWithCount(std::uint16_t count) const;

  static std::uint32_t crc(std::string_view data);
  static std::string deflated(std::string_view data);
  // A field of the headers' extra data.
  static std::string field(std::uint16_t id, std::string_view data);
  // The one that gives a name in UTF-8, in place of `name`.
  static std::string unicodeName(std::string_view name, std::string_view utf8);
  static std::string number(std::uint64_t value, int bytes);

 private:
  std::string end(std::uint16_t count, std::uint32_t directorySize, std::uint32_t offset) const;

  std::string files_;
  std::string directory_;
  std::uint16_t count_ = 0;
};
