#include "cli/Commands.h"

namespace cli {

namespace {

/// Functions need no receiver.
tarn4x::clsTarn4x& DriverFor(Session& session, const Request& request) {
    return request.Member->Allows == tarn4x::Access::Function ? session.Driver() : session.OnLine();
}

}  // namespace

Outcome Call(Context& context, const std::string& method) {
    Outcome outcome;
    for (const auto& request : RequestsFor(method)) {
        if (request.Member->Allows == tarn4x::Access::Read || request.Member->Allows == tarn4x::Access::ReadAndWrite) {
            throw Misuse(std::string(request.Member->Name) + " is no method, it is read",
                         "tarn4x get " + std::string(request.Member->Name));
        }
        Reading reading{.Asked = request};
        context.Receiver.Try(request,
                             [&] { reading.Result = GetOrCall(DriverFor(context.Receiver, request), request); });
        outcome.Results.push_back(ToJson(reading));
        const bool result = !std::holds_alternative<std::monostate>(reading.Result);
        if (!context.Out.IsJson()) context.Out.Line(reading.Asked.Name + (result ? "  " + reading.Text() : "  done"));
    }
    return outcome;
}

}  // namespace cli
