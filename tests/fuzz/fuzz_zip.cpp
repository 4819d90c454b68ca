// The zip reader over anything: no crash, nothing outside the target folder.
#include <cstdlib>

#include "pc/simulated_pc.h"
#include "transfer/zip_reader.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    // One PC for many inputs: making it costs far more than reading an archive.
    static int runs = 0;
    if (runs++ % 10000 == 0) SimulatedPc::UseWindows(Windows::seven);
    SimulatedPc& pc = Pc();
    pc.DeleteTree("C:\\Work");
    pc.journal.clear();
    pc.trace.clear();
    pc.AddFile("C:\\Work\\a.zip", std::string(reinterpret_cast<const char*>(data), size));
    ZipExtractionClass reader;
    std::vector<std::string> names;
    if (reader.OpenZip("C:\\Work\\a.zip")) {
        bool sound = reader.Test(names), extracted = reader.Extract("C:\\Work\\out", true, true);
        if (sound && !extracted) std::abort();
    }
    for (const std::string& path : pc.Tree("C:\\Work"))
        if (path.rfind("C:\\Work\\out", 0) != 0 && path != "C:\\Work\\a.zip") std::abort();
    return 0;
}
