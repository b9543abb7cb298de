#pragma once

#include <Seamlib_h.h>
#include <XTarn4x_h.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "platform/com/ComPtr.h"
#include "platform/com/Errors.h"
#include "platform/com/Text.h"
#include "platform/com/Variants.h"
#include "tests/com-driver/Peer.h"

using com::ComPtr;

/// Full name of a component of the bitness, "XTarn4x" for example, beside the test program of that bitness.
std::wstring ComponentFile(const wchar_t* name, int bits = 8 * sizeof(void*));

/// What an automation call left behind as error information; empty when there is none.
struct Failure {
    HRESULT result = S_OK;
    std::string source;
    std::string description;
    bool operator==(const Failure&) const = default;
};
std::ostream& operator<<(std::ostream& stream, const Failure& failure);
/// Takes the thread's error information.
Failure TakeFailure(HRESULT result, const GUID& raisedBy);

/// A script's view of an object: members by name.
class Script {
  public:
    struct Named {
        const wchar_t* name;
        VARIANT value;
    };

    explicit Script(IDispatch* object) : object_(object) {}

    /// Arguments in the order of the declaration.
    HRESULT Get(const wchar_t* member, std::vector<VARIANT> arguments = {}, std::vector<Named> named = {});
    HRESULT Put(const wchar_t* member, VARIANT value, std::vector<VARIANT> arguments = {},
                std::vector<Named> named = {});

    com::Variant result;
    Failure raised;

  private:
    HRESULT Invoke(WORD flags, const wchar_t* member, std::vector<VARIANT> arguments, std::vector<Named> named);

    IDispatch* object_;
};

VARIANT Number(LONG number);
VARIANT Real(double number);
VARIANT DateOf(double days);
VARIANT Reference(VARIANT* variable);

/// A registered driver, on-line with a scripted instrument. Creating a driver takes a serial port that opens; the Wine
/// prefix has to offer one.
class OnLine : public testing::Test {
  protected:
    OnLine();
    ~OnLine() override;

    void SetSetting(const wchar_t* name, VARIANT value);

    Peer peer;
    ComPtr<_clsTarn4x> driver;
    ComPtr<IDriverSetup> setup;
};
