#include "addin/host/HostCommandBars.h"

using com::Variant;

namespace {

std::optional<HostControl> asControl(const com::Dispatch& object) {
  if (!object) return std::nullopt;
  return HostControl(object);
}

}  // namespace

long HostControl::type() const { return object_.value(L"Type").number(); }
long HostControl::id() const { return object_.value(L"Id").number(); }
long HostControl::index() const { return object_.value(L"Index").number(); }
std::wstring HostControl::tag() const { return object_.value(L"Tag").text(); }
std::wstring HostControl::caption() const { return object_.value(L"Caption").text(); }
void HostControl::setTag(const std::wstring& tag) const { object_.put(L"Tag", tag); }
void HostControl::setCaption(const std::wstring& caption) const {
  object_.put(L"Caption", caption);
}
void HostControl::setBeginGroup(bool begins) const { object_.put(L"BeginGroup", begins); }
void HostControl::setStyle(long style) const { object_.put(L"Style", style); }
void HostControl::pasteFace() const { object_.call(L"PasteFace"); }
void HostControl::remove() const { object_.call(L"Delete"); }

void HostControl::visitControls(const std::function<bool(const HostControl&)>& visit) const {
  const com::Dispatch collection = object_.object(L"Controls");
  const long count = collection.value(L"Count").number();
  for (long index = 1; index <= count; ++index)
    if (!visit(HostControl(collection.object(L"Item", {index})))) return;
}

std::optional<HostControl> HostControl::add(long type, const std::wstring& parameter,
                                            long position) const {
  const com::Dispatch collection = object_.object(L"Controls");
  // Behind the last control there is none to stand before: leaving the place out appends.
  const bool appends = position > collection.value(L"Count").number();
  const Variant before = appends ? Variant::missing() : Variant(position);
  // What the host has made must not stay behind for want of memory to hold it.
  com::Dispatch added = com::Dispatch::room();
  added.take(
      collection.call(L"Add", {type, Variant::missing(), parameter, before, /*temporary=*/true})
          .object());
  return asControl(added);
}

long HostCommandBar::type() const { return object_.value(L"Type").number(); }

std::optional<HostControl> HostCommandBar::find(const ControlKey& key) const {
  const Variant id = key.id ? Variant(*key.id) : Variant::missing();
  const Variant tag = key.id ? Variant::missing() : Variant(key.tag);
  const Variant any = Variant::missing();
  return asControl(object_.lookUp(L"FindControl", {any, id, tag, any, /*recursive=*/true}));
}

std::optional<HostCommandBar> HostCommandBars::activeMenuBar() const {
  const com::Dispatch bar = object_.lookUp(L"ActiveMenuBar");
  if (!bar) return std::nullopt;
  return HostCommandBar(bar);
}

std::optional<HostControl> HostCommandBars::findByTag(const std::wstring& tag) const {
  return asControl(object_.lookUp(L"FindControl", {Variant::missing(), Variant::missing(), tag}));
}
