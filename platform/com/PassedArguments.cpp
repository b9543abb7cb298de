#include "platform/com/PassedArguments.h"

#include <utility>

#include "platform/com/Errors.h"
#include "platform/com/Variants.h"

namespace com {
namespace {

constexpr VARTYPE ByteArray = VT_ARRAY | VT_UI1;

// Named arguments come first; the others follow from the last one to the first. What is written to a property has a
// name that is no position.
std::size_t Position(const DISPPARAMS& given, UINT index) {
    const auto position =
        index < given.cNamedArgs ? given.rgdispidNamedArgs[index] : static_cast<DISPID>(given.cArgs - 1 - index);
    return static_cast<std::size_t>(position);
}

}  // namespace

PassedArguments::PassedArguments(const DISPPARAMS& given, std::span<const VARTYPE> outputs, UINT* badArgument)
    : values_(given.cArgs), bytes_(given.cArgs), arguments_(given) {
    arguments_.rgvarg = values_.data();
    for (UINT index = 0; index < given.cArgs; ++index) {
        const auto position = Position(given, index);
        const auto output = position < outputs.size() ? outputs[position] : VARTYPE{VT_EMPTY};
        if (Pass(given.rgvarg[index], index, output)) continue;
        if (badArgument) *badArgument = index;
        Raise(DISP_E_TYPEMISMATCH, "Type mismatch");
    }
}

PassedArguments::~PassedArguments() {
    for (const auto& bytes : bytes_) SafeArrayDestroy(bytes.array);
}

void PassedArguments::HandOver() {
    for (auto& bytes : bytes_) {
        if (!bytes.array || FAILED(VariantClear(bytes.variable))) continue;
        bytes.variable->vt = ByteArray;
        bytes.variable->parray = std::exchange(bytes.array, nullptr);
    }
}

bool PassedArguments::Pass(VARIANT& argument, std::size_t index, VARTYPE output) {
    VARIANT& variable = Followed(argument);
    VARIANT& value = values_[index] = variable;
    const bool refers = &variable != &argument;
    switch (output) {
        case VT_VARIANT:
            if (!refers && !V_ISBYREF(&variable)) return ParameterNotFound(variable);
            value.vt = VT_BYREF | VT_VARIANT;
            value.pvarVal = &variable;
            return true;
        case ByteArray:
            if (variable.vt == (VT_BYREF | ByteArray)) return true;
            if (!refers || V_ISBYREF(&variable)) return false;
            bytes_[index].variable = &variable;
            value.vt = VT_BYREF | ByteArray;
            value.pparray = &bytes_[index].array;
            return true;
        default:
            return true;
    }
}

}  // namespace com
