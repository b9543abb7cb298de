#include "platform/com/Text.h"

#include <algorithm>
#include <new>

namespace com {
namespace {

// The system's conversions take 32-bit lengths.
int Length(std::size_t length) {
    if (length > 0x3FFFFFFF) throw std::bad_alloc();
    return static_cast<int>(length);
}

int Widen(std::string_view text, wchar_t* wide, int room) {
    return MultiByteToWideChar(CP_UTF8, 0, text.data(), Length(text.size()), wide, room);
}

// What instruments say is nearly always ASCII, which needs no call of the system.
bool IsAscii(std::string_view text) {
    return std::ranges::all_of(text, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}
bool IsAscii(std::wstring_view text) {
    return std::ranges::all_of(text, [](wchar_t c) { return c < 0x80; });
}

}  // namespace

std::string Utf8(std::wstring_view text) {
    if (IsAscii(text)) return std::string(text.begin(), text.end());
    const int length = Length(text.size());
    const int size = WideCharToMultiByte(CP_UTF8, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
    std::string utf8(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.data(), length, utf8.data(), size, nullptr, nullptr);
    return utf8;
}

std::string Utf8(BSTR text) { return text ? Utf8(std::wstring_view(text, SysStringLen(text))) : std::string(); }

std::wstring Wide(std::string_view text) {
    if (IsAscii(text)) return std::wstring(text.begin(), text.end());
    const int length = Widen(text, nullptr, 0);
    std::wstring wide(static_cast<std::size_t>(length), L'\0');
    Widen(text, wide.data(), length);
    return wide;
}

BSTR ToBstr(std::string_view text) {
    const bool ascii = IsAscii(text);
    const int length = ascii ? Length(text.size()) : Widen(text, nullptr, 0);
    const BSTR wide = SysAllocStringLen(nullptr, static_cast<UINT>(length));
    if (!wide) throw std::bad_alloc();
    if (ascii) {
        std::ranges::copy(text, wide);
    } else {
        Widen(text, wide, length);
    }
    return wide;
}

BSTR ToBstr(std::wstring_view text) {
    const BSTR copy = SysAllocStringLen(text.data(), static_cast<UINT>(Length(text.size())));
    if (!copy) throw std::bad_alloc();
    return copy;
}

std::wstring ToText(REFGUID guid) {
    wchar_t text[39];
    StringFromGUID2(guid, text, 39);
    return text;
}

}  // namespace com
