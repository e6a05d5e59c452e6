@"%~dp0programs\test-runner.exe" %*
@exit /b %errorlevel%
