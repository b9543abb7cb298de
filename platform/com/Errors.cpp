#include "platform/com/Errors.h"

#include <algorithm>
#include <new>
#include <string>
#include <utility>

#include "platform/com/ComPtr.h"
#include "platform/com/Server.h"
#include "platform/com/Text.h"

namespace com {
namespace {

using platform::AutomationError;

constexpr std::uint32_t PlainNumbers = 0x800A0000U;

std::string SystemText(HRESULT result) {
    switch (NumberOf(result)) {
        case platform::Overflow:
            return "Overflow";
        case platform::SubscriptOutOfRange:
            return "Subscript out of range";
        case platform::TypeMismatch:
            return "Type mismatch";
    }
    wchar_t text[512];
    DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                  static_cast<DWORD>(result), 0, text, 512, nullptr);
    while (length > 0 && text[length - 1] <= L' ') --length;
    return length > 0 ? Utf8(std::wstring_view(text, length)) : "Automation error";
}

/// Error information would end a text at a NUL.
Bstr WithoutNul(std::string_view text) {
    auto wide = Wide(text);
    std::ranges::replace(wide, L'\0', L'\xFFFD');
    return Bstr(std::wstring_view(wide));
}

HRESULT Report(REFIID iid, const AutomationError& error) {
    const HRESULT result = ResultOf(error.Number);
    ComPtr<ICreateErrorInfo> information;
    if (FAILED(CreateErrorInfo(information.put()))) return result;
    information->SetGUID(iid);
    information->SetSource(WithoutNul(error.Source).get());
    information->SetDescription(WithoutNul(error.Description).get());
    if (!error.HelpFile.empty()) information->SetHelpFile(Bstr(error.HelpFile).get());
    if (error.HelpContext) information->SetHelpContext(static_cast<DWORD>(*error.HelpContext));
    SetErrorInfo(0, information.As<IErrorInfo>().get());
    return result;
}

ComPtr<IErrorInfo> InformationOf(IUnknown* object, REFIID iid) {
    ComPtr<IErrorInfo> information;
    const auto support = ComPtr<IUnknown>(object).As<ISupportErrorInfo>();
    if (support && support->InterfaceSupportsErrorInfo(iid) == S_OK) GetErrorInfo(0, information.put());
    return information;
}

}  // namespace

HRESULT ResultOf(std::int32_t number) {
    if (number < 0) return number;
    if (number == 0 || number > 0xFFFF) return E_FAIL;
    return static_cast<HRESULT>(PlainNumbers | static_cast<std::uint32_t>(number));
}

std::int32_t NumberOf(HRESULT result) {
    switch (result) {
        case DISP_E_TYPEMISMATCH:
            return platform::TypeMismatch;
        case DISP_E_OVERFLOW:
            return platform::Overflow;
        case DISP_E_BADINDEX:
            return platform::SubscriptOutOfRange;
    }
    const auto code = static_cast<std::uint32_t>(result);
    const bool plain = (code & 0xFFFF0000U) == PlainNumbers && code != PlainNumbers;
    return plain ? static_cast<std::int32_t>(code & 0xFFFFU) : result;
}

void Raise(std::int32_t number, std::string description) {
    throw AutomationError(number, ComponentName(), std::move(description));
}

void Check(HRESULT result, IUnknown* object, REFIID iid) {
    if (SUCCEEDED(result)) return;
    const auto information = InformationOf(object, iid);
    if (!information) Raise(NumberOf(result), SystemText(result));
    AutomationError error(NumberOf(result), "", "");
    Bstr text;
    if (SUCCEEDED(information->GetSource(text.put()))) error.Source = text.Utf8();
    if (SUCCEEDED(information->GetDescription(text.put()))) error.Description = text.Utf8();
    if (SUCCEEDED(information->GetHelpFile(text.put()))) error.HelpFile = text.Utf8();
    DWORD context = 0;
    if (SUCCEEDED(information->GetHelpContext(&context)) && context != 0) {
        error.HelpContext = static_cast<std::int32_t>(context);
    }
    throw error;
}

HRESULT ResultOfException(REFIID iid) noexcept {
    try {
        try {
            // cppcheck-suppress rethrowNoCurrentException // the caller's
            throw;
        } catch (const AutomationError& error) {
            return Report(iid, error);
        } catch (const std::bad_alloc&) {
            return E_OUTOFMEMORY;
        } catch (const std::exception& error) {
            return Report(iid, AutomationError(E_UNEXPECTED, ComponentName(), error.what()));
        } catch (...) {
            return Report(iid, AutomationError(E_UNEXPECTED, ComponentName(), "Unknown failure"));
        }
    } catch (...) {  // no memory for the report
        return E_OUTOFMEMORY;
    }
}

}  // namespace com
