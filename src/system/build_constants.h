// The one place for names that a build may change: hosts of the maker's servers, product and company names.
// The defaults are reserved example names, so a build that sets none speaks to nobody.
#pragma once

#ifndef BREVANTA_UPDATE_HOST
    #define BREVANTA_UPDATE_HOST "update.brevanta.example"
#endif
#ifndef BREVANTA_IP_HOST
    #define BREVANTA_IP_HOST "ip.brevanta.example"
#endif
#ifndef BREVANTA_CLOUD_HOST
    #define BREVANTA_CLOUD_HOST "cloud.nimbra.example"
#endif
#ifndef BREVANTA_PRESENCE_URL
    #define BREVANTA_PRESENCE_URL "http://presence.brevanta.example/"
#endif
#ifndef BREVANTA_TOOLS_HOST
    #define BREVANTA_TOOLS_HOST "live-tools.brevanta.example"
#endif
#ifndef BREVANTA_APPS_HOST
    #define BREVANTA_APPS_HOST "apps.brevanta.example"
#endif
#ifndef BREVANTA_WINDOWS_UPDATE_URL
    #define BREVANTA_WINDOWS_UPDATE_URL "http://windowsupdate.microsoft.com/"
#endif

namespace build {
inline constexpr const char* productName = "Brevanta";
inline constexpr const char* companyName = "Talvenmoor";
inline constexpr const char* updateHost = BREVANTA_UPDATE_HOST;    // program updates, HTTP
inline constexpr const char* externalIpHost = BREVANTA_IP_HOST;    // answers "/IPCheck.php"
inline constexpr const char* cloudHost = BREVANTA_CLOUD_HOST;      // technicians' settings and usage, FTP
inline constexpr const char* presenceUrl = BREVANTA_PRESENCE_URL;  // internet presence test
inline constexpr const char* toolsHost = BREVANTA_TOOLS_HOST;      // defrag tools by file name
inline constexpr const char* appsHost = BREVANTA_APPS_HOST;        // portable maintenance apps
inline constexpr const char* windowsUpdateUrl = BREVANTA_WINDOWS_UPDATE_URL;
inline constexpr const char* placeholderEmail = "support@technician.example";
inline constexpr const char* defaultPhone = "555-555-5555";
}  // namespace build
