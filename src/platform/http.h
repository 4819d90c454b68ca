// A blocking fetch of an address to a file through the platform's URL library.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace pc {

// Called back on the same thread while the fetch runs. Results are the library's: 0 or above is success, 0x800Cxxxx
// and others failure.
struct FetchEvents {
    std::function<void()> started;
    std::function<void(uint32_t done, uint32_t total)> progress;  // bytes; total 0 when the server gives no length
    std::function<void(uint32_t result)> stopped;
    std::function<void(std::string& user, std::string& password)> authenticate;
};

// Returns when the transfer has ended; window messages are handled meanwhile. A failed or aborted fetch leaves no file.
// The library's success does not tell a good answer from an error page: check what came.
uint32_t FetchToFile(const std::string& url, const std::string& path, const FetchEvents& events);
// Ends the running fetch; safe when there is none.
void AbortFetch();

}  // namespace pc
