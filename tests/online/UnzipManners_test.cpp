// What unpacking an archive leaves as it was, and what it withstands.
#include <clocale>
#include <cstdlib>
#include <ctime>

#include "tests/online/OwnModule.h"
#include "tests/online/Unpacking.h"
#include "tests/support/ImportPatch.h"

namespace {

// The state of the C run-time that the library shares with the host.
struct RuntimeState {
  std::string locale = setlocale(LC_ALL, nullptr);
  std::string zone = std::getenv("TZ") ? std::getenv("TZ") : "(none)";
  long bias = _timezone;
  std::string systemZone = [] {
    char value[64] = "(none)";
    GetEnvironmentVariableA("TZ", value, sizeof value);
    return std::string(value);
  }();

  bool operator==(const RuntimeState&) const = default;
};

// A host with a locale and a time zone of its own.
class HostRuntime {
 public:
  HostRuntime() {
    setlocale(LC_ALL, "C");
    _putenv("TZ=XYZ-3");
    _tzset();
  }
  ~HostRuntime() {
    _putenv("TZ=");
    _tzset();
  }
  HostRuntime(const HostRuntime&) = delete;
  HostRuntime& operator=(const HostRuntime&) = delete;
};

}  // namespace

TEST_CASE("unpacking leaves the locale and the time zone of the process as they were") {
  const HostRuntime host;
  const RuntimeState before;
  CHECK(before.zone == "XYZ-3");
  CHECK(before.bias == -3 * 3600);
  const Unpacking unpacking(onePage());
  CHECK(unpacking.run());
  const RuntimeState after;
  CHECK(after.locale == before.locale);
  CHECK(after.zone == before.zone);
  CHECK(after.systemZone == before.systemZone);
  CHECK(after.bias == before.bias);
}
