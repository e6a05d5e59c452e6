// The host's add-in interface, as published.
#pragma once

#include <windows.h>
#include <oaidl.h>

inline constexpr IID IID_IDTExtensibility2 = {
    0xB65AD801, 0xABAF, 0x11D0, {0xBB, 0x8B, 0x00, 0xA0, 0xC9, 0x0F, 0x27, 0x44}};

struct IDTExtensibility2 : public IDispatch {
  STDMETHOD(OnConnection)
  (IDispatch* Application, long ConnectMode, IDispatch* AddInInst, SAFEARRAY** custom) = 0;
  STDMETHOD(OnDisconnection)(long RemoveMode, SAFEARRAY** custom) = 0;
  STDMETHOD(OnAddInsUpdate)(SAFEARRAY** custom) = 0;
  STDMETHOD(OnStartupComplete)(SAFEARRAY** custom) = 0;
  STDMETHOD(OnBeginShutdown)(SAFEARRAY** custom) = 0;

 protected:
  ~IDTExtensibility2() = default;
};
