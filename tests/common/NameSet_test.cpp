#include "common/NameSet.h"

#include "tests/support/text_output.h"

TEST_CASE("a set of names takes each name once in any letter case") {
  text::NameSet set;
  CHECK(set.insert(L"News"));
  CHECK_FALSE(set.insert(L"NEWS"));
  CHECK(set.has(L"news"));
  set.clear();
  CHECK_FALSE(set.has(L"News"));
}

TEST_CASE("a set made of a list holds each of its names once") {
  text::NameSet set({L"b", L"A", L"a"});
  CHECK(set.has(L"a"));
  CHECK(set.has(L"B"));
  CHECK_FALSE(set.has(L"c"));
}
