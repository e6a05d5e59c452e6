// A button's connection point: whoever is advised here hears its clicks.
#pragma once

#include <map>

#include "host/model/CommandBars.h"

namespace standin {

class CommandBarButton::ClickPoint : public IConnectionPoint {
 public:
  explicit ClickPoint(CommandBarButton* button) : button_(button) {}
  virtual ~ClickPoint() = default;

  void forgetButton() { button_ = nullptr; }
  std::size_t count() const { return sinks_.size(); }
  bool fire(CommandBarButton& clicked);

  STDMETHOD(QueryInterface)(REFIID iid, void** object) override;
  STDMETHOD_(ULONG, AddRef)() override { return static_cast<ULONG>(++references_); }
  STDMETHOD_(ULONG, Release)() override;
  STDMETHOD(GetConnectionInterface)(IID* iid) override;
  STDMETHOD(GetConnectionPointContainer)(IConnectionPointContainer** container) override;
  STDMETHOD(Advise)(IUnknown* sink, DWORD* cookie) override;
  STDMETHOD(Unadvise)(DWORD cookie) override;
  STDMETHOD(EnumConnections)(IEnumConnections** connections) override;

 private:
  HRESULT watchedCall(const wchar_t* name) const noexcept;

  CommandBarButton* button_;
  std::map<DWORD, ComPtr<IDispatch>> sinks_;
  DWORD lastCookie_ = 0;
  long references_ = 0;
};

}  // namespace standin
