// Choosing templates in the window, with small and with large pictures.
#include <windows.h>

#include <commctrl.h>
#include <psapi.h>

#include <algorithm>

#include "bench/BareWindow.h"
#include "bench/OpenedWindow.h"
#include "bench/bare_scan.h"
#include "bench/rows.h"
#include "common/handles.h"

namespace bench {
namespace {

constexpr int selections = 6;
constexpr int keys = 15;
constexpr double betweenKeys = 33;  // milliseconds: a key that is held down
constexpr int previews = 99;

std::wstring smallPictures() { return places() / L"templates-100"; }
std::wstring largePictures() { return places() / L"templates-large"; }

constexpr UINT chosen = LVIS_SELECTED | LVIS_FOCUSED;

// The mean of a few in a window that has just been opened.
double selectOurs() {
  double sum = 0;
  OpenedWindow window([&](OpenedWindow& self) {
    untilShown(self.hwnd(), colourOf(0), Stopwatch());
    for (int row = 1; row <= selections; ++row) {
      const Stopwatch watch;
      ListView_SetItemState(self.list(), row, chosen, chosen);
      const double time = untilShown(self.hwnd(), colourOf(row), watch);
      if (time < 0) throw CannotRun{"a chosen picture is not shown"};
      sum += time;
    }
  });
  window.open();
  return sum / selections;
}

double selectBare(const std::wstring& folder) {
  BareWindow window(folder);
  const Stopwatch watch;
  for (int row = 1; row <= selections; ++row) {
    window.select(row);
    pumpQueue();
  }
  return watch.milliseconds() / selections;
}

Samples selectInPairs(const std::wstring& folder) {
  const Machine machine(folder);
  selectBare(folder);
  return inPairs(selectOurs, [&] { return selectBare(folder); });
}

// Holds a key down: its messages come at their times, whatever the window does meanwhile.
class HeldKey {
 public:
  explicit HeldKey(HWND list)
      : list_(list), thread_(CreateThread(nullptr, 0, threadProcedure, this, 0, nullptr)) {}
  ~HeldKey() { WaitForSingleObject(thread_.get(), INFINITE); }
  HeldKey(const HeldKey&) = delete;
  HeldKey& operator=(const HeldKey&) = delete;

  // The longest time from a key's message to the row that it chooses.
  double longestAnswer();

 private:
  static DWORD WINAPI threadProcedure(void* self) {
    static_cast<HeldKey*>(self)->press();
    return 0;
  }
  // A key counts from when it was due, also when this thread could not run then.
  void press() {
    for (int key = 0; key < keys; ++key) {
      const double due = key * betweenKeys;
      if (const double early = due - watch_.milliseconds(); early > 0)
        Sleep(static_cast<DWORD>(early) + 1);
      PostMessageW(list_, WM_KEYDOWN, VK_DOWN, 1);
    }
  }

  HWND list_;
  Stopwatch watch_;
  handles::Kernel thread_;
};

double HeldKey::longestAnswer() {
  double longest = 0;
  for (int answered = 0; answered < keys;) {
    MSG message;
    if (GetMessageW(&message, nullptr, 0, 0) <= 0) break;
    const bool key = message.hwnd == list_ && message.message == WM_KEYDOWN;
    TranslateMessage(&message);
    DispatchMessageW(&message);
    if (!key) continue;
    if (ListView_GetNextItem(list_, -1, LVNI_SELECTED) != answered + 1)
      throw CannotRun{"a key does not choose the next row"};
    longest = std::max(longest, watch_.milliseconds() - answered * betweenKeys);
    ++answered;
  }
  return longest;
}

double keysOurs() {
  double longest = 0;
  OpenedWindow window([&](OpenedWindow& self) {
    untilShown(self.hwnd(), colourOf(0), Stopwatch());
    SetFocus(self.list());
    longest = HeldKey(self.list()).longestAnswer();
    if (untilShown(self.hwnd(), colourOf(keys), Stopwatch()) < 0)
      throw CannotRun{"the picture of the row that was chosen last is not shown"};
  });
  window.open();
  return longest;
}

double keysBare() {
  BareWindow window(largePictures());
  SetFocus(window.list());
  double longest = 0;
  Stopwatch watch;
  for (int row = 1; row <= 3; ++row) {
    window.select(row);
    pumpQueue();
    const double now = watch.milliseconds();
    longest = std::max(longest, now);
    watch = Stopwatch();
  }
  return longest;
}

// Each in a process of its own: a picture that is kept for later would be no news the second time.
Samples keysInPairs() {
  return inPairs([] { return child("keys-ours").front(); },
                 [] { return child("keys-bare").front(); });
}

std::vector<double> keysChild(const Sample& held) {
  const Machine machine(largePictures());
  return {held()};
}

double peakMegabytes() {
  PROCESS_MEMORY_COUNTERS counters = {};
  counters.cb = sizeof counters;
  GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
  return static_cast<double>(counters.PeakWorkingSetSize) / (1 << 20);
}

// The peak, and how many pictures did not come.
std::vector<double> largeOurs() {
  const Machine machine(largePictures());
  double missing = 0;
  OpenedWindow window([&](OpenedWindow& self) {
    for (int row = 0; row < previews; ++row) {
      ListView_SetItemState(self.list(), row, chosen, chosen);
      if (untilShown(self.hwnd(), colourOf(row), Stopwatch()) < 0) ++missing;
    }
  });
  window.open();
  return {peakMegabytes(), missing};
}

std::vector<double> largeBare() {
  BareWindow window(largePictures());
  double missing = 0;
  for (int row = 0; row < previews; ++row) {
    window.select(row);
    if (shownColour(window.window()) != colourOf(row)) ++missing;
  }
  return {peakMegabytes(), missing};
}

// Two rows tell of the same two runs.
Samples largeOnce(std::size_t number) {
  static const std::vector<double> ours = child("large-ours");
  static const std::vector<double> bare = child("large-bare");
  return once([=] { return ours.at(number); }, [=] { return bare.at(number); });
}

}  // namespace

std::vector<Row> selectionRows() {
  return {{"select-small",
           "selecting a row: small picture",
           "",
           0,
           {Limit::times, 2.5},
           [] { return selectInPairs(smallPictures()); }},
          {"select-large",
           "selecting a row: 4000 x 3000, until it is shown",
           "",
           0,
           {},
           [] { return selectInPairs(largePictures()); }},
          {"keys-large",
           "a held arrow key, 4000 x 3000: the longest answer",
           "",
           0,
           {Limit::most, 50},
           keysInPairs},
          {"large",
           "99 large previews: peak working set, MB",
           "",
           0,
           {Limit::most, 150},
           [] { return largeOnce(0); }},
          {"large", "99 large previews: not shown", "", 0, {Limit::most, 0}, [] {
             return largeOnce(1);
           }}};
}

Children selectionChildren() {
  return {{"large-ours", largeOurs},
          {"large-bare", largeBare},
          {"keys-ours", [] { return keysChild(keysOurs); }},
          {"keys-bare", [] { return keysChild(keysBare); }}};
}

}  // namespace bench
