// The zip reader over anything: no crash, nothing outside the target folder.
#include <cstdlib>

#include "pc/simulated_pc.h"
#include "transfer/zip_reader.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    SimulatedPc& pc = SimulatedPc::UseWindows(Windows::seven);
    pc.AddFile("C:\\Work\\a.zip", std::string(reinterpret_cast<const char*>(data), size));
    ZipExtractionClass reader;
    if (reader.OpenZip("C:\\Work\\a.zip")) reader.Extract("C:\\Work\\out", true, true);
    for (const std::string& path : pc.Tree("C:\\Work"))
        if (path.rfind("C:\\Work\\out", 0) != 0 && path != "C:\\Work\\a.zip") std::abort();
    return 0;
}
