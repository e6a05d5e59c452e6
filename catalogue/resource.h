// Dialogs of the template catalogue, numbered as common/forms/Form.h says.
#pragma once

#define IDD_FOLDERS 2100
#define IDC_FOLDERS_LABEL 2110
#define IDC_FOLDERS_LIST 2111
#define IDC_FOLDERS_ADD 2112
#define IDC_FOLDERS_EDIT 2113
#define IDC_FOLDERS_REMOVE 2114
#define IDC_FOLDERS_REMOVEALL 2115

#define IDI_MACHINEFOLDER 2190
#define IDI_USERFOLDER 2191
