; The setup for Windows, per machine. packaging/package-windows gives VERSION, VERSION4, PUBLISHER,
; HOMEPAGE, STAGE (the folder to be installed) and OUTPUT. A 64-bit program as what it installs: it
; needs nothing of a 32-bit system.
;   setup.exe /S           without a question
;   setup.exe /D=FOLDER    into another folder; the last option, without quotes
Target amd64-unicode
ManifestDPIAware true
!include "LogicLib.nsh"
!include "MUI2.nsh"

!define PRODUCT "Norvik Pelora Utility"
!define KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\PeloraUtility"
!define RULE "Norvik Pelora Utility"

Name "${PRODUCT}"
OutFile "${OUTPUT}"
InstallDir "$PROGRAMFILES64\Norvik\Pelora Utility"
RequestExecutionLevel admin
SetCompressor /SOLID lzma
BrandingText "${PRODUCT} ${VERSION}"

VIProductVersion "${VERSION4}"
VIAddVersionKey ProductName "${PRODUCT}"
VIAddVersionKey ProductVersion "${VERSION}"
VIAddVersionKey CompanyName "${PUBLISHER}"
VIAddVersionKey FileDescription "${PRODUCT} Setup"
VIAddVersionKey FileVersion "${VERSION}"
VIAddVersionKey LegalCopyright "${PUBLISHER}"

!define MUI_ICON "${ICON}"
!define MUI_UNICON "${ICON}"
!define MUI_FINISHPAGE_RUN "$INSTDIR\pelora-utility.exe"
!insertmacro MUI_PAGE_WELCOME
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"

; Nobody's program is half replaced: as long as one of those in folder $0 runs, the user is asked to
; close it, and without a user nothing is done and the status is 3.
!macro WaitUntilUnused un
Function ${un}WaitUntilUnused
  again:
  StrCpy $2 ""
  !insertmacro NoteIfRunning pelora-utility.exe
  !insertmacro NoteIfRunning peloractl.exe
  !insertmacro NoteIfRunning pelora-simulator.exe
  ${If} $2 != ""
    MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION "$2 is running. Please close it and try again." /SD IDCANCEL IDRETRY again
    SetErrorLevel 3
    Quit
  ${EndIf}
FunctionEnd
!macroend
!macro NoteIfRunning program
  ${If} ${FileExists} "$0\${program}"
    ClearErrors
    FileOpen $1 "$0\${program}" a ; Windows lets nobody write to a program that runs
    ${If} ${Errors}
      StrCpy $2 "${program}"
    ${Else}
      FileClose $1
    ${EndIf}
  ${EndIf}
!macroend
!insertmacro WaitUntilUnused ""
!insertmacro WaitUntilUnused "un."

Function .onInit
  SetRegView 64
  SetShellVarContext all
  ; An older version's folder, unless another was asked for.
  ReadRegStr $0 HKLM "${KEY}" "InstallLocation"
  ${If} $0 != ""
  ${AndIf} $INSTDIR == "$PROGRAMFILES64\Norvik\Pelora Utility"
    StrCpy $INSTDIR $0
  ${EndIf}
FunctionEnd

Section
  StrCpy $0 $INSTDIR
  Call WaitUntilUnused
  ; An older version goes first, whatever files it had.
  ReadRegStr $0 HKLM "${KEY}" "InstallLocation"
  ${If} $0 != ""
  ${AndIf} ${FileExists} "$0\uninstall.exe"
    Call WaitUntilUnused
    ExecWait '"$0\uninstall.exe" /S _?=$0'
    Delete "$0\uninstall.exe"
    RMDir "$0"
  ${EndIf}

  SetOutPath "$INSTDIR"
  File /r "${STAGE}\*"
  WriteUninstaller "$INSTDIR\uninstall.exe"

  CreateDirectory "$SMPROGRAMS\${PRODUCT}"
  CreateShortcut "$SMPROGRAMS\${PRODUCT}\${PRODUCT}.lnk" "$INSTDIR\pelora-utility.exe"
  CreateShortcut "$SMPROGRAMS\${PRODUCT}\User guide.lnk" "$INSTDIR\doc\user-guide.html"

  WriteRegStr HKLM "${KEY}" "DisplayName" "${PRODUCT}"
  WriteRegStr HKLM "${KEY}" "DisplayVersion" "${VERSION}"
  WriteRegStr HKLM "${KEY}" "DisplayIcon" "$INSTDIR\pelora-utility.exe"
  WriteRegStr HKLM "${KEY}" "Publisher" "${PUBLISHER}"
  WriteRegStr HKLM "${KEY}" "URLInfoAbout" "${HOMEPAGE}"
  WriteRegStr HKLM "${KEY}" "InstallLocation" "$INSTDIR"
  WriteRegStr HKLM "${KEY}" "UninstallString" '"$INSTDIR\uninstall.exe"'
  WriteRegStr HKLM "${KEY}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S'
  WriteRegDWORD HKLM "${KEY}" "EstimatedSize" ${SIZE_KB}
  WriteRegDWORD HKLM "${KEY}" "NoModify" 1
  WriteRegDWORD HKLM "${KEY}" "NoRepair" 1

  ; Network modules answer a search on this port, unasked as far as the firewall knows.
  nsExec::Exec 'netsh advfirewall firewall delete rule name="${RULE}"'
  nsExec::Exec 'netsh advfirewall firewall add rule name="${RULE}" dir=in action=allow protocol=UDP localport=4242 program="$INSTDIR\pelora-utility.exe"'
  nsExec::Exec 'netsh advfirewall firewall add rule name="${RULE}" dir=in action=allow protocol=UDP localport=4242 program="$INSTDIR\peloractl.exe"'
SectionEnd

Function un.onInit
  SetRegView 64
  SetShellVarContext all
FunctionEnd

Section Uninstall
  StrCpy $0 $INSTDIR
  Call un.WaitUntilUnused
  nsExec::Exec 'netsh advfirewall firewall delete rule name="${RULE}"'
  ; What was installed and nothing else: the user may have put files beside it.
  !include "${REMOVALS}"
  Delete "$INSTDIR\uninstall.exe"
  RMDir "$INSTDIR"
  RMDir "$PROGRAMFILES64\Norvik" ; where it is the setup's; a folder of the user's stays, empty or not
  Delete "$SMPROGRAMS\${PRODUCT}\${PRODUCT}.lnk"
  Delete "$SMPROGRAMS\${PRODUCT}\User guide.lnk"
  RMDir "$SMPROGRAMS\${PRODUCT}"
  DeleteRegKey HKLM "${KEY}"
SectionEnd
