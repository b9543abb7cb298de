#pragma once

#include <Seamlib_h.h>
#include <XTarn4x_h.h>
#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "platform/com/ComPtr.h"
#include "platform/com/Errors.h"
#include "platform/com/Text.h"
#include "platform/com/Variants.h"
#include "tests/com-driver/Failures.h"
#include "tests/com-driver/Peer.h"

using com::ComPtr;

/// Full name of a component beside this program, "XTarn4x" for example.
std::wstring ComponentFile(const wchar_t* name);

/// A new object of a class of the driver.
template <class Interface>
ComPtr<Interface> Create(REFCLSID clsid) {
    ComPtr<Interface> object;
    com::Check(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, __uuidof(Interface), object.putVoid()));
    return object;
}

std::ostream& operator<<(std::ostream& stream, const Failure& failure);
/// Takes the thread's error information, which the driver's main interface has to have raised.
Failure TakeFailure(HRESULT result);
#define EXPECT_RAISES(call, ...) EXPECT_EQ(TakeFailure(call), (Failure{__VA_ARGS__}))

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
    /// The result of a call that has to succeed.
    const VARIANT& Value(const wchar_t* member, std::vector<VARIANT> arguments = {}, std::vector<Named> named = {}) {
        EXPECT_EQ(Get(member, std::move(arguments), std::move(named)), S_OK) << raised;
        return result;
    }

    com::Variant result;
    Failure raised;

  private:
    HRESULT Invoke(WORD flags, const wchar_t* member, std::vector<VARIANT> arguments, std::vector<Named> named);

    IDispatch* object_;
};

VARIANT Number(LONG number);
VARIANT Real(double number, VARTYPE type = VT_R8);
VARIANT Reference(VARIANT* variable);

/// Gives settings of an off-line driver their values, by their paths.
void Select(IDriverSetup* setup, const std::vector<std::pair<std::string, platform::Value>>& values);

/// An exchange for Peer: an impulse response whose echo n has n.5 dB and 100 + n microseconds.
std::string Echoes();

/// A registered driver, on-line with a scripted instrument. Creating a driver takes a serial port that opens; the Wine
/// prefix has to offer one.
class OnLine : public testing::Test {
  public:
    OnLine();
    ~OnLine() override;

    /// The output of a call through the function table, which has to write it and nothing behind it.
    template <class Out, class Getter, class... Arguments>
    Out Get(Getter getter, Arguments... arguments) {
        Out outputs[2], poison;
        std::memset(static_cast<void*>(&poison), 0x55, sizeof poison);
        outputs[0] = outputs[1] = poison;
        EXPECT_EQ((driver.get()->*getter)(arguments..., outputs), S_OK);
        EXPECT_EQ(std::memcmp(&outputs[1], &poison, sizeof poison), 0);
        return outputs[0];
    }

    Peer peer;
    ComPtr<_clsTarn4x> driver = Create<_clsTarn4x>(CLSID_clsTarn4x);
    ComPtr<IDriverSetup> setup = driver.As<IDriverSetup>();
};

/// One that is no test of its own.
struct Session : OnLine {
    void TestBody() override {}
};

/// A call through the function table that has to send that line.
#define EXPECT_SENDS(call, line)                    \
    do {                                            \
        EXPECT_EQ(call, S_OK);                      \
        EXPECT_TRUE(peer.Received(line)) << (line); \
    } while (false)
