#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "platform/com/Windows.h"

namespace com {

/// UTF-8 of a text, by length. What is no valid text becomes U+FFFD.
std::string Utf8(std::wstring_view text);
/// The same for an automation text; null is the empty text.
std::string Utf8(BSTR text);

/// UTF-16 of a UTF-8 text, by length. What is no valid text becomes U+FFFD.
std::wstring Wide(std::string_view text);
/// The same as an automation text that the caller frees. Raises std::bad_alloc.
BSTR ToBstr(std::string_view text);
BSTR ToBstr(std::wstring_view text);

/// Registry form of an identity, with braces.
std::wstring ToText(REFGUID guid);

/// Owns an automation text.
class Bstr {
  public:
    Bstr() = default;
    explicit Bstr(std::string_view text) : text_(ToBstr(text)) {}
    explicit Bstr(std::wstring_view text) : text_(ToBstr(text)) {}
    Bstr(Bstr&& other) noexcept : text_(other.detach()) {}
    Bstr& operator=(Bstr&& other) noexcept {
        std::swap(text_, other.text_);
        return *this;
    }
    Bstr(const Bstr&) = delete;
    Bstr& operator=(const Bstr&) = delete;
    ~Bstr() { SysFreeString(text_); }

    BSTR get() const { return text_; }
    /// For output arguments; lets go of what was held.
    BSTR* put() {
        SysFreeString(std::exchange(text_, nullptr));
        return &text_;
    }
    BSTR detach() { return std::exchange(text_, nullptr); }
    std::string Utf8() const { return com::Utf8(text_); }

  private:
    BSTR text_ = nullptr;
};

}  // namespace com
