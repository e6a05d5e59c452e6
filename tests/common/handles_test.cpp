#include "common/handles.h"

#include "tests/support/text_output.h"

namespace {

bool isOpen(HANDLE handle) {
  DWORD flags = 0;
  return GetHandleInformation(handle, &flags) != FALSE;
}

HANDLE newEvent() { return CreateEventW(nullptr, TRUE, FALSE, nullptr); }

}  // namespace

TEST_CASE("a handle is closed by its owner and counted meanwhile") {
  const long before = handles::liveCount();
  const HANDLE raw = newEvent();
  {
    const handles::Kernel owner(raw);
    CHECK(owner.get() == raw);
    CHECK(handles::liveCount() == before + 1);
  }
  CHECK_FALSE(isOpen(raw));
  CHECK(handles::liveCount() == before);
}

TEST_CASE("a handle moves from owner to owner and the old one is closed") {
  const long before = handles::liveCount();
  handles::Kernel first(newEvent());
  handles::Kernel second(newEvent());
  const HANDLE replaced = second.get();
  const HANDLE kept = first.get();
  second = std::move(first);
  CHECK_FALSE(isOpen(replaced));
  CHECK(second.get() == kept);
  CHECK_FALSE(static_cast<bool>(first));
  CHECK(handles::liveCount() == before + 1);
}

TEST_CASE("a released handle is the caller's") {
  const long before = handles::liveCount();
  HANDLE raw = nullptr;
  {
    handles::Kernel owner(newEvent());
    raw = owner.release();
    CHECK(handles::liveCount() == before);
  }
  CHECK(isOpen(raw));
  CloseHandle(raw);
}

TEST_CASE("a file that could not be opened is no handle") {
  const long before = handles::liveCount();
  const handles::File file(INVALID_HANDLE_VALUE);
  CHECK_FALSE(static_cast<bool>(file));
  CHECK(handles::liveCount() == before);
}
