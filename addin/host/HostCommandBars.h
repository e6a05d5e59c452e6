// The host's command bars and menu controls, as thin values over its objects.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "common/Dispatch.h"

// The numbers of the Office library that the program uses.
enum class HostControlType : long {
  button = 1,
  popup = 10,
  buttonPopup = 12,
  splitButtonPopup = 13,
};

class HostControl {
 public:
  explicit HostControl(com::Dispatch object) noexcept : object_(std::move(object)) {}

  long type() const;
  long id() const;
  long index() const;  // 1-based
  std::wstring tag() const;
  std::wstring caption() const;
  void setTag(const std::wstring& tag) const;
  void setCaption(const std::wstring& caption) const;
  void setBeginGroup(bool begins) const;
  void setStyle(long style) const;  // 3: icon and caption
  void pasteFace() const;           // from the clipboard
  void remove() const;

  // The controls of a pop-up's menu, in their order, until `visit` answers false.
  void visitControls(const std::function<bool(const HostControl&)>& visit) const;
  // A temporary control before the 1-based `position`; nothing when the host gives nothing back.
  std::optional<HostControl> add(long type, const std::wstring& parameter, long position) const;

  const com::Dispatch& object() const noexcept { return object_; }

 private:
  com::Dispatch object_;
};

// A key of a control: its identifier or its tag.
struct ControlKey {
  std::optional<long> id;
  std::wstring tag;

  static ControlKey ofId(long id) { return {id, {}}; }
  static ControlKey ofTag(std::wstring tag) { return {std::nullopt, std::move(tag)}; }
};

class HostCommandBar {
 public:
  explicit HostCommandBar(com::Dispatch object) noexcept : object_(std::move(object)) {}

  long type() const;  // 0 normal, 1 menu bar, 2 pop-up
  // Searches the bar and its pop-ups.
  std::optional<HostControl> find(const ControlKey& key) const;

 private:
  com::Dispatch object_;
};

class HostCommandBars {
 public:
  explicit HostCommandBars(com::Dispatch object) noexcept : object_(std::move(object)) {}

  std::optional<HostCommandBar> activeMenuBar() const;
  // Searches every bar.
  std::optional<HostControl> findByTag(const std::wstring& tag) const;

 private:
  com::Dispatch object_;
};
