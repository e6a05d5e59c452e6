@rem Where the authors' program was installed.
@set PATH=C:\Program Files (x86)\Korvel Software\Quillet;%PATH%
@cd /d "%~dp0"
