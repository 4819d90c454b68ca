#include "controls/input_box.h"

#include "controls/branding.h"
#include "controls/form.h"
#include "controls/panel_links.h"

namespace {

struct Question {
    std::string prompt, text;
    bool accepted = false;
};
Question question;

const ControlSpec controls[] = {
    {Kind::label, "lblPrompt", "", {240, 240, 5760, 600}, "", wrap | noPrefix},
    {Kind::textBox, "txtAnswer", "", {240, 900, 5760, 360}},
    {Kind::button, "cmdOk", "OK", {3120, 1500, 1380, 420}, "", defaultButton},
    {Kind::button, "cmdCancel", "Cancel", {4620, 1500, 1380, 420}, "", cancelButton},
};

const FormDefinition frmInputBox = {"frmInputBox", "", 6240, 2160, Border::dialog, controls, [](Form& form) {
                                        form.onLoad = [&form] {
                                            SetFormIcon(form);
                                            form.SetCaption(BrandName());
                                            form.SetText("lblPrompt", question.prompt);
                                            form.SetText("txtAnswer", question.text);
                                            form.Find("txtAnswer")->SetFocus();
                                        };
                                        form.OnClick("cmdOk", [&form] {
                                            question.text = form.Text("txtAnswer");
                                            question.accepted = true;
                                            UnloadForm(form);
                                        });
                                        form.OnClick("cmdCancel", [&form] { UnloadForm(form); });
                                    }};

}  // namespace

std::string InputBox(const std::string& prompt, const std::string& initialText) {
    question = {prompt, initialText, false};
    ShowFormModal(frmInputBox);
    return question.accepted ? question.text : "";
}
