#include "help/History.h"

#include "tests/support/text_output.h"

using help::History;

TEST_CASE("a fresh history leads nowhere") {
  const History history;
  CHECK_FALSE(history.canGoBack());
  CHECK_FALSE(history.canGoForward());
}

TEST_CASE("a history leads back and forward again") {
  History history;
  for (const wchar_t* page : {L"a", L"b", L"c"}) history.visit(page);
  CHECK(history.back() == L"b");
  CHECK(history.back() == L"a");
  CHECK_FALSE(history.canGoBack());
  CHECK(history.forward() == L"b");
  CHECK(history.canGoForward());
}

TEST_CASE("another page on the way back ends the way forward") {
  History history;
  for (const wchar_t* page : {L"a", L"b", L"c"}) history.visit(page);
  history.back();
  history.visit(L"d");
  CHECK_FALSE(history.canGoForward());
  CHECK(history.back() == L"b");
}

TEST_CASE("the page that is shown is not visited twice") {
  History history;
  history.visit(L"a");
  history.visit(L"a");
  CHECK_FALSE(history.canGoBack());
}
