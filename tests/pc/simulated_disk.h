// The file tree of the simulated PC: nodes, drives, and how a path finds its node.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "pc/simulated_pc.h"

struct FileNode {
    std::string name;
    uint32_t attributes = 0;
    std::string bytes;
    pc::FileTime created = 0, accessed = 0, modified = 0;
    std::string linkTarget;  // of a junction or symbolic link
    std::string owner;       // SID bytes
    bool locked = false;     // held by another process for itself alone
    bool denied = false;
    int readers = 0, writers = 0;                               // open files of the program under test
    int images = 0;                                             // running processes made from it
    std::map<std::string, std::shared_ptr<FileNode>> children;  // by folded name

    bool IsFolder() const { return (attributes & pc::attributeFolder) != 0; }
    bool IsLink() const { return (attributes & pc::attributeReparse) != 0; }
    bool InUse() const { return locked || readers || writers; }
};
using Node = std::shared_ptr<FileNode>;

struct Drive {
    Node root;
    uint32_t type = 3, serial = 0x1A2B3C4D;
    bool ready = true;
    double total = 100.0 * (1 << 30), free = 60.0 * (1 << 30);
};

struct OpenFile {
    Node node;  // null: the NUL device
    std::string path;
    bool reads = false, writes = false, appends = false, changed = false;
    uint64_t position = 0, written = 0;
};

// What a path leads to.
struct Place {
    uint32_t error = 0;  // 2 or 3 when there is no node, or why the path cannot be used at all
    Node node, parent;   // parent is null for a root
    std::string path;    // full, after redirection
    std::string root, name;
    bool closed = false;  // written with a backslash at its end
    bool device = false;  // reserved name

    bool Found() const { return node != nullptr; }
    // The folder for it is there and nothing else hinders making it.
    bool CanBeMade() const { return !node && parent && error == 2 && !closed && !device; }
};

struct Disk {
    std::map<std::string, Drive> drives;  // "C:" or "\\SERVER\SHARE", folded
    std::map<uintptr_t, OpenFile> open;
    uint32_t tempNumber = 0x10A0;
};

Disk& TheDisk();
// follow: a link at the end leads on. redirect: as the 32-bit program sees it.
Place Resolve(const std::string& path, bool follow = false, bool redirect = true);
// As Resolve, without the reading of short forms: "C:\a\..\b." becomes "C:\b".
std::string PlainPath(const std::string& path);

Node AddNode(const Place& place, uint32_t attributes);
void RemoveNode(const Place& place);
// 0, or the code with which Windows refuses to change the content of, delete or make a file there.
uint32_t RefusedChange(const Place& place);
// Takes up to size bytes from what the disk has left.
size_t TakeSpace(size_t size);
// A node's facts under the name that was asked for.
pc::FileInfo InfoOf(const FileNode& node, const std::string& name);
// Content behind the program's back, for INI files. The write is refused as any other; not journalled.
bool StoreBytes(const std::string& path, const std::string& bytes);
