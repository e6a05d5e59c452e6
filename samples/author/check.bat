@title Checking
@call "%~dp0programs.bat"
quillet-template check "Spring Show"
@title Checked
