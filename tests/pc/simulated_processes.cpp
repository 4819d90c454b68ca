// Processes, privileges, the pump, and virtual time.
#include "platform/processes.h"

#include <algorithm>
#include <cstdlib>

#include "pc/names.h"
#include "pc/simulated_programs.h"

Programs& ThePrograms() { return Pc().Of<Programs>(); }

namespace {

constexpr uint32_t badImage = 193, invalidParameter = 87, denied = 5;

uintptr_t nextHandle = 0x302;

RunningProgram* Running(uint32_t id) {
    auto found = ThePrograms().processes.find(id);
    return found == ThePrograms().processes.end() ? nullptr : &found->second;
}

bool IsHeld(uint32_t id) {
    const auto& handles = ThePrograms().handles;
    return std::any_of(handles.begin(), handles.end(), [&](const auto& handle) { return handle.second.id == id; });
}

void End(uint32_t id, uint32_t exitCode, bool killed) {
    RunningProgram* program = Running(id);
    if (!program || !program->runs) return;
    program->runs = false;
    program->exitCode = exitCode;
    if (program->image) --program->image->images;
    auto effect = program->behaviour.effect;
    if (!IsHeld(id)) ThePrograms().processes.erase(id);
    if (effect && !killed) effect(Pc());
}

// Runs what is due first, if anything is due by then.
bool RunDue(uint64_t until) {
    Programs& programs = ThePrograms();
    uint32_t id = 0;
    uint64_t due = until + 1;
    for (const auto& [candidate, program] : programs.processes)
        if (program.runs && program.endsAt < due) {
            due = program.endsAt;
            id = candidate;
        }
    auto next = programs.later.begin();
    bool isAction = next != programs.later.end() && next->first <= std::min(due, until);
    if (!isAction && !id) return false;
    uint64_t at = std::max(isAction ? next->first : due, Pc().elapsed);
    Pc().ticks += static_cast<uint32_t>(at - Pc().elapsed);
    Pc().elapsed = at;
    if (isAction) {
        auto action = std::move(next->second);
        programs.later.erase(next);
        action();
    } else {
        End(id, Running(id)->behaviour.exitCode, false);
    }
    return true;
}

uint32_t AddRunning(const std::string& name, const Node& image, const Behaviour& behaviour) {
    uint32_t id = ThePrograms().nextId += 4;
    RunningProgram& program = ThePrograms().processes[id];
    program.name = name;
    program.image = image;
    program.behaviour = behaviour;
    if (image) ++image->images;
    if (behaviour.runs != Behaviour::forever) program.endsAt = Pc().elapsed + behaviour.runs;
    if (behaviour.runs == 0) End(id, behaviour.exitCode, false);
    return id;
}

// Program parts that an unquoted line may mean, as the platform tries them.
std::vector<std::string> Candidates(const std::string& line) {
    if (line.starts_with('"')) return {line.substr(1, line.find('"', 1) - 1)};
    std::vector<std::string> candidates;
    for (size_t end = line.find(' '); end != std::string::npos; end = line.find(' ', end + 1))
        candidates.push_back(line.substr(0, end));
    candidates.push_back(line);
    return candidates;
}

}  // namespace

void PassTime(uint64_t milliseconds) {
    Pc().CheckPatience();
    uint64_t until = Pc().elapsed + milliseconds;
    while (RunDue(until)) Pc().CheckPatience();
    Pc().ticks += static_cast<uint32_t>(until - Pc().elapsed);
    Pc().elapsed = until;
}

Behaviour BehaviourOf(const std::string& line) {
    const auto& rules = ThePrograms().rules;
    auto rule =
        std::find_if(rules.rbegin(), rules.rend(), [&](const auto& entry) { return HoldsName(line, entry.first); });
    if (rule != rules.rend()) return rule->second;
    // The one thing that every command interpreter can be asked for.
    size_t exit = Fold(line).find("/C EXIT ");
    return {.exitCode = exit == std::string::npos ? 0 : static_cast<uint32_t>(std::atoi(line.c_str() + exit + 8))};
}

Place FindProgram(const std::string& name) {
    std::string file = LastPart(name).find('.') == std::string::npos ? name + ".exe" : name;
    if (file.find('\\') != std::string::npos || file.find(':') != std::string::npos) return Resolve(file, true);
    std::vector<std::string> folders = {FolderPart(Pc().programPath), pc::SystemFolder(), pc::WindowsFolder()};
    for (const std::string& folder : Pieces(Pc().Env("path"), ';')) folders.push_back(folder);
    Place place;
    for (const std::string& folder : folders) {
        place = Resolve(folder + "\\" + file, true);
        if (place.node && !place.node->IsFolder()) return place;
    }
    place.node = nullptr;
    place.error = 2;
    return place;
}

uint32_t StartImage(const Place& image, const std::string& line) {
    return AddRunning(LastPart(image.path), image.node, BehaviourOf(line));
}

int KillNamed(const std::string& name) {
    std::vector<uint32_t> ids;
    for (const auto& [id, program] : ThePrograms().processes)
        if (program.runs && SameName(program.name, name)) ids.push_back(id);
    for (uint32_t id : ids)
        if (!Running(id)->behaviour.isProtected) End(id, 0, true);
    return static_cast<int>(ids.size());
}

namespace pc {

Process& Process::operator=(Process&& other) noexcept {
    if (this != &other) {
        Close();
        value = other.value;
        other.value = 0;
    }
    return *this;
}

void Process::Close() {
    auto& handles = ThePrograms().handles;
    auto found = value ? handles.find(value) : handles.end();
    value = 0;
    if (found == handles.end()) return;
    uint32_t id = found->second.id;
    handles.erase(found);
    RunningProgram* program = Running(id);
    if (program && !program->runs && !IsHeld(id)) ThePrograms().processes.erase(id);
}

uint32_t StartProcess(const std::string& commandLine, uint16_t windowStyle) {
    Pc().Begin();
    std::string note = std::string("run ") +
                       (windowStyle == 0   ? "hidden "
                        : windowStyle == 2 ? "minimised "
                                           : "") +
                       commandLine;
    uint32_t code = 0, first = 0;
    Place image;
    for (const std::string& candidate : Candidates(commandLine)) {
        image = FindProgram(candidate);
        if (image.node && !image.node->IsFolder()) break;
        if (!first) first = image.node ? denied : image.error;
        image.node = nullptr;
    }
    if (!image.node)
        code = first;
    else if (image.node->denied)
        code = denied;
    else if (image.node->locked || image.node->writers)
        code = 32;
    for (const char* document : {"TXT", "REG", "INI", "MSC", "CPL", "URL", "LNK", "HTM", "ZIP"})
        if (image.node && FoldedExtension(image.path) == document) code = badImage;
    if (!code && Pc().ChangeFails(8)) code = Pc().lastError;
    Pc().Note(note + (code ? " -> error " + Decimal(code) : ""));
    if (!code) return StartImage(image, commandLine);
    Pc().Refuse(code);
    return 0;
}

bool OpenProcessById(uint32_t processId, uint32_t access, Process& process) {
    Pc().Begin();
    process.Close();
    if (Running(processId) && Pc().Fails(denied)) return false;
    RunningProgram* program = Running(processId);  // may have ended meanwhile
    if (!program) return Pc().Refuse(invalidParameter);
    if (program->behaviour.isProtected) return Pc().Refuse(denied);
    process.value = nextHandle += 4;
    ThePrograms().handles[process.value] = {processId, access};
    return true;
}

bool GetExitCode(const Process& process, uint32_t& exitCode) {
    auto found = ThePrograms().handles.find(process.value);
    if (found == ThePrograms().handles.end()) return Pc().Refuse(6);
    if (!(found->second.access & processQueryInformation)) return Pc().Refuse(denied);
    Pc().CheckPatience();
    const RunningProgram* program = Running(found->second.id);
    exitCode = program->runs ? stillActive : program->exitCode;
    return true;
}

bool Terminate(const Process& process, uint32_t exitCode) {
    Pc().Begin();
    auto found = ThePrograms().handles.find(process.value);
    if (found == ThePrograms().handles.end()) return Pc().Refuse(6);
    if (!(found->second.access & processTerminate)) return Pc().Refuse(denied);
    uint32_t id = found->second.id;
    if (!Running(id)->runs || Pc().ChangeFails(denied)) return Pc().Refuse(denied);
    Pc().Note("kill " + Running(id)->name);
    if (id == ownProcessId) throw ProgramEnded{exitCode};
    End(id, exitCode, true);
    return true;
}

std::vector<ProcessEntry> ListProcesses() {
    std::vector<ProcessEntry> entries;
    if (Pc().Fails(denied)) return entries;
    for (const auto& [id, program] : ThePrograms().processes)
        if (program.runs) entries.push_back({id, program.name});
    return entries;
}

uint32_t OwnProcessId() { return ownProcessId; }

PrivilegeStep SetPrivilege(const std::string& name, bool enable, bool* changed) {
    if (Pc().Fails(denied)) return PrivilegeStep::openToken;
    if (!name.starts_with("Se") || !name.ends_with("Privilege")) {
        Pc().Refuse(1313);
        return PrivilegeStep::lookup;
    }
    auto& refused = Pc().refusedPrivileges;
    if (std::find(refused.begin(), refused.end(), name) != refused.end()) {
        Pc().Refuse(denied);
        return PrivilegeStep::adjust;
    }
    // Who has no right to a privilege is told so by nobody.
    enable = enable && !Pc().ordinaryUser;
    bool wasEnabled = std::erase(Pc().heldPrivileges, name) > 0;
    if (enable) Pc().heldPrivileges.push_back(name);
    if (changed) *changed = wasEnabled != enable;
    return PrivilegeStep::done;
}

intptr_t ShellOpen(const std::string& file, const std::string& verb, const std::string& parameters, int) {
    Pc().Begin();
    size_t colon = file.find(':');
    bool address = colon != std::string::npos && colon > 1 && file.find('\\') > colon;
    std::string line = file + (parameters.empty() ? "" : " " + parameters);
    std::string note = "open " + (verb.empty() || verb == "open" ? "" : "(" + verb + ") ") + line;
    Place place = Resolve(file, true);
    bool program = false;
    if (!address && (!place.node || !place.node->IsFolder())) {
        if (!place.node && file.find('\\') == std::string::npos) place = FindProgram(file);
        if (!place.node) return static_cast<intptr_t>(place.error == 3 ? 3 : 2);
        if (place.node->denied) return denied;
        std::string extension = FoldedExtension(place.path);
        if (extension.empty()) return 31;
        program = extension == "EXE" || extension == "COM" || extension == "BAT" || extension == "CMD";
    }
    if (Pc().ChangeFails(denied)) return denied;
    Pc().Note(note);
    if (program) StartImage(place, line);
    return 42;
}

bool ShowProperties(const std::string& path) {
    Place place = Resolve(path, true);
    if (!place.node) return Pc().Refuse(place.error);
    Pc().Note("properties " + place.path);
    return true;
}

uint32_t TickCount() {
    Pc().CheckPatience();
    return Pc().ticks;
}

void SleepFor(uint32_t milliseconds) { PassTime(milliseconds); }

void PumpMessages() {
    Programs& programs = ThePrograms();
    Pc().CheckPatience();
    ++programs.pumps;
    while (!programs.atPump.empty() && programs.atPump.begin()->first <= programs.pumps) {
        auto action = std::move(programs.atPump.begin()->second);
        programs.atPump.erase(programs.atPump.begin());
        action();
    }
    if (Pc().onPump) Pc().onPump();
}

void EndProcess(uint32_t exitCode) {
    Pc().Note("end " + Decimal(exitCode));
    throw ProgramEnded{exitCode};
}

bool HoldSingleInstance(const std::string&) { return !Pc().otherInstanceRuns; }

}  // namespace pc

void SimulatedPc::Program(const std::string& partOfCommandLine, Behaviour behaviour) {
    ThePrograms().rules.emplace_back(partOfCommandLine, std::move(behaviour));
}

uint32_t SimulatedPc::AddProcess(const std::string& name, Behaviour behaviour) {
    return AddRunning(name, nullptr, behaviour);
}

bool SimulatedPc::IsRunning(const std::string& name) const {
    const auto& processes = ThePrograms().processes;
    return std::any_of(processes.begin(), processes.end(),
                       [&](const auto& entry) { return entry.second.runs && SameName(entry.second.name, name); });
}

void SimulatedPc::EndProcesses(const std::string& name) {
    std::vector<uint32_t> ids;
    for (const auto& [id, program] : ThePrograms().processes)
        if (program.runs && SameName(program.name, name)) ids.push_back(id);
    for (uint32_t id : ids)
        if (RunningProgram* program = Running(id)) End(id, program->behaviour.exitCode, false);
}

void SimulatedPc::Later(uint32_t milliseconds, std::function<void()> action) {
    ThePrograms().later.emplace(elapsed + milliseconds, std::move(action));
}

void SimulatedPc::AtPump(int n, std::function<void()> action) {
    ThePrograms().atPump.emplace(ThePrograms().pumps + n, std::move(action));
}

void SimulatedPc::Pass(uint32_t milliseconds) {
    constexpr uint32_t step = 10;
    for (uint32_t passed = 0; passed < milliseconds; passed += step) {
        PassTime(std::min(step, milliseconds - passed));
        pc::PumpMessages();
    }
}
