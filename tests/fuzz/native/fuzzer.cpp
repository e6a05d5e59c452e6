// What the fuzzer calls.
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "tests/fuzz/Target.h"

namespace fuzz {

void promise(bool kept, const char* what) {
  if (kept) return;
  std::fprintf(stderr, "%s: a promise is broken: %s\n", Target::first()->name(), what);
  std::abort();
}

}  // namespace fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
  fuzz::Target::first()->run({reinterpret_cast<const char*>(bytes), count});
  return 0;
}
