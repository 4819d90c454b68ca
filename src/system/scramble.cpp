#include "system/scramble.h"

#include "platform/machine.h"
#include "system/base85.h"
#include "system/text.h"

namespace {

// The first key character lines up with the opening guard.
std::string Xor(std::string bytes, const std::string& key) {
    for (size_t i = 0; i < bytes.size() && !key.empty(); ++i)
        bytes[i] = static_cast<char>(bytes[i] ^ key[i % key.size()]);
    return bytes;
}

}  // namespace

std::string Base85EncodeString(const std::string& text, bool bFramed) {
    return Base85EncodeBytes(LowBytes(text), bFramed);
}

std::string Base85DecodeString(const std::string& text) {
    std::string bytes;
    Base85DecodeBytes(text, bytes);
    return pc::FromAnsi(bytes);
}

std::string EncryptString(const std::string& text, const std::string& key) {
    // By way of text, as panels in the field do: a code whose character lies beyond 255 does not read back. ASCII does.
    return Base85EncodeString(pc::FromAnsi(Xor("a" + pc::ToAnsi(text) + "a", key)), false);
}

std::string DecryptString(const std::string& stored, const std::string& key) {
    std::string bytes;
    Base85DecodeBytes(stored, bytes);
    bytes = Xor(bytes, key);
    return bytes.size() <= 2 ? "" : pc::FromAnsi(bytes.substr(1, bytes.size() - 2));
}
