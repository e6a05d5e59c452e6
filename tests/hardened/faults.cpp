// Makes the fault that is named, each of which is to end the process, and comes back with that code
// when it did not.
#include <windows.h>

#include <climits>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "tests/hardened/faults.h"

namespace {

// What comes out is the same, but the compiler cannot know.
template <class Value>
Value unknown(Value value) {
  __asm__ volatile("" : "+r"(value) : : "memory");
  return value;
}

char* block(std::size_t size) { return static_cast<char*>(unknown(std::malloc(size))); }

volatile char seen;

void writeBehindBlock() { block(24)[unknown(24)] = 1; }

void writeBehindOddBlock() {
  char* const place = block(13);
  place[unknown(13)] = 1;
  std::free(place);
}

void readBehindBlock() { seen = block(24)[unknown(24)]; }

void readBehindLongBlock() { seen = block(5000)[unknown(5000)]; }

void writeBeforeBlock() {
  char* const place = block(24);
  place[unknown(-1)] = 1;
  std::free(place);
}

void readFreedBlock() {
  char* const place = block(24);
  std::free(place);
  seen = unknown(place)[0];
}

void writeDeletedObject() {
  int* const object = unknown(new int(1));
  delete object;
  *unknown(object) = 2;
}

void readMovedBlock() {
  char* const place = block(24);
  seen = *static_cast<char*>(unknown(std::realloc(place, 9000)));
  seen = unknown(place)[0];
}

void freeTwice() {
  char* const place = block(24);
  std::free(place);
  std::free(unknown(place));
}

void freeMiddle() { std::free(unknown(block(24) + 8)); }

void overflowNumber() {
  const int sum = unknown(INT_MAX) + unknown(1);
  seen = static_cast<char>(sum);
}

void shiftTooFar() { seen = static_cast<char>(unknown(1) << unknown(32)); }

void divideByZero() { seen = static_cast<char>(unknown(1) / unknown(0)); }

void readBehindArray() {
  const char letters[4] = {'a', 'b', 'c', 'd'};
  seen = letters[unknown(4)];
}

void useNothing() { seen = static_cast<char>(unknown(static_cast<std::string*>(nullptr))->size()); }

void readBehindVector() {
  const std::vector<char> letters(3);
  seen = letters[unknown(3u)];
}

void readBackOfNothing() {
  const std::string empty;
  seen = unknown(&empty)->back();
}

__attribute__((noinline)) void fill(char* place, int size) {
  for (int at = 0; at < size; ++at) place[at] = 'x';
}

__attribute__((noinline)) void smashStack() {
  char place[16];
  fill(unknown(static_cast<char*>(place)), unknown(40));
  seen = place[0];
}

void copyTooMuch() {
  char place[16];
  const std::string text(unknown(17u), 'x');
  std::memcpy(place, text.data(), text.size());
  seen = *unknown(static_cast<char*>(place));
}

void nothing() { std::free(block(24)); }

struct Fault {
  const char* name;
  void (*make)();
};

constexpr Fault all[] = {
    {"nothing", nothing},
    {"write behind a block", writeBehindBlock},
    {"write behind a block of odd size", writeBehindOddBlock},
    {"read behind a block", readBehindBlock},
    {"read behind a long block", readBehindLongBlock},
    {"write before a block", writeBeforeBlock},
    {"read a freed block", readFreedBlock},
    {"write a deleted object", writeDeletedObject},
    {"read a moved block", readMovedBlock},
    {"free twice", freeTwice},
    {"free the middle", freeMiddle},
    {"overflow a number", overflowNumber},
    {"shift too far", shiftTooFar},
    {"divide by zero", divideByZero},
    {"read behind an array", readBehindArray},
    {"use nothing", useNothing},
    {"read behind a vector", readBehindVector},
    {"read the back of nothing", readBackOfNothing},
    {"smash the stack", smashStack},
    {"copy too much", copyTooMuch},
};

// Its code is told at once, without a debugger's being started first.
LONG WINAPI tell(EXCEPTION_POINTERS* exception) {
  TerminateProcess(GetCurrentProcess(), exception->ExceptionRecord->ExceptionCode);
  return EXCEPTION_CONTINUE_SEARCH;
}

}  // namespace

int main(int argc, char** argv) {
  SetUnhandledExceptionFilter(tell);
  for (const Fault& fault : all) {
    if (argc < 2 || std::strcmp(fault.name, argv[1]) != 0) continue;
    fault.make();
    return faults::survived;
  }
  return faults::unknownFault;
}
