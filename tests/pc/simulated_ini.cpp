// INI files by the platform's rules.
#include <optional>

#include "pc/names.h"
#include "pc/simulated_disk.h"
#include "platform/registry.h"

namespace {

std::string Trimmed(std::string text) {
    while (!text.empty() && static_cast<unsigned char>(text.back()) <= ' ') text.pop_back();
    size_t start = 0;
    while (start < text.size() && static_cast<unsigned char>(text[start]) <= ' ') ++start;
    return text.substr(start);
}

std::string Unquoted(const std::string& text) {
    bool quoted = text.size() > 1 && (text[0] == '"' || text[0] == '\'') && text.back() == text[0];
    return quoted ? text.substr(1, text.size() - 2) : text;
}

// Lines without their ends, CR LF, LF or CR.
std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines(1);
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n') continue;
        if (text[i] == '\n' || text[i] == '\r')
            lines.emplace_back();
        else
            lines.back() += text[i];
    }
    if (lines.back().empty()) lines.pop_back();
    return lines;
}

std::optional<std::string> SectionName(const std::string& line) {
    std::string text = Trimmed(line);
    size_t end = text.find_last_of(']');
    if (!text.starts_with('[') || end == std::string::npos) return {};
    return Trimmed(text.substr(1, end - 1));
}

struct Entry {
    std::string key, value;
    bool hasValue = false;
};

// Comments and empty lines are no entries.
std::optional<Entry> EntryOf(const std::string& line) {
    std::string text = Trimmed(line);
    if (text.empty() || text[0] == ';') return {};
    size_t equals = text.find('=');
    if (equals == std::string::npos) return Entry{text, "", false};
    return Entry{Trimmed(text.substr(0, equals)), Trimmed(text.substr(equals + 1)), true};
}

// First and behind-the-last line of a section's body; nothing when there is no such section.
std::optional<std::pair<size_t, size_t>> Body(const std::vector<std::string>& lines, const std::string& section) {
    for (size_t i = 0; i < lines.size(); ++i) {
        auto name = SectionName(lines[i]);
        if (!name || !SameName(*name, Trimmed(section))) continue;
        size_t end = i + 1;
        while (end < lines.size() && !SectionName(lines[end])) ++end;
        return std::pair(i + 1, end);
    }
    return {};
}

// Good until the next call.
const std::vector<std::string>& LinesOf(const std::string& file) {
    static std::string bytes;  // of the lines: a settings file is read key by key
    static std::vector<std::string> lines;
    Place place = Resolve(file, true);
    bool readable = place.node && !place.node->IsFolder() && !place.node->denied && !place.node->locked;
    if (bytes != (readable ? place.node->bytes : "")) {
        bytes = readable ? place.node->bytes : "";
        lines = Lines(pc::FromAnsi(bytes));
    }
    return lines;
}

std::optional<std::string> Find(const std::string& file, const std::string& section, const std::string& key) {
    const std::vector<std::string>& lines = LinesOf(file);
    auto body = Body(lines, section);
    for (size_t i = body ? body->first : 0; body && i < body->second; ++i) {
        auto entry = EntryOf(lines[i]);
        if (entry && entry->hasValue && SameName(entry->key, Trimmed(key))) return Unquoted(entry->value);
    }
    return {};
}

bool Store(const std::string& file, const std::string& section, const std::string& key, const std::string& value) {
    std::vector<std::string> lines = LinesOf(file);
    std::string line = key + "=" + value;
    auto body = Body(lines, section);
    if (!body) {
        lines.push_back("[" + section + "]");
        lines.push_back(line);
    } else {
        size_t end = body->second;
        while (end > body->first && Trimmed(lines[end - 1]).empty()) --end;
        bool found = false;
        for (size_t i = body->first; i < body->second && !found; ++i) {
            auto entry = EntryOf(lines[i]);
            found = entry && SameName(entry->key, Trimmed(key));
            if (found) lines[i] = line;
        }
        if (!found) lines.insert(lines.begin() + static_cast<ptrdiff_t>(end), line);
    }
    return StoreBytes(file, pc::ToAnsi(Joined(lines, "\r\n") + "\r\n"));
}

}  // namespace

namespace pc {

std::string ReadProfileText(const std::string& file, const std::string& section, const std::string& key,
                            const std::string& defaultText, size_t capacity) {
    ++Pc().profileReads;
    bool failed = Pc().Fails(32);
    std::optional<std::string> value;
    if (!failed) value = Find(file, section, key);
    std::string fallback = Unquoted(defaultText);
    while (fallback.ends_with(' ')) fallback.pop_back();
    return capacity ? CutToUnits(value ? *value : fallback, capacity - 1) : "";
}

std::string ReadProfileSection(const std::string& file, const std::string& section, size_t capacity) {
    ++Pc().profileReads;
    if (Pc().Fails(32) || capacity < 2) return "";
    std::vector<std::string> lines = LinesOf(file);
    auto body = Body(lines, section);
    std::string list;
    for (size_t i = body ? body->first : 0; body && i < body->second; ++i)
        if (auto entry = EntryOf(lines[i])) list += entry->key + (entry->hasValue ? "=" + entry->value : "") + '\0';
    if (Units(list) <= capacity - 1) return list;
    return CutToUnits(list, capacity - 2) + '\0';
}

bool WriteProfileText(const std::string& file, const std::string& section, const std::string& key,
                      const std::string& value) {
    if (Pc().ChangeFails(5) || !Store(file, section, key, value)) return false;
    Pc().Note("ini " + Resolve(file, true).path + " [" + section + "] " + key + "=" + value);
    return true;
}

}  // namespace pc

void SimulatedPc::SetIni(const std::string& file, const std::string& section, const std::string& key,
                         const std::string& value) {
    if (!Exists(file)) AddFile(file);
    Store(file, section, key, value);
}

std::string SimulatedPc::Ini(const std::string& file, const std::string& section, const std::string& key) const {
    return Find(file, section, key).value_or("");
}
