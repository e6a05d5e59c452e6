#include "tests/fuzz/Target.h"

namespace fuzz {
namespace {

const Target* newest = nullptr;

}  // namespace

Target::Target(const char* name, Run run) noexcept : name_(name), run_(run), next_(newest) {
  newest = this;
}

const Target* Target::first() noexcept { return newest; }

}  // namespace fuzz
