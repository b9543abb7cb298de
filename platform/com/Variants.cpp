#include "platform/com/Variants.h"

#include <algorithm>
#include <new>
#include <utility>

#include "platform/AutomationError.h"
#include "platform/com/ComPtr.h"
#include "platform/com/Errors.h"
#include "platform/com/Text.h"

namespace com {
namespace {

constexpr LCID Invariant = 0x409;

[[noreturn]] void RaiseTypeMismatch() { Raise(platform::TypeMismatch, "Type mismatch"); }

// A host may pass any conversion's failure on; the one that has a number of its own is Overflow.
void CheckConversion(HRESULT result) {
    if (result == DISP_E_OVERFLOW) Raise(platform::Overflow, "Overflow");
    if (result == E_OUTOFMEMORY) throw std::bad_alloc();
    if (FAILED(result)) RaiseTypeMismatch();
}

Variant Converted(const VARIANT& value, VARTYPE type) {
    Variant converted;
    // Without the changes that a user with this very locale has made to the regional format.
    constexpr USHORT flags = VARIANT_NOUSEROVERRIDE;
    CheckConversion(VariantChangeTypeEx(&converted, const_cast<VARIANT*>(&value), Invariant, flags, type));
    return converted;
}

Variant DefaultValue(IUnknown* object) {
    if (!object) Raise(platform::ObjectVariableNotSet, "Object variable not set");
    const auto dispatch = ComPtr<IUnknown>(object).As<IDispatch>();
    Variant value;
    DISPPARAMS none{};
    if (!dispatch || FAILED(dispatch->Invoke(DISPID_VALUE, IID_NULL, Invariant, DISPATCH_PROPERTYGET, &none, &value,
                                             nullptr, nullptr))) {
        RaiseTypeMismatch();
    }
    return value;
}

// An object's default value may be an object again; a chain of them that long is a circle.
constexpr int LongestChain = 16;

platform::Value ValueOf(const VARIANT& given, int depth) {
    const VARIANT& value = Followed(given);
    if (V_ISARRAY(&value)) RaiseTypeMismatch();
    if (V_ISBYREF(&value)) {
        Variant copy;
        CheckConversion(VariantCopyInd(&copy, const_cast<VARIANT*>(&value)));
        return ValueOf(copy, depth);
    }
    switch (V_VT(&value)) {
        case VT_EMPTY:
            return {};
        case VT_BOOL:
            return V_BOOL(&value) != VARIANT_FALSE;
        case VT_I2:
            return V_I2(&value);
        case VT_I1:
        case VT_UI1:
        case VT_UI2:
        case VT_I4:
        case VT_UI4:
        case VT_I8:
        case VT_UI8:
        case VT_INT:
        case VT_UINT: {
            const double number = Converted(value, VT_R8).dblVal;
            if (number < INT32_MIN || number > INT32_MAX) return number;
            return static_cast<std::int32_t>(number);
        }
        case VT_R4:
            return static_cast<double>(V_R4(&value));
        case VT_R8:
            return V_R8(&value);
        case VT_BSTR:
            return Utf8(V_BSTR(&value));
        case VT_DISPATCH:
        case VT_UNKNOWN:
            if (depth >= LongestChain) RaiseTypeMismatch();
            return ValueOf(DefaultValue(V_UNKNOWN(&value)), depth + 1);
        default:
            return Utf8(Converted(value, VT_BSTR).bstrVal);
    }
}

// Releases an array's data lock on every way out.
class ArrayData {
  public:
    explicit ArrayData(SAFEARRAY* array) : array_(array) { CheckConversion(SafeArrayAccessData(array, &data_)); }
    ArrayData(const ArrayData&) = delete;
    ArrayData& operator=(const ArrayData&) = delete;
    ~ArrayData() { SafeArrayUnaccessData(array_); }
    std::uint8_t* Bytes() const { return static_cast<std::uint8_t*>(data_); }

  private:
    SAFEARRAY* array_;
    void* data_ = nullptr;
};

std::uint8_t Element(SAFEARRAY* array, VARTYPE type, LONG index) {
    Variant element;
    if (type == VT_VARIANT) {
        CheckConversion(SafeArrayGetElement(array, &index, &element));
    } else {
        CheckConversion(SafeArrayGetElement(array, &index, &V_UI1(&element)));
        V_VT(&element) = type;
    }
    return Converted(element, VT_UI1).bVal;
}

}  // namespace

VARIANT& Followed(VARIANT& value) {
    if (V_ISBYREF(&value) && !V_BYREF(&value)) Raise(E_POINTER, "Invalid pointer");
    return V_VT(&value) == (VT_BYREF | VT_VARIANT) ? Followed(*V_VARIANTREF(&value)) : value;
}

const VARIANT& Followed(const VARIANT& value) { return Followed(const_cast<VARIANT&>(value)); }

bool ParameterNotFound(const VARIANT& argument) {
    const VARIANT& value = Followed(argument);
    return V_VT(&value) == VT_ERROR && V_ERROR(&value) == DISP_E_PARAMNOTFOUND;
}

bool Missing(const VARIANT& argument) { return V_VT(&Followed(argument)) == VT_EMPTY || ParameterNotFound(argument); }

VARIANT MissingArgument() {
    VARIANT missing;
    VariantInit(&missing);
    V_VT(&missing) = VT_ERROR;
    V_ERROR(&missing) = DISP_E_PARAMNOTFOUND;
    return missing;
}

platform::Value FromVariant(const VARIANT& value) { return ValueOf(value, 0); }

std::string TextOf(const VARIANT& value) { return platform::ToText(FromVariant(value)); }

std::optional<std::string> OptionalText(const VARIANT& argument) {
    if (Missing(argument)) return std::nullopt;
    return TextOf(argument);
}

std::optional<std::int32_t> OptionalNumber(const VARIANT& argument) {
    if (Missing(argument)) return std::nullopt;
    return static_cast<std::int32_t>(Converted(Followed(argument), VT_I4).lVal);
}

void Assign(VARIANT& argument, const platform::Value& value) {
    VARIANT& variable = Followed(argument);
    Variant assigned(ToVariant(value));
    if (!V_ISBYREF(&variable)) {
        VariantClear(&variable);
        variable = assigned.Detach();
        return;
    }
    const auto type = static_cast<VARTYPE>(V_VT(&variable) & ~VT_BYREF);
    if (V_VT(&assigned) != type) assigned = Converted(assigned, type);
    if (type == VT_BSTR) {
        std::swap(*V_BSTRREF(&variable), V_BSTR(&assigned));
    } else if (type == VT_I2 || type == VT_BOOL) {
        *V_I2REF(&variable) = V_I2(&assigned);
    } else if (type == VT_I4) {
        *V_I4REF(&variable) = V_I4(&assigned);
    } else if (type == VT_R8) {
        *V_R8REF(&variable) = V_R8(&assigned);
    } else {
        RaiseTypeMismatch();
    }
}

VARIANT ToVariant(const platform::Value& value) {
    struct Converter {
        VARIANT& result;
        void operator()(std::monostate) const {}
        void operator()(bool boolean) const {
            V_VT(&result) = VT_BOOL;
            V_BOOL(&result) = boolean ? VARIANT_TRUE : VARIANT_FALSE;
        }
        void operator()(std::int16_t number) const {
            V_VT(&result) = VT_I2;
            V_I2(&result) = number;
        }
        void operator()(std::int32_t number) const {
            V_VT(&result) = VT_I4;
            V_I4(&result) = number;
        }
        void operator()(double number) const {
            V_VT(&result) = VT_R8;
            V_R8(&result) = number;
        }
        void operator()(const std::string& text) const {
            V_BSTR(&result) = ToBstr(text);
            V_VT(&result) = VT_BSTR;
        }
    };
    VARIANT result;
    VariantInit(&result);
    std::visit(Converter{result}, value);
    return result;
}

SAFEARRAY* ToByteArray(std::span<const std::uint8_t> bytes) {
    SAFEARRAY* array = SafeArrayCreateVector(VT_UI1, 0, static_cast<ULONG>(bytes.size()));
    if (!array) throw std::bad_alloc();
    if (!bytes.empty()) std::copy(bytes.begin(), bytes.end(), ArrayData(array).Bytes());
    return array;
}

VARIANT ToVariant(std::span<const std::uint8_t> bytes) {
    VARIANT result;
    VariantInit(&result);
    V_ARRAY(&result) = ToByteArray(bytes);
    V_VT(&result) = VT_ARRAY | VT_UI1;
    return result;
}

std::vector<std::uint8_t> BytesOf(const VARIANT& argument) {
    const VARIANT& value = Followed(argument);
    if (!V_ISARRAY(&value)) RaiseTypeMismatch();
    SAFEARRAY* const array = V_ISBYREF(&value) ? *V_ARRAYREF(&value) : V_ARRAY(&value);
    if (!array || SafeArrayGetDim(array) != 1) RaiseTypeMismatch();
    LONG first = 0;
    LONG last = -1;
    CheckConversion(SafeArrayGetLBound(array, 1, &first));
    CheckConversion(SafeArrayGetUBound(array, 1, &last));
    const auto type = static_cast<VARTYPE>(V_VT(&value) & VT_TYPEMASK);
    const std::ptrdiff_t count = last - first + 1;
    std::vector<std::uint8_t> bytes;
    bytes.reserve(static_cast<std::size_t>(count));
    if (type == VT_UI1) {
        const ArrayData data(array);
        bytes.assign(data.Bytes(), data.Bytes() + count);
    } else {
        for (LONG index = first; index <= last; ++index) bytes.push_back(Element(array, type, index));
    }
    return bytes;
}

}  // namespace com
