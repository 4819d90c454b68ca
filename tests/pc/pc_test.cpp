#include "pc/pc_test.h"

#include "controls/panel_links.h"
#include "pc/names.h"
#include "system/program_state.h"

namespace {

void FailTest(const std::string& text) { ADD_FAILURE() << text; }

}  // namespace

PcTest::PcTest() {
    complain = FailTest;
    ForgetForms();
    SimulatedPc::UseWindows(Windows::sevenX64);
    State() = {};
    Links() = {};
}

PcTest::~PcTest() {
    for (int answer : Pc().answers) ADD_FAILURE() << "nobody asked for the answer " << answer;
    for (const std::string& path : Pc().picks) ADD_FAILURE() << "nobody asked for the pick " << path;
    for (const std::string& form : UnusedScripts()) ADD_FAILURE() << "the form never came up: " << form;
    ForgetForms();
}

std::vector<std::string> Listed(const std::string& text) {
    return text.empty() ? std::vector<std::string>() : Pieces(text, '|');
}

testing::AssertionResult SameLines(const std::vector<std::string>& actual, const std::vector<std::string>& expected) {
    if (actual == expected) return testing::AssertionSuccess();
    auto result = testing::AssertionFailure() << "lines differ (- expected only, + happened only):\n";
    // Lengths of the longest common rests.
    std::vector<std::vector<size_t>> common(actual.size() + 1, std::vector<size_t>(expected.size() + 1));
    for (size_t i = actual.size(); i-- > 0;)
        for (size_t k = expected.size(); k-- > 0;)
            common[i][k] =
                actual[i] == expected[k] ? common[i + 1][k + 1] + 1 : std::max(common[i + 1][k], common[i][k + 1]);
    size_t i = 0, k = 0;
    while (i < actual.size() || k < expected.size()) {
        if (i < actual.size() && k < expected.size() && actual[i] == expected[k]) {
            result << "    " << actual[i++] << "\n";
            ++k;
        } else if (k < expected.size() && (i == actual.size() || common[i][k + 1] >= common[i + 1][k])) {
            result << "  - " << expected[k++] << "\n";
        } else {
            result << "  + " << actual[i++] << "\n";
        }
    }
    return result;
}
