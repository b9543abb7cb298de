#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "com/StatisticsFace.h"
#include "platform/com/Errors.h"
#include "platform/com/Proxies.h"
#include "platform/com/Text.h"

// How a member of an automation interface calls the member behind it. A call that fails leaves numbers, Booleans and
// dates as they were; texts, Variants and objects, which a caller would free, are empty then.

namespace com {

/// An automation argument, on its way to what the member behind the face takes.
template <class From>
struct Argument {
    template <class To>
    operator To() const {
        return static_cast<To>(value);
    }
    From value;
};

template <>
struct Argument<BSTR> {
    operator std::string_view() const { return text; }
    std::string text;
};

template <class From>
Argument<From> Pass(From value) {
    if constexpr (std::is_same_v<From, BSTR>) {
        return {Utf8(value)};
    } else {
        return {value};
    }
}

template <class Out>
void Preset(Out*) {}
template <class Out>
void Preset(Out** freed) {
    *freed = nullptr;
}
inline void Preset(VARIANT* value) { VariantInit(value); }

template <class Result, class Out>
void Store(Result result, Out* value) {
    *value = static_cast<Out>(result);
}
inline void Store(bool result, VARIANT_BOOL* value) { *value = result ? VARIANT_TRUE : VARIANT_FALSE; }
inline void Store(const std::string& result, BSTR* value) { *value = ToBstr(result); }
inline void Store(const std::string& result, VARIANT* value) {
    value->bstrVal = ToBstr(result);
    value->vt = VT_BSTR;
}
inline void Store(const std::shared_ptr<platform::SettingsNode>& result, INode** value) {
    *value = ComPtr<INode>(ComOf(*result)).detach();
}
inline void Store(const std::shared_ptr<tarn4x::clsStatistics>& result, _clsStatistics** value) {
    *value = StatisticsFor(result).detach();
}

/// Reads a member of the object into value.
template <class Object, class Out, class Member, class... In>
HRESULT GetMember(Object& object, REFIID iid, Out* value, Member member, In... arguments) {
    return Border(iid, [&]() -> HRESULT {
        if (!value) return E_POINTER;
        Preset(value);
        Store(std::invoke(member, object, Pass(arguments)...), value);
        return S_OK;
    });
}

/// Calls a member of the object that has no result.
template <class Object, class Member, class... In>
HRESULT CallMember(Object& object, REFIID iid, Member member, In... arguments) {
    return Border(iid, [&] { std::invoke(member, object, Pass(arguments)...); });
}

}  // namespace com
