; The setup program, and the one that removes. Defined from outside: OUT, VERSION, MADE (the folder with
; file-list.nsh, installed.ini and the pictures) and ICON.
;
; It runs with the rights it was started with, so that a user can install for himself, and asks for an
; administrator's only when it is to install for everyone. What it does to the registry for the add-in
; itself is left to the module, whose own list of entries is the only one.
Unicode true
SetCompressor /SOLID lzma
SetDatablockOptimize on
SetDateSave on
AllowSkipFiles off  ; what cannot be written ends an installation, also a silent one
RequestExecutionLevel user
ManifestDPIAware true
ManifestSupportedOS all

!include MUI2.nsh
!include FileFunc.nsh
!include LogicLib.nsh
!include WinVer.nsh
!include WordFunc.nsh
!include nsDialogs.nsh

Name "Quillet"
OutFile "${OUT}"
BrandingText "Quillet ${VERSION}"
InstallDir ""  ; empty unless /D= says something
ShowInstDetails nevershow
ShowUninstDetails nevershow

VIProductVersion "${VERSION}.0"
VIAddVersionKey CompanyName "Korvel Software"
VIAddVersionKey FileDescription "Quillet Setup"
VIAddVersionKey FileVersion "${VERSION}"
VIAddVersionKey LegalCopyright "The Quillet authors"
VIAddVersionKey ProductName "Quillet Viewer"
VIAddVersionKey ProductVersion "${VERSION}"

; The exit codes, as ReadMe.txt tells them. 1 and 2 are the system's own for a cancelled and a failed
; installation.
!define EXIT_FAILED 2
!define EXIT_NO_ADMINISTRATOR 3
!define EXIT_NEWER_INSTALLED 4
!define EXIT_IN_USE 5
!define EXIT_SWITCHES 6
!define EXIT_OTHER_SCOPE 7
!define EXIT_OLD_WINDOWS 8

!define REMOVAL_KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\Quillet"
!define MAKER_KEY "Software\Korvel Software"
!define MACHINE_KEY "${MAKER_KEY}\Quillet Viewer"
!define MACHINE_FOLDERS_KEY "${MACHINE_KEY}\DWT Folders"
!define SETTINGS_KEY "Software\VB and VBA Program Settings\Quillet Viewer"
!define USER_FOLDERS_KEY "${SETTINGS_KEY}\DWT Folders"
!define ADDIN_KEY "Software\Microsoft\Office\FrontPage\Addins\DWT.DWTemplate"
!define CLASS_ID "{EA65D517-CDCA-46D0-BD68-449BB8328D69}"
; What the system does for each user at the next log-on, once.
!define LOGON_KEY "Software\Microsoft\Active Setup\Installed Components\${CLASS_ID}"

Var Scope             ; "machine" or "user"
Var InstalledScope    ; the same of the installation that is there, or nothing
Var InstalledVersion
Var InstalledFolder
Var ThemesFolder
Var Catalogue         ; address of the catalogue's start page, or nothing
Var Elevated          ; 1 when another instance has shown the first pages
Var MayDowngrade

!include "${__FILEDIR__}/common.nsh"
!include "${__FILEDIR__}/switches.nsh"
!include "${__FILEDIR__}/files.nsh"
!include "${__FILEDIR__}/registry.nsh"
!include "${__FILEDIR__}/wizard.nsh"

Function .onInit
  Call parseSwitches
  Call requireWindows
  Call findInstalled
  Call chooseScope
  Call requireNotNewer
  Call chooseFolder
  Call chooseCatalogue
  ${If} ${Silent}
    Call requireAdministrator
    Call requireFree
  ${EndIf}
FunctionEnd

Section
  AddSize ${KILOBYTES}  ; of what a function installs the frame knows nothing
  Call requireFree
  Call installFiles
  Call register
SectionEnd

; What a first installation has come to is taken back; one that was there before can be repaired.
Function .onInstFailed
  ${If} $InstalledScope == ""
    Call unregister
    Call removeFiles
  ${EndIf}
FunctionEnd

Function un.onInit
  Call un.parseSwitches
  Call un.findInstalled
  Call un.requireAdministrator
  ${If} ${Silent}
    Call un.requireFree
  ${EndIf}
FunctionEnd

Section Uninstall
  Call un.requireFree
  Call un.unregister
  Call un.removeFiles
  Call un.removeSettings
SectionEnd
