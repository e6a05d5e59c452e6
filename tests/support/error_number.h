// What a piece of the product fails with.
#pragma once

#include "common/errors.h"

// The number of the Error that `body` raises; 0 when it comes to its end.
template <class Body>
long numberOf(Body body) {
  try {
    body();
    return 0;
  } catch (const Error& error) {
    return error.number();
  }
}
