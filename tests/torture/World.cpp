#include "tests/torture/World.h"

#include <algorithm>

#include "tests/online/archive/ZipMaker.h"
#include "tests/torture/Monkey.h"

namespace torture {
namespace {

constexpr wchar_t copyToWeb[] = L"Browse/Copy Dynamic Web Template to Web...";
constexpr wchar_t dwtOnline[] = L"Dynamic Web Templates Online...";
constexpr wchar_t ownSettings[] = L"Software\\VB and VBA Program Settings\\Quillet Viewer\\";
constexpr wchar_t systemSettings[] = L"Software\\Microsoft\\Windows\\CurrentVersion\\";
constexpr wchar_t userText[] = L"what the user has copied";
constexpr wchar_t web[] = L"webs\\my site";
constexpr const wchar_t* losable[] = {L"templates\\Night Ferry", L"downloads"};

bool isLosable(const std::wstring& path) {
  return std::ranges::any_of(losable, [&](const wchar_t* each) { return path.starts_with(each); });
}

void writeUsersFiles(const ScratchFolder& disk) {
  const char page[] = "<html><head><title>A page</title></head><body>text</body></html>";
  disk.writeFile(L"templates\\Harbour\\harbour.dwt", page);
  disk.writeFile(L"templates\\Harbour\\quillet.ini", "[harbour]\r\nTitle=Harbour Light\r\n");
  disk.writeFile(L"templates\\Night Ferry\\ferry.dwt", page);
  disk.writeFile(L"templates\\Night Ferry\\quillet.ini",
                 "[ferry]\r\nTitle=Night Ferry\r\nTheme=nightferry 1111\r\n");
  disk.writeFile(L"templates\\Night Ferry\\css\\ferry.css", "body { color: navy }");
  disk.writeFile(L"templates\\Night Ferry\\images\\deck plan.gif", "GIF89a");
  disk.writeFile(L"themes\\nightferry\\nightferry.inf", "[info]\r\ntitle=Night Ferry\r\n");
  disk.writeFile(L"themes\\nightferry\\nightferry.elm", "elements");
  disk.writeFile(L"downloads\\mine.txt", "the user's own file");
}

void writeWeb(const ScratchFolder& disk) {
  disk.makeFolder(web);
  disk.writeFile(L"webs\\my site\\index.htm", "<html><body>the user's own page</body></html>");
  disk.writeFile(L"webs\\my site\\dwts\\mine.dwt", "the user's own template");
  disk.writeFile(L"webs\\my site\\images\\photo.gif", "the user's own picture");
}

std::string archive() {
  return ZipMaker()
      .add("lighthouse/lighthouse.dwt", "a page")
      .addDeflated("lighthouse/images/tower.gif", std::string(3000, 'x'))
      .bytes();
}

std::string lockedWith(const char* password) {
  ZipMaker::Extras extras;
  extras.password = password;
  return ZipMaker().add("lighthouse/lighthouse.dwt", "a page", extras).bytes();
}

void setClipboard(HWND owner, const std::wstring& text) {
  if (!OpenClipboard(owner)) return;
  EmptyClipboard();
  const SIZE_T size = (text.size() + 1) * sizeof(wchar_t);
  const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, size);
  std::copy_n(text.c_str(), text.size() + 1, static_cast<wchar_t*>(GlobalLock(memory)));
  GlobalUnlock(memory);
  SetClipboardData(CF_UNICODETEXT, memory);
  CloseClipboard();
}

std::wstring clipboardText() {
  if (!OpenClipboard(nullptr)) return L"(not to be had)";
  const HANDLE data = GetClipboardData(CF_UNICODETEXT);
  std::wstring text;
  if (data) text = static_cast<const wchar_t*>(GlobalLock(data));
  if (data) GlobalUnlock(data);
  CloseClipboard();
  return text;
}

BOOL CALLBACK noteClass(HWND window, LPARAM lines) {
  wchar_t name[64] = {};
  GetClassNameW(window, name, 64);
  if (name != std::wstring_view(HostFrame::className))
    reinterpret_cast<Lines*>(lines)->push_back(name);
  return TRUE;
}

// Handles what is still to come of what has been done.
void settle() {
  MSG message;
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
}

void removeTree(const std::wstring& path) {
  WIN32_FIND_DATAW data;
  const HANDLE search = FindFirstFileW((path + L"\\*").c_str(), &data);
  if (search == INVALID_HANDLE_VALUE) return;
  do {
    const std::wstring name = data.cFileName;
    if (name == L"." || name == L"..") continue;
    const std::wstring full = path + L"\\" + name;
    if (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)
      removeTree(full);
    else
      DeleteFileW(full.c_str());
  } while (FindNextFileW(search, &data));
  FindClose(search);
  RemoveDirectoryW(path.c_str());
}

BOOL CALLBACK noteDialog(HWND window, LPARAM list) {
  wchar_t name[16] = {};
  GetClassNameW(window, name, 16);
  if (name == std::wstring_view(L"#32770") && IsWindowVisible(window))
    reinterpret_cast<std::vector<HWND>*>(list)->push_back(window);
  return TRUE;
}

bool isOfOtherProgram(HWND window) {
  DWORD process = 0;
  GetWindowThreadProcessId(window, &process);
  return window && window != GetDesktopWindow() && process != GetCurrentProcessId();
}

}  // namespace

std::vector<HWND> ownDialogs() {
  std::vector<HWND> dialogs;
  EnumThreadWindows(GetCurrentThreadId(), noteDialog, reinterpret_cast<LPARAM>(&dialogs));
  return dialogs;
}

bool isInMenu() {
  GUITHREADINFO thread = {};
  thread.cbSize = sizeof thread;
  return GetGUIThreadInfo(GetCurrentThreadId(), &thread) && (thread.flags & GUI_INMENUMODE) != 0;
}

World::World()
    : server_({{"/d.zip", HttpServer::ok(archive())},
               {"/locked.zip", HttpServer::ok(lockedWith(User::password))}}) {
  frame_.open();
  setClipboard(frame_.get(), userText);
  clipboardLooks_.measure();
}

World::~World() { end(); }

void World::begin() {
  refuses_ = false;
  wanted_ = openArchive;
  layOut();
  frame_.open();
  setClipboard(frame_.get(), userText);
  host_ = std::make_unique<standin::Host>(standin::HostOptions(), disk / web, disk / L"themes");
}

// The host's own hold on its objects ends with it, so that what is left is the module's.
void World::end() {
  disconnect();
  if (!host_) return;
  const standin::SharedSession session = host_->sharedSession();
  host_.reset();
  objectsLeft_ = session->liveObjects;
}

void World::layOut() {
  removeTree(disk / web);
  removeTree(disk / L"downloads");
  removeTree(disk / L"data");
  writeWeb(disk);
  removeTree(disk / L"templates");
  writeUsersFiles(disk);
  setUpRegistry();
  users_ = files();
}

void World::setUpRegistry() {
  registry.emplace();
  const std::wstring own = ownSettings;
  const auto set = [this](const std::wstring& key, const wchar_t* name, const std::wstring& value) {
    registry->setString(HKEY_CURRENT_USER, key, name, value);
  };
  registry->setString(HKEY_CURRENT_USER, own + L"DWT Folders", disk / L"templates",
                      disk / L"templates");
  set(own + L"Settings", L"Logging", L"1");
  set(own + L"Settings", L"DWTDownloadDir", disk / L"downloads");
  set(systemSettings + std::wstring(L"Explorer\\Shell Folders"), L"AppData",
      disk.makeFolder(L"data"));
  registry->setNumber(HKEY_CURRENT_USER, systemSettings + std::wstring(L"Internet Settings"),
                      L"ProxyEnable", 0);
  registry->setString(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Korvel Software\\Quillet Viewer",
                      L"DWTOnline", L"http://127.0.0.1/catalogue/start.htm");
}

void World::connect() {
  if (addIn_) return;
  const auto factory = module_.factory();
  if (!factory || FAILED(factory->CreateInstance(nullptr, IID_IDTExtensibility2,
                                                 reinterpret_cast<void**>(addIn_.put()))))
    return;
  addIn_->OnConnection(host_->application(), atStartup, nullptr, nullptr);
  addIn_->OnStartupComplete(nullptr);
}

void World::disconnect() {
  if (!addIn_) return;
  addIn_->OnBeginShutdown(nullptr);
  addIn_->OnDisconnection(userClosed, nullptr);
  addIn_.reset();
}

void World::copy() { host_->click(copyToWeb); }

void World::download() { host_->click(dwtOnline); }

void World::openEverything() {
  user_->lookAtEverything();
  clickBoth();
}

void World::readEverything() {
  user_->readEverything();
  copy();
  closeHelp();
}

void World::play(unsigned seed, int actions) {
  Monkey monkey(seed, actions, page, {downloadAddress(), L"http://127.0.0.1/catalogue/other.htm"},
                [this](int entry) { entry == 0 ? copy() : download(); });
  user_->giveWayTo(&monkey);
  while (!monkey.isDone()) monkey.open();
  user_->giveWayTo(nullptr);
  closeHelp();
}

// A viewer may come up after everything else is over.
bool World::isElsewhere() const { return isOfOtherProgram(GetForegroundWindow()); }

// The viewers of help and notes are programs of their own, which stay until they are closed.
void World::closeHelp() {
  HWND viewer = nullptr;
  while (isOfOtherProgram(viewer = GetForegroundWindow())) {
    PostMessageW(viewer, WM_CLOSE, 0, 0);
    if (!pumpUntil([viewer] { return GetForegroundWindow() != viewer; })) break;
  }
  frame_.open();
}

void World::loseTemplates() {
  for (const auto* folder : losable) removeTree(disk / folder);
  templatesAreLost_ = true;
}

void World::addNotes() {
  disk.writeFile(L"templates\\Night Ferry\\readme.htm", "<html><body>notes</body></html>");
  users_ = files();
}

void World::refuseToOverwrite() {
  if (std::exchange(refuses_, true)) return;
  disk.writeFile(L"webs\\my site\\dwts\\Night Ferry\\ferry.dwt", "the user's older template");
  disk.writeFile(L"webs\\my site\\dwts\\Night Ferry\\css\\ferry.css", "the user's older style");
  users_ = files();
}

void World::putTemplatesBack() {
  if (std::exchange(templatesAreLost_, false)) writeUsersFiles(disk);
}

// Under the names that the first journey gave them, for the second to make anew.
void World::spoilWhatIsNew() {
  for (const auto& [path, bytes] : files())
    if (path.back() != L'\\' && !users_.contains(path)) disk.writeFile(path, "spoiled");
}

void World::clickBoth() {
  host_->click(copyToWeb);
  host_->click(dwtOnline);
}

std::wstring World::downloadAddress() const {
  return L"http://127.0.0.1/DWTOnlineDownload.htm?dwt1=" + server_.url(wanted_);
}

Seen World::look(const std::function<void()>& body) {
  frame_.open();
  log_.clear();
  User user(page, downloadAddress(), refuses_);
  user_ = &user;
  body();
  settle();
  user_ = nullptr;
  Seen seen;
  seen.boxes = user.boxes();
  seen.dialogs = user.dialogs();
  // Without the indentation, which an error leaves as it is.
  for (const auto& line : log_.messages()) {
    const auto start = line.find_first_not_of(L' ');
    if (start != line.npos) seen.lines.push_back(line.substr(start));
  }
  for (const auto* each : host_->commandBars().allControls()) seen.menu.push_back(each->caption);
  seen.files = files();
  seen.settings = storedTexts();
  return seen;
}

Desk World::desk() const {
  Desk desk;
  desk.active = GetActiveWindow();
  desk.focus = GetFocus();
  desk.waiting = GetCursor() == LoadCursorW(nullptr, IDC_WAIT);
  desk.frameEnabled = IsWindowEnabled(frame_.get());
  desk.clipboard = clipboardText();
  EnumThreadWindows(GetCurrentThreadId(), noteClass, reinterpret_cast<LPARAM>(&desk.windows));
  std::ranges::sort(desk.windows);
  return desk;
}

Lines World::lostFiles() const {
  Lines lost;
  const Files now = files();
  for (const auto& [path, bytes] : users_)
    if (const auto found = now.find(path); found == now.end() || found->second != bytes)
      if (!templatesAreLost_ || !isLosable(path)) lost.push_back(path);
  return lost;
}

Files World::files() const {
  Files found;
  for (const auto& entry : disk.tree())
    found[entry] = entry.back() == L'\\' ? std::string() : disk.readFile(entry);
  return found;
}

// A window's place is bytes, and stored without a word about it.
Lines World::storedTexts() const {
  Lines texts;
  for (const wchar_t* section : {L"Settings", L"DWT Folders"}) {
    const std::wstring key = ownSettings + std::wstring(section);
    for (const auto& name : registry->valueNames(HKEY_CURRENT_USER, key))
      if (!name.ends_with(L"Placement"))
        texts.push_back(name + L" = " +
                        registry->string(HKEY_CURRENT_USER, key, name).value_or(L"nothing"));
  }
  return texts;
}

}  // namespace torture
