// Scales a form's controls with the form.
#pragma once

#include "controls/form.h"

// Keeps the places of a form's controls at design size and scales them in proportion.
class FormResizer {
public:
    // Notes the present places as the design.
    void InitResizeArray(Form& form);
    // Places every control for the form's present size.
    void ResizeControls();
    // Changes the design place of one control (twips at design size).
    void SetControlProperties(const std::string& controlName, const Box& place);

private:
    struct Entry {
        std::string name;
        Box box;
    };
    Form* form = nullptr;
    int designWidth = 0, designHeight = 0;
    std::vector<Entry> entries;
};
