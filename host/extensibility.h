// The interface that the host calls add-ins by, as published.
#pragma once

#include <windows.h>
#include <oaidl.h>

namespace standin {

inline constexpr GUID iidExtensibility = {
    0xB65AD801, 0xABAF, 0x11D0, {0xBB, 0x8B, 0x00, 0xA0, 0xC9, 0x0F, 0x27, 0x44}};

struct Extensibility : public IDispatch {
  STDMETHOD(OnConnection)
  (IDispatch* application, long connectMode, IDispatch* addIn, SAFEARRAY** custom) = 0;
  STDMETHOD(OnDisconnection)(long removeMode, SAFEARRAY** custom) = 0;
  STDMETHOD(OnAddInsUpdate)(SAFEARRAY** custom) = 0;
  STDMETHOD(OnStartupComplete)(SAFEARRAY** custom) = 0;
  STDMETHOD(OnBeginShutdown)(SAFEARRAY** custom) = 0;

 protected:
  ~Extensibility() = default;
};

enum ExtensibilityMember : DISPID {
  memberOnConnection = 1,
  memberOnDisconnection = 2,
  memberOnAddInsUpdate = 3,
  memberOnStartupComplete = 4,
  memberOnBeginShutdown = 5,
};

enum ConnectMode : long { connectAfterStartup = 0, connectAtStartup = 1 };
enum DisconnectMode : long { disconnectHostShutdown = 0, disconnectUserClosed = 1 };

}  // namespace standin
