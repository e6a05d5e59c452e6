// Numbers of the host's resources.
#pragma once

#define IDI_HOST 1
#define IDD_ADD_INS 100
#define IDC_ADD_INS_LIST 101
#define IDC_LOAD 102
#define IDC_UNLOAD 103
