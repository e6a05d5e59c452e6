// Writes ZIP archives of any kind: whole ones, encrypted ones and ones that lie.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

class ZipMaker {
 public:
  struct Extras {
    std::string password;                       // traditional encryption when not empty
    std::optional<std::uint32_t> claimedSize;   // what the directory says instead of the truth
    std::optional<std::string> directoryName;   // a name in the directory that differs
    std::uint16_t method = 0;                   // 8: `data` is deflated already
    std::optional<std::uint32_t> unpackedCrc;   // with method 8
    std::optional<std::uint32_t> unpackedSize;  // with method 8
    std::string extraField;                     // in both headers
  };

  // Names as they stand in the archive, "/" between folders; a folder's own name ends in "/".
  ZipMaker& add(std::string_view name, std::string_view data) { return add(name, data, {}); }
  ZipMaker& add(std::string_view name, std::string_view data, const Extras& extras);
  std::string bytes() const;

  static std::uint32_t crc(std::string_view data);

 private:
  std::string files_;
  std::string directory_;
  std::uint16_t count_ = 0;
};
