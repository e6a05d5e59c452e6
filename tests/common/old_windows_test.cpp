// How local statics are made, which is ours instead of the run-time's.
#include <windows.h>
#include <doctest/doctest.h>

#include <stdexcept>

namespace {

constexpr DWORD limit = 10000;  // milliseconds

struct SlowStatic {
  HANDLE begun = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  HANDLE finish = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  HANDLE secondComes = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  volatile LONG made = 0;

  ~SlowStatic() {
    for (HANDLE event : {begun, finish, secondComes}) CloseHandle(event);
  }
  int make() {
    SetEvent(begun);
    WaitForSingleObject(finish, limit);
    return 40 + static_cast<int>(InterlockedIncrement(&made));
  }
};

int slowValue(SlowStatic& maker) {
  static const int value = maker.make();
  return value;
}

DWORD WINAPI askFirst(void* maker) {
  return static_cast<DWORD>(slowValue(*static_cast<SlowStatic*>(maker)));
}

DWORD WINAPI askSecond(void* maker) {
  SetEvent(static_cast<SlowStatic*>(maker)->secondComes);
  return askFirst(maker);
}

DWORD answerOf(HANDLE thread) {
  DWORD answer = 0;
  REQUIRE(WaitForSingleObject(thread, limit) == WAIT_OBJECT_0);
  GetExitCodeThread(thread, &answer);
  CloseHandle(thread);
  return answer;
}

int valueAtAttempt(int& attempts) {
  static const int value = [&] {
    if (++attempts == 1) throw std::runtime_error("not yet");
    return attempts;
  }();
  return value;
}

}  // namespace

TEST_CASE("a local static that two threads ask for at once is made once") {
  SlowStatic maker;
  HANDLE first = CreateThread(nullptr, 0, askFirst, &maker, 0, nullptr);
  REQUIRE(WaitForSingleObject(maker.begun, limit) == WAIT_OBJECT_0);
  HANDLE second = CreateThread(nullptr, 0, askSecond, &maker, 0, nullptr);
  REQUIRE(WaitForSingleObject(maker.secondComes, limit) == WAIT_OBJECT_0);
  // It has to wait: the first one is not at its end before it is told so.
  CHECK(WaitForSingleObject(second, 50) == WAIT_TIMEOUT);
  SetEvent(maker.finish);
  CHECK(answerOf(first) == 41);
  CHECK(answerOf(second) == 41);
  CHECK(maker.made == 1);
}

TEST_CASE("a local static whose making fails is made at the next call") {
  int attempts = 0;
  CHECK_THROWS_AS(valueAtAttempt(attempts), std::runtime_error);
  CHECK(valueAtAttempt(attempts) == 2);
  CHECK(valueAtAttempt(attempts) == 2);
  CHECK(attempts == 2);
}
