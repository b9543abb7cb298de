#pragma once

#include <span>
#include <vector>

#include "platform/com/Windows.h"

namespace com {

/// The arguments of a late-bound call as the type description takes them: the values of the caller's variables stand in
/// place of references to them, and an array of its own where a member hands back bytes into such a variable.
class PassedArguments {
  public:
    /// `outputs` has the types of what the member hands back through its arguments, VT_EMPTY for the others. Raises
    /// E_POINTER for a null reference, and DISP_E_TYPEMISMATCH where something is handed back and the caller gave a
    /// value, or a reference to something else than bytes; its index goes to badArgument then.
    PassedArguments(const DISPPARAMS& given, std::span<const VARTYPE> outputs, UINT* badArgument);
    ~PassedArguments();
    PassedArguments(const PassedArguments&) = delete;
    PassedArguments& operator=(const PassedArguments&) = delete;

    DISPPARAMS* Get() { return &arguments_; }
    /// Puts the bytes, if any have come, into the caller's variables.
    void HandOver();

  private:
    struct Bytes {
        VARIANT* variable = nullptr;
        SAFEARRAY* array = nullptr;
    };

    bool Pass(VARIANT& argument, std::size_t index, VARTYPE output);

    std::vector<VARIANT> values_;
    std::vector<Bytes> bytes_;
    DISPPARAMS arguments_;
};

}  // namespace com
