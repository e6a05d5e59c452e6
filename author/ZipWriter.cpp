#include "author/ZipWriter.h"

#include <zlib.h>

#include <algorithm>
#include <new>

#include "author/Console.h"
#include "common/errors.h"
#include "online/archive/checksum.h"

namespace author {
namespace {

constexpr std::uint64_t longestNumber = 0xFFFFFFFF;
constexpr std::size_t mostEntries = 0xFFFF;

constexpr std::uint16_t version = 20;       // of the format, in tenths; made as on a FAT disk
constexpr std::uint16_t utf8Name = 0x0800;  // the flag
constexpr std::uint16_t stored = 0;
constexpr std::uint16_t deflated = 8;
constexpr std::uint16_t unicodeField = 0x7075;

std::string word(std::uint64_t value) {
  return {static_cast<char>(value & 0xFF), static_cast<char>(value >> 8 & 0xFF)};
}

std::string dword(std::uint64_t value) { return word(value) + word(value >> 16); }

// Of every entry, so that an archive is the same whenever and wherever it is made: noon of the
// first day of 2000, in the format's own way. Unpacking does not ask for times.
constexpr std::uint32_t time = (20u << 9 | 1u << 5 | 1u) << 16 | 12u << 11;

bool isAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(),
                     [](char letter) { return static_cast<unsigned char>(letter) < 0x80; });
}

// As it is usually built, the unzip library takes a name for UTF-8 only where there is an extra
// field, too.
std::string extraFor(const std::string& name) {
  if (isAscii(name)) return {};
  const std::string field = std::string(1, '\1') + dword(archive::crcOf(name)) + name;
  return word(unicodeField) + word(field.size()) + field;
}

// Empty when that is no shorter.
std::string deflatedOf(std::string_view contents) {
  z_stream stream = {};
  if (deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, -MAX_WBITS, 8, Z_DEFAULT_STRATEGY) !=
      Z_OK)
    throw std::bad_alloc();  // Not run by tests: no memory.
  std::string packed(contents.size(), '\0');
  // zlib's type lacks the const.
  stream.next_in = reinterpret_cast<unsigned char*>(const_cast<char*>(contents.data()));
  stream.avail_in = static_cast<unsigned>(contents.size());
  stream.next_out = reinterpret_cast<unsigned char*>(packed.data());
  stream.avail_out = static_cast<unsigned>(packed.size());
  const int state = deflate(&stream, Z_FINISH);
  packed.resize(packed.size() - stream.avail_out);
  deflateEnd(&stream);
  return state == Z_STREAM_END && packed.size() < contents.size() ? packed : std::string();
}

}  // namespace

struct ZipWriter::Entry {
  std::string name;
  std::uint16_t method = stored;
  std::uint32_t crc = 0;
  std::uint64_t size = 0;
  std::uint64_t packedSize = 0;
  std::uint32_t attributes = 0;

  // What both headers of an entry have in common, from the version on.
  std::string head() const {
    return word(version) + word(isAscii(name) ? 0 : utf8Name) + word(method) + dword(time) +
           dword(crc) + dword(packedSize) + dword(size) + word(name.size()) +
           word(extraFor(name).size());
  }
};

void ZipWriter::addFile(const std::wstring& name, std::string_view contents) {
  Entry entry;
  entry.name = toUtf8(name);
  entry.crc = archive::crcOf(contents);
  entry.size = contents.size();
  entry.attributes = FILE_ATTRIBUTE_ARCHIVE;
  const std::string packed = deflatedOf(contents);
  if (!packed.empty()) entry.method = deflated;
  entry.packedSize = packed.empty() ? contents.size() : packed.size();
  add(entry, packed.empty() ? contents : packed);
}

void ZipWriter::addFolder(const std::wstring& name) {
  Entry entry;
  entry.name = toUtf8(name) + "/";
  entry.attributes = FILE_ATTRIBUTE_DIRECTORY;
  add(entry, {});
}

void ZipWriter::add(const Entry& entry, std::string_view data) {
  if (count_ == mostEntries || offset_ + data.size() + directory_.size() + 1024 > longestNumber)
    throw Error(errors::overflow, file_.path() + L": An archive cannot hold so much.");
  const std::string extra = extraFor(entry.name);
  directory_ += "PK\1\2" + word(version) + entry.head() + word(0) + word(0) + word(0) +
                dword(entry.attributes) + dword(offset_) + entry.name + extra;
  ++count_;
  write("PK\3\4" + entry.head() + entry.name + extra);
  write(data);
}

void ZipWriter::finish() {
  const std::uint64_t start = offset_;
  write(directory_);
  write("PK\5\6" + dword(0) + word(count_) + word(count_) + dword(directory_.size()) +
        dword(start) + word(0));
}

void ZipWriter::write(std::string_view bytes) {
  file_.write(bytes);
  offset_ += bytes.size();
}

}  // namespace author
