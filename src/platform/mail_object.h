// The platform's message object, late bound: what the mail sender needs of it and nothing more.
#pragma once

#include <cstdint>
#include <string>

namespace pc {

// One message. Every call but Create does nothing and gives false when the object could not be made.
class MessageObject {
public:
    MessageObject() = default;
    ~MessageObject();
    MessageObject(const MessageObject&) = delete;
    MessageObject& operator=(const MessageObject&) = delete;

    // False when the system has no such object.
    bool Create();
    // A field of the configuration by the last component of its schema name, such as "smtpserver".
    bool SetField(const std::string& name, const std::string& value);
    bool SetField(const std::string& name, int32_t value);
    bool SetField(const std::string& name, bool value);
    bool SetField(const std::string& name, const char* value) { return SetField(name, std::string(value)); }
    bool UpdateFields();
    // "To", "From", "Subject", "TextBody".
    bool SetProperty(const std::string& name, const std::string& value);
    bool AddAttachment(const std::string& path);
    // False with the object's own error number and text.
    bool Send(int32_t& errorNumber, std::string& errorText);

private:
    uintptr_t object = 0;
};

}  // namespace pc
