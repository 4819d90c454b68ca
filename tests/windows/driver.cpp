// driver.exe: the hands and eyes of the tests on the screen of a Windows PC.
//
// Reads commands from standard input, one a line, fields parted by tabs, with \t \n \r \\ escaped; writes one line of
// JSON for each: {"ok": RESULT} or {"error": "why"}. All text is UTF-8. Forms and controls are found by the window
// property "ControlName" (a global atom); message boxes by their class. No command waits: the caller polls.

#include <windows.h>
// behind windows.h
#include <commctrl.h>

#include <algorithm>
#include <map>
#include <string>
#include <vector>

namespace {

using Fields = std::vector<std::string>;

constexpr UINT answerLimit = 2000;  // ms that a window may take to answer; a busy program gives an error, no hang

std::wstring Wide(const std::string& text) {
    int size = MultiByteToWideChar(CP_UTF8, 0, text.data(), (int)text.size(), nullptr, 0);
    std::wstring wide((size_t)size, L'\0');
    MultiByteToWideChar(CP_UTF8, 0, text.data(), (int)text.size(), wide.data(), size);
    return wide;
}

std::string Utf8(const wchar_t* text) {
    int size = WideCharToMultiByte(CP_UTF8, 0, text, -1, nullptr, 0, nullptr, nullptr);
    std::string utf8((size_t)std::max(size, 1), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text, -1, utf8.data(), size, nullptr, nullptr);
    utf8.pop_back();
    return utf8;
}

// --- JSON -----------------------------------------------------------------------------------------------------------

std::string Quoted(const std::string& text) {
    std::string out = "\"";
    for (char c : text) {
        if (c == '"' || c == '\\') {
            out += {'\\', c};
        } else if ((unsigned char)c < 32) {
            const char* hex = "0123456789abcdef";
            out += {'\\', 'u', '0', '0', hex[c >> 4], hex[c & 15]};
        } else {
            out += c;
        }
    }
    return out + '"';
}

std::string Number(long long value) { return std::to_string(value); }
std::string Truth(bool value) { return value ? "true" : "false"; }
std::string Pair(const char* name, const std::string& json) { return Quoted(name) + ":" + json; }

std::string Joined(const Fields& parts, const char* open, const char* close) {
    std::string out = open;
    for (size_t i = 0; i < parts.size(); ++i) out += (i ? "," : "") + parts[i];
    return out + close;
}

std::string List(const Fields& parts) { return Joined(parts, "[", "]"); }
std::string Object(const Fields& parts) { return Joined(parts, "{", "}"); }

std::string Ok(const std::string& json = "true") { return Object({Pair("ok", json)}); }
std::string Failed(const std::string& why) { return Object({Pair("error", Quoted(why))}); }

// --- Windows --------------------------------------------------------------------------------------------------------

LRESULT Ask(HWND window, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
    DWORD_PTR result = 0;
    SendMessageTimeoutW(window, message, wParam, lParam, SMTO_ABORTIFHUNG, answerLimit, &result);
    return (LRESULT)result;
}

std::string TextOf(HWND window) {
    std::wstring text((size_t)Ask(window, WM_GETTEXTLENGTH) + 1, L'\0');
    Ask(window, WM_GETTEXT, text.size(), (LPARAM)text.data());
    return Utf8(text.c_str());
}

std::string ClassOf(HWND window) {
    wchar_t name[100] = L"";
    GetClassNameW(window, name, 100);
    return Utf8(name);
}

// Empty for a window that has no automation name.
std::string NameOf(HWND window) {
    ATOM atom = (ATOM)(UINT_PTR)GetPropW(window, L"ControlName");
    wchar_t name[256] = L"";
    if (atom) GlobalGetAtomNameW(atom, name, 256);
    return Utf8(name);
}

DWORD ProcessOf(HWND window) {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    return process;
}

BOOL CALLBACK Collect(HWND window, LPARAM list) {
    ((std::vector<HWND>*)list)->push_back(window);
    return TRUE;
}

std::vector<HWND> TopWindows() {
    std::vector<HWND> windows;
    EnumWindows(Collect, (LPARAM)&windows);
    return windows;
}

std::vector<HWND> ChildrenOf(HWND window) {
    std::vector<HWND> windows;
    EnumChildWindows(window, Collect, (LPARAM)&windows);
    return windows;
}

// The visible form of that name before a hidden one.
HWND FindForm(const std::string& name) {
    HWND found = nullptr;
    for (HWND window : TopWindows()) {
        if (NameOf(window) != name) continue;
        if (IsWindowVisible(window)) return window;
        found = window;
    }
    return found;
}

// A form when control is empty. A control may also be named by "#" and its id (dialogs of the system).
HWND Find(const std::string& form, const std::string& control) {
    HWND window = form[0] == '@' ? (HWND)(UINT_PTR)std::strtoul(form.c_str() + 1, nullptr, 10) : FindForm(form);
    if (!window || control.empty()) return window;
    if (control[0] == '#') return GetDlgItem(window, std::atoi(control.c_str() + 1));
    for (HWND child : ChildrenOf(window)) {
        if (NameOf(child) == control) return child;
    }
    return nullptr;
}

HWND FocusOf(HWND window) {
    GUITHREADINFO info{};
    info.cbSize = sizeof info;
    GetGUIThreadInfo(GetWindowThreadProcessId(window, nullptr), &info);
    return info.hwndFocus;
}

bool IsClass(HWND window, const char* part) {
    std::string name = ClassOf(window);
    for (char& c : name) c = (char)tolower(c);
    return name.find(part) != std::string::npos;
}

std::string Described(HWND window, HWND form) {
    RECT r{};
    GetWindowRect(window, &r);
    if (window != form) MapWindowPoints(nullptr, form, (POINT*)&r, 2);
    DWORD style = (DWORD)GetWindowLongW(window, GWL_STYLE);
    bool checkable = IsClass(window, "button");
    return Object({Pair("name", Quoted(NameOf(window))), Pair("class", Quoted(ClassOf(window))),
                   Pair("text", Quoted(TextOf(window))), Pair("visible", Truth(IsWindowVisible(window))),
                   Pair("enabled", Truth(IsWindowEnabled(window))), Pair("focus", Truth(FocusOf(form) == window)),
                   Pair("checked", Number(checkable ? (long long)Ask(window, BM_GETCHECK) : 0)),
                   Pair("tabStop", Truth(style & WS_TABSTOP)), Pair("id", Number(GetWindowLongW(window, GWL_ID))),
                   Pair("handle", Number((UINT_PTR)window)),
                   Pair("rect", List({Number(r.left), Number(r.top), Number(r.right), Number(r.bottom)}))});
}

// Memory in another process, for messages whose pointers the system does not carry over.
struct Remote {
    HANDLE process;
    char* memory;
    explicit Remote(HWND window)
        : process(OpenProcess(PROCESS_VM_OPERATION | PROCESS_VM_READ | PROCESS_VM_WRITE, FALSE, ProcessOf(window))),
          memory((char*)VirtualAllocEx(process, nullptr, 8192, MEM_COMMIT, PAGE_READWRITE)) {}
    ~Remote() {
        VirtualFreeEx(process, memory, 0, MEM_RELEASE);
        CloseHandle(process);
    }
    Remote(const Remote&) = delete;
    Remote& operator=(const Remote&) = delete;
    std::string CellText(HWND list, WPARAM row, int column) {
        wchar_t text[2048] = L"";
        LVITEMW item{};
        item.iSubItem = column;
        item.pszText = (wchar_t*)(memory + 1024);
        item.cchTextMax = 2048;
        WriteProcessMemory(process, memory, &item, sizeof item, nullptr);
        WriteProcessMemory(process, item.pszText, text, sizeof(wchar_t), nullptr);
        Ask(list, LVM_GETITEMTEXTW, row, (LPARAM)memory);
        ReadProcessMemory(process, item.pszText, text, sizeof text, nullptr);
        return Utf8(text);
    }
};

// --- Commands: fields after the command's name in, JSON out ---------------------------------------------------------

std::string Forms(const Fields&) {
    Fields forms;
    for (HWND window : TopWindows()) {
        if (!NameOf(window).empty()) forms.push_back(Described(window, window));
    }
    return Ok(List(forms));
}

// Visible windows of the system's dialog class, topmost first, with all their controls.
std::string Boxes(const Fields&) {
    Fields boxes;
    for (HWND window : TopWindows()) {
        if (!IsWindowVisible(window) || ClassOf(window) != "#32770") continue;
        Fields controls;
        for (HWND child : ChildrenOf(window)) controls.push_back(Described(child, window));
        boxes.push_back(Object({Pair("window", Described(window, window)), Pair("controls", List(controls))}));
    }
    return Ok(List(boxes));
}

std::string Dump(HWND window) {
    Fields controls;
    for (HWND child : ChildrenOf(window)) controls.push_back(Described(child, window));
    return Ok(Object({Pair("form", Described(window, window)), Pair("controls", List(controls))}));
}

std::string Click(HWND window) {
    if (!IsWindowEnabled(window) || !IsWindowVisible(window)) return Failed("disabled or hidden");
    SetForegroundWindow(GetAncestor(window, GA_ROOT));
    if (IsClass(window, "button")) return Ok(Truth(PostMessageW(window, BM_CLICK, 0, 0)));
    RECT r{};
    GetClientRect(window, &r);
    LPARAM place = MAKELPARAM(r.right / 2, r.bottom / 2);
    PostMessageW(window, WM_MOUSEMOVE, 0, place);
    PostMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, place);
    return Ok(Truth(PostMessageW(window, WM_LBUTTONUP, 0, place)));
}

// Replaces what a text box or combo holds, as typing does: the form hears of the change.
std::string SetText(HWND window, const std::string& text) {
    if (!IsWindowEnabled(window)) return Failed("disabled");
    std::wstring wide = Wide(text);
    HWND edit = IsClass(window, "combobox") ? FindWindowExW(window, nullptr, L"Edit", nullptr) : window;
    if (!edit || (GetWindowLongW(edit, GWL_STYLE) & ES_READONLY)) return Failed("cannot be typed into");
    Ask(edit, EM_SETSEL, 0, -1);
    Ask(edit, EM_REPLACESEL, TRUE, (LPARAM)wide.c_str());
    return Ok();
}

std::string Items(HWND window) {
    bool combo = IsClass(window, "combobox");
    LRESULT count = Ask(window, combo ? CB_GETCOUNT : LB_GETCOUNT);
    Fields items;
    for (LRESULT i = 0; i < count; ++i) {
        LRESULT length = Ask(window, combo ? CB_GETLBTEXTLEN : LB_GETTEXTLEN, (WPARAM)i);
        std::wstring text((size_t)std::max<LRESULT>(length, 0) + 1, L'\0');
        Ask(window, combo ? CB_GETLBTEXT : LB_GETTEXT, (WPARAM)i, (LPARAM)text.data());
        items.push_back(Quoted(Utf8(text.c_str())));
    }
    return Ok(Object(
        {Pair("items", List(items)), Pair("selected", Number((int)Ask(window, combo ? CB_GETCURSEL : LB_GETCURSEL)))}));
}

void TellParent(HWND window, WORD notification) {
    Ask(GetParent(window), WM_COMMAND, MAKEWPARAM(GetWindowLongW(window, GWL_ID), notification), (LPARAM)window);
}

void SetRowState(HWND window, WPARAM row, UINT state, UINT mask) {
    Remote remote(window);
    LVITEMW item{};
    item.state = state;
    item.stateMask = mask;
    WriteProcessMemory(remote.process, remote.memory, &item, sizeof item, nullptr);
    Ask(window, LVM_SETITEMSTATE, row, (LPARAM)remote.memory);
}

std::string Select(HWND window, int index) {
    if (!IsWindowEnabled(window)) return Failed("disabled");
    if (IsClass(window, "syslistview")) {
        SetRowState(window, (WPARAM)index, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
        return Ok();
    }
    bool combo = IsClass(window, "combobox");
    if (Ask(window, combo ? CB_SETCURSEL : LB_SETCURSEL, (WPARAM)index) < 0) return Failed("no such entry");
    TellParent(window, combo ? CBN_SELCHANGE : LBN_SELCHANGE);
    return Ok();
}

// {"rows": [{"cells": [text], "checked": truth}]} of a list view.
std::string Rows(HWND window) {
    Remote remote(window);
    LRESULT columnCount = Ask((HWND)Ask(window, LVM_GETHEADER), HDM_GETITEMCOUNT);
    LRESULT rowCount = Ask(window, LVM_GETITEMCOUNT);
    Fields rows;
    for (LRESULT r = 0; r < rowCount; ++r) {
        Fields cells;
        for (LRESULT c = 0; c < columnCount; ++c) cells.push_back(Quoted(remote.CellText(window, (WPARAM)r, (int)c)));
        UINT state = (UINT)Ask(window, LVM_GETITEMSTATE, (WPARAM)r, LVIS_STATEIMAGEMASK);
        rows.push_back(Object({Pair("cells", List(cells)), Pair("checked", Truth((state >> 12) == 2))}));
    }
    return Ok(Object({Pair("rows", List(rows))}));
}

const std::map<std::string, WORD> keyCodes = {{"Tab", VK_TAB},     {"Enter", VK_RETURN}, {"Escape", VK_ESCAPE},
                                              {"Space", VK_SPACE}, {"Up", VK_UP},        {"Down", VK_DOWN},
                                              {"Left", VK_LEFT},   {"Home", VK_HOME},    {"Shift", VK_SHIFT},
                                              {"Alt", VK_MENU},    {"F4", VK_F4}};

// Real key strokes into the form in front: "Tab", "Shift+Tab", "Alt+F".
std::string Keys(HWND window, const std::string& combination) {
    SetForegroundWindow(GetAncestor(window, GA_ROOT));
    std::vector<INPUT> strokes;
    std::string rest = combination;
    for (size_t plus; !rest.empty(); rest = plus == std::string::npos ? "" : rest.substr(plus + 1)) {
        plus = rest.find('+', 1);
        std::string key = rest.substr(0, plus);
        auto known = keyCodes.find(key);
        if (known == keyCodes.end() && key.size() != 1) return Failed("no key named " + key);
        INPUT stroke{};
        stroke.type = INPUT_KEYBOARD;
        stroke.ki.wVk = known != keyCodes.end() ? known->second : (WORD)toupper(key[0]);
        strokes.push_back(stroke);
    }
    for (size_t i = strokes.size(); i-- > 0;) {
        strokes.push_back(strokes[i]);
        strokes.back().ki.dwFlags = KEYEVENTF_KEYUP;
    }
    return SendInput((UINT)strokes.size(), strokes.data(), sizeof(INPUT)) == strokes.size() ? Ok()
                                                                                            : Failed("not all sent");
}

std::string Move(HWND window, const Fields& f) {
    return Ok(Truth(SetWindowPos(window, nullptr, std::atoi(f[2].c_str()), std::atoi(f[3].c_str()),
                                 std::atoi(f[4].c_str()), std::atoi(f[5].c_str()), SWP_NOZORDER | SWP_NOACTIVATE)));
}

// --- Processes ------------------------------------------------------------------------------------------------------

std::map<DWORD, HANDLE> started;  // kept open: the exit code is asked later

// Fields: command line, folder to start in (may be empty), file that takes its output (may be empty).
std::string Start(const Fields& f) {
    std::wstring command = Wide(f[0]), folder = Wide(f[1]), output = Wide(f[2]);
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    // Never our own output: what the programs and theirs print would stand between the answers.
    SECURITY_ATTRIBUTES inherit{sizeof inherit, nullptr, TRUE};
    HANDLE file =
        CreateFileW(output.empty() ? L"NUL" : output.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                    &inherit, output.empty() ? OPEN_EXISTING : CREATE_ALWAYS, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) return Failed("output file: error " + Number(GetLastError()));
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdOutput = startup.hStdError = file;
    PROCESS_INFORMATION process{};
    BOOL done = CreateProcessW(nullptr, command.data(), nullptr, nullptr, TRUE, 0, nullptr,
                               folder.empty() ? nullptr : folder.c_str(), &startup, &process);
    DWORD error = GetLastError();
    CloseHandle(file);
    if (!done) return Failed("CreateProcess: error " + Number(error));
    CloseHandle(process.hThread);
    started[process.dwProcessId] = process.hProcess;
    return Ok(Number(process.dwProcessId));
}

// Exit code of a started process, null while it runs.
std::string ExitCode(const Fields& f) {
    HANDLE process = started.at((DWORD)std::strtoul(f[0].c_str(), nullptr, 10));
    DWORD code = 0;
    if (WaitForSingleObject(process, 0) == WAIT_TIMEOUT) return Ok("null");
    GetExitCodeProcess(process, &code);
    return Ok(Number(code));
}

// What a process holds: kernel handles (by the system's list of all, which Wine has too), and windows.
std::string Handles(const Fields& f) {
    struct Entry {
        ULONG process;
        UCHAR type, flags;
        USHORT handle;
        void* object;
        ULONG access;
    };
    constexpr ULONG allHandles = 16;
    auto query = (LONG(WINAPI*)(ULONG, void*, ULONG, ULONG*))(void*)GetProcAddress(GetModuleHandleW(L"ntdll.dll"),
                                                                                   "NtQuerySystemInformation");
    std::vector<char> list(1 << 22);
    if (!query || query(allHandles, list.data(), (ULONG)list.size(), nullptr) < 0) return Failed("no list of handles");
    DWORD process = (DWORD)std::strtoul(f[0].c_str(), nullptr, 10);
    auto entries = (const Entry*)(list.data() + sizeof(ULONG));
    auto handles = std::count_if(entries, entries + *(const ULONG*)list.data(),
                                 [&](const Entry& e) { return e.process == process; });
    size_t windows = 0;
    for (HWND window : TopWindows())
        if (ProcessOf(window) == process) windows += 1 + ChildrenOf(window).size();
    return Ok(List({Number(handles), Number((long long)windows)}));
}

// --- Tables of commands ---------------------------------------------------------------------------------------------

const std::map<std::string, std::string (*)(const Fields&)> plainCommands = {
    {"forms", Forms}, {"boxes", Boxes}, {"start", Start}, {"exitcode", ExitCode}, {"handles", Handles}};

// These take a form ("@handle" for a window without a name) and a control (may be empty) as their first fields.
const std::map<std::string, std::string (*)(HWND, const Fields&)> windowCommands = {
    {"dump", [](HWND w, const Fields&) { return Dump(w); }},
    {"describe", [](HWND w, const Fields&) { return Ok(Described(w, GetAncestor(w, GA_ROOT))); }},
    {"text", [](HWND w, const Fields&) { return Ok(Quoted(TextOf(w))); }},
    {"settext", [](HWND w, const Fields& f) { return SetText(w, f.size() > 2 ? f[2] : ""); }},
    {"click", [](HWND w, const Fields&) { return Click(w); }},
    {"items", [](HWND w, const Fields&) { return Items(w); }},
    {"select",
     [](HWND w, const Fields& f) { return f.size() > 2 ? Select(w, std::atoi(f[2].c_str())) : Failed("index"); }},
    {"rows", [](HWND w, const Fields&) { return Rows(w); }},
    {"checkrow",
     [](HWND w, const Fields& f) {
         SetRowState(w, (WPARAM)std::atoi(f[2].c_str()), f[3] == "1" ? 0x2000u : 0x1000u, LVIS_STATEIMAGEMASK);
         return Ok();
     }},
    {"keys", [](HWND w, const Fields& f) { return Keys(w, f.size() > 2 ? f[2] : ""); }},
    {"close", [](HWND w, const Fields&) { return Ok(Truth(PostMessageW(w, WM_CLOSE, 0, 0))); }},
    {"move", Move}};

std::string Run(const Fields& fields) {
    Fields rest(fields.begin() + 1, fields.end());
    if (auto plain = plainCommands.find(fields[0]); plain != plainCommands.end()) return plain->second(rest);
    auto command = windowCommands.find(fields[0]);
    if (command == windowCommands.end()) return Failed("no command named " + fields[0]);
    rest.resize(std::max<size_t>(rest.size(), 2));
    HWND window = rest[0].empty() ? nullptr : Find(rest[0], rest[1]);
    return window ? command->second(window, rest) : Failed("no window " + rest[0] + " " + rest[1]);
}

Fields Split(const std::string& line) {
    Fields fields(1);
    for (size_t i = 0; i < line.size(); ++i) {
        if (line[i] == '\t') {
            fields.emplace_back();
        } else if (line[i] == '\\' && i + 1 < line.size()) {
            char c = line[++i];
            fields.back() += c == 't' ? '\t' : c == 'n' ? '\n' : c == 'r' ? '\r' : c;
        } else {
            fields.back() += line[i];
        }
    }
    return fields;
}

void Write(const std::string& line) {
    DWORD written = 0;
    WriteFile(GetStdHandle(STD_OUTPUT_HANDLE), line.data(), (DWORD)line.size(), &written, nullptr);
}

}  // namespace

int main(int count, char**) {
    // With an argument: the panel traces only while a viewer of debug output has this, and Wine logs what it traces.
    if (count > 1) CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, 4096, L"DBWIN_BUFFER");
    std::string waiting;
    char bytes[4096];
    DWORD size = 0;
    while (ReadFile(GetStdHandle(STD_INPUT_HANDLE), bytes, sizeof bytes, &size, nullptr) && size > 0) {
        waiting.append(bytes, size);
        for (size_t end; (end = waiting.find('\n')) != std::string::npos; waiting.erase(0, end + 1)) {
            Write(Run(Split(waiting.substr(0, end))) + "\n");
        }
    }
    return 0;
}
