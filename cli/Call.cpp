#include "cli/Commands.h"

namespace cli {

namespace {

/// Functions need no receiver.
tarn4x::clsTarn4x& DriverFor(Session& session, const Request& request) {
    return request.Member->Allows == tarn4x::Access::Function ? session.Driver() : session.OnLine();
}

Reading CallMember(Session& session, const Request& request) {
    auto& driver = DriverFor(session, request);
    const Application::Activity activity(session.TheApplication(), request.Name);
    session.TheFramework().ForgetLinkNotes();
    try {
        Reading reading{.Asked = request, .Result = GetOrCall(driver, request)};
        session.CheckStop();
        return reading;
    } catch (const platform::AutomationError& error) {
        throw session.Explain(error, &request);
    }
}

}  // namespace

Outcome Call(Context& context, const std::string& method) {
    Outcome outcome;
    for (const auto& request : RequestsFor(method)) {
        if (request.Member->Allows == tarn4x::Access::Read || request.Member->Allows == tarn4x::Access::ReadAndWrite) {
            throw Misuse(std::string(request.Member->Name) + " is no method, it is read",
                         "tarn4x get " + std::string(request.Member->Name));
        }
        const auto reading = CallMember(context.Receiver, request);
        outcome.Results.push_back(ToJson(reading));
        const bool result = !std::holds_alternative<std::monostate>(reading.Result);
        if (!context.Out.IsJson()) context.Out.Line(reading.Asked.Name + (result ? "  " + reading.Text() : "  done"));
    }
    return outcome;
}

}  // namespace cli
