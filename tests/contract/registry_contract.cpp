#include <algorithm>
#include <vector>

#include "contract/contract.h"

namespace {

using namespace std::string_literals;
using RegistryContract = ContractTest;

constexpr uint32_t readAccess = pc::keyQueryValue | pc::keyEnumerateSubKeys;
constexpr uint32_t writeAccess = pc::keySetValue | pc::keyCreateSubKey;

TEST_F(RegistryContract, ValuesComeBackAsTheyWereStored) {
    struct {
        const char* name;
        uint32_t type;
        std::string data;
    } rows[] = {
        {"text", pc::typeSz, "plain\0"s},
        {"empty", pc::typeSz, "\0"s},
        {"", pc::typeSz, "default\0"s},
        {"unicode \xD0\x96", pc::typeSz, "caf\xC3\xA9 \xF0\x9F\x94\xA5\0"s},
        {"expand", pc::typeExpandSz, "%windir%\\x\0"s},
        {"multi", pc::typeMultiSz, "one\0two\0\0"s},
        {"number", pc::typeDword, "\x02\x01\0\0"s},
        {"bytes", pc::typeBinary, "\xFF\0\x80"s},
        {"none", pc::typeBinary, ""s},
        {"blank ", pc::typeSz, " x \0"s},
    };
    pc::Key opened;
    ASSERT_EQ(0, pc::CreateKey(pc::currentUser, key, writeAccess | readAccess, opened));
    for (const auto& row : rows) EXPECT_EQ(0, pc::SetValue(opened, row.name, row.type, row.data)) << row.name;
    for (const auto& row : rows) {
        uint32_t type = 0;
        std::string data;
        EXPECT_EQ(0, pc::QueryValue(opened, row.name, type, data)) << row.name;
        EXPECT_EQ(row.type, type) << row.name;
        EXPECT_EQ(row.data, data) << row.name;
    }
    std::vector<std::string> names;
    std::string name, data;
    uint32_t type = 0, index = 0;
    for (; pc::EnumValue(opened, index, name, type, data) == 0; ++index) {
        names.push_back(name);
        for (const auto& row : rows) {
            if (name != row.name) continue;
            EXPECT_EQ(row.type, type) << name;
            EXPECT_EQ(row.data, data) << name;
        }
    }
    EXPECT_EQ(pc::errorNoMoreItems, pc::EnumValue(opened, index, name, type, data));
    EXPECT_EQ(std::size(rows), names.size());
    for (const auto& row : rows) EXPECT_EQ(1, std::count(names.begin(), names.end(), row.name)) << row.name;
}

TEST_F(RegistryContract, WhatIsMissingFailsWithItsCode) {
    pc::Key opened;
    uint32_t type = 0;
    std::string data;
    EXPECT_EQ(2, pc::OpenKey(pc::currentUser, key, readAccess, opened));
    EXPECT_EQ(0u, opened.value);
    EXPECT_EQ(6, pc::CloseKey(opened));
    EXPECT_EQ(6, pc::QueryValue(opened, "x", type, data));
    ASSERT_EQ(0, pc::CreateKey(pc::currentUser, key + "\\a\\b", writeAccess | readAccess, opened));
    EXPECT_EQ(2, pc::QueryValue(opened, "x", type, data));
    EXPECT_EQ(2, pc::QueryValue(opened, "", type, data));
    EXPECT_EQ(2, pc::DeleteValue(opened, "x"));
    EXPECT_EQ(2, pc::DeleteSubkey(opened, "x", 0));
    EXPECT_EQ(87, pc::DeleteSubkey(opened, "", 0));
    EXPECT_EQ(0, pc::CloseKey(opened));
    EXPECT_EQ(0u, opened.value);
}

TEST_F(RegistryContract, KeysAreFoundWhateverTheirCaseAndDeletedWithoutSubkeysOnly) {
    pc::Key opened;
    ASSERT_EQ(0, pc::CreateKey(pc::currentUser, key + "\\One\\Two", pc::keyAllAccess, opened));
    ASSERT_EQ(0, pc::CreateKey(pc::currentUser, key + "\\Zero", pc::keyAllAccess, opened));
    ASSERT_EQ(0, pc::OpenKey(pc::currentUser, key + "\\", pc::keyAllAccess, opened));
    std::string name, names;
    uint32_t index = 0;
    for (; pc::EnumKey(opened, index, name) == 0; ++index) names += name + " ";
    EXPECT_EQ("One Zero ", names);
    EXPECT_EQ(pc::errorNoMoreItems, pc::EnumKey(opened, index, name));
    EXPECT_EQ(5, pc::DeleteSubkey(opened, "ONE", 0));
    EXPECT_EQ(0, pc::DeleteSubkey(opened, "one\\TWO", 0));
    EXPECT_EQ(0, pc::DeleteSubkey(opened, "ONE", 0));
    pc::Key gone;
    EXPECT_EQ(2, pc::OpenKey(pc::currentUser, key + "\\one", readAccess, gone));
}

TEST_F(RegistryContract, AHandleCanDoWhatItWasOpenedForOnly) {
    pc::Key reader, writer;
    uint32_t type = 0;
    std::string data;
    ASSERT_EQ(0, pc::CreateKey(pc::currentUser, key, pc::keySetValue, writer));
    ASSERT_EQ(0, pc::OpenKey(pc::currentUser, key, pc::keyQueryValue, reader));
    EXPECT_EQ(5, pc::SetValue(reader, "x", pc::typeSz, "v\0"s));
    EXPECT_EQ(5, pc::EnumKey(reader, 0, data));
    EXPECT_EQ(5, pc::QueryValue(writer, "x", type, data));
    EXPECT_EQ(0, pc::SetValue(writer, "x", pc::typeSz, "v\0"s));
    EXPECT_EQ(0, pc::QueryValue(reader, "X", type, data));
    EXPECT_EQ(0, pc::DeleteValue(writer, "X"));
    EXPECT_EQ(2, pc::QueryValue(reader, "x", type, data));
}

TEST_F(RegistryContract, AHandleOfADeletedKeySaysSo) {
    pc::Key parent, child;
    ASSERT_EQ(0, pc::CreateKey(pc::currentUser, key, pc::keyAllAccess, parent));
    ASSERT_EQ(0, pc::CreateKey(pc::currentUser, key + "\\child", pc::keyAllAccess, child));
    ASSERT_EQ(0, pc::DeleteSubkey(parent, "child", 0));
    EXPECT_EQ(1018, pc::SetValue(child, "x", pc::typeSz, "v\0"s));
}

TEST_F(RegistryContract, AnAccessListForbidsAndLetsItselfBeChanged) {
    // Self-relative descriptor: one entry that lets everyone read the key and change its list.
    std::string readOnly = "\x01\0\x04\x80"s + std::string(12, '\0') + "\x14\0\0\0"s + "\x02\0\x1C\0\x01\0\0\0"s +
                           "\0\0\x14\0"s + "\x19\0\x06\0"s + "\x01\x01\0\0\0\0\0\x01\0\0\0\0"s;
    pc::Key opened;
    ASSERT_EQ(0, pc::CreateKey(pc::currentUser, key, pc::keyAllAccess, opened));
    std::string before;
    ASSERT_EQ(0, pc::GetKeySecurity(opened, before));
    EXPECT_GE(before.size(), 20u);
    ASSERT_EQ(0, pc::SetKeySecurity(opened, readOnly));
    pc::Key denied;
    EXPECT_EQ(5, pc::OpenKey(pc::currentUser, key, writeAccess, denied));
    EXPECT_EQ(0, pc::OpenKey(pc::currentUser, key, pc::keyQueryValue, denied));
    std::string now;
    ASSERT_EQ(0, pc::OpenKey(pc::currentUser, key, pc::keyReadControl | pc::keyWriteDac, opened));
    EXPECT_EQ(0, pc::GetKeySecurity(opened, now));
    EXPECT_EQ(readOnly.substr(20), now.substr(now.size() - 28));
    EXPECT_EQ(0, pc::SetKeySecurity(opened, before));
    EXPECT_EQ(0, pc::OpenKey(pc::currentUser, key, writeAccess, denied));
    EXPECT_NE(0, pc::SetKeySecurity(opened, "junk"));
}

TEST_F(RegistryContract, ThePartOfTheMachineHasTwoViews) {
    const std::string path = "Software\\BrevantaContract";
    pc::Key plain, wide, found;
    ASSERT_EQ(0, pc::CreateKey(pc::localMachine, path, pc::keyAllAccess, plain));
    EXPECT_EQ(0, pc::SetValue(plain, "view", pc::typeSz, "32\0"s));
    int32_t otherView = pc::OpenKey(pc::localMachine, path, readAccess | pc::keyWow64_64, wide);
    EXPECT_EQ(place.hasTwoViews ? 2 : 0, otherView);
    if (place.hasTwoViews) {
        EXPECT_EQ(0, pc::OpenKey(pc::localMachine, "Software\\Wow6432Node\\BrevantaContract",
                                 readAccess | pc::keyWow64_64, found));
        EXPECT_EQ(0, pc::OpenKey(pc::localMachine, "Software\\Wow6432Node\\BrevantaContract", readAccess, found));
        ASSERT_EQ(0, pc::CreateKey(pc::localMachine, path, pc::keyAllAccess | pc::keyWow64_64, wide));
        uint32_t type = 0;
        std::string data;
        EXPECT_EQ(2, pc::QueryValue(wide, "view", type, data));
        ASSERT_EQ(0, pc::OpenKey(pc::localMachine, "Software", pc::keyAllAccess | pc::keyWow64_64, wide));
        EXPECT_EQ(0, pc::DeleteSubkey(wide, "BrevantaContract", pc::keyWow64_64));
    }
    ASSERT_EQ(0, pc::OpenKey(pc::localMachine, "Software", pc::keyAllAccess, found));
    EXPECT_EQ(0, pc::DeleteSubkey(found, "BrevantaContract", 0));
}

}  // namespace
