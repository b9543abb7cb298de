#include <thread>

#include "tests/com-host/Client.h"

using com::Bstr;
using com::ComPtr;
using com::CreateByProgId;
using platform::Value;

namespace {

// Long enough to be noticed by everybody: a test that waits for its end is a failed one.
constexpr float Forever = 100000.0F;

class Delays : public testing::Test {
  protected:
    ~Delays() override { application->put_AbortRequested(VARIANT_FALSE); }

    const ComPtr<IApplication> application = CreateByProgId<IApplication>("Seamlib.clsApplication");
};

/// Runs a function on a thread of its own, in an apartment of that model.
std::thread OnThread(DWORD model, std::function<void()> function) {
    return std::thread([=] {
        EXPECT_GE(CoInitializeEx(nullptr, model), S_OK);
        function();
        CoUninitialize();
    });
}

class MessageWindow {
  public:
    explicit MessageWindow(std::function<void()> onMessage) : onMessage_(std::move(onMessage)) {
        SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
        SetWindowLongPtrW(window_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Receive));
    }
    MessageWindow(const MessageWindow&) = delete;
    MessageWindow& operator=(const MessageWindow&) = delete;
    ~MessageWindow() { DestroyWindow(window_); }

    void Post() { PostMessageW(window_, WM_APP, 0, 0); }

  private:
    static LRESULT CALLBACK Receive(HWND window, UINT message, WPARAM wide, LPARAM low) {
        if (message == WM_APP) {
            reinterpret_cast<MessageWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA))->onMessage_();
            return 0;
        }
        return DefWindowProcW(window, message, wide, low);
    }

    std::function<void()> onMessage_;
    HWND window_ = CreateWindowExW(0, L"Static", nullptr, 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
};

}  // namespace

TEST(Services, AreOneForEveryApartment) {
    for (const auto progId : {"Seamlib.clsApplication", "Seamlib.clsMessageLog", "Seamlib.clsErrorService"}) {
        const auto here = CreateByProgId<IUnknown>(progId);
        for (const auto model : {COINIT_APARTMENTTHREADED, COINIT_MULTITHREADED}) {
            OnThread(model, [&] { EXPECT_EQ(CreateByProgId<IUnknown>(progId).get(), here.get()) << progId; }).join();
        }
    }
}

TEST(Services, NeedNoMarshalling) {
    const auto here = CreateByProgId<IApplication>("Seamlib.clsApplication");
    IStream* stream = nullptr;
    ASSERT_EQ(CoMarshalInterThreadInterfaceInStream(IID_IApplication, here.get(), &stream), S_OK);
    OnThread(COINIT_APARTMENTTHREADED, [&] {
        ComPtr<IApplication> there;
        EXPECT_EQ(CoGetInterfaceAndReleaseStream(stream, IID_IApplication, there.putVoid()), S_OK);
        EXPECT_EQ(there.get(), here.get());
    }).join();
}

TEST_F(Delays, HandleWindowMessages) {
    int handled = 0;
    MessageWindow window([&] { ++handled; });
    window.Post();
    window.Post();
    EXPECT_EQ(application->Delay(0.2F), S_OK);
    EXPECT_EQ(handled, 2);
}

TEST_F(Delays, EndWhenAMessageHandlerAsksToStop) {
    MessageWindow window([&] { application->put_AbortRequested(VARIANT_TRUE); });
    window.Post();
    EXPECT_EQ(application->Delay(Forever), S_OK);
}

TEST_F(Delays, LeaveTheEndOfTheProgramToTheHost) {
    PostQuitMessage(7);
    EXPECT_EQ(application->Delay(0.15F), S_OK);
    MSG message;
    ASSERT_TRUE(PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE));
    EXPECT_EQ(message.message, static_cast<UINT>(WM_QUIT));
    EXPECT_EQ(message.wParam, 7U);
    EXPECT_FALSE(PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE));
}

TEST(MessageLog, KeepsEntriesForScripts) {
    const auto log = CreateByProgId<IMessageLog>("Seamlib.clsMessageLog");
    ASSERT_EQ(log->Clear(), S_OK);
    EXPECT_EQ(log->Log(6, Bstr("TARN").get(), Bstr("RF?").get(), com::MissingArgument()), S_OK);
    Call(log.get(), L"Log", {5, Text("TARN"), Text("RF?"), 1.5});
    EXPECT_EQ(Get(log.get(), L"Count"), Value(2));
    EXPECT_EQ(Get(log.get(), L"Entry", {1}), Text("6\tTARN\tRF?\t"));
    EXPECT_EQ(Get(log.get(), L"Entry", {2}), Text("5\tTARN\tRF?\t1.5"));
    EXPECT_EQ(Raised([&] { Get(log.get(), L"Entry", {3}); }),
              "9|Seamlib.clsMessageLog|There is no entry 3 in the message log, it has 2");
    log->Clear();
}

TEST(ErrorService, RaisesExactlyWhatItIsGiven) {
    const auto service = CreateByProgId<IErrorService>("Seamlib.clsErrorService");
    const VARIANT missing = com::MissingArgument();
    const auto raise = [&](std::int32_t number, const char* source, const char* text) {
        return service->RaiseDriverError(number, Bstr(source).get(), Bstr(text).get(), missing, missing);
    };
    const std::pair<std::int32_t, std::uint32_t> cases[] = {
        {2002, 0x800A07D2U}, {380, 0x800A017CU}, {40006, 0x800A9C46U}, {platform::ObjectError(2004), 0x800407D4U}};
    for (const auto& [number, result] : cases) {
        EXPECT_EQ(static_cast<std::uint32_t>(raise(number, "a.b ", "Get  x failed")), result);
        EXPECT_EQ(Raised(static_cast<HRESULT>(result), service.get()), std::to_string(number) + "|a.b |Get  x failed");
    }
    // Type mismatch, overflow, bad index, and a plain number as it travels.
    for (const auto result : {0x80020005U, 0x8002000AU, 0x8002000BU, 0x800A0005U}) {
        EXPECT_EQ(static_cast<std::uint32_t>(raise(static_cast<std::int32_t>(result), "a", "b")), result);
    }
    for (const auto number : {0, 65536}) EXPECT_EQ(static_cast<std::uint32_t>(raise(number, "", "")), 0x800A0005U);
    EXPECT_EQ(Raised(service->RaiseDriverError(0, nullptr, nullptr, missing, missing), service.get()),
              "5|Seamlib.clsErrorService|0 is no error number");
}

TEST(ErrorService, RaisesWithHelpForScripts) {
    const auto service = CreateByProgId<IErrorService>("Seamlib.clsErrorService");
    try {
        Call(service.get(), L"RaiseDriverError", {2003, Text("source"), Text("text"), Text("tarn.hlp"), 77});
        FAIL() << "nothing raised";
    } catch (const platform::AutomationError& error) {
        EXPECT_EQ(error.Number, 2003);
        EXPECT_EQ(error.Source + '|' + error.Description + '|' + error.HelpFile, "source|text|tarn.hlp");
        EXPECT_EQ(error.HelpContext, 77);
    }
}
