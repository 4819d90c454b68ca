// The platform's internet library, loaded at the first call: it takes as long to start as half of the panel.
#pragma once

#include <windows.h>
// behind windows.h
#include <wininet.h>

#include "platform/win32/lookup.h"

#undef FtpOpenFile

namespace pc {

#define LATE(function) \
    inline const Late<decltype(::function)> function { L"wininet.dll", #function }

LATE(FtpCreateDirectoryW);
LATE(FtpDeleteFileW);
LATE(FtpFindFirstFileW);
LATE(FtpGetCurrentDirectoryW);
LATE(FtpGetFileW);
LATE(FtpOpenFileW);
LATE(FtpPutFileW);
LATE(FtpRemoveDirectoryW);
LATE(FtpRenameFileW);
LATE(FtpSetCurrentDirectoryW);
LATE(InternetAutodial);
LATE(InternetCheckConnectionW);
LATE(InternetCloseHandle);
LATE(InternetConnectW);
LATE(InternetFindNextFileW);
LATE(InternetGetLastResponseInfoW);
LATE(InternetOpenW);
LATE(InternetReadFile);
LATE(InternetSetOptionW);
LATE(InternetWriteFile);

#undef LATE

}  // namespace pc
