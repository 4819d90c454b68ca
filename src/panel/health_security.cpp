// What the Security Center knows of anti-virus and firewall products.

#include <vector>

#include "panel/health.h"
#include "platform/wmi.h"
#include "system/language.h"
#include "system/operating_system.h"
#include "system/text.h"
#include "system/trace.h"

namespace {

struct Product {
    std::string name;
    bool running = false;
    bool upToDate = false;
};

// The last four hexadecimal digits of "productState": the first is "1" when it runs, the third "0" when it is up to
// date.
void ReadProductState(const pc::WmiValue& state, Product& product) {
    std::string digits = "0000" + HexText(static_cast<uint32_t>(state.number));
    digits = digits.substr(digits.size() - 4);
    product.running = digits[0] == '1';
    product.upToDate = digits[2] == '0' && state.kind != pc::WmiValue::Kind::null;
}

// Products with a name; none when the Security Center does not answer. Before Vista two properties tell what the
// state number tells later.
std::vector<Product> ReadProducts(const char* className, const std::string& runningProperty,
                                  const std::string& upToDateProperty) {
    std::vector<Product> products;
    bool vista = IsVistaOrLater();
    std::vector<std::string> properties = {"DisplayName"};
    if (vista)
        properties.push_back("productState");
    else
        properties.insert(properties.end(), {runningProperty, upToDateProperty});
    std::string error;
    auto status = pc::WmiQuery(
        vista ? "root\\SecurityCenter2" : "root\\SecurityCenter", std::string("Select * from ") + className, properties,
        wmiTimeout,
        [&](const pc::WmiRow& row) {
            Product product{row[0].text};
            if (vista) {
                ReadProductState(row[1], product);
            } else {
                product.running = row[1].boolean;
                product.upToDate = row[2].boolean;
            }
            if (!product.name.empty()) products.push_back(product);
            return true;
        },
        error);
    if (status == pc::WmiStatus::failed || status == pc::WmiStatus::timedOut)
        DebugOutput(std::string("Health\\") + className + ": ", error);
    return products;
}

constexpr const char* unmeasured = "---";

// The first product replaces the dashes, further ones are added if their name is new.
void AddProduct(Form& form, const char* labelName, const std::string& name, const std::string& status) {
    Control* label = form.Find(labelName);
    if (!label) return;
    if (label->Text() == unmeasured) {
        label->SetText(name + status);
    } else if (label->Text().find(name) == std::string::npos) {
        label->SetText(label->Text() + " / " + name + status);
        label->SetToolTip(label->Text());
    }
}

}  // namespace

bool GetAV(Form& form) {
    bool fault = false;
    for (const Product& product : ReadProducts("AntiVirusProduct", "onAccessScanningEnabled", "productUpToDate")) {
        if (!product.running || !product.upToDate) fault = true;
        std::string running = product.running ? MiscText("Enabled", "Enabled") : MiscText("Disabled", "Disabled");
        AddProduct(form, "lblAV", product.name,
                   " (" + running + ", " + (product.upToDate ? "Up to Date" : "Outdated!") + ")");
    }
    if (form.Text("lblAV") == unmeasured) {
        form.SetText("lblAV", LanguageText("MainForm", "NoAVSoftware", "No A/V Software!"));
        fault = true;
    } else if (form.Text("lblAV") == "No A/V Software!") {
        fault = true;
    }
    SetHealthState(form, "lblAV", fault ? HealthState::warning : HealthState::normal);
    DebugOutput("Completed GetAV");
    return fault;
}

bool GetFirewall(Form& form) {
    bool fault = false;
    const char* off = IsVistaOrLater() ? " (Disabled)" : " (Disabled!)";
    for (const Product& product : ReadProducts("FirewallProduct", "Enabled", "Enabled")) {
        if (!product.running) fault = true;
        AddProduct(form, "lblFirewall", product.name, product.running ? " (Enabled)" : off);
    }
    if (form.Text("lblFirewall") == unmeasured) form.SetText("lblFirewall", "Windows Firewall");
    // The one item that leaves the weight of its letters as it is.
    if (Control* label = form.Find("lblFirewall")) label->SetColour(fault ? colourWarning : colourButtonText);
    DebugOutput("Completed GetFirewall");
    return fault;
}
