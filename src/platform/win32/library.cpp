#include "platform/library.h"

#include <windows.h>

#include <array>
#include <vector>

#include "platform/machine.h"
#include "platform/win32/wide.h"

namespace pc {
namespace {

constexpr size_t maxArguments = 8;

// Calls with always eight words and then puts the stack pointer back: the library takes its own number of them off,
// which an outside library does not tell.
intptr_t CallWithWords(FARPROC function, const std::array<intptr_t, maxArguments>& words) {
    intptr_t result = reinterpret_cast<intptr_t>(function);
    asm volatile(
        "movl %%esp, %%edi\n\t"
        "pushl 28(%%esi)\n\tpushl 24(%%esi)\n\tpushl 20(%%esi)\n\tpushl 16(%%esi)\n\t"
        "pushl 12(%%esi)\n\tpushl 8(%%esi)\n\tpushl 4(%%esi)\n\tpushl (%%esi)\n\t"
        "call *%%eax\n\t"
        "movl %%edi, %%esp"
        : "+a"(result)
        : "S"(words.data())
        : "edi", "ecx", "edx", "memory", "cc");
    return result;
}

}  // namespace

bool Library::Load(const std::string& path) {
    Free();
    bool isFullPath = path.find('\\') != std::string::npos;
    DWORD flags = isFullPath ? LOAD_WITH_ALTERED_SEARCH_PATH : 0;
    handle = reinterpret_cast<uintptr_t>(LoadLibraryExW(Wide(path).c_str(), nullptr, flags));
    return handle != 0;
}

bool Library::Call(const std::string& function, std::initializer_list<LibraryArgument> arguments) {
    if (!handle || arguments.size() > maxArguments) return false;
    FARPROC address = GetProcAddress(reinterpret_cast<HMODULE>(handle), function.c_str());
    if (!address) return false;
    std::array<intptr_t, maxArguments> words{};
    std::vector<std::string> texts;
    texts.reserve(arguments.size());  // so that they stay where they are
    size_t count = 0;
    for (const LibraryArgument& argument : arguments)
        words[count++] = argument.isText ? reinterpret_cast<intptr_t>(texts.emplace_back(ToAnsi(argument.text)).c_str())
                                         : argument.number;
    CallWithWords(address, words);
    return true;
}

void Library::Free() {
    if (handle) FreeLibrary(reinterpret_cast<HMODULE>(handle));
    handle = 0;
}

}  // namespace pc
