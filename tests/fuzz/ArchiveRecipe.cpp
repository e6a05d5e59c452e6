#include "tests/fuzz/ArchiveRecipe.h"

#include "tests/online/archive/ZipMaker.h"

namespace fuzz {
namespace {

// Some text that is written once, then as often as it takes.
std::string contentsOf(Input& input) {
  const std::string_view some = input.line();
  const std::size_t count = input.byte() % 64;
  std::string contents(some);
  for (std::size_t i = 0; i < count; ++i) contents += some;
  return contents;
}

// What differs from an entry that is right, one thing for each bit.
ZipMaker::Extras lies(Input& input) {
  ZipMaker::Extras extras;
  const unsigned which = input.word();
  if (which & 1) extras.directoryName = std::string(input.line());
  if (which & 2) extras.claimedSize = static_cast<std::uint32_t>(input.word());
  if (which & 4) extras.packedSize = static_cast<std::uint32_t>(input.word());
  if (which & 8) extras.offset = static_cast<std::uint32_t>(input.word());
  if (which & 0x10) extras.localMethod = static_cast<std::uint16_t>(input.byte());
  if (which & 0x20) extras.localSize = static_cast<std::uint32_t>(input.word());
  if (which & 0x40) extras.localCrc = static_cast<std::uint32_t>(input.doubleWord());
  if (which & 0x80) extras.unpackedCrc = static_cast<std::uint32_t>(input.doubleWord());
  if (which & 0x100) extras.localFlags = static_cast<std::uint16_t>(input.word());
  if (which & 0x200) extras.versionNeeded = static_cast<std::uint16_t>(input.byte());
  if (which & 0x400) extras.part = static_cast<std::uint16_t>(input.byte());
  if (which & 0x800) extras.localExtraField = std::string(input.line());
  return extras;
}

void addEntry(ZipMaker& zip, Input& input) {
  const unsigned kind = input.byte();
  const std::string name(input.line());
  const std::string contents = contentsOf(input);
  ZipMaker::Extras extras = kind & 1 ? lies(input) : ZipMaker::Extras();
  if (kind & 2) extras.password = "secret";
  if (kind & 4) extras.descriptor = ZipMaker::Descriptor{(kind & 8) != 0, (kind & 0x10) != 0};
  if (kind & 0x20) extras.extraField = ZipMaker::unicodeName(name, input.line());
  if (kind & 0x40) {
    extras.madeBy = static_cast<std::uint16_t>(input.word());
    extras.attributes = static_cast<std::uint32_t>(input.doubleWord());
    extras.flags = static_cast<std::uint16_t>(input.word());
  }
  if (kind & 0x80)
    zip.addDeflated(name, contents, extras);
  else
    zip.add(name, contents, extras);
}

}  // namespace

std::string archiveOf(Input& input) {
  const unsigned kind = input.byte();
  if (kind & 1) return std::string(input.rest());
  ZipMaker zip;
  for (unsigned left = kind >> 1 & 7; left > 0 && !input.ended(); --left) addEntry(zip, input);
  std::string archive = kind & 0x10 ? zip.bytesWithLongNumbers() : zip.bytes();
  if (kind & 0x20) archive.insert(0, input.line());
  if (kind & 0x40) archive += input.line();
  // What is left changes single bytes.
  while (!input.ended()) archive[input.word() % archive.size()] = static_cast<char>(input.byte());
  return archive;
}

}  // namespace fuzz
