// Outside libraries: loading one that is on the disk succeeds, and calls are journalled:
//   call appface.dll SkinStart C:\Panel\Skins\Calm.skf, 2
#include "pc/simulated_pc.h"
#include "platform/library.h"

namespace pc {
namespace {

// Names of the loaded libraries; a handle is a position, from 1.
struct Libraries {
    std::vector<std::string> names;
};

}  // namespace

bool Library::Load(const std::string& path) {
    Free();
    bool isSystems = path.find('\\') == std::string::npos;
    if (Pc().Fails(126) || (!isSystems && !Pc().Exists(path))) return false;
    auto& names = Pc().Of<Libraries>().names;
    names.push_back(path.substr(path.rfind('\\') + 1));
    handle = names.size();
    return true;
}

bool Library::Call(const std::string& function, std::initializer_list<LibraryArgument> arguments) {
    const auto& names = Pc().Of<Libraries>().names;
    if (handle == 0 || handle > names.size()) return false;
    std::string line = "call " + names[handle - 1] + " " + function;
    for (const LibraryArgument& argument : arguments)
        line += (&argument == arguments.begin() ? " " : ", ") +
                (argument.isText ? argument.text : std::to_string(argument.number));
    Pc().Note(line);
    return true;
}

void Library::Free() { handle = 0; }

}  // namespace pc
