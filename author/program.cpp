#include "author/program.h"

#include "author/Package.h"
#include "author/Selection.h"
#include "author/Site.h"
#include "author/command_line.h"
#include "author/published_catalogue.h"
#include "author/report.h"
#include "common/errors.h"
#include "common/text.h"
#include "common/version.h"

#define WIDE_AGAIN(text) L##text
#define WIDE(text) WIDE_AGAIN(text)

namespace author {
namespace {

using Command = Request::Command;

constexpr wchar_t usualTitle[] = L"Dynamic Web Templates";
constexpr wchar_t versionText[] = WIDE(QUILLET_VERSION_TEXT);

// The beginning and the end that every answer in JSON has.
template <class Body>
std::wstring answer(const Body& body, bool isFine) {
  Json json;
  json.openObject().text(L"program", L"quillet-template").text(L"version", versionText);
  body(json);
  json.truth(L"fine", isFine).closeObject();
  return json.written();
}

class Run {
 public:
  Run(const Request& request, Console& console) : request_(request), console_(console) {}

  ExitCode operator()() {
    switch (request_.command) {
      case Command::help:
        console_.print(usageText);
        return fine;
      case Command::version:
        console_.print(text::join({L"quillet-template ", versionText, L"\n"}));
        return fine;
      case Command::check:
        return check();
      case Command::pack:
        return pack();
      case Command::catalogue:
        return catalogue();
      case Command::pages:
        return pages();
      case Command::checkCatalogue:
        return checkCatalogue();
    }
    return notUnderstood;  // Not run by tests: there is no other command.
  }

 private:
  ExitCode check() {
    const Selection selection = lookThrough(request_.folders, console_);
    const bool isFine = selection.findings().empty();
    if (request_.json)
      console_.print(answer([&](Json& json) { write(json, selection); }, isFine));
    else
      console_.print(inWords(selection));
    return isFine ? fine : findingsOrFailure;
  }

  ExitCode pack() {
    const std::wstring folder = fullPath(request_.folders.front());
    const Selection selection = lookThrough(request_.folders, console_);
    const FolderTree& tree = onlyTree(selection, folder);
    const Findings findings = selection.findings();
    if (!findings.empty() && !request_.anyway) return refuse(findings);
    const Package package = packFolder(folder, tree, fullPath(request_.output), console_);
    if (request_.json)
      console_.print(answer(
          [&](Json& json) {
            write(json, findings);
            json.openObject(L"archive").text(L"file", request_.output);
            write(json, package);
            json.closeObject();
          },
          true));
    else
      console_.print(inWords(findings) + request_.output + L": " + inWords(package));
    return fine;
  }

  ExitCode catalogue() {
    if (const std::wstring fault = addressFault(request_.address); !fault.empty()) {
      console_.complain(L"quillet-template: " + fault + L"\n");
      return notUnderstood;
    }
    std::vector<std::wstring> folders = request_.folders;
    folders.insert(folders.end(), request_.themes.begin(), request_.themes.end());
    const Selection selection = lookThrough(folders, console_);
    const Findings findings = selection.findings();
    if (!findings.empty() && !request_.anyway) return refuse(findings);
    const SiteOrder order = {
        selection, request_.title.empty() ? std::wstring(usualTitle) : request_.title,
        request_.address,
        request_.pages.empty() ? ownPages() : pagesWith(fullPath(request_.pages), console_),
        fullPath(request_.output)};
    const Site site = buildSite(order, console_);
    if (request_.json)
      console_.print(answer(
          [&](Json& json) {
            write(json, findings);
            write(json, site);
          },
          true));
    else
      console_.print(inWords(findings) + inWords(site) + L"The catalogue is in " + request_.output +
                     L".\n");
    return fine;
  }

  ExitCode checkCatalogue() {
    if (const std::wstring fault = readingFault(request_.address); !fault.empty()) {
      console_.complain(L"quillet-template: " + fault + L"\n");
      return notUnderstood;
    }
    const PublishedReport report = checkPublished(request_.address, console_);
    const bool isFine = report.findings.empty();
    if (request_.json)
      console_.print(answer([&](Json& json) { write(json, report); }, isFine));
    else
      console_.print(inWords(report));
    return isFine ? fine : findingsOrFailure;
  }

  ExitCode pages() {
    writePages(fullPath(request_.output));
    if (request_.json)
      console_.print(answer([&](Json& json) { json.text(L"folder", request_.output); }, true));
    else
      console_.print(L"The pages are in " + request_.output + L".\n");
    return fine;
  }

  // One folder of one template or theme, and no folder of such folders.
  static const FolderTree& onlyTree(const Selection& selection, const std::wstring& folder) {
    if (selection.templates.size() == 1 && selection.themes.empty() &&
        selection.templates.front().folder == folder)
      return selection.templates.front().tree;
    if (selection.themes.size() == 1 && selection.templates.empty() &&
        selection.themes.front().folder == folder)
      return selection.themes.front().tree;
    throw Error(errors::invalidArgument,
                folder + L": This is not the folder of one template or theme, but holds others.");
  }

  ExitCode refuse(const Findings& findings) {
    if (request_.json)
      console_.print(answer([&](Json& json) { write(json, findings); }, false));
    else
      console_.print(inWords(findings) + L"Nothing was written because of " +
                     countInWords(findings) + L" With --anyway it is.\n");
    return findingsOrFailure;
  }

  const Request& request_;
  Console& console_;
};

// Descriptions of the system's errors end in a line break or without a full stop.
std::wstring sentence(std::wstring_view description) {
  std::wstring result(description);
  while (!result.empty() &&
         (result.back() == L'\n' || result.back() == L'\r' || result.back() == L' '))
    result.pop_back();  // Not run by tests: none that Wine has does.
  if (!result.empty() && result.back() != L'.') result += L'.';
  return result;
}

ExitCode fail(const Request& request, Console& console, const std::wstring& why) {
  if (request.json)
    console.print(answer([&](Json& json) { json.text(L"error", why); }, false));
  else
    console.complain(L"quillet-template: " + why + L"\n");
  return findingsOrFailure;
}

ExitCode run(const std::vector<std::wstring>& arguments, Console& console) {
  const Request request = parseCommandLine(arguments);
  if (!request.fault.empty()) {
    console.complain(L"quillet-template: " + request.fault +
                     L"\nquillet-template --help tells what there is.\n");
    return notUnderstood;
  }
  try {
    return Run(request, console)();
  } catch (...) {
    return fail(request, console, sentence(errors::current().description()));
  }
}

}  // namespace

ExitCode runProgram(const std::vector<std::wstring>& arguments, Console& console) noexcept {
  try {
    return run(arguments, console);
  } catch (...) {              // Not run by tests: no memory.
    return findingsOrFailure;  // nor any left to say why
  }
}

}  // namespace author
