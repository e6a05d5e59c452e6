// The module's replacements for parts of the compiler's run-time, linked into this program too.
#include <windows.h>
#include <doctest/doctest.h>

#include <functional>
#include <new>
#include <string>
#include <vector>

namespace {

std::string thrownBy(const std::function<void()>& step) {
  try {
    step();
  } catch (const std::exception& error) {
    return error.what();
  }
  return "nothing";
}

}  // namespace

TEST_CASE("What the standard library throws is a std::exception of the module's own") {
  const std::string own = "standard library error";
  const std::vector<int> nothing;
  const std::string text = "abc";
  const std::function<void()> empty;
  CHECK(thrownBy([&] { (void)nothing.at(0); }) == own);
  CHECK(thrownBy([&] { (void)text.substr(4); }) == own);
  CHECK(thrownBy([&] { std::string().resize(std::string().max_size() + 1); }) == own);
  CHECK(thrownBy([&] { (void)std::stoi(text); }) == own);
  CHECK(thrownBy([&] { empty(); }) == own);
}

TEST_CASE("Memory that is not there is a bad_alloc") {
  volatile std::size_t tooMuch = 0x7ffffff0;
  CHECK_THROWS_AS(delete[] new char[tooMuch], std::bad_alloc);
  CHECK_THROWS_AS(delete[] new int[tooMuch], std::bad_alloc);
}
