// A dialog resource with the font that the system uses for messages.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace forms {

struct DialogFont {
  std::wstring face;
  WORD points = 8;
};

// The message font of the system, at the screen's resolution.
DialogFont messageFont();

// The extended dialog template (DLGTEMPLATEEX, as documented for CreateDialogIndirect) `dialog` of
// the module, with its font replaced. Raises errors::cannotCreateObject when there is none.
std::vector<BYTE> loadDialogTemplate(HINSTANCE module, int dialog, const DialogFont& font);

// The size of a dialog's client area in dialog units, from its extended template.
SIZE dialogUnitsOf(const std::vector<BYTE>& dialogTemplate);

}  // namespace forms
