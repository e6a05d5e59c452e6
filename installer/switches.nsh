; The command line. /S, /NCRC, /D= and _?= are taken by the program's frame before.
Var RemovesSettings
Var Rest  ; what of the command line is still to be read
Var Word

!macro defineSwitches UN

; Cuts the first word off $Rest and puts it into $Word, without the quotes in it; nothing at the end.
Function ${UN}nextWord
  StrCpy $Word ""
  StrCpy $1 0  ; whether between quotes
  ${Do}
    StrCpy $0 $Rest 1
    ${If} $0 == ""
      ${Break}
    ${EndIf}
    StrCpy $Rest $Rest "" 1
    ${If} $0 == '"'
      IntOp $1 $1 ^ 1
    ${ElseIf} $0 == " "
    ${AndIf} $1 = 0
      ${If} $Word != ""
        ${Break}
      ${EndIf}
    ${Else}
      StrCpy $Word "$Word$0"
    ${EndIf}
  ${Loop}
FunctionEnd

!macroend

!insertmacro defineSwitches ""
!insertmacro defineSwitches "un."

; A command line as long as the program can hold may have been cut.
!macro requireWholeLine
  StrLen $0 $CMDLINE
  ${If} $0 >= 1020
    ${Refuse} ${EXIT_SWITCHES} "The command line is too long."
  ${EndIf}
!macroend

Function parseSwitches
  !insertmacro requireWholeLine
  ${GetParameters} $Rest
  ${Do}
    Call nextWord
    StrCpy $0 $Word 11
    ${If} $Word == ""
      ${Break}
    ${ElseIf} $Word == "/AllUsers"
      StrCpy $2 machine
      Call takeScope
    ${ElseIf} $Word == "/CurrentUser"
      StrCpy $2 user
      Call takeScope
    ${ElseIf} $Word == "/Downgrade"
      StrCpy $MayDowngrade 1
    ${ElseIf} $Word == "/Elevated"
      StrCpy $Elevated 1
    ${ElseIf} $0 == "/CATALOGUE="
      StrCpy $Catalogue $Word "" 11
      StrCpy $0 $Catalogue
      Call checkAddress
      ${If} $0 = 0
        ${Refuse} ${EXIT_SWITCHES} "This is no address of a catalogue: $Catalogue"
      ${EndIf}
    ${ElseIf} $Word != "/S"
    ${AndIf} $Word != "/NCRC"
      ${Refuse} ${EXIT_SWITCHES} "This switch is not known: $Word"
    ${EndIf}
  ${Loop}
FunctionEnd

; $2: the scope of a switch.
Function takeScope
  ${If} $Scope != ""
  ${AndIf} $Scope != $2
    ${Refuse} ${EXIT_SWITCHES} "/AllUsers and /CurrentUser do not go together."
  ${EndIf}
  StrCpy $Scope $2
FunctionEnd

; $0: an address; then whether a catalogue can be there.
Function checkAddress
  StrCpy $2 $0 7
  StrCpy $3 $0 8
  StrCpy $4 $0
  StrCpy $0 0
  ${If} $3 == "https://"
  ${OrIf} $3 == "file:///"
    StrCpy $4 $4 "" 8
  ${ElseIf} $2 == "http://"
    StrCpy $4 $4 "" 7
  ${Else}
    Return
  ${EndIf}
  ${If} $4 != ""
    StrCpy $0 1
  ${EndIf}
FunctionEnd

Function un.parseSwitches
  !insertmacro requireWholeLine
  ${GetParameters} $Rest
  ${Do}
    Call un.nextWord
    StrCpy $0 $Word 3
    ${If} $Word == ""
    ${OrIf} $0 == "_?="
      ${Break}
    ${ElseIf} $Word == "/RemoveSettings"
      StrCpy $RemovesSettings 1
    ${ElseIf} $Word != "/S"
    ${AndIf} $Word != "/NCRC"
      ${Refuse} ${EXIT_SWITCHES} "This switch is not known: $Word"
    ${EndIf}
  ${Loop}
FunctionEnd
