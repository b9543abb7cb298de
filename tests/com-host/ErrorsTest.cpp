#include <new>
#include <stdexcept>

#include "tests/com-host/Client.h"
#include "tests/com-host/Fake.h"

using platform::AutomationError;

TEST(Numbers, TravelAsResultCodes) {
    const std::pair<std::int32_t, std::uint32_t> cases[] = {
        {5, 0x800A0005U},     {380, 0x800A017CU},   {2002, 0x800A07D2U},
        {40006, 0x800A9C46U}, {65535, 0x800AFFFFU}, {static_cast<std::int32_t>(0x800407D5U), 0x800407D5U},
    };
    for (const auto& [number, result] : cases) {
        EXPECT_EQ(static_cast<std::uint32_t>(com::ResultOf(number)), result);
        EXPECT_EQ(com::NumberOf(static_cast<HRESULT>(result)), number);
    }
    EXPECT_EQ(com::NumberOf(DISP_E_TYPEMISMATCH), 13);
    EXPECT_EQ(com::NumberOf(DISP_E_OVERFLOW), 6);
    EXPECT_EQ(com::NumberOf(DISP_E_BADINDEX), 9);
    for (const std::int32_t none : {0, 65536, 0x7FFFFFFF}) EXPECT_EQ(com::ResultOf(none), E_FAIL);
}

TEST(Border, LetsNoExceptionThrough) {
    const auto raise = [](auto exception) { return com::Border(IID_IDispatch, [&] { throw exception; }); };
    EXPECT_EQ(raise(AutomationError(13, "", "")), static_cast<HRESULT>(0x800A000DU));
    EXPECT_EQ(raise(std::bad_alloc()), E_OUTOFMEMORY);
    EXPECT_EQ(raise(std::runtime_error("broken")), E_UNEXPECTED);
    EXPECT_EQ(raise(7), E_UNEXPECTED);
    EXPECT_EQ(com::Border(IID_IDispatch, [] { return S_FALSE; }), S_FALSE);
}

TEST(Border, LeavesTheErrorForTheCaller) {
    Fake<IDispatch> object;
    const HRESULT result = com::Border(IID_IDispatch, [] {
        AutomationError error(2003, "source", "text");
        error.HelpFile = "tarn.hlp";
        error.HelpContext = 12;
        throw error;
    });
    try {
        com::Check<IDispatch>(result, &object);
        FAIL() << "nothing raised";
    } catch (const AutomationError& error) {
        EXPECT_EQ(error.Number, 2003);
        EXPECT_EQ(error.Source + '|' + error.Description, "source|text");
        EXPECT_EQ(error.HelpFile, "tarn.hlp");
        EXPECT_EQ(error.HelpContext, 12);
    }
    EXPECT_EQ(object.References, 0);
}

TEST(Border, ForgetsAnOlderError) {
    Fake<IDispatch> object;
    com::Border(IID_IDispatch, [] { throw AutomationError(2003, "old", "old"); });
    EXPECT_EQ(com::Border(IID_IDispatch, [] {}), S_OK);
    EXPECT_EQ(Raised<IDispatch>(DISP_E_TYPEMISMATCH, &object), "13|test-com-host|Type mismatch");
}

TEST(Check, BelievesOnlyObjectsThatSupportErrorInformation) {
    Fake<IDispatch> silent(false);
    const HRESULT result = com::Border(IID_IDispatch, [] { throw AutomationError(6, "another", "another"); });
    EXPECT_EQ(Raised<IDispatch>(result, &silent), "6|test-com-host|Overflow");
    EXPECT_EQ(Raised([] { com::Check(S_FALSE); }), "nothing");
    EXPECT_THROW(com::Check(E_OUTOFMEMORY), AutomationError) << "a component's lack of memory is its own";
}
