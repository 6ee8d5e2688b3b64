@echo off
rem Registers BrevoRecordList on this machine: the DLL (classes and ProgIDs)
rem and the type library of each architecture Windows runs here, x64 and x86
rem on 64-bit Windows, x86 alone on 32-bit Windows. Run it as administrator
rem from the folder it came in. Exit code 0 when everything is registered.
setlocal
set "here=%~dp0"
rem The folders of each architecture's regsvr32, seen from this cmd: a 32-bit
rem cmd on 64-bit Windows reaches the 64-bit system folder as Sysnative.
set "native64="
set "native32=%SystemRoot%\System32"
if defined PROCESSOR_ARCHITEW6432 (
  set "native64=%SystemRoot%\Sysnative"
) else if /i "%PROCESSOR_ARCHITECTURE%"=="AMD64" (
  set "native64=%SystemRoot%\System32"
  set "native32=%SystemRoot%\SysWOW64"
)

rem Plain jumps on the exit code: "call ... || goto" misbehaves in some cmd
rem implementations inside a block.
if not defined native64 goto x86
call :register x64 "%native64%"
if errorlevel 1 goto failed
:x86
call :register x86 "%native32%"
if errorlevel 1 goto failed
echo BrevoRecordList is registered.
exit /b 0

:failed
echo BrevoRecordList is not registered: run install.cmd as administrator, from the release folder. 1>&2
exit /b 1

rem :register <architecture> <system folder>
:register
if not exist "%here%%~1\BrevoRecordList.dll" (
  echo %~1\BrevoRecordList.dll is missing. 1>&2
  exit /b 1
)
"%~2\regsvr32.exe" /s "%here%%~1\BrevoRecordList.dll"
if errorlevel 1 (
  echo regsvr32 failed for %~1\BrevoRecordList.dll [exit code %errorlevel%]. 1>&2
  exit /b 1
)
"%here%%~1\brevo-regtlb.exe" "%here%%~1\BrevoRecordList.tlb"
if errorlevel 1 (
  echo The %~1 type library could not be registered. 1>&2
  exit /b 1
)
echo Registered the %~1 classes and type library.
exit /b 0
