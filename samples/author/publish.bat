@title Publishing
@call "%~dp0programs.bat"
quillet-template catalogue "Spring Show" --theme limewash -o site --title "From the Quay" --url %QUILLET_CATALOGUE%
xcopy /e /i /q site C:\Demo\catalogue\quay
quillet-template catalogue --check %QUILLET_CATALOGUE%/index.htm
@title Published
