// How often a copy asks the host: each call is a journey to a server.
#include "tests/support/text_output.h"
#include "tests/webcopy/CopyFixture.h"

namespace {

struct Asked {
  int calls = 0;
  int names = 0;  // of members, to be resolved
};

// A copy of a template with `folders` folders of `files` files each.
Asked askedFor(int folders, int files, bool overwriting = false) {
  CopyFixture fixture;
  fixture.disk.makeFolder(L"templates\\Blue");
  for (int folder = 0; folder < folders; ++folder) {
    const std::wstring path = L"templates\\Blue\\folder" + std::to_wstring(folder);
    fixture.disk.makeFolder(path);
    for (int file = 0; file < files; ++file)
      fixture.disk.writeFile(path + L"\\file" + std::to_wstring(file) + L".txt");
  }
  RecordingView view;
  if (overwriting) CHECK(runCopy(fixture, view).copied);
  fixture.host.faults().resetCalls();
  CHECK(runCopy(fixture, view).copied);
  return {fixture.host.faults().allCalls(), fixture.host.faults().namesAsked()};
}

}  // namespace

TEST_CASE("a file costs a copy two calls of the host and the name of no member") {
  const Asked few = askedFor(3, 2);
  const Asked many = askedFor(3, 12);
  CHECK(many.calls - few.calls == 3 * 10 * 2);
  CHECK(many.names == few.names);
}

TEST_CASE("a file that is replaced costs a copy three calls of the host") {
  CHECK(askedFor(3, 12, true).calls - askedFor(3, 2, true).calls == 3 * 10 * 3);
}

TEST_CASE("a folder costs a copy five calls of the host") {
  const Asked few = askedFor(3, 1);
  const Asked many = askedFor(13, 1);
  CHECK(many.calls - few.calls == 10 * (5 + 2));
  CHECK(many.names - few.names <= 10 * 4);
}

TEST_CASE("a copy asks the host little besides what its files and folders cost") {
  CHECK(askedFor(0, 0).calls <= 20);
  CHECK(askedFor(0, 0, true).calls <= 20);
}
