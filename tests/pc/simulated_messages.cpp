// Message boxes, pickers, and the small internet operations.
#include "platform/messages.h"

#include <algorithm>

#include "pc/names.h"
#include "pc/simulated_pc.h"
#include "platform/internet.h"

namespace {

// Answers that a box with these buttons can give; the first is what closing it gives.
std::vector<int> Possible(uint32_t style) {
    switch (style & 0xF) {
        case 0: return {1};
        case 1: return {2, 1};
        case 2: return {3, 4, 5};
        case 3: return {2, 6, 7};
        case 4: return {7, 6};
        default: return {2, 4};
    }
}

std::string NextPick() {
    if (Pc().picks.empty()) return "";
    std::string path = Pc().picks.front();
    Pc().picks.erase(Pc().picks.begin());
    return path;
}

}  // namespace

namespace pc {

int ShowMessage(const std::string& text, const std::string& title, uint32_t style) {
    std::vector<int> possible = Possible(style);
    int answer = possible[0];
    if (Pc().choose) {
        answer = possible[Pc().choose(possible.size())];
    } else if (Pc().answerer) {
        answer = Pc().answerer(text);
    } else if (!Pc().answers.empty()) {
        answer = Pc().answers.front();
        Pc().answers.erase(Pc().answers.begin());
    }
    if (std::find(possible.begin(), possible.end(), answer) == possible.end())
        complain("the box has no button for the answer " + std::to_string(answer) + ": " + text);
    Pc().Note("show \"" + text + "\" " + (title.empty() ? "" : "titled \"" + title + "\" ") + "(" + Decimal(style) +
              ") -> " + std::to_string(answer));
    return answer;
}

std::string PickFile(const std::string&, const std::string& title, const std::string&) {
    std::string path = NextPick();
    Pc().Note("pick file \"" + title + "\" -> " + path);
    return path;
}

std::string PickFolder(const std::string& prompt) {
    std::string path = NextPick();
    Pc().Note("pick folder \"" + prompt + "\" -> " + path);
    return path;
}

bool CheckConnection(const std::string& url) {
    Pc().contacted.push_back(url);
    return !Pc().Fails(12029) && Pc().online;
}

bool SetDirectConnection(const std::string& connectionName) {
    if (Pc().ChangeFails(5)) return false;
    Pc().Note("direct connection \"" + connectionName + "\"");
    return true;
}

}  // namespace pc
