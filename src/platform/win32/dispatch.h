// Objects that are reached by the names of their members at run time.
#pragma once

#include <windows.h>
// behind windows.h
#include <oaidl.h>

#include <string>

#include "platform/win32/handles.h"

namespace pc {

using Dispatch = Com<IDispatch>;

// What the object itself says of a failed call.
struct DispatchError {
    int32_t number = 0;
    std::string text;
};

void SetVariant(Variant& value, const std::string& text);
void SetVariant(Variant& value, int32_t number);
void SetVariant(Variant& value, bool flag);

// An object by its registered name; false when there is none.
bool CreateObject(const wchar_t* programId, Dispatch& object);
// Value of a property that is an object; argument is its index or null.
bool GetObjectProperty(const Dispatch& object, const wchar_t* name, Variant* argument, Dispatch& value);
bool PutProperty(const Dispatch& object, const wchar_t* name, Variant& value);
// Calls a method with one argument or none; error may be null.
bool CallMethod(const Dispatch& object, const wchar_t* name, Variant* argument, DispatchError* error = nullptr);

}  // namespace pc
