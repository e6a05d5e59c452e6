#include "online/archive/bomb.h"

namespace archive {
namespace {

// Plain text compresses to a tenth, a drawing with large areas to a hundredth. Small archives are
// left alone: they do no harm whatever they claim.
constexpr double harmlessSize = 64.0 * 1024 * 1024;
constexpr double highestRatio = 250;

}  // namespace

bool isBomb(double unpackedSize, double archiveSize) {
  return unpackedSize > harmlessSize && unpackedSize > archiveSize * highestRatio;
}

}  // namespace archive
