@rem A copy of an installed sample, to begin with. Not by xcopy: that of Wine 10 takes no blanks in names.
@set SAMPLE=C:\Program Files (x86)\Korvel Software\Quillet\Templates\Print Room
@mkdir "%~dp0Spring Show\prints"
@copy "%SAMPLE%\*" "%~dp0Spring Show"
@copy "%SAMPLE%\prints\*" "%~dp0Spring Show\prints"
