#include "system/permissions.h"

#include "pc/pc_test.h"

using namespace std::string_literals;

namespace {

class PermissionsTest : public PcTest {};

const std::string ann = SidBytes("S-1-5-21-1-2-3-1001"), users = SidBytes("S-1-5-32-545");
constexpr uint8_t inherited = 16, object = 5;

std::string Number(uint32_t number, size_t size) {
    std::string bytes;
    for (size_t i = 0; i < size; ++i) bytes += static_cast<char>(number >> (8 * i) & 0xFF);
    return bytes;
}

std::string Ace(uint8_t type, uint8_t flags, uint32_t mask, const std::string& sid) {
    return Number(type, 1) + Number(flags, 1) + Number(static_cast<uint32_t>(8 + sid.size()), 2) + Number(mask, 4) +
           sid;
}

// A descriptor with these entries; slack is room left free at the end of the list.
std::string Descriptor(uint16_t control, const std::vector<std::string>& aces, size_t slack = 0) {
    std::string body;
    for (const std::string& ace : aces) body += ace;
    body.append(slack, '\0');
    return Number(1, 2) + Number(control, 2) + std::string(12, '\0') + Number(20, 4) + Number(2, 2) +
           Number(static_cast<uint32_t>(8 + body.size()), 2) + Number(static_cast<uint32_t>(aces.size()), 2) +
           Number(0, 2) + body;
}

AccessEntry Entry(const std::string& sid, uint32_t mask, uint8_t type = 0) {
    AccessEntry entry;
    entry.sid = sid;
    entry.mask = mask;
    entry.aceType = type;
    return entry;
}

}  // namespace

TEST_F(PermissionsTest, ADescriptorIsBuiltByteForByte) {
    EXPECT_EQ(BuildNewSecurityDescriptor("", {Entry(SidBytes("S-1-5-18"), 0xF003F)}, true),
              "\x01\0\x04\x80\0\0\0\0\0\0\0\0\0\0\0\0\x14\0\0\0"
              "\x02\0\x1C\0\x01\0\0\0"
              "\0\x02\x14\0\x3F\0\x0F\0\x01\x01\0\0\0\0\0\x05\x12\0\0\0"s);
}

TEST_F(PermissionsTest, DenialsStandFirstAndInheritedEntriesLast) {
    std::string ownUsers = Ace(0, 2, 1, users), ownAnn = Ace(0, 0, 7, ann), ownDeny = Ace(1, 0, 2, users);
    std::string fromAbove = Ace(0, 2 | inherited, 3, ann), fromAbove2 = Ace(1, inherited, 4, users);
    std::string grantAnn = Ace(0, 2, 0xF003F, ann), denyAnn = Ace(1, 2, 0x20006, ann);
    AccessEntry grant = Entry(ann, 0xF003F), deny = Entry(ann, 0x20006, 1);
    struct {
        std::string old;
        std::vector<AccessEntry> entries;
        uint16_t control;
        std::vector<std::string> expected;
        size_t slack;
    } cases[] = {
        {Descriptor(0x8004, {ownUsers}), {grant}, 0x8004, {ownUsers, grantAnn}, 0},
        {Descriptor(0x8004, {ownDeny, ownAnn, fromAbove}),
         {grant},
         0x8004,
         {ownDeny, grantAnn, fromAbove},
         ownAnn.size()},
        {Descriptor(0x8004, {ownUsers, fromAbove, ownAnn, fromAbove2}),
         {grant, deny},
         0x8004,
         {denyAnn, ownUsers, grantAnn, fromAbove, ownAnn, fromAbove2},
         0},
        {Descriptor(0x8404, {fromAbove}), {deny}, 0x8404, {denyAnn, fromAbove}, 0},
        {Descriptor(0x9404, {}), {grant}, 0x8404, {grantAnn}, 0},  // inherited before protected
        {Descriptor(0x9004, {}, 12), {grant}, 0x9004, {grantAnn}, 0},
        {Descriptor(0x8000, {ownUsers}), {grant}, 0x8004, {grantAnn}, 0},  // no list at all
        {Descriptor(0x8004, {Ace(object, 0, 1, ann)}), {grant}, 0x8004, {grantAnn}, ownAnn.size()},
    };
    for (const auto& c : cases)
        EXPECT_EQ(BuildNewSecurityDescriptor(c.old, c.entries, true), Descriptor(c.control, c.expected, c.slack))
            << "case " << &c - cases;
    EXPECT_EQ(BuildNewSecurityDescriptor(cases[3].old, {deny}, false), Descriptor(0x8004, {denyAnn, fromAbove}));
}

TEST_F(PermissionsTest, DamagedDescriptorsGiveNone) {
    std::string whole = Descriptor(0x8004, {Ace(0, 2, 1, users), Ace(0, inherited, 3, ann)});
    for (size_t size = 1; size < whole.size(); ++size)
        EXPECT_EQ(BuildNewSecurityDescriptor(whole.substr(0, size), {Entry(ann, 1)}, true), "") << size;
    struct {
        size_t at;
        std::string bytes;
    } faults[] = {{16, "\xFF\xFF\xFF\xFF"}, {16, "\x7F"},         {22, "\xFF\xFF"}, {22, "\x04"s + '\0'},
                  {24, "\xFF\xFF"},         {30, "\x03"s + '\0'}, {30, "\xFF\xFF"}};
    for (const auto& fault : faults) {
        std::string damaged = whole;
        damaged.replace(fault.at, fault.bytes.size(), fault.bytes);
        EXPECT_EQ(BuildNewSecurityDescriptor(damaged, {Entry(ann, 1)}, true), "") << fault.at;
    }
    for (const std::string& sid : {""s, ann.substr(1), ann + "x", "\x01\xFF"s})
        EXPECT_EQ(BuildNewSecurityDescriptor(whole, {Entry(sid, 1)}, true), "");
    EXPECT_EQ(BuildNewSecurityDescriptor("", std::vector<AccessEntry>(4000, Entry(ann, 1)), true), "");
}

TEST_F(PermissionsTest, KeyPermissionsAreWrittenUnderTheRootNamed) {
    struct {
        const char *root, *account, *mode, *access;
        std::string key, ace;
    } cases[] = {
        {"hkcu", "", "", "R", "HKCU\\Software\\K", Ace(0, 2, 0x20019, ann)},
        {"HKLM", "Users", "Deny", "Write", "HKLM\\Software\\K", Ace(1, 2, 0x20006, users)},
        {"HKDD", "Ann", "Allow", "F", "HKLM\\Software\\K", Ace(0, 2, 0xF003F, ann)},
    };
    for (const auto& c : cases) {
        SimulatedPc& pc = SimulatedPc::UseWindows(Windows::seven);
        pc.AddAccount("Ann", "S-1-5-21-1-2-3-1001");
        pc.SetEnv("username", "Ann");
        pc.AddKey(c.key);
        EXPECT_TRUE(RegSetKeyPermission(c.root, "Software\\K", c.account, c.mode, c.access)) << c.root;
        EXPECT_JOURNAL({"security " + c.key});
        pc::Key key;
        std::string descriptor;
        pc::OpenKey(c.key[2] == 'C' ? pc::currentUser : pc::localMachine, "Software\\K", pc::keyReadControl, key);
        EXPECT_EQ(pc::GetKeySecurity(key, descriptor), 0);
        EXPECT_NE(descriptor.find(c.ace), std::string::npos) << c.root << " " << c.access;
    }
    EXPECT_TRUE(Pc().Traced("\tSetPerm\\RegSetKeyPermission - Bad skey passed:  HKDD"));
    EXPECT_FALSE(RegSetKeyPermission("HKLM", "Software\\None", "Ann", "Allow", "ALL"));
    EXPECT_FALSE(RegSetKeyPermission("HKLM", "Software\\K", "Nobody here", "Allow", "ALL"));
}

TEST_F(PermissionsTest, TakeControlSettlesOwnerAndGrantee) {
    struct {
        const char *user, *owner, *grantee;
        const char *settledOwner, *settledGrantee;
    } cases[] = {
        {"Ann", "", "", "Ann", "Ann"},    {"", "", "", "System", "Everyone"},    {"PC$", "", "", "System", "Everyone"},
        {"Ann", "Bob", "", "Bob", "Bob"}, {"Ann", "Bob", "Cleo", "Bob", "Cleo"},
    };
    for (const auto& c : cases) {
        SimulatedPc& pc = SimulatedPc::UseWindows(Windows::seven);
        pc.SetEnv("computername", "PC");
        pc.SetEnv("username", c.user);
        pc.AddFolder("C:\\Dir x");
        pc.AddFile("C:\\File");
        std::string owner = c.owner;
        TakeControl("C:\\Dir x\\", true, 1000, owner, c.grantee);
        EXPECT_EQ(owner, c.owner);  // no tool, nothing settled
        EXPECT_TRUE(pc.journal.empty());
        pc.AddFile("C:\\Windows\\subinacl.exe");
        TakeControl("C:\\Dir x\\", true, 1000, owner, c.grantee);
        EXPECT_EQ(owner, c.settledOwner);
        owner = c.owner;
        TakeControl("C:\\File", true, 1000, owner, c.grantee);
        TakeControl("C:\\None", true, 1000, owner, c.grantee);
        const std::string tool = "run hidden \"C:\\Windows\\subinacl.exe\" ";
        const std::string tail = " /setowner="s + c.settledOwner + " /grant=" + c.settledGrantee + "=F";
        EXPECT_JOURNAL({tool + "/file \"C:\\Dir x\"" + tail, tool + "/subdirectories \"C:\\Dir x\\*.*\"" + tail,
                        tool + "/file \"C:\\File\"" + tail});
    }
}

TEST_F(PermissionsTest, TheLastToolFoundTakesTheKey) {
    struct {
        const char *root, *owner, *longForm, *settledOwner;
    } cases[] = {{"HKCU", "", "HKEY_CURRENT_USER\\K", "Ann"},
                 {"hklm", "", "HKEY_LOCAL_MACHINE\\K", "administrators"},
                 {"HKCR", "Bob", "HKEY_CLASSES_ROOT\\ K", "Bob"}};
    SimulatedPc::UseWindows(Windows::seven).SetEnv("username", "Ann");
    for (const char* tool : {"C:\\Windows\\subinacl.exe", "C:\\Windows\\System32\\subinacl.exe"}) Pc().AddFile(tool);
    for (const auto& c : cases) {
        Pc().journal.clear();
        TakeControlOfRegKey(c.root, "K", c.owner);
        const std::string tool = "run hidden \"C:\\Windows\\System32\\subinacl.exe\" ";
        const std::string tail = " \""s + c.longForm + "\" /setowner=" + c.settledOwner + " /grant=Ann=f";
        EXPECT_JOURNAL({tool + "/keyreg" + tail, tool + "/subkeyreg" + tail});
    }
}

TEST_F(PermissionsTest, ThePrivilegeStaysOnWhenTheOwnerCannotBeSet) {
    Pc().AddAccount("Ann", "S-1-5-21-1-2-3-1001");
    Pc().AddFile("C:\\File");
    ChangeOwnerOfFile("C:\\File", "Ann");
    EXPECT_EQ(Pc().OwnerOf("C:\\File"), "S-1-5-21-1-2-3-1001");
    EXPECT_TRUE(Pc().heldPrivileges.empty());
    EXPECT_EQ(Pc().trace.back(), "\tOwner of C:\\File changed to Ann");
    ChangeOwnerOfFile("C:\\None", "Ann");
    EXPECT_EQ(Pc().heldPrivileges, std::vector<std::string>{"SeRestorePrivilege"});
    EXPECT_EQ(Pc().trace.back(), "\tSetFileSecurity failed with error code 2");
    ChangeOwnerOfFile("C:\\File", "Nobody here");
    EXPECT_EQ(Pc().trace.back(), "\tLookupAccountName failed with error code 1332");
}
