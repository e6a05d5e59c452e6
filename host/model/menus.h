// The menus a fresh host comes up with.
#pragma once

#include "host/model/CommandBars.h"

namespace standin {

// The pop-up that holds the commands about Dynamic Web Templates, and the two of its entries that
// add-ins place theirs by. It opens from the Format menu.
inline constexpr long templatesMenuId = 31252;
inline constexpr long copyAnchorId = 7121;
inline constexpr long onlineAnchorId = 7127;

void buildMenus(CommandBars& bars);

// Commands of the host itself.
enum Command : long {
  commandOpenWeb = 23,
  commandCloseWeb = 106,
  commandExit = 752,
  commandRefresh = 459,
  commandAddIns = 943,
  commandAbout = 927,
};

}  // namespace standin
