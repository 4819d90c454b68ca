#include "platform/win32/dispatch.h"

namespace pc {

namespace {

std::string SystemText(HRESULT code) {
    wchar_t text[512] = L"";
    FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, static_cast<DWORD>(code), 0,
                   text, 512, nullptr);
    std::string words = Utf8(text);
    while (words.ends_with('\n') || words.ends_with('\r')) words.pop_back();
    return words;
}

HRESULT Invoke(const Dispatch& object, const wchar_t* name, WORD kind, Variant* argument, VARIANT* result,
               DispatchError* error = nullptr) {
    if (!object) return E_POINTER;
    std::wstring member = name;
    LPOLESTR names[] = {member.data()};
    DISPID id = 0, putId = DISPID_PROPERTYPUT;
    EXCEPINFO raised = {};
    HRESULT code = object.Get()->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id);
    if (SUCCEEDED(code)) {
        DISPPARAMS parameters = {argument, nullptr, argument ? 1u : 0u, 0};
        if (kind == DISPATCH_PROPERTYPUT) {
            parameters.rgdispidNamedArgs = &putId;
            parameters.cNamedArgs = 1;
        }
        code = object.Get()->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, kind, &parameters, result, &raised, nullptr);
    }
    if (code == DISP_E_EXCEPTION && raised.pfnDeferredFillIn) raised.pfnDeferredFillIn(&raised);
    Bstr description(raised.bstrDescription), source(raised.bstrSource), help(raised.bstrHelpFile);
    if (error && FAILED(code)) {
        bool told = code == DISP_E_EXCEPTION && (raised.scode || raised.wCode);
        error->number = !told ? code : raised.scode ? raised.scode : raised.wCode;
        error->text = description ? FromBstr(description.Get()) : SystemText(error->number);
    }
    return code;
}

}  // namespace

void SetVariant(Variant& value, const std::string& text) {
    value.vt = VT_BSTR;
    value.bstrVal = MakeBstr(Wide(text)).Release();
}

void SetVariant(Variant& value, int32_t number) {
    value.vt = VT_I4;
    value.lVal = number;
}

void SetVariant(Variant& value, bool flag) {
    value.vt = VT_BOOL;
    value.boolVal = flag ? VARIANT_TRUE : VARIANT_FALSE;
}

bool CreateObject(const wchar_t* programId, Dispatch& object) {
    CLSID id;
    return SUCCEEDED(CLSIDFromProgID(programId, &id)) &&
           SUCCEEDED(CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER | CLSCTX_LOCAL_SERVER, IID_IDispatch,
                                      reinterpret_cast<void**>(object.Receive())));
}

bool GetObjectProperty(const Dispatch& object, const wchar_t* name, Variant* argument, Dispatch& value) {
    Variant result;
    if (FAILED(Invoke(object, name, DISPATCH_PROPERTYGET | DISPATCH_METHOD, argument, &result)) ||
        result.vt != VT_DISPATCH || !result.pdispVal)
        return false;
    value.Reset(result.pdispVal);
    result.vt = VT_EMPTY;  // the object has a new owner
    return true;
}

bool PutProperty(const Dispatch& object, const wchar_t* name, Variant& value) {
    return SUCCEEDED(Invoke(object, name, DISPATCH_PROPERTYPUT, &value, nullptr));
}

bool CallMethod(const Dispatch& object, const wchar_t* name, Variant* argument, DispatchError* error) {
    Variant ignored;
    return SUCCEEDED(Invoke(object, name, DISPATCH_METHOD, argument, &ignored, error));
}

}  // namespace pc
