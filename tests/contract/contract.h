// Contract tests: the same assertions on the simulated PC and, as contract_tests.exe, on the Windows side of the
// platform layer. They hold the simulated PC to what the platform does.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "platform/files.h"
#include "platform/processes.h"
#include "platform/registry.h"

// What the two sides give a test to work with; each implements PrepareContract() (tests/pc, tests/windows).
struct ContractPlace {
    std::string folder;       // for temporary folders, without backslash at its end
    std::string longCommand;  // a command line that runs for ten seconds at least, without a window
    bool hasTwoViews;         // 64-bit system under a 32-bit program
};
ContractPlace PrepareContract();

// A fresh folder and a fresh key for each test.
class ContractTest : public ::testing::Test {
protected:
    ContractTest();
    ~ContractTest() override;

    std::string In(const std::string& name) const { return folder + "\\" + name; }
    void Write(const std::string& name, const std::string& bytes = "text") const;
    std::string Read(const std::string& name) const;
    bool IsThere(const std::string& name) const { return pc::GetFileInfo(In(name)).has_value(); }

    ContractPlace place;
    std::string folder;
    std::string key = "Software\\BrevantaContract";  // below HKEY_CURRENT_USER
};

// A call that must fail with a code.
#define EXPECT_CODE(code, call)                     \
    do {                                            \
        EXPECT_FALSE(call);                         \
        EXPECT_EQ(uint32_t{code}, pc::LastError()); \
    } while (false)

// --- how a form looks on this side, in pixels at a scale of 100, 150 or 200 percent
class Control;
class Form;
struct PixelBox {
    int left, top, right, bottom;
};
// Draws a loaded form at another scale.
void ScaleForm(Form& form, int percent);
// Place in the control's container.
PixelBox PixelPlace(const Control& control);
// Room that a text needs in the control's font; width limits the lines of a text that wraps.
PixelBox TextRoom(const Control& control, const std::string& text, int width);
