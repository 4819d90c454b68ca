// Archives on this machine's files: our writer and reader against a bare loop over zlib and the tools of the field.
#include <fcntl.h>
#include <unistd.h>
#include <zlib.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <random>
#include <string>
#include <tuple>

#include "bench/real_disk.h"
#include "bench/table.h"
#include "pc/simulated_pc.h"
#include "transfer/archives.h"
#include "transfer/zip_format.h"

namespace {

namespace fs = std::filesystem;

double Measure(const std::function<void()>& action) {
    auto begin = std::chrono::steady_clock::now();
    action();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin).count();
}

// Text that deflates to about a third, with a stretch of noise in every fourth kilobyte.
std::string Content(size_t size, uint32_t seed) {
    static constexpr const char* words[] = {"panel ", "client ", "the ",     "of ",      "repair ",
                                            "cache ", "1024 ",   "setting ", "profile ", "\r\n"};
    std::minstd_rand random(seed);
    std::string bytes;
    bytes.reserve(size + 1024);
    while (bytes.size() < size)
        if (bytes.size() / 1024 % 4 == 3)
            bytes += static_cast<char>(random() >> 8);
        else
            bytes += words[(random() >> 8) % std::size(words)];
    bytes.resize(size);
    return bytes;
}

// Whole files by the system's own calls, for planting and for the bare loops.
std::string ReadHost(const std::string& path) {
    int file = open(path.c_str(), O_RDONLY);
    std::string bytes(static_cast<size_t>(lseek(file, 0, SEEK_END)), '\0');
    bytes.resize(static_cast<size_t>(pread(file, bytes.data(), bytes.size(), 0)));
    close(file);
    return bytes;
}

void WriteHost(const std::string& path, const std::string& bytes) {
    int file = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    if (write(file, bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size())) std::abort();
    close(file);
}

// files of size bytes, spread over so many folders.
void Plant(const fs::path& folder, int files, size_t size, int folders) {
    for (int i = 0; i < files; ++i) {
        fs::path below = folders ? folder / ("f" + std::to_string(i % folders)) : folder;
        fs::create_directories(below);
        WriteHost((below / ("file" + std::to_string(i) + ".txt")).string(),
                  Content(size, static_cast<uint32_t>(i + 1)));
    }
}

const Bytef* Bytes(const std::string& text) { return reinterpret_cast<const Bytef*>(text.data()); }

// What any writer must do: read, deflate at zlib's own level, checksum, write headers and data.
void BareWrite(const fs::path& folder, const fs::path& archive) {
    std::string all;
    for (const auto& item : fs::recursive_directory_iterator(folder)) {
        if (item.is_directory()) continue;
        std::string bytes = ReadHost(item.path().string());
        zip::Entry entry;
        entry.name = item.path().string().substr(folder.string().size() + 1);
        entry.crc = static_cast<uint32_t>(crc32(0, Bytes(bytes), static_cast<uInt>(bytes.size())));
        uLongf size = compressBound(bytes.size());
        auto data = std::make_unique_for_overwrite<Bytef[]>(size);
        compress(data.get(), &size, Bytes(bytes), bytes.size());
        all += zip::LocalHeader(entry);
        all.append(reinterpret_cast<char*>(data.get()) + 2, size - 6);
    }
    WriteHost(archive.string(), all);
}

// What any reader must do with our own archive that promises whole files: inflate, compare the checksum, write, and
// give the file its name last.
bool BareRead(const fs::path& archive, const fs::path& folder) {
    std::string all = ReadHost(archive.string()), made;
    std::string_view end = std::string_view(all).substr(all.size() - zip::endSize);
    std::string_view directory = std::string_view(all).substr(zip::Get32(end, 16));
    size_t position = 0;
    for (int count = zip::Get16(end, 10); count > 0; --count) {
        auto entry = zip::ParseCentralHeader(directory, position);
        std::string_view head = std::string_view(all).substr(entry->offset);
        std::string bytes(entry->size, '\0');
        // The two bytes that make a zlib stream of it take the place of the last two before the data.
        char* data = all.data() + entry->offset + zip::localSize + zip::Get16(head, 26) + zip::Get16(head, 28);
        data[-2] = '\x78';
        data[-1] = '\x9C';
        auto size = static_cast<uLongf>(bytes.size());
        uncompress(reinterpret_cast<Bytef*>(bytes.data()), &size, reinterpret_cast<Bytef*>(data - 2),
                   entry->compressedSize + 2);
        if (crc32(0, Bytes(bytes), static_cast<uInt>(bytes.size())) != entry->crc) return false;
        std::string target = folder.string() + "/" + entry->name, parent = target.substr(0, target.rfind('/'));
        if (parent != made) fs::create_directories(made = parent);
        WriteHost(target + ".part", bytes);
        rename((target + ".part").c_str(), target.c_str());
    }
    return true;
}

class ZipBench {
public:
    // In memory where the machine has that: a shared disk's moods would drown the differences.
    ZipBench() : root(fs::exists("/dev/shm") ? "/dev/shm/zip_bench." + std::to_string(getpid()) : "build/bench/disk") {
        root = fs::absolute(root);
        fs::remove_all(root);
        fs::create_directories(root);
        diskRoot = root.string();
        SimulatedPc::UseWindows(Windows::seven);
    }
    ~ZipBench() { fs::remove_all(root); }

    void Corpus(const std::string& title, int files, size_t size, int folders, int rounds) {
        Fresh("src");
        Plant(root / "src", files, size, folders);
        auto [ours, bare] = Both(rounds, Write, [&] { BareWrite(root / "src", root / "bare.zip"); });
        Row(("write " + title + ": bare loop, ms").c_str(), ours, bare, 1 / 0.9);
        Peer("write " + title + ": Info-ZIP", ours, rounds, 1, "cd src && zip -qr ../p.zip .");
        Peer("write " + title + ": 7z -mx1", ours, 1, 0, "cd src && 7z a -tzip -mx1 -bso0 -bsp0 ../p.zip .");
        Peer("write " + title + ": bsdtar", ours, rounds, 0, "bsdtar -C src -cf p.zip --format=zip .");

        std::tie(bare, ours) = Both(
            rounds, [&] { Expect(BareRead(root / "a.zip", root / "out"), "read bare"); }, Read);
        Expect(std::system(("diff -rq '" + diskRoot + "/src' '" + diskRoot + "/out'").c_str()) == 0, "same files");
        Row(("read " + title + ": bare loop, ms").c_str(), ours, bare, 1 / 0.9);
        Peer("read " + title + ": Info-ZIP", ours, rounds, 1, "unzip -q a.zip -d out");
        Peer("read " + title + ": 7z", ours, 1, 0, "7z x -bso0 -bsp0 -oout a.zip");
        Peer("read " + title + ": bsdtar", ours, rounds, 0, "bsdtar -xf a.zip -C out");
    }

    // Cost an entry must not grow with their number.
    void Entries() {
        double before[2] = {};
        for (int count : {5000, 50000}) {
            Fresh("src");
            Plant(root / "src", count, 200, 100);
            double write = Many(count < 50000 ? 5 : 1, Write) * 1000 / count;
            double read = Many(count < 50000 ? 5 : 1, Read) * 1000 / count;
            if (before[0] > 0) {
                Row("write: us an entry, 50,000 against 5,000", write, before[0], 1.3);
                Row("read: us an entry, 50,000 against 5,000", read, before[1], 1.3);
            }
            before[0] = write;
            before[1] = read;
        }
    }

private:
    static void Expect(bool holds, const char* what) {
        if (holds) return;
        std::printf("FAILED: %s\n", what);
        std::exit(1);
    }
    void Fresh(const std::string& name) {
        fs::remove_all(root / name);
        fs::create_directories(root / name);
    }
    static void Write() { Expect(ZipFolderRelative("C:\\src", "C:\\a.zip", true), "written"); }
    static void Read() { Expect(UnzipFile("C:\\a.zip", "C:\\out", true), "read"); }
    // Milliseconds; the target folder is empty and the peer's archive gone before.
    double Once(const std::function<void()>& action) {
        Pc().journal.clear();
        Pc().trace.clear();
        Fresh("out");
        fs::remove(root / "p.zip");
        return Measure(action);
    }
    double Many(int rounds, const std::function<void()>& action) {
        std::vector<double> times;
        for (int i = 0; i < rounds; ++i) times.push_back(Once(action));
        return Median(times);
    }
    // Medians of two actions that take turns, so that a disk that slows down slows both.
    std::pair<double, double> Both(int rounds, const std::function<void()>& one, const std::function<void()>& other) {
        std::vector<double> first, second;
        for (int i = 0; i < rounds; ++i) {
            first.push_back(Once(one));
            second.push_back(Once(other));
        }
        return {Median(first), Median(second)};
    }
    void Peer(const std::string& title, double ours, int rounds, double limit, const std::string& command) {
        std::string line = "cd '" + diskRoot + "' && " + command;
        Row((title + ", ms").c_str(), ours,
            Many(rounds, [&] { Expect(std::system(line.c_str()) == 0, command.c_str()); }), limit);
    }

    fs::path root;
};

}  // namespace

int main() {
    ZipBench bench;
    Head();
    bench.Corpus("200 small files", 200, 6000, 0, 21);
    bench.Corpus("one of 50 MB", 1, 50'000'000, 0, 3);
    bench.Corpus("1,000 in 50 folders", 1000, 10000, 50, 5);
    bench.Entries();
    return 0;
}
