// Opening the browser window, and the scan that it begins with.
#include <windows.h>

#include "bench/BareWindow.h"
#include "bench/OpenedWindow.h"
#include "bench/bare_scan.h"
#include "bench/rows.h"
#include "catalogue/TemplateScan.h"
#include "common/NameSet.h"
#include "common/ansi.h"
#include "common/handles.h"

namespace bench {
namespace {

constexpr int few = 4;
constexpr int openings = 200;

std::wstring templates(long count) { return places() / (L"templates-" + std::to_wstring(count)); }

double openOurs(long count) {
  double time = 0;
  int listed = 0;
  const Stopwatch watch;
  OpenedWindow window([&](OpenedWindow& self) {
    time = untilShown(self.hwnd(), colourOf(0), watch);
    listed = self.rowCount();
  });
  window.open();
  if (listed != count) throw CannotRun{"the window lists " + std::to_string(listed) + " templates"};
  if (time < 0) throw CannotRun{"the window does not show the first template's picture"};
  return time;
}

double openBare(long count) {
  const Stopwatch watch;
  const BareWindow window(templates(count));
  const double time = watch.milliseconds();
  if (window.count() != count) throw CannotRun{"the bare window lists too few templates"};
  return time;
}

Samples openingInPairs(long count) {
  const Machine machine(templates(count));
  openBare(few);  // whatever comes with the first window of a process
  openBare(few);
  return inPairs([=] { return openOurs(count); }, [=] { return openBare(count); });
}

// The list as the window keeps it, without the window.
class Rows final : public TemplateScanView {
 public:
  bool isListed(std::wstring_view key) override { return keys_.has(key); }
  void add(const TemplateEntry& entry) override {
    keys_.insert(entry.key);
    ++count_;
  }
  int count() override { return count_; }
  void showFolder(std::wstring_view) override {}
  void showUnopened(std::wstring_view) override {}
  void showNotReady(const std::wstring&) override {}
  void showWaitCursor(bool) noexcept override {}
  bool keepGoing() override {
    forms::yieldToMessages();
    return true;
  }

 private:
  text::NameSet keys_;
  int count_ = 0;
};

double scanOurs(long count) {
  Rows rows;
  const Stopwatch watch;
  TemplateScan(rows).ListTemplates();
  const double time = watch.milliseconds();
  if (rows.count() != count) throw CannotRun{"the scan finds too few templates"};
  return time;
}

double scanBare(long count) {
  long found = 0;
  const Stopwatch watch;
  scan(text::toAnsi(templates(count)), [&](const BareTemplate&) { ++found; });
  const double time = watch.milliseconds();
  if (found != count) throw CannotRun{"the bare scan finds too few templates"};
  return time;
}

Samples scanInPairs(long count) {
  const Machine machine(templates(count));
  scanBare(count);
  return inPairs([=] { return scanOurs(count); }, [=] { return scanBare(count); });
}

Samples firstOpenings() {
  return inPairs([] { return child("first-ours").front(); },
                 [] { return child("first-bare").front(); });
}

// An entry of the table of GDI objects that the system shares with a process.
struct GdiEntry {
  ULONGLONG object;
  ULONG owner;
  USHORT unique;
  UCHAR type;
  UCHAR flags;
  ULONGLONG userPointer;
};

constexpr int gdiEntries = 0x4000;

// A 64-bit system keeps it with the 64-bit side of the process.
const GdiEntry* gdiTable() {
  constexpr std::size_t teb64InTeb = 0xF70;
  constexpr std::size_t pebInTeb64 = 0x60;
  constexpr std::size_t tableInPeb64 = 0xF8;
  constexpr std::size_t pebInTeb = 0x30;
  constexpr std::size_t tableInPeb = 0x94;
  using Address = const BYTE*;
  const auto at = [](Address base, std::size_t offset) {
    return *reinterpret_cast<const Address*>(base + offset);
  };
  const auto current = reinterpret_cast<Address(WINAPI*)()>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "NtCurrentTeb")));
  if (!current) return nullptr;
  const Address teb64 = at(current(), teb64InTeb);
  return reinterpret_cast<const GdiEntry*>(teb64 ? at(at(teb64, pebInTeb64), tableInPeb64)
                                                 : at(at(current(), pebInTeb), tableInPeb));
}

long countBitmaps() {
  constexpr UCHAR bitmap = 9;
  const GdiEntry* const table = gdiTable();
  if (!table || IsBadReadPtr(table, gdiEntries * sizeof *table)) return -1;
  long count = 0;
  for (int index = 0; index < gdiEntries; ++index)
    if (table[index].type == bitmap) ++count;
  return count;
}

void checkCounting() {
  const long before = countBitmaps();
  const handles::Gdi one(CreateBitmap(1, 1, 1, 1, nullptr));
  const handles::Gdi other(CreateBitmap(1, 1, 1, 1, nullptr));
  if (countBitmaps() != before + 2)
    throw CannotRun{"this system's table of bitmaps is not laid out as expected"};
}

// How many there are when the openings are over, of what `count` counts.
Samples left(long (*count)()) {
  const Machine machine(templates(few));
  for (int warm = 0; warm < 3; ++warm) {
    openOurs(few);
    openBare(few);
  }
  const auto after = [count](double (*open)(long)) {
    for (int i = 0; i < openings; ++i) open(few);
    return static_cast<double>(count());
  };
  // The bare windows come first, so that what ours leave does not count as theirs.
  Samples samples;
  samples.bare.push_back(after(openBare));
  samples.ours.push_back(after(openOurs));
  return samples;
}

Samples bitmapsLeft() {
  checkCounting();
  return left(countBitmaps);
}

Samples handlesLeft() {
  return left([]() -> long { return handles::liveCount(); });
}

std::string withCount(const char* before, long count, const char* after) {
  return before + std::to_string(count) + after;
}

}  // namespace

std::vector<Row> windowRows() {
  std::vector<Row> rows;
  for (const long count : {100, 1000, 10000})
    rows.push_back({withCount("window-", count, ""),
                    withCount("browser window opens on ", count, " templates"),
                    "window",
                    count,
                    {Limit::times, 1.5},
                    [=] { return openingInPairs(count); }});
  for (const long count : {100, 1000, 10000})
    rows.push_back({withCount("scan-", count, ""),
                    withCount("the scan alone, ", count, " templates"),
                    "scan",
                    count,
                    {Limit::times, 1.2},
                    [=] { return scanInPairs(count); }});
  rows.push_back(
      {"first", "first opening, 4 templates", "", 0, {Limit::times, 1.3}, firstOpenings});
  rows.push_back({"later", "later openings, 4 templates", "", 0, {Limit::times, 2.5}, [] {
                    return openingInPairs(few);
                  }});
  rows.push_back(
      {"bitmaps", "bitmaps there after 200 openings", "", 0, {Limit::times, 1.0}, bitmapsLeft});
  rows.push_back({"handles",
                  "handles of ours open after 200 openings",
                  "",
                  0,
                  {Limit::times, 1.0},
                  handlesLeft});
  return rows;
}

Children windowChildren() {
  return {{"first-ours",
           []() -> std::vector<double> {
             const Machine machine(templates(few));
             return {openOurs(few)};
           }},
          {"first-bare", []() -> std::vector<double> {
             const Machine machine(templates(few));
             return {openBare(few)};
           }}};
}

}  // namespace bench
