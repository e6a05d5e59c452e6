// The help as it is installed.
#include "common/module.h"
#include "common/paths.h"
#include "help/HelpBook.h"
#include "help/local_page.h"
#include "help/references.h"
#include "html/TokenReader.h"
#include "tests/support/text_output.h"

namespace {

help::HelpBook installedBook() { return help::HelpBook(module::folder() + L"QuilletHelp"); }

// Calls `each` with the file and every address that it names.
void forEachAddress(const help::HelpBook& book, auto each) {
  for (const help::Topic& topic : book.topics()) {
    const std::wstring file = book.fileOf(topic);
    const std::wstring text = help::readPage(file).text;
    html::TokenReader reader(text);
    html::Token token;
    while (reader.next(token)) {
      if (token.tag == L"a" && !token.closing) each(file, token.attribute(L"href"));
      if (token.tag == L"img") each(file, token.attribute(L"src"));
    }
  }
}

}  // namespace

TEST_CASE("every help topic of the contents has its page and its title") {
  const help::HelpBook book = installedBook();
  REQUIRE(book.topics().size() > 10);
  for (const help::Topic& topic : book.topics()) {
    CAPTURE(topic.name);
    const help::PageText page = help::readPage(book.fileOf(topic));
    CHECK(page.found);
    CHECK(html::parsePage(page.text).title == topic.title);
  }
}

TEST_CASE("the help has the topics that the windows ask for") {
  const help::HelpBook book = installedBook();
  for (const wchar_t* topic : {L"Quillet", L"HowToApply", L"DWTOnline"})
    CHECK(book.find(topic).has_value());
}

TEST_CASE("every link and picture of the help leads somewhere") {
  int addresses = 0;
  forEachAddress(installedBook(), [&](const std::wstring& file, const std::wstring& address) {
    CAPTURE(file);
    CAPTURE(address);
    ++addresses;
    if (help::isOutside(address)) return;
    const auto target = help::fileBeside(file, address);
    REQUIRE(target.has_value());
    CHECK(modCommon::fileExists(*target));
  });
  CHECK(addresses > 10);
}
