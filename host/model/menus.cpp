#include "host/model/menus.h"

#include <string_view>
#include <vector>

namespace standin {
namespace {

struct Entry {
  long id;
  const wchar_t* caption;
  bool beginGroup = false;
};

struct Menu {
  long id;
  const wchar_t* caption;
  std::vector<Entry> entries;
};

const std::vector<Menu>& menus() {
  static const std::vector<Menu> all = {
      {30002,
       L"&File",
       {{18, L"&New..."},
        {commandOpenWeb, L"&Open Web..."},
        {commandCloseWeb, L"&Close Web"},
        {3, L"&Save", true},
        {748, L"Save &As..."},
        {commandExit, L"E&xit", true}}},
      {30003,
       L"&Edit",
       {{128, L"&Undo"},
        {129, L"&Redo"},
        {21, L"Cu&t", true},
        {19, L"&Copy"},
        {22, L"&Paste"},
        {141, L"&Find && Replace...", true}}},
      {30004, L"&View", {{commandRefresh, L"&Refresh"}, {5727, L"&Folder List", true}}},
      {30005,
       L"&Insert",
       {{755, L"&Break..."}, {308, L"Horizontal &Line"}, {1576, L"Hyperl&ink...", true}}},
      {30006, L"F&ormat", {{253, L"&Font..."}, {779, L"&Paragraph..."}, {5768, L"&Theme..."}}},
      {30007, L"&Tools", {{2, L"&Spelling..."}, {commandAddIns, L"Add-&ins...", true}}},
      {30008, L"T&able", {{333, L"&Insert..."}, {292, L"&Delete Cells"}}},
      {30009, L"&Window", {{303, L"&New Window"}}},
      {30010, L"&Help", {{984, L"Microsoft FrontPage &Help"}, {commandAbout, L"&About..."}}},
  };
  return all;
}

const std::vector<Entry> templateEntries = {
    {copyAnchorId, L"&Attach Dynamic Web Template..."},
    {7122, L"&Detach from Dynamic Web Template"},
    {7123, L"&Open Attached Dynamic Web Template"},
    {7125, L"&Update Selected Page", true},
    {7126, L"Update All &Pages"},
    {onlineAnchorId, L"&Manage Editable Regions...", true},
};

void addEntry(CommandBar& bar, const Entry& entry) {
  auto control = makeControl(bar.session(), typeButton, entry.id, entry.caption);
  control->beginGroup = entry.beginGroup;
  bar.insert(std::move(control), bar.controls().size());
}

void addTemplatesMenu(CommandBar& bar) {
  const HostOptions& options = bar.session()->options;
  if (!options.templatesMenu) return;
  auto control = makeControl(bar.session(), options.templatesMenuType, templatesMenuId,
                             L"&Dynamic Web Template");
  control->beginGroup = true;
  CommandBarPopup* popup = control->asPopup();
  bar.insert(control, bar.controls().size());
  if (!popup) return;
  for (const Entry& entry : templateEntries)
    if ((entry.id != copyAnchorId || options.copyAnchor) &&
        (entry.id != onlineAnchorId || options.onlineAnchor))
      addEntry(popup->menu(), entry);
}

void addMenu(CommandBar& bar, const Menu& menu) {
  auto control = makeControl(bar.session(), typePopup, menu.id, menu.caption);
  CommandBar& opened = control->asPopup()->menu();
  for (const Entry& entry : menu.entries) addEntry(opened, entry);
  if (menu.caption == std::wstring_view(L"F&ormat")) addTemplatesMenu(opened);
  bar.insert(std::move(control), bar.controls().size());
}

}  // namespace

void buildMenus(CommandBars& bars) {
  const HostOptions& options = bars.session()->options;
  if (options.menuBar) {
    bars.menuBar = make<CommandBar>(bars.session(), options.menuBarType, L"Menu Bar");
    for (const Menu& menu : menus()) addMenu(*bars.menuBar.get(), menu);
    bars.bars.push_back(bars.menuBar);
  }
  if (options.toolbar) {
    auto bar = make<CommandBar>(bars.session(), 0L, L"Standard");
    for (const Entry& entry :
         {Entry{18, L"&New..."}, Entry{commandOpenWeb, L"&Open Web..."}, Entry{3, L"&Save"}})
      addEntry(*bar.get(), entry);
    bars.bars.push_back(std::move(bar));
  }
}

}  // namespace standin
