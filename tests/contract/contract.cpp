#include "contract/contract.h"

#include <vector>

namespace {

void RemoveTree(const std::string& folder) {
    std::vector<pc::FileInfo> entries;
    pc::ListFolder(folder, "*", [&](const pc::FileInfo& info) {
        entries.push_back(info);
        return true;
    });
    for (const pc::FileInfo& info : entries) {
        std::string path = folder + "\\" + info.name;
        pc::ChangeAttributes(path, pc::attributeNormal);
        if (info.IsFolder())
            RemoveTree(path);
        else
            pc::RemoveFile(path);
    }
    pc::RemoveFolder(folder);
}

void RemoveKeys(const std::string& path, const std::string& name) {
    std::vector<std::string> names;
    std::string child;
    pc::Key key;
    pc::OpenKey(pc::currentUser, path + "\\" + name, pc::keyEnumerateSubKeys, key);
    for (uint32_t i = 0; pc::EnumKey(key, i, child) == 0; ++i) names.push_back(child);
    for (const std::string& each : names) RemoveKeys(path + "\\" + name, each);
    pc::Key parent;
    pc::OpenKey(pc::currentUser, path, pc::keyAllAccess, parent);
    pc::DeleteSubkey(parent, name, 0);
}

}  // namespace

ContractTest::ContractTest() : place(PrepareContract()), folder(place.folder + "\\Contract") {
    RemoveTree(folder);
    RemoveKeys("Software", "BrevantaContract");
    EXPECT_TRUE(pc::MakeFolder(folder));
}

ContractTest::~ContractTest() {
    RemoveTree(folder);
    RemoveKeys("Software", "BrevantaContract");
}

void ContractTest::Write(const std::string& name, const std::string& bytes) const {
    EXPECT_TRUE(pc::WriteWholeFile(In(name), bytes)) << name;
}

std::string ContractTest::Read(const std::string& name) const {
    return pc::ReadWholeFile(In(name)).value_or("(nothing)");
}
