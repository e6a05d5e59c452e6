; What stands in the registry.

!macro defineRegistry UN

; Calls one of the module's entries. $0: its name. $1: 1 to add and 0 to remove. $2: the argument of
; DllInstall. Then $0 is its result, or nothing. The module's path can hold what means something in a
; call's own text, so all of it goes by registers.
Function ${UN}callModule
  StrCpy $3 $0
  StrCpy $4 "$INSTDIR\Quillet.dll"
  StrCpy $0 ""
  System::Call 'kernel32::LoadLibraryW(w r4) p.r5'
  ${If} $5 P= 0
    Return
  ${EndIf}
  System::Call 'kernel32::GetProcAddress(p r5, m r3) p.r6'
  ${If} $3 == "DllInstall"
    System::Call '::$6(i r1, w r2) i.r0'
  ${Else}
    System::Call '::$6() i.r0'
  ${EndIf}
  System::Call 'kernel32::FreeLibrary(p r5)'
FunctionEnd

; A copy of the module that somebody has registered elsewhere stays.
Function ${UN}unregisterModule
  ReadRegStr $0 SHCTX "Software\Classes\CLSID\${CLASS_ID}\InprocServer32" ""
  ${If} $0 != "$INSTDIR\Quillet.dll"
    Return
  ${EndIf}
  StrCpy $0 DllUnregisterServer
  ${If} $Scope == "user"
    StrCpy $0 DllInstall
  ${EndIf}
  StrCpy $1 0
  StrCpy $2 user
  Call ${UN}callModule
FunctionEnd

; The entry in the host's list is each user's own. Those of users who are not logged on stay behind; the
; host passes over them.
Function ${UN}forgetUsers
  StrCpy $R0 0
  ${Do}
    EnumRegKey $0 HKU "" $R0
    ${If} $0 == ""
      ${Break}
    ${EndIf}
    DeleteRegKey HKU "$0\${ADDIN_KEY}"
    DeleteRegKey /ifempty HKU "$0\Software\Microsoft\Office\FrontPage\Addins"
    DeleteRegKey /ifempty HKU "$0\Software\Microsoft\Office\FrontPage"
    DeleteRegKey HKU "$0\${LOGON_KEY}"
    IntOp $R0 $R0 + 1
  ${Loop}
FunctionEnd

; The help's folder, which other programs of the maker may use, too.
Function ${UN}restoreCommonPath
  ReadRegStr $0 HKLM "${MAKER_KEY}" CommonPath
  ${If} $0 == "$INSTDIR\"
    ReadINIStr $1 "${LIST}" Before CommonPath
    ${If} $1 == ""
      DeleteRegValue HKLM "${MAKER_KEY}" CommonPath
    ${Else}
      WriteRegStr HKLM "${MAKER_KEY}" CommonPath $1
    ${EndIf}
  ${EndIf}
FunctionEnd

Function ${UN}unregister
  Call ${UN}unregisterModule
  ${If} $Scope == "machine"
    Call ${UN}forgetUsers
    Call ${UN}restoreCommonPath
    DeleteRegKey HKLM "${LOGON_KEY}"
    DeleteRegValue HKLM "${MACHINE_KEY}" DWTOnline
    DeleteRegValue HKLM "${MACHINE_FOLDERS_KEY}" "$INSTDIR\Templates"
    DeleteRegKey /ifempty HKLM "${MACHINE_FOLDERS_KEY}"
    DeleteRegKey /ifempty HKLM "${MACHINE_KEY}"
    DeleteRegKey /ifempty HKLM "${MAKER_KEY}"
  ${Else}
    DeleteRegValue HKCU "${USER_FOLDERS_KEY}" "$INSTDIR\Templates"
    DeleteRegKey /ifempty HKCU "${USER_FOLDERS_KEY}"
    DeleteRegKey /ifempty HKCU "${SETTINGS_KEY}"
    DeleteRegKey /ifempty HKCU "Software\VB and VBA Program Settings"
  ${EndIf}
  Delete "$SMPROGRAMS\Quillet Help.lnk"
  DeleteRegKey SHCTX "${REMOVAL_KEY}"
FunctionEnd

!macroend

!insertmacro defineRegistry ""
!insertmacro defineRegistry "un."

; usage: ${Write} KIND ROOT KEY NAME VALUE
!macro Write kind root key name value
  ClearErrors
  WriteReg${kind} ${root} "${key}" "${name}" `${value}`
  ${If} ${Errors}
    Call giveUp
  ${EndIf}
!macroend
!define Write "!insertmacro Write"

Function giveUp
  MessageBox MB_OK|MB_ICONSTOP "Not everything could be written into the registry." /SD IDOK
  Abort
FunctionEnd

; The module registers itself. Its class for everybody on the machine or for the user alone; its entry in
; the host's list is always the user's.
Function registerModule
  StrCpy $0 DllRegisterServer
  ${If} $Scope == "user"
    StrCpy $0 DllInstall
  ${EndIf}
  StrCpy $1 1
  StrCpy $2 user
  Call callModule
  ${If} $0 != 0
    MessageBox MB_OK|MB_ICONSTOP "Quillet could not be registered as an add-in (code $0)." /SD IDOK
    Abort
  ${EndIf}
FunctionEnd

; Every other user gets the entry at the next log-on.
Function registerForOthers
  ${Write} Str HKLM "${LOGON_KEY}" "" "Quillet"
  ${Write} Str HKLM "${LOGON_KEY}" StubPath '"$SYSDIR\regsvr32.exe" /s /n /i:list "$INSTDIR\Quillet.dll"'
  StrCpy $0 "${VERSION}.0"
  ${WordReplace} $0 "." "," "+" $0
  ${Write} Str HKLM "${LOGON_KEY}" Version $0
FunctionEnd

Function writeMachineValues
  ReadRegStr $0 HKLM "${MAKER_KEY}" CommonPath
  ${If} $0 != ""
  ${AndIf} $0 != "$INSTDIR\"
    WriteINIStr "${LIST}" Before CommonPath $0
  ${EndIf}
  ${Write} Str HKLM "${MAKER_KEY}" CommonPath "$INSTDIR\"
  ${If} $Catalogue == ""
    DeleteRegValue HKLM "${MACHINE_KEY}" DWTOnline
  ${Else}
    ${Write} Str HKLM "${MACHINE_KEY}" DWTOnline $Catalogue
  ${EndIf}
  ${Write} Str HKLM "${MACHINE_FOLDERS_KEY}" "$INSTDIR\Templates" ""
FunctionEnd

; Without the machine's list the samples stand in the user's own, from which the user may take them.
Function writeUserValues
  ${If} $InstalledScope == ""
    ${Write} Str HKCU "${USER_FOLDERS_KEY}" "$INSTDIR\Templates" "$INSTDIR\Templates"
  ${EndIf}
FunctionEnd


; In the list of installed programs.
Function listProgram
  ${Write} Str SHCTX "${REMOVAL_KEY}" DisplayName "Quillet"
  ${Write} Str SHCTX "${REMOVAL_KEY}" DisplayVersion "${VERSION}"
  ${Write} Str SHCTX "${REMOVAL_KEY}" Publisher "Korvel Software"
  ${Write} Str SHCTX "${REMOVAL_KEY}" DisplayIcon "$INSTDIR\uninstall.exe,0"
  ${Write} Str SHCTX "${REMOVAL_KEY}" InstallLocation "$INSTDIR"
  ${Write} Str SHCTX "${REMOVAL_KEY}" UninstallString '"$INSTDIR\uninstall.exe"'
  ${Write} Str SHCTX "${REMOVAL_KEY}" QuietUninstallString '"$INSTDIR\uninstall.exe" /S'
  ${Write} DWORD SHCTX "${REMOVAL_KEY}" NoModify 1
  ${Write} DWORD SHCTX "${REMOVAL_KEY}" NoRepair 1
  ${GetSize} "$INSTDIR" "/S=0K" $0 $1 $2
  ${Write} DWORD SHCTX "${REMOVAL_KEY}" EstimatedSize $0
FunctionEnd

Function register
  Call registerModule
  ${If} $Scope == "machine"
    Call registerForOthers
    Call writeMachineValues
  ${Else}
    Call writeUserValues
  ${EndIf}
  CreateShortcut "$SMPROGRAMS\Quillet Help.lnk" "$INSTDIR\KorvelHelp.exe" '"$INSTDIR\QuilletHelp\"'
  Call listProgram
FunctionEnd

; What the programs have written for this user: only when asked for.
Function un.removeSettings
  ${If} $RemovesSettings != 1
    Return
  ${EndIf}
  DeleteRegKey HKCU "${SETTINGS_KEY}"
  DeleteRegKey /ifempty HKCU "Software\VB and VBA Program Settings"
  SetShellVarContext current
  RMDir /r "$APPDATA\Korvel Software\Orlique\_orlique"
  RMDir "$APPDATA\Korvel Software\Orlique"
  RMDir "$APPDATA\Korvel Software\DWTs"  ; where downloads go; not with a template in it
  RMDir "$APPDATA\Korvel Software"
FunctionEnd
