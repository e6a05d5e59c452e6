#include "author/PageSource.h"

#include "tests/online/LoopbackServer.h"
#include "tests/support/text_output.h"

using author::PageSource;

TEST_CASE("a page of 4 MB is read whole") {
  const std::string most(PageSource::largestPage, 'x');
  const HttpServer server({{"/most.htm", HttpServer::ok(most)}});
  const PageSource::Page page = PageSource().read(server.url(L"/most.htm"));
  CHECK(page.isWhole);
  CHECK(page.bytes.size() == most.size());
}
