// From the setup program to a template that somebody else published: each step with the programs
// that were installed, in the order in which a user comes upon them.
#include <algorithm>

#include "tests/author/Tool.h"
#include "tests/installer/Setup.h"
#include "tests/online/LoopbackServer.h"
#include "tests/support/text_output.h"

using package::CleanMachine;
using package::install;
using package::machineFolder;

namespace {

const char* const copyOfASample = R"(
timeout 30
wait main
menu "Dynamic Web Template" "Browse/Copy Dynamic Web Template to Web..."
wait enabled "Dynamic Web Template Browser" "Copy to Web"
select "Dynamic Web Template Browser" "Print Room"
press "Dynamic Web Template Browser" "Copy to Web"
wait box "Dynamic Web Template Browser"
press "Dynamic Web Template Browser" "Yes"
wait main
expect file "dwts/Print Room/room.dwt"
)";

const char* const downloadAndCopy = R"(
timeout 30
wait main
menu "Dynamic Web Template" "Dynamic Web Templates Online..."
wait window "DWT Online"
expect text "DWT Online" "From the Quay"
follow "DWT Online" "Spring Show"
expect text "DWT Online" "From the Quay: Spring Show"
follow "DWT Online" "Download template"
expect text "DWT Online" "From the Quay: downloaded"
close "DWT Online"
wait main
menu "Dynamic Web Template" "Browse/Copy Dynamic Web Template to Web..."
wait enabled "Dynamic Web Template Browser" "Copy to Web"
select "Dynamic Web Template Browser" "Spring Show"
press "Dynamic Web Template Browser" "Copy to Web"
wait box "Dynamic Web Template Browser"
press "Dynamic Web Template Browser" "Yes"
wait main
expect file "dwts/Spring Show/room.dwt"
)";

// Made of a sample, as the pages for authors say.
void makeTemplate(const Tool& tool, const std::wstring& sample) {
  for (const std::wstring& name : machine::tree(sample))
    if (name.back() != L'\\')
      tool.disk.writeFile(L"Spring Show\\" + name, machine::bytes(sample + L"\\" + name));
  tool.disk.writeFile(L"Spring Show\\quillet.ini",
                      "[room]\r\nTitle=Spring Show\r\nDescription=For one exhibition.\r\n"
                      "Readme=readme.htm\r\n");
}

void serve(HttpServer& server, const ScratchFolder& disk) {
  for (std::wstring name : disk.tree()) {
    if (!name.starts_with(L"site\\") || name.back() == L'\\') continue;
    const std::string bytes = disk.readFile(name);
    std::replace(name.begin(), name.end(), L'\\', L'/');
    server.change({name.begin() + 4, name.end()}, HttpServer::ok(bytes));
  }
}

}  // namespace

TEST_CASE(
    "Whoever installs copies a sample and makes a template of it that others download and copy") {
  const CleanMachine clean;
  HttpServer server{{}};
  REQUIRE(install(L"/AllUsers /CATALOGUE=" + server.url(L"/index.htm")) == 0);
  const package::Web web;
  REQUIRE(web.runHost(copyOfASample) == 0);
  const std::wstring sample = machineFolder() + L"\\Templates\\Print Room";
  CHECK(web.read(L"dwts\\Print Room\\room.css") == machine::bytes(sample + L"\\room.css"));

  const Tool tool(machineFolder() + L"\\quillet-template.exe");
  makeTemplate(tool, sample);
  const Tool::Outcome checked = tool.run(L"check \"Spring Show\"");
  CHECK(checked.output.ends_with("1 template and 0 themes: no finding.\n"));
  REQUIRE(checked.code == 0);
  const Tool::Outcome made = tool.run(
      L"catalogue \"Spring Show\" -o site --title \"From the Quay\" --url " + server.url(L""));
  REQUIRE(made.errors == "");
  REQUIRE(made.code == 0);
  serve(server, tool.disk);
  const Tool::Outcome published = tool.run(L"catalogue --check " + server.url(L"/index.htm"));
  CHECK(published.output == "2 pages, 1 download and 1 archive: no finding.\n");
  REQUIRE(published.code == 0);

  REQUIRE(web.runHost(downloadAndCopy, L"--show-pages") == 0);
  // All of it arrives, but for what only the browser reads.
  machine::Lines arrived = machine::tree(web.path(L"dwts\\Spring Show"));
  arrived.push_back(L"quillet.ini");
  std::sort(arrived.begin(), arrived.end());
  CHECK(arrived == machine::tree(tool.disk / L"Spring Show"));
  for (const std::wstring& name : arrived) {
    CAPTURE(name);
    if (name.back() != L'\\' && name != L"quillet.ini")
      CHECK(web.read(L"dwts\\Spring Show\\" + name) == tool.disk.readFile(L"Spring Show\\" + name));
  }
  REQUIRE(package::remove(machineFolder()) == 0);
}
