// What a test throws that this machine cannot run, or must not be asked to.
#pragma once

#include <stdexcept>
#include <string>

// Where everything can be run it fails the test, as any exception does. Where the tests run from
// their archive, the runner counts the test as skipped and its report says why.
class Skipped : public std::runtime_error {
 public:
  explicit Skipped(const std::string& reason) : std::runtime_error("skipped: " + reason) {}
};
