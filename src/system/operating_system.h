// Which Windows this is.
#pragma once

#include <cstdint>
#include <string>

#include "platform/machine.h"

// Filled once when made, then only read. The tests are cumulative: IsWinXP holds on XP and everything later,
// IsVista from 6.0, IsWin7 from 6.1, IsWin8 from 6.2.
class clsOpSys {
public:
    clsOpSys();

    uint32_t BuildNumber, MajorVersion, MinorVersion, PlatformID;
    std::string CSDVersion;
    uint8_t ProductType;
    uint16_t ServicePackMajor, ServicePackMinor, SuiteMask;
    std::string WindowsMode;
    bool HasAS, HasBO, HasDC, HasSBS, HasSBSr, HasTS;
    bool IsWin8, IsWin7, Is2003, Is2008, Is2008R2, IsVista, IsWinXP, IsServer, IsWin2K, IsWinNT, IsWin9x, IsWin95,
        IsWin98, IsWinME;

    // Name of the Windows family. Newer systems than Windows 8 and Server 2008 R2 by their true name.
    std::string Platform() const;
    // Platform, edition and version on one line.
    std::string Version() const;
    std::string ProductTypeName() const;
    // Edition text, with the blanks it has.
    std::string VistaSKU() const;
};

// Of the running system.
bool IsVistaOrLater();
