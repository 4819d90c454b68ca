// Libraries that are not part of the system and may be absent.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>

namespace pc {

// A number, or a text that the library gets in the system's ANSI code page.
struct LibraryArgument {
    LibraryArgument(intptr_t value) : number(value) {}
    LibraryArgument(std::string value) : text(std::move(value)), isText(true) {}
    intptr_t number = 0;
    std::string text;
    bool isText = false;
};

// A loaded library; frees itself.
class Library {
public:
    Library() = default;
    ~Library() { Free(); }
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;

    // path is a full path, or the bare name of one of the system's own libraries. What was loaded before is freed.
    bool Load(const std::string& path);
    // Calls an exported function (at most 8 arguments; the rest of 8 are zeros). False when nothing is loaded or the
    // function is not there.
    bool Call(const std::string& function, std::initializer_list<LibraryArgument> arguments);
    void Free();

private:
    uintptr_t handle = 0;
};

}  // namespace pc
