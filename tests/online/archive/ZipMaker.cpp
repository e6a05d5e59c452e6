#include "tests/online/archive/ZipMaker.h"

#include <zlib.h>

#include <stdexcept>

namespace {

std::uint32_t crcStep(std::uint32_t crc, std::uint8_t byte) {
  crc ^= byte;
  for (int bit = 0; bit < 8; ++bit) crc = (crc >> 1) ^ (crc & 1 ? 0xEDB88320u : 0);
  return crc;
}

void put(std::string& out, std::uint64_t value, int bytes) {
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
  std::uint16_t flags = extras.flags;
  if (!extras.password.empty()) {
    flags |= 1;
    std::string head(11, 'x');
    // Without the check sum the time stands in for it.
    head += static_cast<char>(extras.descriptor ? 0x60 : dataCrc >> 24);
    Cipher cipher(extras.password);
    stored = cipher.encrypt(head);
    stored += cipher.encrypt(data);
  }
  if (extras.descriptor) flags |= 8;
  const auto packedSize = extras.packedSize.value_or(static_cast<std::uint32_t>(stored.size()));
  const auto common = [&](std::string& out, bool isLocal, std::string_view entry,
                          std::string_view extraField) {
    const bool later = isLocal && extras.descriptor;
    const std::uint32_t claimed = extras.claimedSize.value_or(size);
    put(out, extras.versionNeeded, 2);
    put(out, isLocal ? flags ^ extras.localFlags : flags, 2);
    put(out, isLocal ? extras.localMethod.value_or(extras.method) : extras.method, 2);
    put(out, 0x6000, 2);  // 12:00
    put(out, 0x2821, 2);  // 1 January 2000
    put(out, isLocal ? extras.localCrc.value_or(later ? 0 : dataCrc) : dataCrc, 4);
    put(out, later ? 0 : packedSize, 4);
    put(out, isLocal ? extras.localSize.value_or(later ? 0 : claimed) : claimed, 4);
    put(out, entry.size(), 2);
    put(out, extraField.size(), 2);
  };
  const auto offset = static_cast<std::uint32_t>(files_.size());
  const std::string localExtra = extras.localExtraField.value_or(extras.extraField);
  put(files_, 0x04034b50, 4);
  common(files_, true, name, localExtra);
  files_.append(name).append(localExtra).append(stored);
  if (extras.descriptor) {
    if (extras.descriptor->hasSignature) put(files_, 0x08074b50, 4);
    const int width = extras.descriptor->hasLongNumbers ? 8 : 4;
    put(files_, dataCrc, 4);
    put(files_, stored.size(), width);
    put(files_, extras.claimedSize.value_or(size), width);
  }

  const std::string listed = extras.directoryName.value_or(std::string(name));
  put(directory_, 0x02014b50, 4);
  put(directory_, extras.madeBy, 2);
  common(directory_, false, listed, extras.extraField);
  put(directory_, 0, 2);
  put(directory_, extras.part, 2);
  put(directory_, extras.internalAttributes, 2);
  put(directory_, extras.attributes.value_or(name.ends_with('/') ? 0x10 : 0), 4);
  put(directory_, extras.offset.value_or(offset), 4);
  directory_.append(listed).append(extras.extraField);
  ++count_;
  return *this;
}

ZipMaker& ZipMaker::addDeflated(std::string_view name, std::string_view data, Extras extras) {
  extras.method = 8;
  extras.unpackedCrc = crc(data);
  extras.unpackedSize = static_cast<std::uint32_t>(data.size());
  return add(name, deflated(data), extras);
}

std::string ZipMaker::end(std::uint16_t count, std::uint32_t directorySize,
                          std::uint32_t offset) const {
  std::string result;
  put(result, 0x06054b50, 4);
  put(result, 0, 4);
  put(result, count, 2);
  put(result, count, 2);
  put(result, directorySize, 4);
  put(result, offset, 4);
  put(result, 0, 2);
  return result;
}

std::string ZipMaker::bytes() const { return bytesWithCount(count_); }

std::string ZipMaker::bytesWithCount(std::uint16_t count) const {
  return files_ + directory_ +
         end(count, static_cast<std::uint32_t>(directory_.size()),
             static_cast<std::uint32_t>(files_.size()));
}

std::string ZipMaker::bytesWithLongNumbers() const {
  std::string result = files_ + directory_;
  const std::size_t record = result.size();
  put(result, 0x06064b50, 4);
  put(result, 44, 8);
  put(result, 45, 2);
  put(result, 45, 2);
  put(result, 0, 8);
  put(result, count_, 8);
  put(result, count_, 8);
  put(result, directory_.size(), 8);
  put(result, files_.size(), 8);
  put(result, 0x07064b50, 4);
  put(result, 0, 4);
  put(result, record, 8);
  put(result, 1, 4);
  return result + end(0xFFFF, 0xFFFFFFFF, 0xFFFFFFFF);
}

std::string ZipMaker::deflated(std::string_view data) {
  z_stream stream = {};
  if (deflateInit2(&stream, 9, Z_DEFLATED, -MAX_WBITS, 9, Z_DEFAULT_STRATEGY) != Z_OK)
    throw std::runtime_error("deflateInit2");
  std::string result(deflateBound(&stream, static_cast<uLong>(data.size())), '\0');
  stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(data.data()));
  stream.avail_in = static_cast<uInt>(data.size());
  stream.next_out = reinterpret_cast<Bytef*>(result.data());
  stream.avail_out = static_cast<uInt>(result.size());
  const int state = deflate(&stream, Z_FINISH);
  result.resize(stream.total_out);
  deflateEnd(&stream);
  if (state != Z_STREAM_END) throw std::runtime_error("deflate");
  return result;
}

std::string ZipMaker::number(std::uint64_t value, int bytes) {
  std::string result;
  put(result, value, bytes);
  return result;
}

std::string ZipMaker::field(std::uint16_t id, std::string_view data) {
  std::string result;
  put(result, id, 2);
  put(result, data.size(), 2);
  return result.append(data);
}

std::string ZipMaker::unicodeName(std::string_view name, std::string_view utf8) {
  std::string data("\1");
  put(data, crc(name), 4);
  return field(0x7075, data.append(utf8));
}
