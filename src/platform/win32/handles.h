// Owners of the platform's handles and COM objects; each gives back what it holds when it goes.
#pragma once

#include <windows.h>
// behind windows.h
#include <oleauto.h>

#include <string>

#include "platform/win32/wide.h"

namespace pc {

// Traits tell Type, None() and Close(Type).
template <typename Traits>
class Owned {
public:
    using Type = typename Traits::Type;

    Owned() = default;
    explicit Owned(Type given) : value(given) {}
    ~Owned() { Reset(); }
    Owned(Owned&& other) noexcept : value(other.Release()) {}
    Owned& operator=(Owned&& other) noexcept {
        if (this != &other) Reset(other.Release());
        return *this;
    }
    Owned(const Owned&) = delete;
    Owned& operator=(const Owned&) = delete;

    explicit operator bool() const { return value != Traits::None(); }
    Type Get() const { return value; }
    Type Release() {
        Type held = value;
        value = Traits::None();
        return held;
    }
    void Reset(Type given = Traits::None()) {
        if (value != Traits::None()) Traits::Close(value);
        value = given;
    }
    // For calls that hand a new handle out through a pointer.
    Type* Receive() {
        Reset();
        return &value;
    }

private:
    Type value = Traits::None();
};

struct KernelTraits {  // processes, threads, events, tokens
    using Type = HANDLE;
    static Type None() { return nullptr; }
    static void Close(Type handle) { CloseHandle(handle); }
};
using KernelHandle = Owned<KernelTraits>;

struct FileTraits {
    using Type = HANDLE;
    static Type None() { return INVALID_HANDLE_VALUE; }
    static void Close(Type handle) { CloseHandle(handle); }
};
using FileHandle = Owned<FileTraits>;  // also snapshots of processes

struct FindTraits {
    using Type = HANDLE;
    static Type None() { return INVALID_HANDLE_VALUE; }
    static void Close(Type handle) { FindClose(handle); }
};
using FindHandle = Owned<FindTraits>;

struct TaskMemoryTraits {
    using Type = void*;
    static Type None() { return nullptr; }
    static void Close(Type memory) { CoTaskMemFree(memory); }
};
using TaskMemory = Owned<TaskMemoryTraits>;

struct BstrTraits {
    using Type = BSTR;
    static Type None() { return nullptr; }
    static void Close(Type text) { SysFreeString(text); }
};
using Bstr = Owned<BstrTraits>;
inline Bstr MakeBstr(std::wstring_view text) {
    return Bstr(SysAllocStringLen(text.data(), static_cast<UINT>(text.size())));
}
// Null is the empty text.
inline std::string FromBstr(BSTR text) { return text ? Utf8({text, SysStringLen(text)}) : std::string(); }

template <typename Interface>
struct ComTraits {
    using Type = Interface*;
    static Type None() { return nullptr; }
    static void Close(Type object) { object->Release(); }
};
template <typename Interface>
using Com = Owned<ComTraits<Interface>>;

struct Variant : VARIANT {
    Variant() { VariantInit(this); }
    ~Variant() { VariantClear(this); }
    Variant(const Variant&) = delete;
    Variant& operator=(const Variant&) = delete;
};

// The calling thread may use COM while this lives.
class ComApartment {
public:
    explicit ComApartment(DWORD model = COINIT_APARTMENTTHREADED) : ours(SUCCEEDED(CoInitializeEx(nullptr, model))) {}
    ~ComApartment() {
        if (ours) CoUninitialize();
    }
    ComApartment(const ComApartment&) = delete;
    ComApartment& operator=(const ComApartment&) = delete;

private:
    bool ours;
};

}  // namespace pc
