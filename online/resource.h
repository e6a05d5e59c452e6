// Dialogs of the online catalogue, numbered as common/forms/Form.h says.
#pragma once

#define IDD_INPUTBOX 4200
#define IDC_INPUTBOX_LBLPROMPT 4210
#define IDC_INPUTBOX_TXTINPUT 4211
