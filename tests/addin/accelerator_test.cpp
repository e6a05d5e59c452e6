#include "addin/accelerator.h"

#include "tests/support/text_output.h"

TEST_CASE("The letter behind the first ampersand is the accelerator of a caption") {
  CHECK(std::wstring(accelerator::ofCaption(L"Save &As...")) == L"A");
  CHECK(std::wstring(accelerator::ofCaption(L"&File")) == L"F");
}

TEST_CASE("A caption without an ampersand has no accelerator") {
  CHECK(accelerator::ofCaption(L"Save").empty());
  CHECK(accelerator::ofCaption(L"").empty());
}

TEST_CASE("An ampersand at the end of a caption marks nothing") {
  CHECK(accelerator::ofCaption(L"Save&").empty());
  CHECK(accelerator::ofCaption(L"&").empty());
}

TEST_CASE("An escaped ampersand is skipped and the accelerator behind it counts") {
  CHECK(std::wstring(accelerator::ofCaption(L"Find && &Replace")) == L"R");
  CHECK(std::wstring(accelerator::ofCaption(L"&&&&&Save")) == L"S");
}

TEST_CASE("An escaped ampersand alone is no accelerator") {
  CHECK(accelerator::ofCaption(L"Find && Replace").empty());
  CHECK(accelerator::ofCaption(L"&&").empty());
}

TEST_CASE("The search behind an escape ends when only the last character is left") {
  CHECK(accelerator::ofCaption(L"&&&").empty());
  CHECK(std::wstring(accelerator::ofCaption(L"&&&S")) == L"S");
  CHECK(accelerator::ofCaption(L"ab&&c").empty());
}

TEST_CASE("Only the first real accelerator of a caption counts") {
  CHECK(std::wstring(accelerator::ofCaption(L"&Cut &Paste")) == L"C");
  CHECK(accelerator::add({L"&Cut &Paste"}, L"Print") == L"&Print");
}

TEST_CASE("With F and E taken and an escaped ampersand before S the entry gets its B") {
  CHECK(accelerator::add({L"&File", L"&Edit", L"Find && Save"},
                         L"Browse/Copy Dynamic Web Template to Web...") ==
        L"&Browse/Copy Dynamic Web Template to Web...");
  CHECK(accelerator::add({L"&File", L"&Edit", L"Find && Save"}, L"Save") == L"&Save");
}

TEST_CASE("Taken letters are passed over in either letter case") {
  CHECK(accelerator::add({L"&browse", L"p&R"}, L"Browse") == L"Br&owse");
  CHECK(accelerator::add({L"\u00dcber &\u00dc"}, L"\u00fcber") == L"\u00fc&ber");
}

TEST_CASE("Blanks get no accelerator") { CHECK(accelerator::add({L"&A"}, L"  A B") == L"  A &B"); }

TEST_CASE("A caption whose every letter is taken stays without an accelerator") {
  CHECK(accelerator::add({L"&A", L"&B"}, L"ab BA") == L"ab BA");
  CHECK(accelerator::add({}, L"   ") == L"   ");
  CHECK(accelerator::add({}, L"") == L"");
}

TEST_CASE("Points and digits can be accelerators like letters") {
  CHECK(accelerator::add({L"&a"}, L"a...") == L"a&...");
  CHECK(accelerator::add({L"&."}, L"...2") == L"...&2");
}
