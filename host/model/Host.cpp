#include "host/model/Host.h"

#include <stdexcept>

namespace standin {
namespace {

std::wstring withoutEnd(std::wstring folder) {
  while (!folder.empty() && folder.back() == L'\\') folder.pop_back();
  return folder;
}

CommandBar& menuOf(const Host& host, long popupId) {
  CommandBarControl* control = host.control(popupId);
  CommandBarPopup* popup = control ? control->asPopup() : nullptr;
  if (!popup) throw std::invalid_argument("the host has no pop-up of that identifier");
  return popup->menu();
}

}  // namespace

Host::Host(HostOptions options, std::wstring webFolder, std::wstring themesFolder)
    : session_(std::make_shared<Session>()) {
  session_->options = std::move(options);
  session_->webFolder = withoutEnd(std::move(webFolder));
  session_->themesFolder = withoutEnd(std::move(themesFolder));
  application_ = make<Application>(session_);
  buildMenus(commandBars());
  if (session_->options.explorerObject) explorer_.emplace(session_);
}

Host::~Host() {
  session_->menuChanged = [] {};
  session_->webChanged = [] {};
  session_->activated = [] {};
  session_->webFolder.clear();
  ++session_->webGeneration;
  commandBars().menuBar.reset();
  commandBars().bars.clear();
}

void Host::openWeb(std::wstring folder) {
  session_->webFolder = withoutEnd(std::move(folder));
  ++session_->webGeneration;
  session_->webChanged();
}

void Host::closeWeb() { openWeb({}); }

CommandBarControl* Host::control(long id) const {
  ControlSearch search;
  search.id = id;
  return commandBars().find(search);
}

CommandBarControl* Host::control(std::wstring_view tagOrCaption) const {
  for (CommandBarControl* control : commandBars().allControls())
    if (control->tag == tagOrCaption || plainCaption(control->caption) == tagOrCaption)
      return control;
  return nullptr;
}

CommandBarButton* Host::button(std::wstring_view tagOrCaption) const {
  CommandBarControl* found = control(tagOrCaption);
  return found ? found->asButton() : nullptr;
}

std::vector<std::wstring> Host::captions(long popupId) const {
  std::vector<std::wstring> result;
  for (const auto& entry : menuOf(*this, popupId).controls()) result.push_back(entry->caption);
  return result;
}

CommandBarButton& Host::addEntry(long popupId, long id, std::wstring caption) {
  CommandBar& menu = menuOf(*this, popupId);
  auto made = makeControl(session_, typeButton, id, std::move(caption));
  CommandBarButton& entry = *made->asButton();
  menu.insert(std::move(made), menu.controls().size());
  session_->menuChanged();
  return entry;
}

void Host::clearEntries(long popupId) {
  CommandBar& menu = menuOf(*this, popupId);
  while (!menu.controls().empty()) menu.erase(menu.controls().front().get());
  session_->menuChanged();
}

bool Host::click(std::wstring_view tagOrCaption, bool* cancelled) const {
  CommandBarButton* entry = button(tagOrCaption);
  if (!entry) return false;
  const bool cancel = commandBars().click(*entry);
  if (cancelled) *cancelled = cancel;
  return true;
}

}  // namespace standin
