@echo off
rem Unregisters what install.cmd registered: for each architecture, the type
rem library first (its interface keys), then the DLL's classes and ProgIDs.
rem Run it as administrator before deleting the files. Goes on past a failed
rem step so that as much as possible is removed; exit code 0 when all went.
setlocal
set "here=%~dp0"
set "native64="
set "native32=%SystemRoot%\System32"
if defined PROCESSOR_ARCHITEW6432 (
  set "native64=%SystemRoot%\Sysnative"
) else if /i "%PROCESSOR_ARCHITECTURE%"=="AMD64" (
  set "native64=%SystemRoot%\System32"
  set "native32=%SystemRoot%\SysWOW64"
)

set "failures=0"
if defined native64 call :unregister x64 "%native64%"
call :unregister x86 "%native32%"
if not "%failures%"=="0" (
  echo BrevoRecordList is not fully unregistered: run uninstall.cmd as administrator, from the release folder. 1>&2
  exit /b 1
)
echo BrevoRecordList is unregistered.
exit /b 0

rem :unregister <architecture> <system folder>
:unregister
if not exist "%here%%~1\BrevoRecordList.dll" (
  echo %~1\BrevoRecordList.dll is missing. 1>&2
  set /a failures+=1
  exit /b 1
)
"%here%%~1\brevo-regtlb.exe" /u "%here%%~1\BrevoRecordList.tlb"
if errorlevel 1 (
  echo The %~1 type library could not be unregistered. 1>&2
  set /a failures+=1
)
"%~2\regsvr32.exe" /u /s "%here%%~1\BrevoRecordList.dll"
if errorlevel 1 (
  echo regsvr32 /u failed for %~1\BrevoRecordList.dll [exit code %errorlevel%]. 1>&2
  set /a failures+=1
)
echo Unregistered the %~1 classes and type library.
exit /b 0
