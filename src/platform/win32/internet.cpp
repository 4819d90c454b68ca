#include "platform/internet.h"

#include "platform/win32/late_wininet.h"
#include "platform/win32/wide.h"

namespace pc {

bool CheckConnection(const std::string& url) {
    return InternetCheckConnectionW(Wide(url).c_str(), FLAG_ICC_FORCE_CONNECTION, 0) != FALSE;
}

bool SetDirectConnection(const std::string& connectionName) {
    std::wstring name = Wide(connectionName);
    INTERNET_PER_CONN_OPTIONW option = {};
    option.dwOption = INTERNET_PER_CONN_FLAGS;
    option.Value.dwValue = PROXY_TYPE_DIRECT;
    INTERNET_PER_CONN_OPTION_LISTW list = {};
    list.dwSize = sizeof list;
    list.pszConnection = name.empty() ? nullptr : name.data();
    list.dwOptionCount = 1;
    list.pOptions = &option;
    bool set = InternetSetOptionW(nullptr, INTERNET_OPTION_PER_CONNECTION_OPTION, &list, sizeof list) != FALSE;
    InternetSetOptionW(nullptr, INTERNET_OPTION_SETTINGS_CHANGED, nullptr, 0);
    InternetSetOptionW(nullptr, INTERNET_OPTION_REFRESH, nullptr, 0);
    return set;
}

}  // namespace pc
