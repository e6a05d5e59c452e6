// The user's switch for the diagnostic log.
#pragma once

namespace modCommon {

// Reads the switch and resets the indentation. Called when a main window loads.
void InitLog();

}  // namespace modCommon
