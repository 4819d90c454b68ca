// Small internet operations that need no transfer.
#pragma once

#include <string>

namespace pc {

// True when a connection to the address can be opened (the platform's forced connection check).
bool CheckConnection(const std::string& url);
// Sets the connection (empty: the LAN) to direct, tells all running programs and refreshes. True when the first
// call succeeded.
bool SetDirectConnection(const std::string& connectionName);

}  // namespace pc
