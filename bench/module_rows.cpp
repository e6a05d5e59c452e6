// Loading the module and connecting it, as the host does when it starts.
#include <windows.h>

#include <tlhelp32.h>

#include "addin/IDTExtensibility2.h"
#include "addin/identity.h"
#include "bench/rows.h"
#include "common/handles.h"
#include "host/model/Host.h"
#include "tests/support/ScratchRegistry.h"

namespace bench {
namespace {

constexpr long atStartup = 1;

long countModules() {
  const handles::File all(CreateToolhelp32Snapshot(TH32CS_SNAPMODULE, 0));
  MODULEENTRY32W entry = {};
  entry.dwSize = sizeof entry;
  long count = 0;
  for (BOOL more = Module32FirstW(all.get(), &entry); more; more = Module32NextW(all.get(), &entry))
    ++count;
  return count;
}

// The time, and how many modules have come. The host has its menus by then, and the libraries that
// every program with windows has: this program is linked with them.
std::vector<double> load(const wchar_t* file) {
  using GetClassObject = HRESULT(WINAPI*)(REFCLSID, REFIID, void**);
  ScratchRegistry registry;
  standin::Host host;
  const long before = countModules();
  const Stopwatch watch;
  const HMODULE module = LoadLibraryW(file);
  const auto get = reinterpret_cast<GetClassObject>(
      reinterpret_cast<void*>(GetProcAddress(module, "DllGetClassObject")));
  if (!get) throw CannotRun{"the module does not load"};
  ComPtr<IClassFactory> factory;
  get(identity::classId, IID_IClassFactory, reinterpret_cast<void**>(factory.put()));
  ComPtr<IDTExtensibility2> connection;
  factory->CreateInstance(nullptr, IID_IDTExtensibility2,
                          reinterpret_cast<void**>(connection.put()));
  connection->OnConnection(host.application(), atStartup, nullptr, nullptr);
  const double time = watch.milliseconds();
  const auto come = static_cast<double>(countModules() - before);
  connection->OnDisconnection(0, nullptr);
  return {time, come};
}

std::vector<double> loadOurs() { return load(L"Quillet.dll"); }
std::vector<double> loadBare() { return load(L"bench-empty-addin.dll"); }

}  // namespace

std::vector<Row> moduleRows() {
  return {{"load",
           "load and connect, over an empty add-in",
           "",
           0,
           {Limit::added, 2},
           [] {
             return inPairs([] { return child("load-ours").front(); },
                            [] { return child("load-bare").front(); });
           }},
          {"modules", "modules that loading and connecting bring", "", 0, {Limit::times, 1.0}, [] {
             return once([] { return child("load-ours").back(); },
                         [] { return child("load-bare").back(); });
           }}};
}

Children moduleChildren() { return {{"load-ours", loadOurs}, {"load-bare", loadBare}}; }

}  // namespace bench
