; The setup program: per machine, silent with /S, branded by the files that lie beside it.
; Defines from the build: OUT (programs), MADE (icons), SOURCE (project), VERSION (a.b.c).
Unicode true
!include "MUI2.nsh"
!include "LogicLib.nsh"
!include "FileFunc.nsh"
!include "x64.nsh"

!define PRODUCT "Brevanta"
!define UNINSTALL "Software\Microsoft\Windows\CurrentVersion\Uninstall\${PRODUCT}"
!define SETTINGS "$INSTDIR\Brevanta.ini"

Name "${PRODUCT}"
OutFile "${OUT}/BrevantaSetup.exe"
InstallDir "$PROGRAMFILES\${PRODUCT}"
InstallDirRegKey HKLM "${UNINSTALL}" "InstallLocation"
RequestExecutionLevel admin
SetCompressor /SOLID lzma
ManifestSupportedOS all
ManifestDPIAware true
VIProductVersion "${VERSION}.0"
VIAddVersionKey ProductName "${PRODUCT}"
VIAddVersionKey ProductVersion "${VERSION}"
VIAddVersionKey FileVersion "${VERSION}"
VIAddVersionKey CompanyName "Talvenmoor"
VIAddVersionKey FileDescription "${PRODUCT} Setup"
VIAddVersionKey LegalCopyright "Talvenmoor"

Icon "${MADE}/brevanta.ico"
UninstallIcon "${MADE}/brevanta.ico"
!define MUI_ICON "${MADE}/brevanta.ico"
!define MUI_UNICON "${MADE}/brevanta.ico"
!define MUI_ABORTWARNING
; The last page's side in one calm colour: a picture of one pixel, stretched.
!define MUI_WELCOMEFINISHPAGE_BITMAP "${SOURCE}/installer/accent.bmp"
!define MUI_WELCOMEFINISHPAGE_BITMAP_STRETCH FitControl
BrandingText " "
!define MUI_FINISHPAGE_RUN "$INSTDIR\Brevanta.exe"
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"

Var brand
Var shortcut
Var answer

; What the technician put beside the setup file comes along.
!macro TakeAlong pattern
    ${If} ${FileExists} "$EXEDIR\${pattern}"
        CopyFiles /SILENT "$EXEDIR\${pattern}" "$INSTDIR"
    ${EndIf}
!macroend

; Calls a macro for each setting that may name a program or page that lies beside the panel.
!macro EachBundled action
    !insertmacro ${action} "Branding" "RemoteSupportApp"
    !insertmacro ${action} "Branding" "PreRemoteURL"
    !insertmacro ${action} "CustomButton" "ButtonAction"
    !insertmacro ${action} "CustomButton1" "ButtonAction"
    !insertmacro ${action} "CustomButton2" "ButtonAction"
    !insertmacro ${action} "CustomButton3" "ButtonAction"
    !insertmacro ${action} "CustomButton4" "ButtonAction"
!macroend

; Only one file beside the setup program, named as it is, comes along: no folder, no wildcard. It is noted, for the
; settings may change before it is removed.
!macro TakeBundled section key
    ReadINIStr $answer "${SETTINGS}" "${section}" "${key}"
    FindFirst $1 $0 "$EXEDIR\$answer"
    FindClose $1
    ${If} $answer != ""
    ${AndIf} $answer == $0
    ${AndIfNot} ${FileExists} "$EXEDIR\$answer\*.*"
        CopyFiles /SILENT "$EXEDIR\$answer" "$INSTDIR"
        WriteINIStr "$INSTDIR\Uninstall.ini" "${section}" "${key}" "$answer"
    ${EndIf}
!macroend

!macro RemoveBundled section key
    ReadINIStr $answer "$INSTDIR\Uninstall.ini" "${section}" "${key}"
    ${If} $answer != ""
        Delete "$INSTDIR\$answer"
    ${EndIf}
!macroend

; A key that the settings lack keeps a silent install from waiting for an answer.
!macro DefaultSetting section key value
    ReadINIStr $answer "${SETTINGS}" "${section}" "${key}"
    ${If} $answer == ""
        WriteINIStr "${SETTINGS}" "${section}" "${key}" "${value}"
    ${EndIf}
!macroend

Section "Install"
    SetShellVarContext all
    ; A running panel keeps its file; it is moved aside, as an update does.
    Delete "$INSTDIR\Brevanta_old.exe"
    Rename "$INSTDIR\Brevanta.exe" "$INSTDIR\Brevanta_old.exe"
    SetOutPath "$INSTDIR"
    File "${OUT}/Brevanta.exe"
    File "${OUT}/Pelmark.exe"
    File "${OUT}/BrevantaMCStub.exe"
    Delete "$INSTDIR\Brevanta_old.exe"
    !insertmacro TakeAlong "Brevanta.ini"
    !insertmacro TakeAlong "AltLang.INI"
    !insertmacro TakeAlong "*.cfg"
    !insertmacro TakeAlong "applogo.ico"
    !insertmacro TakeAlong "supportlogo.*"
    !insertmacro TakeAlong "Skins"
    !insertmacro TakeAlong "3rd Party Tools"
    !insertmacro EachBundled TakeBundled
    ; Only administrators change what lies here; everybody may start it.
    nsExec::Exec '"$SYSDIR\icacls.exe" "$INSTDIR" /inheritance:r /grant:r *S-1-5-32-544:(OI)(CI)F *S-1-5-18:(OI)(CI)F *S-1-5-32-545:(OI)(CI)RX'
    Pop $answer

    ReadINIStr $brand "${SETTINGS}" "Branding" "AppName"
    ${If} $brand == ""
        StrCpy $brand "Talvenmoor"
    ${EndIf}
    ReadINIStr $shortcut "${SETTINGS}" "Install" "ShortcutName"
    ${If} $shortcut == ""
        StrCpy $shortcut "Support Control Panel"
    ${EndIf}
    StrCpy $answer "$INSTDIR\Brevanta.exe"
    ${If} ${FileExists} "$INSTDIR\applogo.ico"
        StrCpy $answer "$INSTDIR\applogo.ico"
    ${EndIf}
    CreateDirectory "$SMPROGRAMS\$shortcut"
    CreateShortcut "$SMPROGRAMS\$shortcut\$shortcut.lnk" "$INSTDIR\Brevanta.exe" "" "$answer"
    CreateShortcut "$DESKTOP\$shortcut.lnk" "$INSTDIR\Brevanta.exe" "" "$answer"
    WriteRegStr HKLM "${UNINSTALL}" "DisplayIcon" "$answer"

    ReadINIStr $answer "${SETTINGS}" "Install" "ShortcutWebsite"
    ${If} $answer != ""
        WriteINIStr "$SMPROGRAMS\$shortcut\$brand.url" "InternetShortcut" "URL" "$answer"
    ${EndIf}
    WriteUninstaller "$INSTDIR\Uninstall.exe"
    ReadINIStr $answer "${SETTINGS}" "Install" "UninstallLink"
    ${If} $answer == "1"
        CreateShortcut "$SMPROGRAMS\$shortcut\Uninstall.lnk" "$INSTDIR\Uninstall.exe"
    ${EndIf}

    WriteRegStr HKLM "${UNINSTALL}" "DisplayName" "$brand $shortcut"
    WriteRegStr HKLM "${UNINSTALL}" "DisplayVersion" "${VERSION}"
    WriteRegStr HKLM "${UNINSTALL}" "Publisher" "$brand"
    WriteRegStr HKLM "${UNINSTALL}" "InstallLocation" "$INSTDIR"
    WriteRegStr HKLM "${UNINSTALL}" "ShortcutName" "$shortcut"
    WriteRegStr HKLM "${UNINSTALL}" "UninstallString" '"$INSTDIR\Uninstall.exe"'
    WriteRegStr HKLM "${UNINSTALL}" "QuietUninstallString" '"$INSTDIR\Uninstall.exe" /S'
    WriteRegDWORD HKLM "${UNINSTALL}" "NoModify" 1
    WriteRegDWORD HKLM "${UNINSTALL}" "NoRepair" 1
    ${GetSize} "$INSTDIR" "/S=0K" $0 $1 $2
    WriteRegDWORD HKLM "${UNINSTALL}" "EstimatedSize" $0

    !insertmacro DefaultSetting "ScheduledTasks" "OpenTSAfterInstall" "0"
    ExecWait '"$INSTDIR\Brevanta.exe" /installer'
    ReadINIStr $answer "${SETTINGS}" "Branding" "OEMLinkName"
    ${If} $answer != ""
    ${AndIfNot} ${Silent}
        ExecWait '"$INSTDIR\Brevanta.exe" /installoemlink'
    ${EndIf}
    ReadINIStr $answer "${SETTINGS}" "Install" "PromptForClientID"
    ${If} $answer == "1"
    ${AndIfNot} ${Silent}
        ExecWait '"$INSTDIR\Brevanta.exe" /clientinfo'
    ${EndIf}
SectionEnd

Section "Uninstall"
    SetShellVarContext all
    ExecWait '"$INSTDIR\Brevanta.exe" /uninstaller'
    ReadRegStr $shortcut HKLM "${UNINSTALL}" "ShortcutName"
    ${If} $shortcut != ""
        RMDir /r "$SMPROGRAMS\$shortcut"
        Delete "$DESKTOP\$shortcut.lnk"
    ${EndIf}
    !insertmacro EachBundled RemoveBundled
    Delete "$INSTDIR\Uninstall.ini"
    StrCpy $answer "remove"
    MessageBox MB_YESNO|MB_ICONQUESTION "Keep the settings?" /SD IDNO IDNO +2
    StrCpy $answer "keep"
    ${If} $answer == "remove"
        Delete "$INSTDIR\*.ini"
        Delete "$INSTDIR\*.cfg"
        Delete "$INSTDIR\applogo.ico"
        Delete "$INSTDIR\supportlogo.*"
        RMDir /r "$INSTDIR\Skins"
        RMDir /r "$INSTDIR\Config"
    ${EndIf}
    ; By name: a folder that the user chose may hold other things.
    Delete "$INSTDIR\Brevanta.exe"
    Delete "$INSTDIR\Brevanta_old.exe"
    Delete "$INSTDIR\Pelmark.exe"
    Delete "$INSTDIR\Pelmark_old.exe"
    Delete "$INSTDIR\BrevantaMCStub.exe"
    Delete "$INSTDIR\BrevantaMCStub_old.exe"
    Delete "$INSTDIR\GetExternalIP.exe"
    Delete "$INSTDIR\CreateSRP.exe"
    Delete "$INSTDIR\SendMail.exe"
    Delete "$INSTDIR\ccrpprg6.ocx"
    Delete "$INSTDIR\WinsockXP.reg"
    Delete "$INSTDIR\External.IP"
    Delete "$INSTDIR\WAN.IP"
    Delete "$INSTDIR\Usage.ini"
    Delete "$INSTDIR\Info.zip"
    Delete "$INSTDIR\BrevantaConfig.zip"
    Delete "$INSTDIR\Config.zip"
    Delete "$INSTDIR\TalvenmoorUpdates.ini"
    Delete "$INSTDIR\TalvenmoorUpdates.zip"
    Delete "$INSTDIR\BrevantaEXE.zip"
    Delete "$INSTDIR\Uninstall.exe"
    RMDir /r "$INSTDIR\Modules"
    RMDir /r "$INSTDIR\Debug"
    RMDir /r "$INSTDIR\RemoteDL"
    RMDir /r "$INSTDIR\CustomDL"
    RMDir /r "$INSTDIR\3rd Party Tools"
    RMDir /r "$INSTDIR\ConfigUpload"
    RMDir /r "$INSTDIR\UpdateTemp"
    RMDir /r "$INSTDIR\InfoTemp"
    RMDir "$INSTDIR"
    DeleteRegKey HKLM "${UNINSTALL}"
    ; The panel writes into the view of the system, 64-bit where there is one.
    ${If} ${RunningX64}
        SetRegView 64
    ${EndIf}
    DeleteRegKey HKLM "Software\Talvenmoor\Maintenance"
    DeleteRegKey /ifempty HKLM "Software\Talvenmoor"
    DeleteRegKey HKLM "Software\Brevanta"
SectionEnd
