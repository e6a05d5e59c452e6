; What both programs need. Each function is there twice, with "un." in front for the one that removes.

; usage: ${Refuse} CODE TEXT   Ends the program; the text is for a user, not for a script.
!macro Refuse code text
  MessageBox MB_OK|MB_ICONEXCLAMATION "${text}" /SD IDOK
  SetErrorLevel ${code}
  Quit
!macroend
!define Refuse "!insertmacro Refuse"

; For the 32-bit programs that there are here, the system redirects file and registry by itself.
!macro useScope
  ${If} $Scope == "machine"
    SetShellVarContext all
  ${Else}
    SetShellVarContext current
  ${EndIf}
!macroend

!macro defineCommon UN

Function ${UN}useScope
  !insertmacro useScope
FunctionEnd

; Runs this program again with an administrator's rights, waits for it and ends with its exit code.
; $0: the command line.
Function ${UN}runAsAdministrator
  HideWindow
  System::Call '*(&l4, i 0x140, p $HWNDPARENT, w "runas", w "$EXEPATH", w r0, p 0, i 1, p 0, p 0, p 0, p 0, p 0, p 0, p 0) p.r1'
  System::Call 'shell32::ShellExecuteExW(p r1) i.r2'
  System::Call '*$1(i, i, p, p, p, p, p, i, p, p, p, p, i, p, p .r3)'
  System::Free $1
  ${If} $2 = 0
    ShowWindow $HWNDPARENT ${SW_SHOW}
    Return
  ${EndIf}
  System::Call 'kernel32::WaitForSingleObject(p r3, i -1)'
  System::Call 'kernel32::GetExitCodeProcess(p r3, *i .r4)'
  System::Call 'kernel32::CloseHandle(p r3)'
  SetErrorLevel $4
  Quit
FunctionEnd

; $0: 1 for an administrator. With user account control only one whose rights are in force.
Function ${UN}askForAdministrator
  UserInfo::GetAccountType
  Pop $0
  ${If} $0 == "Admin"
    StrCpy $0 1
  ${Else}
    StrCpy $0 0
  ${EndIf}
FunctionEnd

!macroend

!insertmacro defineCommon ""
!insertmacro defineCommon "un."

Function requireWindows
  ${If} ${AtLeastWinVista}
    Return
  ${EndIf}
  ${If} ${IsWinXP}
  ${AndIf} ${AtLeastServicePack} 2
    Return
  ${EndIf}
  ${If} ${IsWin2003}
    Return
  ${EndIf}
  ${Refuse} ${EXIT_OLD_WINDOWS} "Quillet needs Windows XP with Service Pack 2, or a later Windows."
FunctionEnd

; usage: ${ReadInstalled} ROOT SCOPE
!macro ReadInstalled root scope
  ReadRegStr $0 ${root} "${REMOVAL_KEY}" InstallLocation
  ${If} $0 != ""
    StrCpy $InstalledScope ${scope}
    StrCpy $InstalledFolder $0
    ReadRegStr $InstalledVersion ${root} "${REMOVAL_KEY}" DisplayVersion
  ${EndIf}
!macroend
!define ReadInstalled "!insertmacro ReadInstalled"

; Both at once are not to be had: the host's list of add-ins has one entry for both.
Function findInstalled
  ${ReadInstalled} HKCU user
  ${If} $InstalledScope == ""
    ${ReadInstalled} HKLM machine
  ${EndIf}
FunctionEnd

; The one that removes belongs to the installation in whose folder it stands.
Function un.findInstalled
  StrCpy $Scope user
  ReadRegStr $0 HKLM "${REMOVAL_KEY}" InstallLocation
  ${If} $0 == $INSTDIR
    StrCpy $Scope machine
  ${EndIf}
  Call un.useScope
FunctionEnd

Function chooseScope
  ${If} $InstalledScope != ""
    ${If} $Scope != ""
    ${AndIf} $Scope != $InstalledScope
      ${If} $InstalledScope == "machine"
        StrCpy $1 "for everyone on this computer"
      ${Else}
        StrCpy $1 "for you alone"
      ${EndIf}
      ${Refuse} ${EXIT_OTHER_SCOPE} "Quillet is installed $1 already. To change that, remove it first."
    ${EndIf}
    StrCpy $Scope $InstalledScope
  ${EndIf}
  ${If} $Scope == ""
    Call askForAdministrator
    ${If} $0 = 1
      StrCpy $Scope machine
    ${Else}
      StrCpy $Scope user
    ${EndIf}
    ${If} $Catalogue != ""
      StrCpy $Scope machine
    ${EndIf}
  ${EndIf}
  Call useScope
FunctionEnd

Function requireNotNewer
  ${If} $InstalledVersion == ""
  ${OrIf} $MayDowngrade = 1
    Return
  ${EndIf}
  ${VersionCompare} "$InstalledVersion" "${VERSION}" $0
  ${If} $0 != 1
    Return
  ${EndIf}
  MessageBox MB_YESNO|MB_ICONQUESTION|MB_DEFBUTTON2 "Quillet $InstalledVersion is installed, which is newer than this version, ${VERSION}.$\r$\n$\r$\nDo you want to put the older version in its place?" /SD IDNO IDYES goOn
  SetErrorLevel ${EXIT_NEWER_INSTALLED}
  Quit
goOn:
FunctionEnd

; Where an installation is, it stays.
Function chooseFolder
  ${If} $InstalledFolder != ""
    ${If} $INSTDIR != ""
    ${AndIf} $INSTDIR != $InstalledFolder
      ${Refuse} ${EXIT_SWITCHES} "Quillet is installed in $InstalledFolder already. To have it elsewhere, remove it first."
    ${EndIf}
    StrCpy $INSTDIR $InstalledFolder
  ${ElseIf} $INSTDIR == ""
    Call useDefaultFolder
  ${EndIf}
FunctionEnd

Function useDefaultFolder
  ${If} $Scope == "machine"
    StrCpy $INSTDIR "$PROGRAMFILES32\Korvel Software\Quillet"
  ${Else}
    StrCpy $INSTDIR "$LOCALAPPDATA\Programs\Quillet"
  ${EndIf}
FunctionEnd

; An address that is there is kept until another one is given.
Function chooseCatalogue
  ${If} $Catalogue == ""
    ReadRegStr $Catalogue HKLM "${MACHINE_KEY}" DWTOnline
  ${ElseIf} $Scope == "user"
    ${Refuse} ${EXIT_SWITCHES} "The address of an online catalogue can be set for everyone on this computer only."
  ${EndIf}
FunctionEnd

Function requireAdministrator
  Call askForAdministrator
  ${If} $0 = 0
  ${AndIf} $Scope == "machine"
    ${Refuse} ${EXIT_NO_ADMINISTRATOR} "To install Quillet for everyone on this computer, an administrator is needed."
  ${EndIf}
FunctionEnd

Function un.requireAdministrator
  Call un.askForAdministrator
  ${If} $0 = 1
  ${OrIf} $Scope == "user"
    Return
  ${EndIf}
  ${IfNot} ${Silent}
    StrCpy $0 "_?=$INSTDIR"
    Call un.runAsAdministrator
  ${EndIf}
  ${Refuse} ${EXIT_NO_ADMINISTRATOR} "Quillet is installed for everyone on this computer. To remove it, an administrator is needed."
FunctionEnd
