// A host with an open web, the module in it, and a user who answers whatever is asked: everything
// that a journey needs, laid out again and again in one process.
#pragma once

#include <windows.h>

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/model/Host.h"
#include "tests/addin/ShippedModule.h"
#include "tests/online/LoopbackServer.h"
#include "tests/support/DebugOutput.h"
#include "tests/support/FakeWebBrowser.h"
#include "tests/support/ModalDriver.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/ScratchRegistry.h"
#include "tests/torture/ClipboardLooks.h"
#include "tests/torture/HostFrame.h"
#include "tests/torture/SystemCalls.h"
#include "tests/torture/User.h"

namespace torture {

using Lines = std::vector<std::wstring>;
using Files = std::map<std::wstring, std::string>;  // by path below the disk's folder

// What somebody sees who looks on during a journey, and finds afterwards.
struct Seen {
  Lines boxes;    // title and text
  Lines dialogs;  // their captions
  Lines lines;    // of the log, without their time
  Lines menu;     // every entry of the host's bars and menus
  Files files;
  Lines settings;  // the stored texts, without windows' places
};

// What a journey must leave as it was.
struct Desk {
  HWND active = nullptr;
  HWND focus = nullptr;
  bool waiting = false;  // by the cursor
  bool frameEnabled = false;
  std::wstring clipboard;
  Lines windows;  // the classes of this thread's windows but for the frame

  bool operator==(const Desk&) const = default;
};

// The dialogs on the screen, from the one on top down.
std::vector<HWND> ownDialogs();
// Whether a menu takes this thread's messages, those of timers among them, until it is ended.
bool isInMenu();

class World {
 public:
  World();
  ~World();
  World(const World&) = delete;
  World& operator=(const World&) = delete;

  // A host just started, over a web and templates as they were at first; and its end.
  void begin();
  void end();

  void connect();
  void disconnect();
  // Clicks and whatever comes of it, until the windows are closed.
  void copy();
  void download();
  // Every window that there is in this process, one after another.
  void openEverything();
  // The viewers of help and notes.
  void readEverything();
  // Anything at all, as `seed` will have it; then the windows are closed.
  void play(unsigned seed, int actions);
  // The template that the user wants, and what has been downloaded, are gone.
  void loseTemplates();
  // They are there again, if they were lost.
  void putTemplatesBack();
  // Until the next begin(): the web has a template of that name, which the user wants to keep.
  void refuseToOverwrite();
  // Until the next begin(): what is downloaded has a password.
  void wantLocked() { wanted_ = lockedArchive; }
  // Until the next begin(): the template has notes.
  void addNotes();
  // Every file but the user's has other bytes.
  void spoilWhatIsNew();
  // Both entries one after the other, as an impatient user does.
  void clickBoth();

  // Runs `body` and tells what was seen meanwhile and is there then.
  // The user works, unless openEverything() is called in it.
  Seen look(const std::function<void()>& body);
  Desk desk() const;
  // Whether another program's window is in front.
  bool isElsewhere() const;
  // Files of the user's that are gone or changed, but for those that were lost on purpose.
  Lines lostFiles() const;
  // How many of the host's objects somebody held when it had ended, the last time.
  long objectsLeft() const { return objectsLeft_; }
  bool canUnload() const { return module_.canUnload(); }
  HMODULE module() const { return module_.handle(); }

  standin::Host& host() { return *host_; }
  // The host's main window; made anew when it is gone.
  HostFrame& frame() { return frame_; }
  SystemCalls& system() { return calls_; }
  const ClipboardLooks& clipboardLooks() const { return clipboardLooks_; }

  std::optional<ScratchRegistry> registry{std::in_place};  // made anew for each begin()
  ScratchFolder disk;
  FakeWebBrowser page;

 private:
  static constexpr wchar_t openArchive[] = L"/d.zip";
  static constexpr wchar_t lockedArchive[] = L"/locked.zip";

  void closeHelp();
  void layOut();
  void setUpRegistry();
  Files files() const;
  Lines storedTexts() const;
  std::wstring downloadAddress() const;

  HttpServer server_;
  DebugOutput log_;
  ShippedModule module_;
  SystemCalls calls_{module_.handle()};
  ClipboardLooks clipboardLooks_{module_.handle()};  // what it replaces is put back first
  HostFrame frame_;
  Files users_;  // what the user has on the disk
  bool templatesAreLost_ = false;
  bool refuses_ = false;
  const wchar_t* wanted_ = openArchive;
  long objectsLeft_ = 0;
  std::unique_ptr<standin::Host> host_;
  User* user_ = nullptr;  // during a look
  ComPtr<IDTExtensibility2> addIn_;
};

}  // namespace torture
