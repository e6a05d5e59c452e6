// Receives a menu button's click event.
#pragma once

#include <windows.h>
#include <oaidl.h>
#include <ocidl.h>

#include <functional>

#include "common/Counted.h"
#include "common/com.h"

// One reference-counted sink for `_CommandBarButtonEvents`. The host may keep it beyond the
// connection; after `detach` clicks go nowhere.
class ClickSink final : public com::Counted<IDispatch> {
 public:
  // The clicked button and the event's by-reference Boolean, both as they came (null when missing).
  using Handler = std::function<void(IDispatch* button, VARIANT_BOOL* cancelDefault)>;

  static ComPtr<ClickSink> make(Handler handler);
  void detach() noexcept { handler_ = nullptr; }

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo** info) override;
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID,
                                          DISPID* ids) override;
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* parameters, VARIANT*,
                                   EXCEPINFO*, UINT*) override;

 private:
  explicit ClickSink(Handler handler) : handler_(std::move(handler)) {}
  ~ClickSink() override = default;

  Handler handler_;
};

// A sink and its connection to one button; disconnected when it goes.
class ButtonEvents {
 public:
  ButtonEvents() noexcept = default;
  // A button without events gives no connection and no error: its clicks then do nothing.
  ButtonEvents(IDispatch* button, ClickSink::Handler handler);
  ButtonEvents(ButtonEvents&& other) noexcept = default;
  ButtonEvents& operator=(ButtonEvents&& other) noexcept;
  ~ButtonEvents() { disconnect(); }

  explicit operator bool() const noexcept { return static_cast<bool>(point_); }
  void disconnect() noexcept;

 private:
  ComPtr<IConnectionPoint> point_;
  ComPtr<ClickSink> sink_;
  DWORD cookie_ = 0;
};
