// A catalogue on a server of the test's own.
#pragma once

#include <memory>
#include <stdexcept>
#include <string>

#include "common/text.h"
#include "tests/author/Catalogue.h"
#include "tests/online/LoopbackServer.h"

// The site of a template "Quay" and its theme "glass", at the server's root.
class PublishedSite {
 public:
  PublishedSite()
      : server(std::make_unique<HttpServer>(std::map<std::string, HttpServer::Answer>())),
        catalogue(std::make_unique<Catalogue>(server->url(L""))) {
    if (catalogue->make() != author::fine) throw std::runtime_error("no catalogue was made");
    for (const std::wstring& name : catalogue->out.tree()) {
      if (name.back() == L'\\') continue;
      const std::wstring below = name.substr(name.find(L'\\'));
      server->change(author::toUtf8(text::replaceAll(below, L"\\", L"/")),
                     HttpServer::ok(catalogue->out.readFile(name)));
    }
  }

  std::wstring url(const std::wstring& path) const { return server->url(path); }

  std::unique_ptr<HttpServer> server;
  std::unique_ptr<Catalogue> catalogue;
};
