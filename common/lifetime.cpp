#include "common/lifetime.h"

#include <windows.h>

namespace lifetime {
namespace {

LONG count = 0;

}  // namespace

long references() noexcept { return InterlockedCompareExchange(&count, 0, 0); }
void addReference() noexcept { InterlockedIncrement(&count); }
void removeReference() noexcept { InterlockedDecrement(&count); }

}  // namespace lifetime
