// The add-ins that are registered with the host: finding, connecting and disconnecting them.
#pragma once

#include <deque>
#include <string>
#include <string_view>

#include "common/com.h"
#include "host/extensibility.h"
#include "host/model/Host.h"

namespace standin {

// What an add-in is handed as its own entry in the host's list.
class AddInEntry : public AutomationObject {
 public:
  AddInEntry(SharedSession session, std::wstring progId, std::wstring description);

  com::Variant getProgId(const Arguments&);
  com::Variant getDescription(const Arguments&);

 protected:
  const MemberTable& members() const override;

 private:
  std::wstring progId_;
  std::wstring description_;
};

struct AddIn {
  std::wstring progId;
  std::wstring friendlyName;
  std::wstring description;
  long loadBehavior = 0;  // bit 0: connected, bit 1: at start-up
  ComPtr<Extensibility> connected;
  std::wstring failure;  // of the last attempt; empty when there was none
};

class AddIns {
 public:
  // By dispatch: calls go through Invoke instead of the interface's own slots.
  AddIns(SharedSession session, IDispatch* application, bool byDispatch);

  // Reads the list below HKCU\Software\Microsoft\Office\FrontPage\Addins, or the one of the
  // Office version, by the host's options.
  void find();
  void connectAtStart();
  // Also from inside a call into an add-in: one that is just being connected goes as it has come.
  void shutDown();

  // As the user does it from the list of add-ins; false when that fails or there is nothing to do.
  bool load(std::wstring_view progId);
  bool unload(std::wstring_view progId);

  const std::deque<AddIn>& list() const noexcept { return list_; }

 private:
  std::wstring key() const;
  AddIn* named(std::wstring_view progId);
  bool connect(AddIn& addIn, ConnectMode mode);
  bool disconnect(AddIn& addIn, DisconnectMode mode) const;
  void notify(const AddIn& addIn, ExtensibilityMember member) const;
  // The others learn that one came or went.
  void notifyOthers(const AddIn& changed) const;

  SharedSession session_;
  IDispatch* application_;
  bool byDispatch_;
  std::deque<AddIn> list_;  // an add-in keeps its place while others are found
  bool shutDown_ = false;
};

}  // namespace standin
