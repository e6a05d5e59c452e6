#include "author/Sha256.h"

#include "tests/support/text_output.h"

using author::Sha256;
using author::sha256Of;

// The examples of the standard.
TEST_CASE("check sums are those of the standard's examples") {
  CHECK(sha256Of("") == L"e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
  CHECK(sha256Of("abc") == L"ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
  CHECK(sha256Of("abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq") ==
        L"248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1");
  CHECK(sha256Of(std::string(1000000, 'a')) ==
        L"cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0");
}

TEST_CASE("a check sum does not depend on the pieces") {
  Sha256 sum;
  for (const char letter : std::string(200, 'x')) sum.add(std::string(1, letter));
  CHECK(sum.digits() == sha256Of(std::string(200, 'x')));
}
