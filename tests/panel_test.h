// Fixture of the tests that look at a panel.
#pragma once

#include <string>
#include <vector>

#include "panel/panel_forms.h"
#include "pc/pc_test.h"
#include "system/program_state.h"
#include "system/trace.h"

struct Key {
    const char* section;
    const char* key;
    const char* value;
};

class PanelTest : public PcTest {
protected:
    static constexpr const char* settingsFile = "C:\\Panel\\Brevanta.ini";
    static constexpr const char* languageFile = "C:\\Panel\\AltLang.INI";
    static constexpr const char* logoFile = "C:\\Panel\\supportlogo.png";
    static constexpr const char* usageFile = "C:\\Panel\\Usage.ini";

    // A fresh PC with these settings and a logo; nothing is shown yet.
    void Prepare(const std::vector<Key>& keys = {}, Windows windows = Windows::sevenX64) {
        SimulatedPc::UseWindows(windows);
        State() = {};
        ForgetForms();
        for (const Key& key : keys) Pc().SetIni(settingsFile, key.section, key.key, key.value);
        Pc().AddFile(logoFile, "picture");
        InitPaths(true, true);
        ConnectPanel();
    }
    Form& Show(const FormDefinition& face, const std::vector<Key>& keys = {}) {
        Prepare(keys);
        Form& form = ShowForm(face);
        Pc().journal.clear();
        return form;
    }
    // The counters that were written, in order, such as "Fix=1".
    std::vector<std::string> Counted() {
        const std::string head = std::string("ini ") + usageFile + " [Usage] ";
        std::vector<std::string> lines;
        for (const std::string& line : Pc().Journal(head)) lines.push_back(line.substr(head.size()));
        return lines;
    }
};
