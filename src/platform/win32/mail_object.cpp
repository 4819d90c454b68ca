#include "platform/mail_object.h"

#include "platform/win32/dispatch.h"

namespace pc {

namespace {

struct Message {
    ComApartment apartment;  // first in, last out
    Dispatch message, fields;
};

Message* Native(uintptr_t object) { return reinterpret_cast<Message*>(object); }

template <typename Value>
bool PutField(uintptr_t object, const std::string& name, const Value& value) {
    if (!object) return false;
    Variant schemaName, content;
    Dispatch field;
    SetVariant(schemaName, "http://schemas.microsoft.com/cdo/configuration/" + name);
    SetVariant(content, value);
    return GetObjectProperty(Native(object)->fields, L"Item", &schemaName, field) &&
           PutProperty(field, L"Value", content);
}

}  // namespace

MessageObject::~MessageObject() { delete Native(object); }

bool MessageObject::Create() {
    delete Native(object);
    auto* made = new Message;
    object = reinterpret_cast<uintptr_t>(made);
    if (CreateObject(L"CDO.Message", made->message)) {
        Dispatch configuration;
        return GetObjectProperty(made->message, L"Configuration", nullptr, configuration) &&
               GetObjectProperty(configuration, L"Fields", nullptr, made->fields);
    }
    delete made;
    object = 0;
    return false;
}

bool MessageObject::SetField(const std::string& name, const std::string& value) {
    return PutField(object, name, value);
}
bool MessageObject::SetField(const std::string& name, int32_t value) { return PutField(object, name, value); }
bool MessageObject::SetField(const std::string& name, bool value) { return PutField(object, name, value); }

bool MessageObject::UpdateFields() { return object && CallMethod(Native(object)->fields, L"Update", nullptr); }

bool MessageObject::SetProperty(const std::string& name, const std::string& value) {
    Variant content;
    SetVariant(content, value);
    return object && PutProperty(Native(object)->message, Wide(name).c_str(), content);
}

bool MessageObject::AddAttachment(const std::string& path) {
    Variant place;
    SetVariant(place, path);
    return object && CallMethod(Native(object)->message, L"AddAttachment", &place);
}

bool MessageObject::Send(int32_t& errorNumber, std::string& errorText) {
    DispatchError error = {91, "Object variable or With block variable not set"};
    bool sent = object && CallMethod(Native(object)->message, L"Send", nullptr, &error);
    errorNumber = sent ? 0 : error.number;
    errorText = sent ? "" : error.text;
    return sent;
}

}  // namespace pc
