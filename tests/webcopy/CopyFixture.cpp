#include "tests/webcopy/CopyFixture.h"

#include <algorithm>

#include "common/errors.h"

std::vector<std::wstring> RecordingView::of(const std::wstring& kind) const {
  std::vector<std::wstring> found;
  for (const auto& event : events)
    if (event.compare(0, kind.size(), kind) == 0) found.push_back(event);
  return found;
}

bool RecordingView::has(const std::wstring& event) const {
  return std::find(events.begin(), events.end(), event) != events.end();
}

bool RecordingView::keepGoing() {
  onCheck();
  return ++checks != refusedCheck;
}

standin::HostOptions otherThanPlain(bool standin::HostOptions::*answer) {
  standin::HostOptions options;
  options.*answer = !(options.*answer);
  return options;
}

CopyFixture::CopyFixture(standin::HostOptions options)
    : host(std::move(options), disk.makeFolder(L"webs\\site"), disk.makeFolder(L"themes")) {
  modCommon::setLoggingFlag(1);
  modCommon::SetLogIndent(0);
  installTheme(L"Blends");
}

CopyFixture::~CopyFixture() {
  modCommon::SetLogIndent(0);
  modCommon::setLoggingFlag(0);
}

void CopyFixture::makeBlue() const {
  disk.writeFile(L"templates\\Blue\\home.dwt", "<html><head></head></html>");
  disk.writeFile(L"templates\\Blue\\images\\logo.gif", "GIF89a");
  disk.writeFile(L"templates\\Blue\\quillet.ini", "[home]\r\nTitle=Blue\r\nTheme=Blends 1F\r\n");
  disk.writeFile(L"templates\\Blue\\_vti_cnf\\home.dwt", "vti_encoding:SR");
}

std::wstring CopyFixture::templateFolder(const std::wstring& name) const {
  return disk / (L"templates\\" + name);
}

std::wstring CopyFixture::url(const std::wstring& path) const {
  std::wstring address = L"file:///" + disk / L"webs\\site";
  std::replace(address.begin(), address.end(), L'\\', L'/');
  return address + path;
}

std::vector<std::wstring> CopyFixture::webTree(const std::wstring& folder) const {
  const std::wstring below = L"webs\\site\\" + (folder.empty() ? L"" : folder + L"\\");
  std::vector<std::wstring> found;
  for (const auto& entry : disk.tree())
    if (entry.size() > below.size() && entry.compare(0, below.size(), below) == 0)
      found.push_back(entry.substr(below.size()));
  return found;
}

void CopyFixture::installTheme(const std::wstring& name) const {
  disk.writeFile(L"themes\\" + name + L"\\" + name + L".inf", "[info]\r\nformat=1.00\r\n");
  disk.writeFile(L"themes\\" + name + L"\\" + name + L".elm", "elements");
}

HostApplication CopyFixture::application() const {
  return HostApplication(com::Dispatch(ComPtr<IDispatch>(host.application())));
}

RunResult runCopy(CopyFixture& fixture, RecordingView& view, const std::wstring& destination,
                  const std::wstring& tag) {
  CopyRun run(fixture.application(), destination,
              {L"Blue skies", tag.empty() ? fixture.templateFolder() : tag}, view);
  RunResult result;
  try {
    run.EH_CopyDWTToWeb();
  } catch (const Error& error) {
    result.cancelled = error.number() == errors::cancelled;
    result.cancelDescription = error.description();
    result.cancelSource = error.source();
  }
  result.copied = run.continueFlag();
  return result;
}
