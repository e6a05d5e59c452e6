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

TEST_CASE("a page that ends before its length is not whole") {
  const HttpServer server({{"/cut.htm", HttpServer::raw(HttpServer::head(5000) + "<html>")}});
  const PageSource::Page page = PageSource().read(server.url(L"/cut.htm"));
  CHECK(page.bytes == "<html>");
  CHECK_FALSE(page.isWhole);
}

TEST_CASE("a page whose length is not told is whole when it ends") {
  const HttpServer server({{"/some.htm", HttpServer::raw("HTTP/1.0 200 OK\r\n\r\n<html>")}});
  const PageSource::Page page = PageSource().read(server.url(L"/some.htm"));
  CHECK(page.bytes == "<html>");
  CHECK(page.isWhole);
}
