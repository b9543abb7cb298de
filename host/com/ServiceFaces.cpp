#include "host/com/ServiceFaces.h"

#include <Seamlib_h.h>

#include "host/Application.h"
#include "host/ErrorService.h"
#include "host/com/Members.h"
#include "host/com/MessagePump.h"
#include "host/com/SharedFace.h"

namespace com {
namespace {

class PumpingApplication : public host::Application {
    void Wait(std::chrono::milliseconds time) override { host::PumpMessages(time); }
};

struct Services {
    PumpingApplication application;
    host::MessageLog log;
    host::ErrorService errors{log};
};

Services& TheServices() {
    static Services& services = *new Services;
    return services;
}

class ApplicationFace : public SharedFace<&CLSID_clsApplication, IApplication> {
  public:
    STDMETHODIMP put_AbortRequested(VARIANT_BOOL requested) override {
        return Call<IApplication>([&] { application_.SetAbortRequested(requested != VARIANT_FALSE); });
    }
    STDMETHODIMP get_AbortRequested(VARIANT_BOOL* requested) override {
        return Get<IApplication>(requested, [&] { return application_.AbortRequested(); });
    }
    STDMETHODIMP Delay(float seconds) override {
        return Call<IApplication>([&] { application_.Delay(seconds); });
    }
    STDMETHODIMP put_AppState(long state) override {
        return Call<IApplication>([&] { application_.SetAppState(state); });
    }
    STDMETHODIMP get_AppState(long* state) override {
        return Get<IApplication>(state, [&] { return application_.AppState(); });
    }
    STDMETHODIMP SuspendState() override {
        return Call<IApplication>([&] { application_.SuspendState(); });
    }
    STDMETHODIMP ResumeState() override {
        return Call<IApplication>([&] { application_.ResumeState(); });
    }
    STDMETHODIMP put_DelayScale(double scale) override {
        return Call<IApplication>([&] { application_.SetDelayScale(scale); });
    }
    STDMETHODIMP get_DelayScale(double* scale) override {
        return Get<IApplication>(scale, [&] { return application_.DelayScale(); });
    }

  private:
    host::Application& application_ = TheServices().application;
};

class MessageLogFace : public SharedFace<&CLSID_clsMessageLog, IMessageLog> {
  public:
    STDMETHODIMP Log(short kind, BSTR source, BSTR text, VARIANT data) override {
        return Call<IMessageLog>(
            [&] { log_.Log(kind, Utf8(source), Utf8(text), OptionalText(data).value_or(std::string())); });
    }
    STDMETHODIMP get_Count(long* count) override {
        return Get<IMessageLog>(count, [&] { return log_.Count(); });
    }
    STDMETHODIMP get_Entry(long index, BSTR* entry) override {
        return Get<IMessageLog>(entry, [&] { return log_.Entry(index); });
    }
    STDMETHODIMP Clear() override {
        return Call<IMessageLog>([&] { log_.Clear(); });
    }
    STDMETHODIMP put_FileName(BSTR fileName) override {
        return Call<IMessageLog>([&] { log_.SetFileName(Utf8(fileName)); });
    }
    STDMETHODIMP get_FileName(BSTR* fileName) override {
        return Get<IMessageLog>(fileName, [&] { return log_.FileName(); });
    }

  private:
    host::MessageLog& log_ = TheServices().log;
};

class ErrorServiceFace : public SharedFace<&CLSID_clsErrorService, IErrorService> {
  public:
    STDMETHODIMP RaiseDriverError(long number, BSTR source, BSTR description, VARIANT helpFile,
                                  VARIANT helpContext) override {
        return Call<IErrorService>([&] {
            platform::AutomationError error(number, Utf8(source), Utf8(description));
            error.HelpFile = OptionalText(helpFile).value_or(std::string());
            error.HelpContext = OptionalNumber(helpContext);
            RefuseNoError(number);
            errors_.RaiseDriverError(error);
        });
    }
    STDMETHODIMP put_ErrorReporting(VARIANT_BOOL reporting) override {
        return Call<IErrorService>([&] { errors_.SetErrorReporting(reporting != VARIANT_FALSE); });
    }
    STDMETHODIMP get_ErrorReporting(VARIANT_BOOL* reporting) override {
        return Get<IErrorService>(reporting, [&] { return errors_.ErrorReporting(); });
    }

  private:
    static void RefuseNoError(std::int32_t number) {
        if (number < 0 || (number > 0 && number <= 0xFFFF)) return;
        throw platform::AutomationError(platform::InvalidProcedureCall, "Seamlib.clsErrorService",
                                        std::to_string(number) + " is no error number");
    }

    host::ErrorService& errors_ = TheErrorService();
};

template <class Face>
HRESULT GetShared(REFIID iid, void** object) {
    // Never destroyed: a client may let go of it while the process ends.
    static Face& face = *new Face;
    return face.QueryInterface(iid, object);
}

}  // namespace

host::ErrorService& TheErrorService() { return TheServices().errors; }

HRESULT GetApplication(REFIID iid, void** object) { return GetShared<ApplicationFace>(iid, object); }
HRESULT GetMessageLog(REFIID iid, void** object) { return GetShared<MessageLogFace>(iid, object); }
HRESULT GetErrorService(REFIID iid, void** object) { return GetShared<ErrorServiceFace>(iid, object); }

}  // namespace com
