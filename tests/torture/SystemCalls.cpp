#include "tests/torture/SystemCalls.h"

#include <commctrl.h>
#include <ocidl.h>
#include <olectl.h>
#include <shellapi.h>
#include <shlobj.h>
#include <shlwapi.h>
#include <wininet.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <set>
#include <string_view>
#include <type_traits>
#include <utility>

#include "tests/support/ImportPatch.h"
#include "tests/torture/TaskMemory.h"

namespace torture {
namespace {

// What a failing call gives back: a value, the code itself, or an HRESULT.
enum class Gives { value, code, result };
// What a call that has been made changes in what the module holds.
enum class Effect { none, takes, takesByCode, takesByResult, gives, givesSecond, owns, disowns };

struct Entry {
  const char* module;
  const char* function;
  std::optional<Kind> kind;  // none: it does not fail
  Gives gives;
  long value;
  Effect effect;
  const char* thing;
  void* replacement;
  void* original;
};

struct Watch {
  Kind kind = Kind::files;
  SystemCalls::Watcher watcher;
  int calls = 0;
  DWORD thread = 0;
  bool inside = false;  // what the watcher does itself is not watched
};

Watch& watching() {
  static Watch watch;
  return watch;
}

struct Held {
  const char* thing;
  long count;
};
// A plain array: counting must not take memory itself.
Held held[24];

long& countOf(const char* thing) {
  for (Held& each : held) {
    if (!each.thing) each.thing = thing;
    if (std::strcmp(each.thing, thing) == 0) return each.count;
  }
  std::abort();
}

// What may also end by other hands is known one by one.
constexpr char drawingObjects[] = "bitmaps, fonts, brushes and palettes";
constexpr char metafiles[] = "metafiles";
constexpr char windows[] = "windows";
std::set<std::pair<std::string_view, const void*>> owned;
std::set<std::pair<HWND, UINT_PTR>> timers;

void forgetWhatWentWithItsWindow() {
  std::erase_if(owned, [](const auto& each) {
    return each.first == windows && !IsWindow(static_cast<HWND>(const_cast<void*>(each.second)));
  });
  std::erase_if(timers, [](const auto& each) { return each.first && !IsWindow(each.first); });
}

void noteText(SystemCall&) {}

template <class First, class... Rest>
void noteText(SystemCall& call, First first, Rest... rest) {
  constexpr bool isNarrow = std::is_same_v<First, LPCSTR>;
  constexpr bool isWide = std::is_same_v<First, LPCWSTR>;
  if constexpr (isNarrow) call.narrowText = first;
  if constexpr (isWide)
    if (!IS_INTRESOURCE(first)) call.wideText = first;
  if constexpr (!isNarrow && !isWide) noteText(call, rest...);
}

template <class... Arguments>
const SystemFailure* failureOf(const Entry& entry, Arguments... arguments) {
  Watch& watch = watching();
  if (!watch.watcher || watch.kind != entry.kind || watch.inside ||
      watch.thread != GetCurrentThreadId())
    return nullptr;
  watch.inside = true;
  const DWORD error = GetLastError();
  SystemCall call = {++watch.calls, entry.function};
  noteText(call, arguments...);
  const SystemFailure* failure = watch.watcher(call);
  SetLastError(error);
  watch.inside = false;
  return failure;
}

template <class Value>
Value fromBits(long bits) {
  if constexpr (std::is_pointer_v<Value>)
    return reinterpret_cast<Value>(bits);
  else
    return static_cast<Value>(bits);
}

template <class Value>
bool isNothing(const Value& value) {
  if constexpr (std::is_scalar_v<Value>)
    return value == Value();
  else
    return false;
}

inline bool givesBack(Effect effect) { return effect == Effect::gives; }

template <class First, class... Rest>
bool givesBack(Effect effect, First first, Rest... rest) {
  if (effect == Effect::gives) return !isNothing(first);
  if constexpr (sizeof...(rest) > 0)
    if (effect == Effect::givesSecond) return givesBack(Effect::gives, rest...);
  return false;
}

inline const void* firstOf() { return nullptr; }

template <class First, class... Rest>
const void* firstOf(First first, Rest...) {
  if constexpr (std::is_pointer_v<First> && !std::is_function_v<std::remove_pointer_t<First>>)
    return first;
  else
    return nullptr;
}

template <class Result>
void note(const Entry& entry, Result result, const void* first) {
  const bool isGood = result != fromBits<Result>(entry.value);
  if (entry.effect == Effect::takes && isGood) ++countOf(entry.thing);
  if (entry.effect == Effect::takesByCode && result == fromBits<Result>(0)) ++countOf(entry.thing);
  if constexpr (std::is_pointer_v<Result>) {
    if (entry.effect == Effect::owns && isGood) owned.emplace(entry.thing, result);
  } else {
    if (entry.effect == Effect::takesByResult && static_cast<long>(result) >= 0)
      ++countOf(entry.thing);
    if (entry.effect == Effect::disowns && result) owned.erase({entry.thing, first});
  }
}

template <class Result, class Function, class... Arguments>
Result pass(Entry& entry, Function* original, Arguments... arguments) {
  if constexpr (!std::is_void_v<Result>) {
    if (const SystemFailure* failure = failureOf(entry, arguments...)) {
      SetLastError(failure->code);
      if (entry.gives == Gives::code) return fromBits<Result>(static_cast<long>(failure->code));
      if (entry.gives == Gives::result) return fromBits<Result>(failure->result);
      return fromBits<Result>(entry.value);
    }
  }
  if (givesBack(entry.effect, arguments...)) --countOf(entry.thing);
  if constexpr (std::is_void_v<Result>) {
    original(arguments...);
  } else {
    const Result result = original(arguments...);
    note(entry, result, firstOf(arguments...));
    return result;
  }
}

template <int slot>
Entry*& entryAt() {
  static Entry* entry = nullptr;
  return entry;
}

template <int slot, class Function>
struct Hook;

template <int slot, class Result, class... Arguments>
struct Hook<slot, Result WINAPI(Arguments...)> {
  static Result WINAPI call(Arguments... arguments) {
    Entry& entry = *entryAt<slot>();
    return pass<Result>(entry, reinterpret_cast<Result(WINAPI*)(Arguments...)>(entry.original),
                        arguments...);
  }
};

// The C run-time's own, in its own calling convention.
Entry* allocation = nullptr;
Entry* zeroAllocation = nullptr;
Entry* reallocation = nullptr;
Entry* freeing = nullptr;

struct RunTimeCall {
  Entry** entry;
  const char* name;
  void* hook;
};

constexpr char blocks[] = "blocks of memory";

void* counted(void* block) {
  if (block) ++countOf(blocks);
  return block;
}

void* __cdecl allocate(std::size_t size) {
  if (failureOf(*allocation)) return nullptr;
  return counted(reinterpret_cast<decltype(&allocate)>(allocation->original)(size));
}

void* __cdecl allocateZeros(std::size_t count, std::size_t size) {
  if (failureOf(*zeroAllocation)) return nullptr;
  return counted(reinterpret_cast<decltype(&allocateZeros)>(zeroAllocation->original)(count, size));
}

void* __cdecl reallocate(void* memory, std::size_t size) {
  if (failureOf(*reallocation)) return nullptr;
  void* const block = reinterpret_cast<decltype(&reallocate)>(reallocation->original)(memory, size);
  if (!memory) return counted(block);
  if (size == 0) --countOf(blocks);
  return block;
}

void __cdecl release(void* memory) {
  if (memory) --countOf(blocks);
  reinterpret_cast<decltype(&release)>(freeing->original)(memory);
}

// The clipboard takes what it is given.
Entry* clipboardSetting = nullptr;

void giveToClipboard(UINT format, HANDLE data) {
  if (format == CF_BITMAP || format == CF_PALETTE)
    owned.erase({drawingObjects, data});
  else if (format == CF_ENHMETAFILE)
    owned.erase({metafiles, data});
  else
    --countOf("global blocks");
}

HANDLE WINAPI setClipboardData(UINT format, HANDLE data) {
  if (const SystemFailure* failure = failureOf(*clipboardSetting)) {
    SetLastError(failure->code);
    return nullptr;
  }
  HMETAFILE picture = nullptr;
  if (const auto* record =
          format == CF_METAFILEPICT ? static_cast<METAFILEPICT*>(GlobalLock(data)) : nullptr) {
    picture = record->hMF;
    GlobalUnlock(data);
  }
  const HANDLE set =
      reinterpret_cast<decltype(&setClipboardData)>(clipboardSetting->original)(format, data);
  if (set) giveToClipboard(format, data);
  if (set && picture) owned.erase({metafiles, picture});
  return set;
}

// A shared picture is the system's.
Entry* imageLoading = nullptr;

HANDLE WINAPI loadImage(HINSTANCE module, LPCWSTR name, UINT type, int width, int height,
                        UINT flags) {
  if (const SystemFailure* failure = failureOf(*imageLoading)) {
    SetLastError(failure->code);
    return nullptr;
  }
  const HANDLE image = reinterpret_cast<decltype(&loadImage)>(imageLoading->original)(
      module, name, type, width, height, flags);
  if (image && !(flags & LR_SHARED)) owned.emplace(drawingObjects, image);
  return image;
}

// A window's timers end with it.
Entry* timerStart = nullptr;
Entry* timerEnd = nullptr;

UINT_PTR WINAPI setTimer(HWND window, UINT_PTR number, UINT interval, TIMERPROC procedure) {
  if (const SystemFailure* failure = failureOf(*timerStart)) {
    SetLastError(failure->code);
    return 0;
  }
  const UINT_PTR set = reinterpret_cast<decltype(&setTimer)>(timerStart->original)(
      window, number, interval, procedure);
  if (set) timers.emplace(window, window ? number : set);
  return set;
}

BOOL WINAPI killTimer(HWND window, UINT_PTR number) {
  timers.erase({window, number});
  return reinterpret_cast<decltype(&killTimer)>(timerEnd->original)(window, number);
}

// What the module looks up while it runs gets its hook then.
Entry* lookUp = nullptr;
constexpr char network[] = "wininet.dll";

FARPROC WINAPI getProcAddress(HMODULE module, LPCSTR name);

// clang-format off
#define WATCHED(hook, library, name, kind, gives, bad, effect, thing)                    \
  {                                                                                      \
    constexpr int slot = __COUNTER__;                                                    \
    all.push_back({library, #name, kind, Gives::gives, bad, Effect::effect, thing,       \
                   reinterpret_cast<void*>(hook<slot, decltype(name)>::call), nullptr}); \
    entryAt<slot>() = &all.back();                                                       \
  }
// May fail, with that value.
#define FAILS(name, bad) WATCHED(Hook, library, name, kind, value, bad, none, "")
// The same, and gives something that has to be given back.
#define TAKES(name, bad, thing) WATCHED(Hook, library, name, kind, value, bad, takes, thing)
// The same, known one by one.
#define OWNS(name, bad, thing) WATCHED(Hook, library, name, kind, value, bad, owns, thing)
// Gives something back, and does not fail.
#define RETURNS(name, thing) WATCHED(Hook, library, name, std::nullopt, value, 0, gives, thing)
#define DISOWNS(name, thing) WATCHED(Hook, library, name, std::nullopt, value, 0, disowns, thing)
// The hook is a function of its own.
#define OWN_HOOK(name, kind, hook, entry)                                           \
  all.push_back({library, #name, kind, Gives::value, 0, Effect::none, "",           \
                 reinterpret_cast<void*>(hook), nullptr});                          \
  entry = &all.back();
// Tells of its failure by its result.
#define CODE(name) WATCHED(Hook, library, name, kind, code, 0, none, "")
#define OPENS(name, thing) WATCHED(Hook, library, name, kind, code, 0, takesByCode, thing)
#define RESULT(name) WATCHED(Hook, library, name, kind, result, 0, none, "")
// clang-format on

void addFiles(std::vector<Entry>& all) {
  constexpr auto library = "kernel32.dll";
  constexpr auto kind = Kind::files;
  TAKES(CreateFileW, -1, "files")
  FAILS(ReadFile, 0)
  FAILS(WriteFile, 0)
  FAILS(CreateDirectoryW, 0)
  FAILS(DeleteFileW, 0)
  TAKES(FindFirstFileA, -1, "searches")
  FAILS(FindNextFileA, 0)
  FAILS(GetFileAttributesW, -1)
  FAILS(GetFileAttributesExW, 0)
  FAILS(GetFileInformationByHandle, 0)
  FAILS(GetFileSize, -1)
  FAILS(GetFileTime, 0)
  FAILS(GetFullPathNameW, 0)
  FAILS(GetLongPathNameW, 0)
  FAILS(GetShortPathNameW, 0)
  FAILS(GetTempFileNameW, 0)
  FAILS(SetFilePointerEx, 0)
  FAILS(GetDiskFreeSpaceExW, 0)
  FAILS(GetModuleFileNameW, 0)
  TAKES(LoadLibraryW, 0, "libraries")
  TAKES(LoadLibraryExW, 0, "libraries")
  RETURNS(CloseHandle, "files")
  RETURNS(FindClose, "searches")
  RETURNS(FreeLibrary, "libraries")
}

void addShell(std::vector<Entry>& all) {
  constexpr auto library = "shell32.dll";
  constexpr auto kind = Kind::files;
  FAILS(ShellExecuteW, SE_ERR_FNF)
  FAILS(SHBrowseForFolderW, 0)
  FAILS(SHGetPathFromIDListW, 0)
}

void addProfiles(std::vector<Entry>& all) {
  constexpr auto library = "kernel32.dll";
  constexpr auto kind = Kind::ini;
  FAILS(GetPrivateProfileStringA, 0)
}

void addRegistry(std::vector<Entry>& all) {
  constexpr auto library = "advapi32.dll";
  constexpr auto kind = Kind::registry;
  OPENS(RegCreateKeyA, "keys")
  OPENS(RegCreateKeyExW, "keys")
  OPENS(RegOpenKeyA, "keys")
  OPENS(RegOpenKeyExA, "keys")
  OPENS(RegOpenKeyExW, "keys")
  CODE(RegDeleteKeyW)
  CODE(RegDeleteValueW)
  CODE(RegEnumValueA)
  CODE(RegQueryInfoKeyW)
  CODE(RegQueryValueA)
  CODE(RegQueryValueExA)
  CODE(RegQueryValueExW)
  CODE(RegSetValueExA)
  CODE(RegSetValueExW)
  RETURNS(RegCloseKey, "keys")
}

void addRegistryOfShell(std::vector<Entry>& all) {
  constexpr auto library = "shlwapi.dll";
  constexpr auto kind = Kind::registry;
  CODE(SHDeleteKeyA)
  CODE(SHDeleteValueA)
}

void addMemory(std::vector<Entry>& all) {
  constexpr auto kind = Kind::memory;
  {
    constexpr auto library = QUILLET_HEAP;
    // The C run-time's functions have another calling convention.
    for (const auto& [entry, name, hook] :
         {RunTimeCall{&allocation, "malloc", reinterpret_cast<void*>(allocate)},
          RunTimeCall{&zeroAllocation, "calloc", reinterpret_cast<void*>(allocateZeros)},
          RunTimeCall{&reallocation, "realloc", reinterpret_cast<void*>(reallocate)},
          RunTimeCall{&freeing, "free", reinterpret_cast<void*>(release)}}) {
      all.push_back({library, name, kind, Gives::value, 0, Effect::none, "", hook, nullptr});
      *entry = &all.back();
    }
  }
  {
    constexpr auto library = "kernel32.dll";
    TAKES(GlobalAlloc, 0, "global blocks")
    TAKES(GlobalLock, 0, "locked blocks")
    RETURNS(GlobalUnlock, "locked blocks")
    RETURNS(GlobalFree, "global blocks")
  }
  {
    constexpr auto library = "oleaut32.dll";
    FAILS(SysAllocStringLen, 0)
  }
}

void addWindows(std::vector<Entry>& all) {
  constexpr auto library = "user32.dll";
  constexpr auto kind = Kind::windows;
  OWNS(CreateDialogIndirectParamW, 0, windows)
  OWNS(CreateWindowExW, 0, windows)
  FAILS(RegisterClassW, 0)
  TAKES(CreatePopupMenu, 0, "menus")
  FAILS(AppendMenuW, 0)
  OWN_HOOK(SetTimer, kind, setTimer, timerStart)
  OWN_HOOK(KillTimer, std::nullopt, killTimer, timerEnd)
  OWN_HOOK(LoadImageW, kind, loadImage, imageLoading)
  FAILS(LoadCursorW, 0)
  OWNS(CopyImage, 0, drawingObjects)
  FAILS(GetDlgItem, 0)
  FAILS(MapDialogRect, 0)
  FAILS(BeginDeferWindowPos, 0)
  FAILS(DeferWindowPos, 0)
  FAILS(EndDeferWindowPos, 0)
  FAILS(GetWindowPlacement, 0)
  FAILS(SetWindowPlacement, 0)
  FAILS(SetWindowPos, 0)
  FAILS(GetMonitorInfoW, 0)
  FAILS(SystemParametersInfoW, 0)
  TAKES(OpenClipboard, 0, "openings of the clipboard")
  FAILS(EmptyClipboard, 0)
  FAILS(GetClipboardData, 0)
  FAILS(RegisterClipboardFormatW, 0)
  FAILS(MessageBoxW, 0)
  FAILS(TrackPopupMenuEx, 0)
  FAILS(LoadStringW, 0)
  OWN_HOOK(SetClipboardData, kind, setClipboardData, clipboardSetting)
  RETURNS(CloseClipboard, "openings of the clipboard")
  RETURNS(DestroyMenu, "menus")
  WATCHED(Hook, library, BeginPaint, std::nullopt, value, 0, takes, "paintings")
  WATCHED(Hook, library, EndPaint, std::nullopt, value, 0, givesSecond, "paintings")
}

void addResources(std::vector<Entry>& all) {
  constexpr auto library = "kernel32.dll";
  constexpr auto kind = Kind::windows;
  FAILS(FindResourceW, 0)
  FAILS(LoadResource, 0)
  TAKES(CreateActCtxW, -1, "activation contexts")
  TAKES(ActivateActCtx, 0, "activated contexts")
  WATCHED(Hook, library, DeactivateActCtx, std::nullopt, value, 0, givesSecond,
          "activated contexts")
}

void addDrawing(std::vector<Entry>& all) {
  constexpr auto kind = Kind::drawing;
  {
    constexpr auto library = "gdi32.dll";
    FAILS(BitBlt, 0)
    TAKES(CreateCompatibleDC, 0, "device contexts")
    OWNS(CreateBitmap, 0, drawingObjects)
    OWNS(CreateCompatibleBitmap, 0, drawingObjects)
    OWNS(CreateDIBSection, 0, drawingObjects)
    OWNS(CreateFontW, 0, drawingObjects)
    OWNS(CreateSolidBrush, 0, drawingObjects)
    FAILS(GetDIBits, 0)
    FAILS(GetObjectW, 0)
    FAILS(GetTextExtentPoint32W, 0)
    FAILS(SelectObject, 0)
    FAILS(StretchBlt, 0)
    OWNS(CreateDIBitmap, 0, drawingObjects)
    OWNS(CreatePalette, 0, drawingObjects)
    OWNS(CopyEnhMetaFileW, 0, metafiles)
    OWNS(CopyMetaFileW, 0, metafiles)
    RETURNS(DeleteDC, "device contexts")
    DISOWNS(DeleteObject, drawingObjects)
    DISOWNS(DeleteEnhMetaFile, metafiles)
    DISOWNS(DeleteMetaFile, metafiles)
  }
  {
    constexpr auto library = "user32.dll";
    TAKES(GetDC, 0, "borrowed contexts")
    WATCHED(Hook, library, ReleaseDC, std::nullopt, value, 0, givesSecond, "borrowed contexts")
  }
  {
    constexpr auto library = "comctl32.dll";
    TAKES(ImageList_Create, 0, "image lists")
    FAILS(ImageList_Add, -1)
    RETURNS(ImageList_Destroy, "image lists")
  }
}

void addCom(std::vector<Entry>& all) {
  constexpr auto kind = Kind::com;
  {
    constexpr auto library = "ole32.dll";
    RESULT(CLSIDFromProgID)
    RESULT(CoCreateInstance)
    RESULT(CreateStreamOnHGlobal)
    WATCHED(Hook, library, OleInitialize, kind, result, 0, takesByResult, "uses of OLE")
    RETURNS(OleUninitialize, "uses of OLE")
    FAILS(StringFromGUID2, 0)
  }
  {
    constexpr auto library = "oleaut32.dll";
    RESULT(GetActiveObject)
    RESULT(OleLoadPicture)
    RESULT(LoadTypeLibEx)
    RESULT(VariantChangeType)
    RESULT(VariantCopy)
    RESULT(VariantCopyInd)
    RESULT(VarI2FromStr)
    RESULT(VarR8FromStr)
  }
  {
    constexpr auto library = "shlwapi.dll";
    RESULT(UrlCanonicalizeW)
    RESULT(PathCreateFromUrlW)
  }
}

void addNetwork(std::vector<Entry>& all) {
  constexpr auto library = network;
  constexpr auto kind = Kind::network;
  TAKES(InternetOpenA, 0, "network handles")
  FAILS(InternetQueryOptionA, 0)
  FAILS(InternetSetOptionA, 0)
  TAKES(InternetConnectA, 0, "network handles")
  TAKES(InternetOpenUrlA, 0, "network handles")
  FAILS(HttpQueryInfoA, 0)
  TAKES(FtpOpenFileA, 0, "network handles")
  FAILS(FtpGetFileSize, -1)
  FAILS(InternetQueryDataAvailable, 0)
  FAILS(InternetReadFile, 0)
  FAILS(InternetCrackUrlA, 0)
  RETURNS(InternetCloseHandle, "network handles")
  all.push_back({"kernel32.dll", "GetProcAddress", kind, Gives::value, 0, Effect::none, "",
                 reinterpret_cast<void*>(getProcAddress), nullptr});
  lookUp = &all.back();
}

void addYields(std::vector<Entry>& all) {
  constexpr auto library = "user32.dll";
  constexpr auto kind = Kind::yields;
  FAILS(PeekMessageW, 0)
}

std::vector<Entry> makeEntries() {
  std::vector<Entry> all;
  all.reserve(300);  // its entries must not move
  for (const auto add :
       {addFiles, addShell, addProfiles, addRegistry, addRegistryOfShell, addMemory, addWindows,
        addResources, addDrawing, addCom, addNetwork, addYields})
    add(all);
  return all;
}

std::vector<Entry>& entries() {
  static std::vector<Entry> all = makeEntries();
  return all;
}

FARPROC WINAPI getProcAddress(HMODULE module, LPCSTR name) {
  if (const SystemFailure* failure = failureOf(*lookUp)) {
    SetLastError(failure->code);
    return nullptr;
  }
  const FARPROC found = reinterpret_cast<decltype(&getProcAddress)>(lookUp->original)(module, name);
  for (Entry& entry : entries()) {
    if (!found || entry.module != network || std::strcmp(entry.function, name) != 0) continue;
    entry.original = reinterpret_cast<void*>(found);
    return reinterpret_cast<FARPROC>(entry.replacement);
  }
  return found;
}

}  // namespace

class SystemCalls::Patches {
 public:
  explicit Patches(HMODULE module) {
    for (Entry& entry : entries()) {
      if (entry.module == network) continue;
      patches_.push_back(std::make_unique<ImportPatch>(
          module, entry.module, entry.function, reinterpret_cast<void (*)()>(entry.replacement)));
      entry.original = reinterpret_cast<void*>(patches_.back()->original<void()>());
    }
  }

 private:
  std::vector<std::unique_ptr<ImportPatch>> patches_;
};

// The first entry's original has to be known before its patch is in place, so nobody calls the
// module meanwhile.
SystemCalls::SystemCalls(HMODULE module) : patches_(std::make_unique<Patches>(module)) {
  TaskMemory::count();
}

SystemCalls::~SystemCalls() { unwatch(); }

void SystemCalls::watch(Kind kind, Watcher watcher) {
  watching() = {kind, std::move(watcher), 0, GetCurrentThreadId(), false};
}

void SystemCalls::unwatch() noexcept { watching() = {}; }

std::map<std::string, long> SystemCalls::held() {
  std::map<std::string, long> result;
  for (const Held& each : torture::held)
    if (each.thing) result[each.thing] = each.count;
  forgetWhatWentWithItsWindow();
  for (const auto thing : {drawingObjects, metafiles, windows})
    result[thing] = static_cast<long>(
        std::ranges::count_if(owned, [&](const auto& each) { return each.first == thing; }));
  result["timers"] = static_cast<long>(timers.size());
  result["blocks of the system's memory for COM"] = TaskMemory::blocks();
  return result;
}

}  // namespace torture
