#include "tests/torture/Torture.h"

#include <algorithm>
#include <stdexcept>

#include "tests/support/ModalDriver.h"

namespace torture {
namespace {

constexpr int warmUps = 5;
constexpr std::size_t mostGrowth = 2 << 20;  // bytes, of the system's libraries and the tests' too

void nothingMore(World&) {}
void openEverything(World& world) { world.openEverything(); }
void connect(World& world) { world.connect(); }
void disconnect(World& world) { world.disconnect(); }
void copy(World& world) { world.copy(); }
void download(World& world) { world.download(); }
void readEverything(World& world) { world.readEverything(); }
void connectForLocked(World& world) {
  world.wantLocked();
  world.connect();
}
void connectWithNotes(World& world) {
  world.addNotes();
  world.connect();
}

// What either comes to is told to its caller by a result.
void registerAndBack(World& world) {
  for (const char* name : {"DllRegisterServer", "DllUnregisterServer"})
    reinterpret_cast<HRESULT(WINAPI*)()>(
        reinterpret_cast<void*>(GetProcAddress(world.module(), name)))();
}
void connectOverTemplate(World& world) {
  world.refuseToOverwrite();
  world.connect();
}

// What `course` has and `usual` has not; lines may come more than once.
Lines beyond(Lines course, const Lines& usual) {
  for (const auto& line : usual)
    if (const auto found = std::ranges::find(course, line); found != course.end())
      course.erase(found);
  return course;
}

std::wstring wide(const std::string& text) { return {text.begin(), text.end()}; }

std::wstring described(HWND window) {
  if (!window) return L"none";
  wchar_t name[64] = {};
  GetClassNameW(window, name, 64);
  return std::wstring(name) + L" \"" + windowText(window) + L"\"";
}

void compareDesks(const Desk& before, const Desk& after, bool ownerGone, Lines& complaints) {
  if (!ownerGone && after.active != before.active)
    complaints.push_back(L"another window is active: " + described(after.active));
  if (!ownerGone && after.focus != before.focus)
    complaints.push_back(L"the focus has moved to " + described(after.focus));
  if (!ownerGone && !after.frameEnabled) complaints.push_back(L"the host's window is disabled");
  if (after.waiting) complaints.push_back(L"the wait cursor is shown");
  if (after.clipboard != before.clipboard) complaints.push_back(L"the clipboard has changed");
  for (const auto& window : beyond(after.windows, before.windows))
    complaints.push_back(L"a window is left: " + window);
}

void compareWindows(const std::wstring& when, const Seen& seen, const Seen& usual,
                    Lines& complaints) {
  for (const auto& dialog : beyond(seen.dialogs, usual.dialogs))
    complaints.push_back(when + L" opens " + dialog);
  for (const auto& dialog : beyond(usual.dialogs, seen.dialogs))
    complaints.push_back(when + L" does not open " + dialog);
}

// What the module must not keep beyond a host's end, not even on purpose.
void complainOfRest(const World& world, Lines& complaints) {
  if (const long left = world.objectsLeft(); left != 0)
    complaints.push_back(L"not given back: objects of the host, " + std::to_wstring(left));
  if (!world.canUnload()) complaints.push_back(L"the module cannot be unloaded");
}

constexpr wchar_t otherPlace[] = L"data\\Korvel Software\\DWTs\\";

// The folder that a download went to, which the user saw, is where the next one goes.
std::wstring placeOfSecond(const std::wstring& path, const Files& first) {
  const std::wstring usual = L"downloads\\lighthouse\\";
  const std::wstring other = otherPlace + std::wstring(L"lighthouse\\");
  return first.contains(other) && path.starts_with(usual) ? other + path.substr(usual.size())
                                                          : path;
}

// A line about it is one that the undisturbed journey does not write.
bool isAboutOtherPlace(const std::wstring& line, const Files& first) {
  const std::wstring folder(otherPlace, std::size(otherPlace) - 2);
  return first.contains(otherPlace) && line.find(folder) != line.npos;
}

constexpr wchar_t usersPage[] = L"webs\\my site\\index.htm";

// Too slow to be tried with everything that can go wrong.
const std::vector<Journey>& longJourneys() {
  static const std::vector<Journey> all = {
      {"password", connectForLocked, download, nothingMore,
       L"downloads\\lighthouse\\lighthouse.dwt"},
      {"viewers", connectWithNotes, readEverything, nothingMore, usersPage},
  };
  return all;
}

}  // namespace

const std::vector<Journey>& journeys() {
  static const std::vector<Journey> all = {
      {"connection", nothingMore, connect, disconnect, usersPage},
      {"copy", connect, copy, nothingMore, L"webs\\my site\\dwts\\Night Ferry\\ferry.dwt"},
      {"refusal", connectOverTemplate, copy, nothingMore,
       L"webs\\my site\\dwts\\Night Ferry\\ferry.dwt"},
      {"download", connect, download, nothingMore, L"downloads\\lighthouse\\images\\tower.gif"},
      {"windows", connect, openEverything, nothingMore, usersPage},
      {"disconnection", connect, disconnect, nothingMore, usersPage},
      {"registration", nothingMore, registerAndBack, nothingMore, usersPage},
  };
  return all;
}

const Journey& journeyOf(std::string_view name) {
  for (const auto* some : {&journeys(), &longJourneys()})
    for (const Journey& each : *some)
      if (each.name == name) return each;
  throw std::invalid_argument("no such journey");
}

// Failures that need not be told of, and why.
struct Quiet {
  const wchar_t* member;  // with or without "the name " in front
  const char* why;
};
constexpr Quiet quietMembers[] = {
    {L"CommandBars.ActiveMenuBar", "a look-up that fails is one that finds nothing"},
    {L"CommandBar.FindControl", "the same"},
    {L"CommandBars.FindControl", "the same"},
    {L"Application.ActiveWeb", "the same"},
    {L"Web.LocateFolder", "the same"},
    {L"Web.LocateFile", "the same"},
    {L"CommandBarButton.PasteFace", "is tried ten times, since other programs read the clipboard"},
    {L"WebFolder.Files", "whether a folder just made is in use: one that does not tell is not"},
    {L"WebFiles.Count", "the same"},
    {L"WebFolder.Folders", "the same"},
    {L"WebFolders.Count", "the same"},
    {L"events FindConnectionPoint", "a button without events is one that does nothing"},
    {L"events Advise", "the same"},
    {L"events Unadvise", "the sink hears nothing any more"},
};

bool mayBeQuiet(std::wstring member) {
  constexpr std::wstring_view name = L"the name ";
  if (member.starts_with(name)) member.erase(0, name.size());
  return std::ranges::any_of(quietMembers,
                             [&](const Quiet& each) { return member == each.member; });
}

// The same for calls of the system, where they leave something undone.
constexpr Quiet quietCalls[] = {
    {L"GetPrivateProfileStringA", "a description that cannot be read is one that says nothing"},
};

// Where what has vanished lay. Who looks for it afterwards finds nothing, and may not have looked.
constexpr const wchar_t* vanishing[] = {L"templates\\Night Ferry\\", L"downloads\\"};

bool vanishes(std::wstring_view path) {
  return std::ranges::any_of(vanishing,
                             [&](std::wstring_view each) { return path.starts_with(each); });
}

bool isToldOf(std::wstring_view text, const Lines& said) {
  return std::ranges::any_of(
      said, [&](const std::wstring& each) { return each.find(text) != each.npos; });
}

// Nothing went wrong where the call never came.
Verdict tried(Verdict verdict) {
  if (verdict.where.empty()) verdict.outcome = "never came";
  return verdict;
}

// The first times make what stays: window classes, cached strings, the log's switch.
Trial::Trial(World& world, const Journey& journey) : world_(world), journey_(journey) {
  world_.begin();
  world_.connect();
  world_.look([&] {
    world_.copy();
    world_.download();
  });
  world_.end();
  // So does the first error.
  withHostTrouble(HostWay::refusedWithText, 1);
  Lines complaints;
  usual_ =
      run([&] { hostCalls_ = countHostCalls(world_, [&] { journey_.body(world_); }); }, complaints);
  if (!usual_.first.files.contains(journey_.makes)) complaints.push_back(L"it makes nothing");
  if (usual_.second.files != usual_.first.files)
    complaints.push_back(L"it makes other files the second time");
  if (!complaints.empty()) {
    std::string what = "the undisturbed journey goes wrong:";
    for (const auto& each : complaints) what += " " + std::string(each.begin(), each.end()) + ";";
    throw std::runtime_error(what);
  }
}

Trial::Course Trial::run(const std::function<void()>& body, Lines& complaints) {
  Course course;
  world_.begin();
  journey_.before(world_);
  world_.frame().open();
  const Desk before = world_.desk();
  course.first = world_.look(body);
  const bool ownerGone = !IsWindow(world_.frame().get());
  compareDesks(before, world_.desk(), ownerGone, complaints);
  journey_.after(world_);
  for (const auto& file : world_.lostFiles()) complaints.push_back(L"lost: " + file);
  world_.putTemplatesBack();
  world_.spoilWhatIsNew();
  course.second = world_.look([&] {
    journey_.before(world_);
    journey_.body(world_);
  });
  journey_.after(world_);
  for (const auto& file : world_.lostFiles())
    complaints.push_back(L"lost the second time: " + file);
  world_.end();
  course.held = SystemCalls::held();
  complainOfRest(world_, complaints);
  return course;
}

// What is kept on purpose is taken once; what is lost is taken each time.
Trial::Course Trial::runUntilSteady(const std::function<void()>& body, Lines& complaints) {
  Course course = run(body, complaints);
  if (course.held == usual_.held) return course;
  Lines same;
  if (run(body, same).held == course.held) usual_.held = course.held;
  return course;
}

void Trial::compare(const Course& course, bool hostWasGone, Verdict& verdict) const {
  for (const auto& [thing, count] : course.held)
    if (const auto usual = usual_.held.find(thing);
        count != (usual == usual_.held.end() ? 0 : usual->second))
      verdict.complaints.push_back(L"not given back: " + wide(thing) + L", " +
                                   std::to_wstring(count) + L" instead of " +
                                   std::to_wstring(usual->second));
  for (const auto& [path, bytes] : usual_.second.files)
    if (const auto found = course.second.files.find(placeOfSecond(path, course.first.files));
        found == course.second.files.end() || found->second != bytes)
      verdict.complaints.push_back(L"the second time does not make " + path);
  // Where the first was given up the second goes as a first one does.
  for (const auto& box :
       beyond(beyond(course.second.boxes, usual_.second.boxes), usual_.first.boxes))
    verdict.complaints.push_back(L"the second time shows: " + box);
  for (const auto& line :
       beyond(beyond(course.second.lines, usual_.second.lines), usual_.first.lines))
    if (!isAboutOtherPlace(line, course.first.files))
      verdict.complaints.push_back(L"the second time logs: " + line);
  compareWindows(L"the second time", course.second, usual_.second, verdict.complaints);
  // What a host that was gone has kept in its menu meanwhile is its own affair.
  if (!hostWasGone && course.second.menu != usual_.second.menu)
    verdict.complaints.push_back(L"the second time leaves another menu");
  const Lines boxes = beyond(course.first.boxes, usual_.first.boxes);
  const Lines lines = beyond(course.first.lines, usual_.first.lines);
  const bool same =
      course.first.files == usual_.first.files && course.first.menu == usual_.first.menu;
  verdict.outcome = !boxes.empty()   ? "a message"
                    : !lines.empty() ? "a line"
                    : same           ? "as always"
                                     : "given up quietly";
}

// A failing call is told of by its own text, or by a line or a box at least.
void Trial::demandWord(HostWay way, Verdict& verdict) {
  if (verdict.where.empty() || mayBeQuiet(verdict.where)) return;
  const bool isName = verdict.where.starts_with(L"the name ");
  if (way == HostWay::refusedWithText && !isName && !isToldOf(refusalText, verdict.said))
    verdict.complaints.push_back(L"the host's own words are not told");
  const bool isValue = way == HostWay::nothing || way == HostWay::aText || way == HostWay::anObject;
  if (!isValue && verdict.said.empty()) verdict.complaints.push_back(L"nothing is told");
}

// What a failing call leaves undone is told of. What is made in another folder that the user saw is
// not undone.
void Trial::demandWord(const SystemWay& way, const Course& course, Verdict& verdict) const {
  if (verdict.where.empty() || !verdict.said.empty()) return;
  // With its window the host takes ours along: nobody is left to be told.
  if (way.happens == Happens::ownerGoes) return;
  // A folder that is emptied while it is listed has no more files.
  if (way.happens == Happens::filesVanish && verdict.where.starts_with(L"FindNextFileA")) return;
  if (std::ranges::any_of(
          quietCalls, [&](const Quiet& each) { return verdict.where.starts_with(each.member); }))
    return;
  for (const auto& [path, bytes] : usual_.first.files) {
    if (way.happens == Happens::filesVanish && vanishes(path)) continue;
    const auto found = course.first.files.find(placeOfSecond(path, course.first.files));
    if (found == course.first.files.end() || found->second != bytes)
      verdict.complaints.push_back(L"nothing is told of what is not made: " + path);
  }
  if (course.first.menu != usual_.first.menu)
    verdict.complaints.push_back(L"nothing is told of another menu");
  if (course.first.files.contains(otherPlace)) return;  // that one is stored then
  for (const auto& text : beyond(usual_.first.settings, course.first.settings))
    verdict.complaints.push_back(L"nothing is told of what is not stored: " + text);
}

Verdict Trial::withHostTrouble(HostWay way, int number) {
  Verdict verdict;
  const auto body = [&] {
    HostTrouble trouble(world_, way, number);
    journey_.body(world_);
    verdict.where = trouble.member();
  };
  const Course course = runUntilSteady(body, verdict.complaints);
  verdict = judge(course, way == HostWay::goneForGood, std::move(verdict));
  if (isFailure(way)) demandWord(way, verdict);
  return tried(std::move(verdict));
}

int Trial::systemCalls(Kind kind) {
  int calls = 0;
  Lines complaints;
  run([&] { calls = countSystemCalls(world_, kind, [&] { journey_.body(world_); }); }, complaints);
  return calls;
}

Verdict Trial::withSystemTrouble(const SystemWay& way, int number) {
  Verdict verdict;
  bool wasRefused = false;  // no object was made, which the host is told by a result
  const auto body = [&] {
    const SystemTrouble trouble(world_, way, number);
    journey_.body(world_);
    verdict.where = trouble.function();
    wasRefused = journey_.before == nothingMore && world_.canUnload();
  };
  const Course course = runUntilSteady(body, verdict.complaints);
  verdict = judge(course, false, std::move(verdict));
  if (!wasRefused) demandWord(way, course, verdict);
  return tried(std::move(verdict));
}

Verdict Trial::again() {
  Verdict verdict;
  const Course course = run([&] { journey_.body(world_); }, verdict.complaints);
  verdict = judge(course, false, std::move(verdict));
  if (verdict.outcome != "as always") verdict.complaints.push_back(L"it went otherwise");
  compareWindows(L"it", course.first, usual_.first, verdict.complaints);
  watchMemory(verdict.complaints);
  return verdict;
}

void Trial::watchMemory(Lines& complaints) {
  const std::size_t lost = world_.clipboardLooks().lost();
  const std::size_t taken = memoryOfProcess();
  const std::size_t now = taken > lost ? taken - lost : 0;
  if (++times_ == warmUps) memory_ = now;
  if (times_ > warmUps && now > memory_ + mostGrowth)
    complaints.push_back(L"memory has grown by " + std::to_wstring(now - memory_));
}

// What is taken once and kept on purpose is taken by the first monkey that comes to it: what is
// lost is lost by the same monkey each time.
Verdict Trial::withMonkey(unsigned seed, int actions) {
  Verdict verdict;
  letMonkeyPlay(seed, actions, verdict.complaints);
  if (takesMore()) {
    letMonkeyPlay(seed, actions, verdict.complaints);
    for (const auto& [thing, count] : SystemCalls::held())
      if (count > most_[thing])
        verdict.complaints.push_back(L"not given back: " + wide(thing) + L", " +
                                     std::to_wstring(count - most_[thing]));
  }
  Course course = run([&] { journey_.body(world_); }, verdict.complaints);
  course.held = usual_.held;  // it has been looked at
  verdict = judge(course, false, std::move(verdict));
  watchMemory(verdict.complaints);
  return verdict;
}

void Trial::letMonkeyPlay(unsigned seed, int actions, Lines& complaints) {
  world_.begin();
  world_.connect();
  world_.frame().open();
  const Desk before = world_.desk();
  world_.look([&] { world_.play(seed, actions); });
  // A viewer that comes up late is in front for a moment, and nothing is while it comes or goes:
  // what is compared is what was seen at one and the same time.
  Desk after;
  bool isElsewhere = false;
  pumpUntil([&] {
    after = world_.desk();
    isElsewhere = world_.isElsewhere();
    return isElsewhere || (after.active == before.active && after.focus == before.focus);
  });
  compareDesks(before, after, isElsewhere, complaints);
  for (const auto& file : world_.lostFiles()) complaints.push_back(L"lost: " + file);
  world_.end();
  complainOfRest(world_, complaints);
}

// Than any monkey before; it is the most from now on.
bool Trial::takesMore() {
  bool more = false;
  for (const auto& [thing, count] : SystemCalls::held()) {
    long& most = most_[thing];
    more = more || count > most;
    most = std::max(most, count);
  }
  return more;
}

Verdict Trial::judge(const Course& course, bool hostWasGone, Verdict verdict) const {
  for (const auto& line : beyond(course.first.lines, usual_.first.lines))
    verdict.said.push_back(L"line: " + line);
  for (const auto& box : beyond(course.first.boxes, usual_.first.boxes))
    verdict.said.push_back(L"box: " + box);
  compare(course, hostWasGone, verdict);
  return verdict;
}

}  // namespace torture
