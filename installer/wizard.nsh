; The pages.
!define MUI_ICON "${ICON}"
!define MUI_UNICON "${ICON}"
!define MUI_HEADERIMAGE
!define MUI_HEADERIMAGE_RIGHT
!define MUI_HEADERIMAGE_BITMAP "${MADE}\header.bmp"
!define MUI_HEADERIMAGE_UNBITMAP "${MADE}\header.bmp"
!define MUI_WELCOMEFINISHPAGE_BITMAP "${MADE}\welcome.bmp"
!define MUI_UNWELCOMEFINISHPAGE_BITMAP "${MADE}\welcome.bmp"
!define MUI_ABORTWARNING
!define MUI_CUSTOMFUNCTION_GUIINIT useWindow

Var WelcomeText
Var FinishText

!define MUI_PAGE_CUSTOMFUNCTION_PRE prepareWelcome
!define MUI_WELCOMEPAGE_TITLE "Welcome to Quillet ${VERSION}"
!define MUI_WELCOMEPAGE_TEXT "$WelcomeText"
!insertmacro MUI_PAGE_WELCOME

!define MUI_PAGE_CUSTOMFUNCTION_PRE skipWhenElevated
!insertmacro MUI_PAGE_LICENSE "${MADE}\License.txt"

Page custom showScope leaveScope

!define MUI_PAGE_CUSTOMFUNCTION_PRE skipWhenInstalled
!define MUI_PAGE_CUSTOMFUNCTION_SHOW nameInstallButton
!define MUI_DIRECTORYPAGE_TEXT_TOP "Quillet goes into this folder. To have it elsewhere, choose Browse and another one."
!insertmacro MUI_PAGE_DIRECTORY

Page custom showCatalogue leaveCatalogue

!insertmacro MUI_PAGE_INSTFILES

!define MUI_PAGE_CUSTOMFUNCTION_PRE prepareFinish
!define MUI_FINISHPAGE_TITLE "Quillet ${VERSION} is installed"
!define MUI_FINISHPAGE_TEXT "$FinishText"
!define MUI_FINISHPAGE_TEXT_LARGE
!insertmacro MUI_PAGE_FINISH

!insertmacro MUI_UNPAGE_CONFIRM
UninstPage custom un.showSettings un.leaveSettings
!insertmacro MUI_UNPAGE_INSTFILES

!insertmacro MUI_LANGUAGE English

Function useWindow
  ; The outer instance waits, hidden, for this one.
  ${If} $Elevated = 1
    BringToFront
  ${EndIf}
FunctionEnd

Function skipWhenElevated
  ${If} $Elevated = 1
    Abort
  ${EndIf}
FunctionEnd

Function skipWhenInstalled
  ${If} $InstalledScope != ""
    Abort
  ${EndIf}
FunctionEnd

; Says so where the installation is next: only everyone's has a page for the catalogue before it.
Function nameInstallButton
  ${If} $Scope == "user"
    GetDlgItem $0 $HWNDPARENT 1
    SendMessage $0 ${WM_SETTEXT} 0 "STR:$(^InstallBtn)"
  ${EndIf}
FunctionEnd

Function prepareWelcome
  Call skipWhenElevated
  StrCpy $WelcomeText "Quillet adds two entries to FrontPage's menu Format, Dynamic Web Template: one shows the templates on your disk and copies one into your web, the other gets more from an online catalogue.$\r$\n$\r$\n"
  ${If} $InstalledScope == ""
    StrCpy $WelcomeText "$WelcomeTextPlease close FrontPage before you go on.$\r$\n$\r$\nChoose Next to continue."
  ${ElseIf} $InstalledVersion == "${VERSION}"
    StrCpy $WelcomeText "$WelcomeTextThis version is installed already, in $INSTDIR. It will be repaired; your settings and your templates stay as they are.$\r$\n$\r$\nPlease close FrontPage, and choose Next to continue."
  ${Else}
    StrCpy $WelcomeText "$WelcomeTextVersion $InstalledVersion is installed, in $INSTDIR. This version takes its place; your settings and your templates stay as they are.$\r$\n$\r$\nPlease close FrontPage, and choose Next to continue."
  ${EndIf}
FunctionEnd

; For whom.
Var EveryoneButton
Var UserButton

Function showScope
  Call skipWhenElevated
  !insertmacro MUI_HEADER_TEXT "For Whom" "Choose who is to have Quillet."
  nsDialogs::Create 1018
  Pop $0
  ${NSD_CreateRadioButton} 0 0 100% 12u "&Everyone on this computer"
  Pop $EveryoneButton
  Call askForAdministrator
  StrCpy $1 ""
  ${If} $0 = 0
    StrCpy $1 " You will be asked for an administrator's consent."
  ${EndIf}
  ${NSD_CreateLabel} 12u 13u -12u 34u "With the sample templates in everybody's list, and an online catalogue for everybody. Other users find the entries in FrontPage after their next log-on.$1"
  Pop $0
  ${NSD_CreateRadioButton} 0 52u 100% 12u "&Only me"
  Pop $UserButton
  ${NSD_CreateLabel} 12u 65u -12u 34u "Needs no administrator, and changes nothing outside of your own profile. The online catalogue is not available then: its address is kept for the whole computer, and only an administrator can set it."
  Pop $0
  ${If} $InstalledScope != ""
    EnableWindow $EveryoneButton 0
    EnableWindow $UserButton 0
    ${NSD_CreateLabel} 0 110u 100% 24u "Quillet is installed already, and stays for those who have it. To change that, remove it first."
    Pop $0
    Call nameInstallButton
  ${EndIf}
  ${NSD_OnClick} $EveryoneButton showShield
  ${NSD_OnClick} $UserButton showShield
  ${If} $Scope == "machine"
    ${NSD_Check} $EveryoneButton
  ${Else}
    ${NSD_Check} $UserButton
  ${EndIf}
  Push $EveryoneButton
  Call showShield
  nsDialogs::Show
FunctionEnd

; Next bears the system's shield where it leads to the question for consent.
Function showShield
  Pop $0
  Call askForAdministrator
  ${NSD_GetState} $EveryoneButton $1
  StrCpy $2 0
  ${If} $0 = 0
  ${AndIf} $1 = ${BST_CHECKED}
    StrCpy $2 1
  ${EndIf}
  GetDlgItem $1 $HWNDPARENT 1
  SendMessage $1 0x160C 0 $2  ; BCM_SETSHIELD
FunctionEnd

Function leaveScope
  StrCpy $R9 $Scope
  ${NSD_GetState} $EveryoneButton $0
  ${If} $0 = ${BST_CHECKED}
    StrCpy $Scope machine
  ${Else}
    StrCpy $Scope user
  ${EndIf}
  Call useScope
  ${If} $Scope != $R9
    Call useDefaultFolder
  ${EndIf}
  Call askForAdministrator
  ${If} $Scope == "user"
  ${OrIf} $0 = 1
    Return
  ${EndIf}
  StrCpy $0 "/AllUsers /Elevated"
  ${If} $Catalogue != ""
    StrCpy $0 '$0 "/CATALOGUE=$Catalogue"'
  ${EndIf}
  ${If} $MayDowngrade = 1
    StrCpy $0 "$0 /Downgrade"
  ${EndIf}
  ${If} $InstalledScope == ""
    StrCpy $0 "$0 /D=$INSTDIR"
  ${EndIf}
  Call runAsAdministrator
  MessageBox MB_OK|MB_ICONEXCLAMATION "To install Quillet for everyone on this computer, an administrator is needed. Without one, choose to install it for you only."
  Abort
FunctionEnd

; Where the catalogue is.
Var AddressBox

Function showCatalogue
  ${If} $Scope != "machine"
    Abort
  ${EndIf}
  !insertmacro MUI_HEADER_TEXT "Online Catalogue" "Tell where more templates can be found."
  nsDialogs::Create 1018
  Pop $0
  ${NSD_CreateLabel} 0 0 100% 24u "Quillet gets more templates from an online catalogue. Whoever keeps one for you can tell its address. Without one, leave the box empty; you can run this program again later."
  Pop $0
  ${NSD_CreateLabel} 0 32u 100% 10u "&Address of the catalogue's start page:"
  Pop $0
  ${NSD_CreateText} 0 43u 100% 13u "$Catalogue"
  Pop $AddressBox
  ${NSD_SetTextLimit} $AddressBox 900
  ${NSD_CreateLabel} 0 60u 100% 10u "For instance http://intranet/templates/index.htm"
  Pop $0
  nsDialogs::Show
FunctionEnd

Function leaveCatalogue
  ${NSD_GetText} $AddressBox $Catalogue
  ${If} $Catalogue == ""
    Return
  ${EndIf}
  StrCpy $0 $Catalogue
  Call checkAddress
  ${If} $0 = 0
    MessageBox MB_OK|MB_ICONEXCLAMATION "An address begins with http://, https:// or file:/// and names a place. Without a catalogue, leave the box empty."
    Abort
  ${EndIf}
FunctionEnd

Function prepareFinish
  StrCpy $FinishText "Start FrontPage and open a web. The two new entries are in the menu Format, Dynamic Web Template; the help is there, too, and in the start menu."
  ${If} $Scope == "user"
    StrCpy $FinishText "$FinishText$\r$\n$\r$\nThe sample templates are in your list of template folders. The online catalogue is not available in an installation for you only."
  ${Else}
    StrCpy $FinishText "$FinishText$\r$\n$\r$\nOther users of this computer find the entries after their next log-on."
    ${If} $Catalogue == ""
      StrCpy $FinishText "$FinishText No address of an online catalogue is set; run this program again to set one."
    ${EndIf}
  ${EndIf}
FunctionEnd

; What becomes of the user's settings.
Var SettingsBox

Function un.showSettings
  !insertmacro MUI_HEADER_TEXT "Your Settings" "Choose whether your settings are to stay."
  nsDialogs::Create 1018
  Pop $0
  ${NSD_CreateLabel} 0 0 100% 34u "Your list of template folders and the places of the windows are kept, in case you install Quillet again. Templates and themes that you have made or changed stay in any case."
  Pop $0
  ${NSD_CreateCheckBox} 0 42u 100% 12u "&Remove my settings, too"
  Pop $SettingsBox
  ${If} $RemovesSettings = 1
    ${NSD_Check} $SettingsBox
  ${EndIf}
  nsDialogs::Show
FunctionEnd

Function un.leaveSettings
  ${NSD_GetState} $SettingsBox $RemovesSettings
FunctionEnd
