#include "tests/online/archive/ZipMaker.h"

namespace {

std::uint32_t crcStep(std::uint32_t crc, std::uint8_t byte) {
  crc ^= byte;
  for (int bit = 0; bit < 8; ++bit) crc = (crc >> 1) ^ (crc & 1 ? 0xEDB88320u : 0);
  return crc;
}

void put(std::string& out, std::uint32_t value, int bytes) {
  for (int i = 0; i < bytes; ++i) out += static_cast<char>(value >> (8 * i));
}

// The traditional encryption of the format.
class Cipher {
 public:
  explicit Cipher(std::string_view password) {
    for (const char letter : password) update(static_cast<std::uint8_t>(letter));
  }
  std::string encrypt(std::string_view plain) {
    std::string result;
    for (const char letter : plain) {
      const std::uint32_t temp = (keys_[2] | 2) & 0xFFFF;
      const auto mask = static_cast<std::uint8_t>((temp * (temp ^ 1)) >> 8);
      result += static_cast<char>(static_cast<std::uint8_t>(letter) ^ mask);
      update(static_cast<std::uint8_t>(letter));
    }
    return result;
  }

 private:
  void update(std::uint8_t byte) {
    keys_[0] = crcStep(keys_[0], byte);
    keys_[1] = (keys_[1] + (keys_[0] & 0xFF)) * 134775813u + 1;
    keys_[2] = crcStep(keys_[2], static_cast<std::uint8_t>(keys_[1] >> 24));
  }
  std::uint32_t keys_[3] = {0x12345678, 0x23456789, 0x34567890};
};

}  // namespace

std::uint32_t ZipMaker::crc(std::string_view data) {
  std::uint32_t crc = 0xFFFFFFFF;
  for (const char letter : data) crc = crcStep(crc, static_cast<std::uint8_t>(letter));
  return ~crc;
}

ZipMaker& ZipMaker::add(std::string_view name, std::string_view data, const Extras& extras) {
  const std::uint32_t dataCrc = extras.unpackedCrc.value_or(crc(data));
  const std::uint32_t size = extras.unpackedSize.value_or(static_cast<std::uint32_t>(data.size()));
  std::string stored(data);
  std::uint16_t flags = 0;
  if (!extras.password.empty()) {
    flags |= 1;
    std::string head(11, 'x');
    head += static_cast<char>(dataCrc >> 24);
    Cipher cipher(extras.password);
    stored = cipher.encrypt(head);
    stored += cipher.encrypt(data);
  }
  const auto common = [&](std::string& out, std::uint32_t unpackedSize, std::string_view entry) {
    put(out, 20, 2);
    put(out, flags, 2);
    put(out, extras.method, 2);
    put(out, 0x6000, 2);  // 12:00
    put(out, 0x2821, 2);  // 1 January 2000
    put(out, dataCrc, 4);
    put(out, static_cast<std::uint32_t>(stored.size()), 4);
    put(out, unpackedSize, 4);
    put(out, static_cast<std::uint32_t>(entry.size()), 2);
    put(out, static_cast<std::uint32_t>(extras.extraField.size()), 2);
  };
  const auto offset = static_cast<std::uint32_t>(files_.size());
  put(files_, 0x04034b50, 4);
  common(files_, extras.claimedSize.value_or(size), name);
  files_.append(name).append(extras.extraField).append(stored);

  const std::string listed = extras.directoryName.value_or(std::string(name));
  put(directory_, 0x02014b50, 4);
  put(directory_, 0x0314, 2);  // made on Unix: names are taken as they stand
  common(directory_, extras.claimedSize.value_or(size), listed);
  put(directory_, 0, 2);
  put(directory_, 0, 2);
  put(directory_, 0, 2);
  put(directory_, name.ends_with('/') ? 0x10 : 0, 4);
  put(directory_, offset, 4);
  directory_.append(listed).append(extras.extraField);
  ++count_;
  return *this;
}

std::string ZipMaker::bytes() const {
  std::string result = files_ + directory_;
  put(result, 0x06054b50, 4);
  put(result, 0, 4);
  put(result, count_, 2);
  put(result, count_, 2);
  put(result, static_cast<std::uint32_t>(directory_.size()), 4);
  put(result, static_cast<std::uint32_t>(files_.size()), 4);
  put(result, 0, 2);
  return result;
}
