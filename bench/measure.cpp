#include "bench/measure.h"

#include <sstream>

#include "common/handles.h"

namespace bench {
namespace {

constexpr std::size_t leastPairs = 3;
constexpr std::size_t mostPairs = 15;
constexpr double enough = 20000;  // milliseconds, for all pairs of a row

Places current;

std::wstring programPath() {
  wchar_t path[MAX_PATH] = {};
  GetModuleFileNameW(nullptr, path, MAX_PATH);
  return path;
}

std::string readAll(HANDLE pipe) {
  std::string all;
  char piece[256];
  DWORD count = 0;
  while (ReadFile(pipe, piece, sizeof piece, &count, nullptr) && count > 0)
    all.append(piece, count);
  return all;
}

// Starts the program with its output at the writing end of a pipe.
handles::Kernel start(std::wstring command, HANDLE output) {
  STARTUPINFOW startup = {};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESTDHANDLES;
  startup.hStdInput = GetStdHandle(STD_INPUT_HANDLE);
  startup.hStdOutput = output;
  startup.hStdError = GetStdHandle(STD_ERROR_HANDLE);
  PROCESS_INFORMATION process = {};
  if (!CreateProcessW(nullptr, command.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr,
                      &startup, &process))
    throw CannotRun{"the program cannot be started once more"};
  CloseHandle(process.hThread);
  return handles::Kernel(process.hProcess);
}

}  // namespace

double Stopwatch::milliseconds() const noexcept {
  LARGE_INTEGER now;
  LARGE_INTEGER perSecond;
  QueryPerformanceCounter(&now);
  QueryPerformanceFrequency(&perSecond);
  return static_cast<double>(now.QuadPart - began_.QuadPart) * 1000 /
         static_cast<double>(perSecond.QuadPart);
}

Samples inPairs(const Sample& ours, const Sample& bare) {
  const Stopwatch all;
  Samples samples;
  while (samples.ours.size() < leastPairs ||
         (samples.ours.size() < mostPairs && all.milliseconds() < enough)) {
    samples.ours.push_back(ours());
    samples.bare.push_back(bare());
  }
  return samples;
}

Samples once(const Sample& ours, const Sample& bare) {
  Samples samples;
  samples.ours.push_back(ours());
  samples.bare.push_back(bare());
  return samples;
}

const Places& places() noexcept { return current; }

void setPlaces(Places places) { current = std::move(places); }

std::vector<double> child(const std::string& name) {
  SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
  HANDLE read = nullptr;
  HANDLE write = nullptr;
  if (!CreatePipe(&read, &write, &inherited, 0)) throw CannotRun{"there is no pipe"};
  const handles::Kernel answer(read);
  handles::Kernel output(write);
  SetHandleInformation(read, HANDLE_FLAG_INHERIT, 0);
  const handles::Kernel process =
      start(L"\"" + programPath() + L"\" \"" + places().folder + L"\" \"" + places().address +
                L"\" child " + std::wstring(name.begin(), name.end()),
            write);
  output.reset();
  std::istringstream text(readAll(answer.get()));
  WaitForSingleObject(process.get(), INFINITE);
  DWORD code = 0;
  GetExitCodeProcess(process.get(), &code);
  std::vector<double> numbers;
  for (double number = 0; text >> number;) numbers.push_back(number);
  if (code != 0 || numbers.empty()) throw CannotRun{"its own process (" + name + ") failed"};
  return numbers;
}

}  // namespace bench
