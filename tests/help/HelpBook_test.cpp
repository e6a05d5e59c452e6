#include "help/HelpBook.h"

#include "tests/support/ScratchFolder.h"
#include "tests/support/text_output.h"

using help::HelpBook;

namespace {

struct Book {
  ScratchFolder disk;

  Book() {
    disk.writeFile(L"contents.txt",
                   "Start = The start\r\n  Part = A part of it\r\n\r\nLast = \xC3\x9C"
                   "ber\r\n");
    disk.writeFile(L"Start.htm", "<title>x</title><p>Templates are <b>copied</b> here.");
    disk.writeFile(L"Part.htm", "<p>Nothing about the other");
    disk.writeFile(L"Last.htm", "<script>copied</script><p>The start is elsewhere");
  }
};

}  // namespace

TEST_CASE("a help book has its topics in order with their titles and levels") {
  const Book made;
  const HelpBook book(made.disk.path());
  REQUIRE(book.topics().size() == 3);
  CHECK(book.topics()[0].name == L"Start");
  CHECK(book.topics()[0].title == L"The start");
  CHECK(book.topics()[0].level == 0);
  CHECK(book.topics()[1].level == 1);
  CHECK(book.topics()[2].level == 0);
}

TEST_CASE("a help topic is found by its name in any letter case") {
  const Book made;
  const HelpBook book(made.disk.path());
  CHECK(book.find(L"PART") == 1);
  CHECK_FALSE(book.find(L"none").has_value());
}

TEST_CASE("a help topic is known by its file") {
  const Book made;
  const HelpBook book(made.disk.path() + L"\\");
  CHECK(book.fileOf(book.topics()[1]) == made.disk / L"Part.htm");
  CHECK(book.topicOfFile(made.disk / L"LAST.HTM") == 2);
  CHECK_FALSE(book.topicOfFile(made.disk / L"contents.txt").has_value());
}

TEST_CASE("a search finds the topics that hold all of the words and titles first") {
  const Book made;
  const HelpBook book(made.disk.path());
  using Found = std::vector<std::size_t>;
  CHECK(book.search(L"COPIED templates") == Found{0});
  CHECK(book.search(L"start") == Found{0, 2});
  CHECK(book.search(L"part") == Found{1});
  CHECK(book.search(L"copied nothing") == Found{});
  CHECK(book.search(L"  ") == Found{});
}

TEST_CASE("a help folder without contents gives a book without topics") {
  const ScratchFolder disk;
  CHECK(HelpBook(disk / L"none").topics().empty());
  disk.writeFile(L"contents.txt", "no topic in here\n= nor here\n");
  CHECK(HelpBook(disk.path()).topics().empty());
}
