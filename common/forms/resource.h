// Dialogs of the common services, numbered as Form.h says.
#pragma once

#define IDD_ABOUT 1000
#define IDC_ABOUT_ICON 1010
#define IDC_ABOUT_TITLE 1011
#define IDC_ABOUT_VERSION 1012
#define IDC_ABOUT_TEXT 1013
#define IDC_ABOUT_LOGGING 1014

#define IDD_INPUTBOX 1100
#define IDC_INPUTBOX_LBLPROMPT 1110
#define IDC_INPUTBOX_TXTINPUT 1111

// The program's own icon.
#define IDI_QUILLET 100
