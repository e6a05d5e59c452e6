// The host application, and the one the add-in is connected to.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "addin/host/HostCommandBars.h"
#include "addin/host/HostWeb.h"
#include "common/Dispatch.h"

// A thin value over the host's application object.
class HostApplication {
 public:
  HostApplication() noexcept = default;
  explicit HostApplication(com::Dispatch object) noexcept : object_(std::move(object)) {}

  explicit operator bool() const noexcept { return static_cast<bool>(object_); }

  std::wstring name() const;
  std::wstring version() const;
  // Nothing when no web is open, however the host says so.
  std::optional<HostWeb> activeWeb() const;
  // Whether a theme of that name, in any letter case, is installed. The themes behind the first
  // such one, in the host's order, are not looked at.
  bool hasTheme(std::wstring_view name) const;
  // The absolute URL of `url` seen from `base`; an absolute one comes back unchanged.
  std::wstring makeAbsolute(const std::wstring& base, const std::wstring& url) const;

  HostCommandBars commandBars() const;

 private:
  com::Dispatch object_;
};

// The application that the add-in is connected to; every window reaches the open web through it.
// Empty before the connection.
HostApplication& hostApplication() noexcept;
