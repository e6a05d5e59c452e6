#include "online/archive/Directory.h"

#include <algorithm>
#include <optional>
#include <string_view>

#include "online/archive/checksum.h"
#include "online/archive/order.h"

namespace archive {
namespace {

constexpr std::string_view localSignature("PK\3\4", 4);
constexpr std::string_view centralSignature("PK\1\2", 4);
constexpr std::string_view endSignature("PK\5\6", 4);
constexpr std::string_view end64Signature("PK\6\6", 4);
constexpr std::string_view locatorSignature("PK\6\7", 4);
constexpr std::string_view descriptorSignature("PK\7\x08", 4);

constexpr std::size_t localSize = 30;
constexpr std::size_t centralSize = 46;
constexpr std::size_t endSize = 22;
constexpr std::size_t end64Size = 56;
constexpr std::size_t locatorSize = 20;
constexpr std::size_t longestComment = 0xFFFF;
constexpr std::size_t mostEntries = 0xFFFF;

// Stand for a number that is in the extra field, eight bytes long.
constexpr std::uint32_t full32 = 0xFFFFFFFF;
constexpr std::uint16_t full16 = 0xFFFF;

constexpr std::uint16_t extra64 = 0x0001;
constexpr std::uint16_t extraUnicodeName = 0x7075;

enum Flag : unsigned {
  encrypted = 1u << 0,
  describedBehind = 1u << 3,  // sizes and check sum stand behind the data
  patched = 1u << 5,
  stronglyEncrypted = 1u << 6,
  utf8 = 1u << 11,
  maskedHeader = 1u << 13,
};
// Both headers of an entry must agree on these.
constexpr unsigned sharedFlags = encrypted | describedBehind | utf8;

constexpr std::uint8_t highestVersion = 45;  // of the format, in tenths: long numbers
constexpr std::uint32_t volumeLabel = 0x08;
constexpr std::uint8_t fat = 0;
constexpr std::uint8_t hpfs = 6;
constexpr std::uint8_t ntfs = 11;
constexpr std::uint8_t atari = 5;
constexpr std::uint8_t vms = 2;

// In a file's internal attributes: only the older half of the other ones counts.
constexpr unsigned verified = 0x0004;

// Numbers of a record, the low byte first.
class Record {
 public:
  explicit Record(std::string_view bytes) : bytes_(bytes) {}
  std::uint16_t word(std::size_t at) const { return static_cast<std::uint16_t>(number(at, 2)); }
  std::uint32_t dword(std::size_t at) const { return static_cast<std::uint32_t>(number(at, 4)); }
  std::uint64_t qword(std::size_t at) const { return number(at, 8); }
  std::uint8_t byte(std::size_t at) const { return static_cast<std::uint8_t>(number(at, 1)); }

 private:
  std::uint64_t number(std::size_t at, std::size_t count) const {
    std::uint64_t value = 0;
    for (std::size_t i = count; i > 0; --i)
      value = value << 8 | static_cast<unsigned char>(bytes_[at + i - 1]);
    return value;
  }
  std::string_view bytes_;
};

// One window of the source: directory and headers are read in small pieces, mostly onwards.
class Window {
 public:
  explicit Window(ByteSource& source) : source_(source) {}

  // Exactly these bytes, good until the next call; nothing when the source has fewer.
  std::optional<std::string_view> bytes(std::uint64_t offset, std::size_t count) {
    if (offset > source_.size() || count > source_.size() - offset) return std::nullopt;
    if (offset < start_ || offset - start_ > bytes_.size() ||
        count > bytes_.size() - static_cast<std::size_t>(offset - start_))
      load(offset, count);
    const auto at = static_cast<std::size_t>(offset - start_);
    if (bytes_.size() < at + count) return std::nullopt;
    return std::string_view(bytes_).substr(at, count);
  }
  std::uint64_t size() const { return source_.size(); }

 private:
  static constexpr std::size_t width = 64 * 1024;

  void load(std::uint64_t offset, std::size_t count) {
    bytes_.resize(std::max(count, width));
    bytes_.resize(source_.read(offset, bytes_.data(), bytes_.size()));
    start_ = offset;
  }

  ByteSource& source_;
  std::uint64_t start_ = 0;
  std::string bytes_;
};

// The fields behind a header's name that change what the header says. What follows one that does
// not fit is padding.
struct ExtraFields {
  std::string_view numbers;  // the long numbers
  std::optional<std::string_view> unicodeName;
  bool has64 = false;
  bool ambiguous = false;

  explicit ExtraFields(std::string_view bytes) {
    while (bytes.size() >= 4) {
      const Record head(bytes);
      const std::size_t length = head.word(2);
      if (length > bytes.size() - 4) break;
      take(head.word(0), bytes.substr(4, length));
      bytes.remove_prefix(4 + length);
    }
  }

 private:
  void take(std::uint16_t id, std::string_view field) {
    if (id == extra64) {
      if (has64) ambiguous = true;
      has64 = true;
      numbers = field;
    } else if (id == extraUnicodeName) {
      if (unicodeName || field.size() < 5) ambiguous = true;
      unicodeName = field;
    }
  }
};

// Replaces a number that stands in the extra field; false when it does not.
bool takeLong(std::uint64_t& value, std::string_view& numbers) {
  if (value != full32) return true;
  if (numbers.size() < 8) return false;
  value = Record(numbers).qword(0);
  numbers.remove_prefix(8);
  return true;
}

// The name in UTF-8 that an extra field gives, as long as it is about this very name.
std::optional<std::string> unicodeNameOf(const ExtraFields& extra, std::string_view name) {
  if (!extra.unicodeName || extra.unicodeName->size() < 5) return std::nullopt;
  const Record field(*extra.unicodeName);
  if (field.byte(0) > 1 || field.dword(1) != crcOf(name)) return std::nullopt;
  const std::string_view given = extra.unicodeName->substr(5);
  return std::string(given.empty() ? name : given);
}

unsigned flagsOf(const Entry& entry) {
  return (entry.isEncrypted ? encrypted : 0u) | (entry.isDescribedBehind ? describedBehind : 0u) |
         (entry.isUtf8 ? utf8 : 0u);
}

// Where the directory is.
struct End {
  std::uint64_t directory = 0;
  std::uint64_t directorySize = 0;
  std::uint64_t count = 0;
  std::uint64_t countMask = full16;  // the older record counts to 65535 and begins anew
  std::uint64_t inFront = 0;         // bytes of a program in front that offsets do not count
};

class Reader {
 public:
  Reader(ByteSource& source, KeepGoing& run) : window_(source), run_(run) {}

  Directory read() {
    Fault fault = readEnd();
    if (fault == Fault::none) fault = readEntries();
    if (fault == Fault::none) fault = readLocals();
    if (fault != Fault::none && !result_.finding) result_.finding.fault = fault;
    return std::move(result_);
  }

 private:
  Fault found(Fault fault, std::size_t entry) {
    result_.finding = {fault, entry};
    return fault;
  }

  Fault readEnd();
  Fault readEnd64(std::uint64_t endOffset, const Record& end);
  std::optional<std::uint64_t> findEnd64(std::uint64_t locator, std::uint64_t stated);
  Fault readEntries();
  Fault readEntry(std::uint64_t offset, std::uint64_t& next);
  Fault takeCentral(Entry& entry, const Record& record, const ExtraFields& extra);
  Fault takePlace(Entry& entry, const Record& record, std::string_view numbers) const;
  Fault faultOfKind(const Entry& entry, const Record& record) const;
  Fault readLocals();
  Fault readLocal(std::size_t number);
  bool sizesAgree(const Entry& entry, const Record& local, std::string_view numbers) const;
  bool findDescriptor(Entry& entry, bool isLong);
  bool goesOn(std::size_t done) { return done % 64 != 63 || run_.keepGoing(); }

  Window window_;
  KeepGoing& run_;
  End end_;
  std::uint64_t recordsStart_ = 0;  // of what follows the directory
  Directory result_;
};

// The last signature counts, as it does to the library. Servers send a few bytes more than they
// said; where there is something in front of the archive as well, the record may be that of an
// archive inside of another one that broke off, or that stands in the other one's comment.
Fault Reader::readEnd() {
  if (window_.size() < endSize) return Fault::noEnd;
  const auto searched =
      static_cast<std::size_t>(std::min<std::uint64_t>(window_.size(), endSize + longestComment));
  const std::uint64_t start = window_.size() - searched;
  const auto tail = window_.bytes(start, searched);
  if (!tail) return Fault::noEnd;
  const auto at = tail->rfind(endSignature, searched - endSize);
  if (at == tail->npos) return Fault::noEnd;
  // The library also comes upon a record that the file's end cuts off, if the blocks in which it
  // reads lie so.
  if (tail->find(endSignature.substr(0, 3), at + 1) != tail->npos) return Fault::noEnd;
  const std::string bytes(tail->substr(at, endSize));
  const Record record(bytes);
  const std::uint64_t endOffset = start + at;
  const std::uint64_t behind = endOffset + endSize + record.word(20);
  if (behind > window_.size()) return Fault::noEnd;
  end_.count = record.word(10);
  end_.directorySize = record.dword(12);
  end_.directory = record.dword(16);
  recordsStart_ = endOffset;
  if (const Fault fault = readEnd64(endOffset, record); fault != Fault::none) return fault;
  if (end_.countMask == full16 && record.word(8) != record.word(10)) return Fault::severalParts;

  const std::uint64_t expected = end_.directory + end_.directorySize;
  if (expected < end_.directory || expected > recordsStart_) return Fault::directory;
  end_.inFront = recordsStart_ - expected;
  if (end_.inFront > 0 && behind < window_.size()) return Fault::noEnd;
  // The library takes an offset of 0 for one that was left out.
  if (end_.inFront > 0 && end_.directory == 0) return Fault::directory;
  end_.directory += end_.inFront;
  return Fault::none;
}

Fault Reader::readEnd64(std::uint64_t endOffset, const Record& end) {
  const auto oneFile = [&end](std::uint16_t other) {
    return (end.word(4) == 0 || end.word(4) == other) && (end.word(6) == 0 || end.word(6) == other);
  };
  if (endOffset < locatorSize) return oneFile(0) ? Fault::none : Fault::severalParts;
  const std::uint64_t locatorOffset = endOffset - locatorSize;
  const auto locatorBytes = window_.bytes(locatorOffset, locatorSize);
  if (!locatorBytes) return Fault::directory;
  if (!locatorBytes->starts_with(locatorSignature))
    return oneFile(0) ? Fault::none : Fault::severalParts;
  const Record locator(*locatorBytes);
  if (!oneFile(full16) || locator.dword(4) != 0 || locator.dword(16) != 1)
    return Fault::severalParts;

  const auto offset = findEnd64(locatorOffset, locator.qword(8));
  if (!offset) return Fault::directory;
  const auto bytes = window_.bytes(*offset, end64Size);
  if (!bytes) return Fault::directory;
  const Record record(*bytes);
  if (record.dword(16) != 0 || record.dword(20) != 0 || record.qword(24) != record.qword(32))
    return Fault::severalParts;
  // What the older record can say it says, too.
  const auto agrees = [](std::uint64_t shorter, std::uint64_t full, std::uint64_t longer) {
    return shorter == full || shorter == longer;
  };
  if (!agrees(end.word(8), full16, record.qword(24)) ||
      !agrees(end_.count, full16, record.qword(32)) ||
      !agrees(end_.directorySize, full32, record.qword(40)) ||
      !agrees(end_.directory, full32, record.qword(48)))
    return Fault::directory;
  end_.count = record.qword(32);
  end_.countMask = ~std::uint64_t{0};
  end_.directorySize = record.qword(40);
  end_.directory = record.qword(48);
  recordsStart_ = *offset;
  return Fault::none;
}

// It ends where its locator begins. With a program in front it is not where the locator says.
std::optional<std::uint64_t> Reader::findEnd64(std::uint64_t locator, std::uint64_t stated) {
  const auto isThere = [&](std::uint64_t offset) {
    const auto bytes = offset <= locator ? window_.bytes(offset, end64Size) : std::nullopt;
    return bytes && bytes->starts_with(end64Signature);
  };
  const auto endsRight = [&](std::uint64_t offset) {
    const std::uint64_t length = Record(*window_.bytes(offset, end64Size)).qword(4);
    return length >= end64Size - 12 && length == locator - offset - 12;
  };
  if (stated > locator) return std::nullopt;
  if (isThere(stated)) return endsRight(stated) ? std::optional(stated) : std::nullopt;
  if (locator < end64Size) return std::nullopt;
  const std::uint64_t nearest = locator - end64Size;
  if (isThere(nearest) && endsRight(nearest)) return nearest;
  return std::nullopt;
}

Fault Reader::readEntries() {
  std::uint64_t offset = end_.directory;
  while (offset < recordsStart_) {
    if (result_.entries.size() == mostEntries) return Fault::tooMany;
    if (!goesOn(result_.entries.size())) return Fault::stopped;
    if (const Fault fault = readEntry(offset, offset); fault != Fault::none) return fault;
  }
  return offset == recordsStart_ && (result_.entries.size() & end_.countMask) == end_.count
             ? Fault::none
             : Fault::directory;
}

Fault Reader::readEntry(std::uint64_t offset, std::uint64_t& next) {
  const auto head = window_.bytes(offset, centralSize);
  if (!head || !head->starts_with(centralSignature)) return Fault::directory;
  const std::string headBytes(*head);
  const Record record(headBytes);
  const std::size_t nameLength = record.word(28);
  const std::size_t extraLength = record.word(30);
  next = offset + centralSize + nameLength + extraLength + record.word(32);
  const auto rest = window_.bytes(offset + centralSize, nameLength + extraLength);
  if (!rest || next > recordsStart_) return Fault::directory;

  Entry& entry = result_.entries.emplace_back();
  entry.name = rest->substr(0, nameLength);
  const std::string extraBytes(rest->substr(nameLength));
  const Fault fault = takeCentral(entry, record, ExtraFields(extraBytes));
  return fault == Fault::none ? fault : found(fault, result_.entries.size() - 1);
}

Fault Reader::takeCentral(Entry& entry, const Record& record, const ExtraFields& extra) {
  const unsigned flags = record.word(8);
  entry.hostVersion = record.byte(4);
  entry.hostSystem = record.byte(5);
  entry.method = record.word(10);
  entry.crc = record.dword(16);
  entry.isEncrypted = (flags & encrypted) != 0;
  entry.isUtf8 = (flags & utf8) != 0;
  entry.isDescribedBehind = (flags & describedBehind) != 0;
  entry.hasUnixAttributes =
      (record.dword(38) & 0xFFFF0000) != 0 && (record.word(36) & verified) == 0;
  if (!entry.isUtf8) entry.unicodeName = unicodeNameOf(extra, entry.name).value_or("");
  if (extra.ambiguous) return Fault::headersDiffer;
  if (const Fault fault = takePlace(entry, record, extra.numbers); fault != Fault::none)
    return fault;
  return faultOfKind(entry, record);
}

Fault Reader::takePlace(Entry& entry, const Record& record, std::string_view numbers) const {
  entry.packedSize = record.dword(20);
  entry.size = record.dword(24);
  entry.header = record.dword(42);
  if (!takeLong(entry.size, numbers) || !takeLong(entry.packedSize, numbers) ||
      !takeLong(entry.header, numbers))
    return Fault::outside;
  const std::uint16_t part = record.word(34);
  const bool partBehind = part == full16 && numbers.size() >= 4 && Record(numbers).dword(0) == 0;
  if (part != 0 && !partBehind) return Fault::severalParts;
  // Where one stands that is as long as that, the library takes it for "look elsewhere" again.
  if (entry.size >= full32 || entry.packedSize >= full32) return Fault::outside;
  entry.header += end_.inFront;
  return entry.header < end_.inFront || entry.header >= end_.directory ? Fault::outside
                                                                       : Fault::none;
}

Fault Reader::faultOfKind(const Entry& entry, const Record& record) const {
  const unsigned flags = record.word(8);
  if (entry.method == aesEncrypted || (flags & (stronglyEncrypted | maskedHeader)) != 0)
    return Fault::encryption;
  if (entry.method != stored && entry.method != deflated) return Fault::method;
  const bool mayBeLabel = entry.hostSystem == fat || entry.hostSystem == hpfs ||
                          entry.hostSystem == ntfs || entry.hostSystem == atari;
  const bool isLabel = mayBeLabel && (record.dword(38) & volumeLabel) != 0;
  const bool isLater = record.byte(6) > highestVersion || record.byte(7) == vms;
  return isLater || (flags & patched) != 0 || isLabel ? Fault::kind : Fault::none;
}

// One behind the other, so that no part of the file is read again and again.
Fault Reader::readLocals() {
  const auto& entries = result_.entries;
  // Not run by tests: they do, and it counts with the next line.
  const auto order = sorted(entries.size(), [&](std::size_t left, std::size_t right) {
    return entries[left].header < entries[right].header;
  });
  for (std::size_t i = 0; i < order.size(); ++i) {
    if (!goesOn(i)) return Fault::stopped;
    if (i > 0 && entries[order[i]].header < entries[order[i - 1]].end)
      return found(Fault::overlap, std::max(order[i], order[i - 1]));
    if (const Fault fault = readLocal(order[i]); fault != Fault::none) return fault;
  }
  return Fault::none;
}

Fault Reader::readLocal(std::size_t number) {
  Entry& entry = result_.entries[number];
  const auto head = window_.bytes(entry.header, localSize);
  if (!head || !head->starts_with(localSignature)) return found(Fault::outside, number);
  const std::string headBytes(*head);
  const Record local(headBytes);
  const std::size_t nameLength = local.word(26);
  const std::size_t extraLength = local.word(28);
  const auto rest = window_.bytes(entry.header + localSize, nameLength + extraLength);
  if (!rest) return found(Fault::outside, number);
  const std::string restBytes(*rest);
  const std::string_view name = std::string_view(restBytes).substr(0, nameLength);
  const ExtraFields extra(std::string_view(restBytes).substr(nameLength));

  const std::optional<std::string> unicodeName =
      entry.isUtf8 ? std::nullopt : unicodeNameOf(extra, name);
  if (name != entry.name || local.word(8) != entry.method ||
      flagsOf(entry) != (local.word(6) & sharedFlags) || extra.ambiguous ||
      (unicodeName && !entry.unicodeName.empty() && *unicodeName != entry.unicodeName) ||
      !sizesAgree(entry, local, extra.numbers))
    return found(Fault::headersDiffer, number);
  if ((local.word(6) & (stronglyEncrypted | maskedHeader)) != 0)
    return found(Fault::encryption, number);

  entry.data = entry.header + localSize + nameLength + extraLength;
  entry.end = entry.data + entry.packedSize;
  if (entry.end > end_.directory) return found(Fault::outside, number);
  if (entry.isDescribedBehind && !findDescriptor(entry, extra.has64))
    return found(Fault::headersDiffer, number);
  const std::uint64_t keys = entry.isEncrypted ? 12 : 0;
  if (entry.packedSize < keys || (entry.method == stored && entry.packedSize - keys != entry.size))
    return found(Fault::headersDiffer, number);
  // Contents that do not get shorter are stored in blocks, which makes them hardly any longer.
  if (entry.isEncrypted && entry.packedSize - keys > entry.size + entry.size / 1000 + 64)
    return found(Fault::tooMuch, number);
  return Fault::none;
}

// A header whose numbers stand behind the data may leave them out.
bool Reader::sizesAgree(const Entry& entry, const Record& local, std::string_view numbers) const {
  std::uint64_t packedSize = local.dword(18);
  std::uint64_t size = local.dword(22);
  if (entry.isDescribedBehind) {
    const auto agrees = [](std::uint64_t here, std::uint64_t there) {
      return here == 0 || here == full32 || here == there;
    };
    return agrees(packedSize, entry.packedSize) && agrees(size, entry.size) &&
           (local.dword(14) == 0 || local.dword(14) == entry.crc);
  }
  return takeLong(size, numbers) && takeLong(packedSize, numbers) && size == entry.size &&
         packedSize == entry.packedSize && local.dword(14) == entry.crc;
}

// Check sum and sizes behind the data, of four or eight bytes, with a signature or without. The
// library reads eight where the entry's own header has a field for long numbers.
bool Reader::findDescriptor(Entry& entry, bool isLong) {
  for (const std::size_t signature : {4, 0}) {
    for (const std::size_t width : {4, 8}) {
      if (isLong && width == 4) continue;
      const std::size_t length = signature + 4 + 2 * width;
      const auto bytes = window_.bytes(entry.end, length);
      if (!bytes || entry.end + length > end_.directory) continue;
      if (signature != 0 && !bytes->starts_with(descriptorSignature)) continue;
      const Record record(bytes->substr(signature));
      const std::uint64_t packedSize = width == 4 ? record.dword(4) : record.qword(4);
      const std::uint64_t size = width == 4 ? record.dword(8) : record.qword(12);
      if (record.dword(0) != entry.crc || packedSize != entry.packedSize || size != entry.size)
        continue;
      entry.end += length;
      return true;
    }
  }
  return false;
}

}  // namespace

Directory readDirectory(ByteSource& source, KeepGoing& run) { return Reader(source, run).read(); }

}  // namespace archive
