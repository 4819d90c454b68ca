// Archives exchanged with the general tools of the field, each judged by the tool's own test command.
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "pc/pc_test.h"
#include "transfer/zip_reader.h"
#include "transfer/zip_writer.h"

namespace {

namespace fs = std::filesystem;

class ZipPeersTest : public PcTest {
protected:
    ZipPeersTest() : folder(fs::temp_directory_path() / ("zip_peers_" + std::to_string(getpid()))) {
        fs::create_directories(folder / "src" / "sub");
        Write("src/text.txt", "plain text, plain text, plain text");
        Write("src/sub/binary.bin", std::string(70000, '\x07') + std::string(1, '\0') + "tail");
        Write("src/sub/\xC3\xA4\xD0\xB6.txt", "name beyond ASCII");
    }
    ~ZipPeersTest() override { fs::remove_all(folder); }

    void Write(const std::string& name, const std::string& bytes) { std::ofstream(folder / name) << bytes; }
    std::string Read(const std::string& name) {
        std::stringstream bytes;
        bytes << std::ifstream(folder / name, std::ios::binary).rdbuf();
        return bytes.str();
    }
    int Run(const std::string& command) {
        return std::system(("cd '" + folder.string() + "' && (" + command + ") > log 2>&1").c_str());
    }

    fs::path folder;
};

TEST_F(ZipPeersTest, WhatOthersPackComesOutWhole) {
    const char* packers[] = {
        "cd src && zip -r ../a.zip .",
        "cd src && zip -r -0 ../a.zip .",
        "cd src && zip -r -fz ../a.zip .",
        "cd src && zip -r -z ../a.zip . <<< 'a comment'",
        "cd src && 7z a -tzip ../a.zip .",
        "bsdtar -C src -cf a.zip --format=zip .",
        "cd src && python3 -m zipfile -c ../a.zip text.txt sub",
    };
    for (const char* packer : packers) {
        fs::remove(folder / "a.zip");
        ASSERT_EQ(Run(std::string("bash -c \"") + packer + "\""), 0) << packer << "\n" << Read("log");
        Pc().AddFile("C:\\Work\\a.zip", Read("a.zip"));
        Pc().DeleteTree("C:\\Work\\out");
        ZipExtractionClass reader;
        std::string errors;
        reader.ZipError = [&](int32_t code, const std::string& text) { errors += std::to_string(code) + " " + text; };
        EXPECT_TRUE(reader.OpenZip("C:\\Work\\a.zip") && reader.Extract("C:\\Work\\out", true, true)) << packer;
        EXPECT_EQ(errors, "") << packer;
        EXPECT_EQ(Pc().FileText("C:\\Work\\out\\text.txt"), Read("src/text.txt")) << packer;
        EXPECT_EQ(Pc().FileText("C:\\Work\\out\\sub\\binary.bin"), Read("src/sub/binary.bin")) << packer;
        EXPECT_EQ(Pc().FileText("C:\\Work\\out\\sub\\\xC3\xA4\xD0\xB6.txt"), "name beyond ASCII") << packer;
    }
}

TEST_F(ZipPeersTest, WhatWePackPassesTheirTests) {
    ZipClass zip;
    for (const char* name : {"text.txt", "sub/binary.bin", "sub/\xC3\xA4\xD0\xB6.txt"}) {
        Pc().AddFile("C:\\Work\\file", Read(std::string("src/") + name));
        ASSERT_TRUE(zip.AddFile("C:\\Work\\file", name, ""));
    }
    ASSERT_TRUE(zip.WriteZip("C:\\Work\\ours.zip", true));
    Write("ours.zip", Pc().FileText("C:\\Work\\ours.zip"));
    for (const char* check :
         {"unzip -t ours.zip", "7z t ours.zip", "bsdtar -tf ours.zip", "python3 -m zipfile -t ours.zip"})
        EXPECT_EQ(Run(check), 0) << check << "\n" << Read("log");
    ASSERT_EQ(Run("mkdir out && export LC_ALL=C.UTF-8 && bsdtar -C out -xf ours.zip && diff -r out src"), 0)
        << Read("log");
}

}  // namespace
