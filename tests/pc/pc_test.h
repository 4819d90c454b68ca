// The fixture of the native tests: a fresh PC (Windows 7, 64 bits), fresh program state and no loaded forms for each
// test. What the test has promised (answers, scripts of modal forms) must have been asked for at its end.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "pc/headless_host.h"
#include "pc/simulated_pc.h"

class PcTest : public ::testing::Test {
protected:
    PcTest();
    ~PcTest() override;
};

// Success when the lines are the same, else a readable comparison.
testing::AssertionResult SameLines(const std::vector<std::string>& actual, const std::vector<std::string>& expected);

// "a|b" as {"a", "b"}, "" as nothing: rows of tables stay short.
std::vector<std::string> Listed(const std::string& text);

// EXPECT_JOURNAL({"run cmd /c x", "delete C:\\a"}): the whole journal.
#define EXPECT_JOURNAL(...) EXPECT_TRUE(SameLines(Pc().journal, __VA_ARGS__))
// EXPECT_LINES(Pc().Journal("run"), {"run cmd /c x"}).
#define EXPECT_LINES(actual, ...) EXPECT_TRUE(SameLines(actual, __VA_ARGS__))
