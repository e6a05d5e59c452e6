; The files. What was installed stands in installed.ini beside them, under the places that they have in
; the archive:
;   [Files]  1=Quillet.dll ...
;   [Sums]   Quillet.dll=<check sum> ...
;   [Places] Themes=<folder>, where not beside the others
;            1=<folder> ..., those above the installation that were made for it, the lowest first
;   [Before] CommonPath=<what another program had there>
!define LIST "$INSTDIR\installed.ini"
!define OLD_LIST "$PLUGINSDIR\installed.ini"

; usage: !insertmacro RequireFree UN FILE TEXT   Asks until the file is free or the user gives up.
!macro RequireFree UN file text
  ${Do}
    StrCpy $0 "$INSTDIR\${file}"
    Call ${UN}askForUse
    ${If} $1 = 0
      ${Break}
    ${EndIf}
    MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION "${text}" /SD IDCANCEL IDRETRY +3
    SetErrorLevel ${EXIT_IN_USE}
    Quit
  ${Loop}
!macroend

!macro defineFiles UN

; $0: a file. $1: its check sum, nothing when it cannot be read.
Function ${UN}sumUp
  StrCpy $1 ""
  System::Call 'kernel32::CreateFileW(w r0, i 0x80000000, i 7, p 0, i 3, i 0, p 0) p.r2'
  ${If} $2 = -1
    Return
  ${EndIf}
  System::Call 'kernel32::GetFileSize(p r2, p 0) i.r3'
  IntOp $4 $3 + 1  ; an empty file would have no memory
  System::Alloc $4
  Pop $4
  System::Call 'kernel32::ReadFile(p r2, p r4, i r3, *i .r5, p 0)'
  ${If} $5 = $3
    System::Call 'ntdll::RtlComputeCrc32(i 0, p r4, i r3) i.r1'
  ${EndIf}
  System::Free $4
  System::Call 'kernel32::CloseHandle(p r2)'
FunctionEnd

; $0: a file's place in the list. Then its path.
Function ${UN}locate
  StrCpy $1 $0 7
  ${If} $1 == "Themes\"
  ${AndIf} $ThemesFolder != ""
    StrCpy $0 $0 "" 7
    StrCpy $0 "$ThemesFolder\$0"
  ${Else}
    StrCpy $0 "$INSTDIR\$0"
  ${EndIf}
FunctionEnd

; Whether a program is in use: a module that is loaded and a program that runs cannot be written.
; $0: the file. $1: 1 when it is.
Function ${UN}askForUse
  StrCpy $1 0
  System::Call 'kernel32::CreateFileW(w r0, i 0x40000000, i 7, p 0, i 3, i 0, p 0) p.r2 ?e'
  Pop $3
  ${If} $2 != -1
    System::Call 'kernel32::CloseHandle(p r2)'
  ${ElseIf} $3 = 32
    StrCpy $1 1
  ${EndIf}
FunctionEnd

Function ${UN}requireFree
  !insertmacro RequireFree "${UN}" Quillet.dll "FrontPage is using Quillet. Please close FrontPage, and then choose Retry."
  !insertmacro RequireFree "${UN}" unzip32.dll "FrontPage is using Quillet. Please close FrontPage, and then choose Retry."
  !insertmacro RequireFree "${UN}" KorvelHelp.exe "The help is open. Please close its window, and then choose Retry."
  !insertmacro RequireFree "${UN}" KorvelQuickHelp.exe "A template's notes are open. Please close their window, and then choose Retry."
  !insertmacro RequireFree "${UN}" quillet-template.exe "quillet-template is at work. Please wait for its end, and then choose Retry."
FunctionEnd

; Removes a file of the list of which there is no other owner: programs as they are, samples as long as
; nobody has changed them. $9: the list. $0: the file's place in it.
Function ${UN}removeFile
  StrCpy $8 $0
  StrCpy $7 $0 7
  StrCpy $6 $0 10
  Call ${UN}locate
  ${If} $7 == "Themes\"
  ${OrIf} $6 == "Templates\"
    Call ${UN}sumUp
    ReadINIStr $2 $9 Sums $8
    ${If} $1 != $2
      Return
    ${EndIf}
  ${EndIf}
  Delete $0
  ; Up to the folder of the installation, or of the host's themes.
  ${Do}
    ${GetParent} $0 $0
    ${If} $0 == $INSTDIR
    ${OrIf} $0 == $ThemesFolder
    ${OrIf} $0 == ""
      ${Break}
    ${EndIf}
    ClearErrors
    RMDir $0
    ${If} ${Errors}
      ${Break}
    ${EndIf}
  ${Loop}
FunctionEnd

Function ${UN}removeFiles
  StrCpy $9 "${LIST}"
  ReadINIStr $ThemesFolder $9 Places Themes
  StrCpy $R0 1
  ${Do}
    ClearErrors
    ReadINIStr $0 $9 Files $R0
    ${If} ${Errors}
      ${Break}
    ${EndIf}
    Call ${UN}removeFile
    IntOp $R0 $R0 + 1
  ${Loop}
  ; Read before the list goes.
  StrCpy $R1 ""
  StrCpy $R0 1
  ${Do}
    ClearErrors
    ReadINIStr $0 $9 Places $R0
    ${If} ${Errors}
      ${Break}
    ${EndIf}
    StrCpy $R1 "$R1$0|"
    IntOp $R0 $R0 + 1
  ${Loop}
  Delete "$INSTDIR\uninstall.exe"
  Delete $9
  SetOutPath $TEMP
  ${Do}
    ${WordFind} $R1 "|" "E+1{" $0
    ${If} ${Errors}
      ${Break}
    ${EndIf}
    RMDir $0
    StrLen $1 $0
    IntOp $1 $1 + 1
    StrCpy $R1 $R1 "" $1
  ${Loop}
FunctionEnd

!macroend

!insertmacro defineFiles ""
!insertmacro defineFiles "un."

; Themes go where the host looks for them; where it has no such folder, beside the program.
Function findThemesFolder
  ReadINIStr $ThemesFolder "${OLD_LIST}" Places Themes
  ${If} $ThemesFolder != ""
    Return
  ${EndIf}
  ${If} $Scope == "machine"
    ReadRegStr $0 HKLM "Software\Microsoft\Shared tools" SharedFilesDir
    ${If} $0 != ""
      StrCpy $0 "$0Themes11"
    ${EndIf}
  ${Else}
    ReadRegStr $0 HKCU "Software\Microsoft\Office\11.0\Common\General" Themes
    ${If} $0 != ""
      StrCpy $0 "$APPDATA\Microsoft\$0"
    ${EndIf}
  ${EndIf}
  ${If} $0 != ""
  ${AndIf} ${FileExists} "$0\*.*"
    StrCpy $ThemesFolder $0
  ${EndIf}
FunctionEnd

; $0: a sample's place. $1: the check sum of the one that is to be installed. Then $0 is its path, and
; $1 is 1 when it may be written: nothing is there, or what an installation has put there.
Function askForSample
  StrCpy $7 $1
  StrCpy $8 $0
  Call locate
  ${IfNot} ${FileExists} $0
    StrCpy $1 1
    Return
  ${EndIf}
  Call sumUp
  ReadINIStr $2 "${OLD_LIST}" Sums $8
  ${If} $1 == $7
  ${OrIf} $1 == $2
    StrCpy $1 1
  ${Else}
    StrCpy $1 0
  ${EndIf}
FunctionEnd

!macro Program place source sum
  StrCpy $0 "${place}"
  Call locate
  ${GetParent} $0 $1
  SetOutPath $1
  File "/oname=$0" "${source}"
!macroend

; One that is somebody's own is not ours to remove, either.
!macro Sample place source sum
  StrCpy $0 "${place}"
  StrCpy $1 "${sum}"
  Call askForSample
  ${If} $1 = 1
    ${GetParent} $0 $1
    SetOutPath $1
    File "/oname=$0" "${source}"
  ${Else}
    WriteINIStr "${LIST}" Sums "${place}" changed
  ${EndIf}
!macroend

; What an older version had and this one has no more.
Function removeStale
  StrCpy $9 "${OLD_LIST}"
  StrCpy $R0 1
  ${Do}
    ClearErrors
    ReadINIStr $0 $9 Files $R0
    ${If} ${Errors}
      ${Break}
    ${EndIf}
    ReadINIStr $1 "${LIST}" Sums $0
    ${If} $1 == ""
      Call removeFile
    ${EndIf}
    IntOp $R0 $R0 + 1
  ${Loop}
FunctionEnd

; The folders that have to be made above the installation's files, itself included; the lowest first.
Function noteFolders
  StrCpy $R0 1
  StrCpy $0 $INSTDIR
  ${Do}
    ${If} $0 == ""
    ${OrIf} ${FileExists} "$0\*.*"
      ${Break}
    ${EndIf}
    WriteINIStr "$PLUGINSDIR\places.ini" Places $R0 $0
    IntOp $R0 $R0 + 1
    ${GetParent} $0 $0
  ${Loop}
FunctionEnd

; usage: ${CopyEntry} FROM SECTION NAME   From a list into the new one; $0 is the value, or nothing.
!macro CopyEntry from section name
  ClearErrors
  ReadINIStr $0 "${from}" ${section} ${name}
  ${IfNot} ${Errors}
    WriteINIStr "${LIST}" ${section} ${name} $0
  ${EndIf}
!macroend
!define CopyEntry "!insertmacro CopyEntry"

; The list comes first: whatever happens behind it can be taken back.
Function installFiles
  InitPluginsDir
  CopyFiles /SILENT "${LIST}" "${OLD_LIST}"
  Call findThemesFolder
  Call noteFolders
  SetOutPath $INSTDIR
  File "${MADE}\installed.ini"
  ${If} $ThemesFolder != ""
    WriteINIStr "${LIST}" Places Themes $ThemesFolder
  ${EndIf}
  StrCpy $1 "$PLUGINSDIR\places.ini"
  ${If} ${FileExists} "${OLD_LIST}"
    StrCpy $1 "${OLD_LIST}"
  ${EndIf}
  StrCpy $R0 1
  ${Do}
    ${CopyEntry} $1 Places $R0
    ${If} $0 == ""
      ${Break}
    ${EndIf}
    IntOp $R0 $R0 + 1
  ${Loop}
  ${CopyEntry} "${OLD_LIST}" Before CommonPath
  !include "${MADE}\file-list.nsh"
  Call removeStale
  WriteUninstaller "$INSTDIR\uninstall.exe"
  SetOutPath $INSTDIR
FunctionEnd
