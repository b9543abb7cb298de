#include "cli/Commands.h"

namespace cli {

namespace {

struct Assignment {
    Request Member;
    double Value;
};

Assignment ParseAssignment(const std::string& text) {
    const auto equals = text.find('=');
    if (equals == text.npos) throw Misuse('"' + text + "\" sets nothing", "Write MEMBER=VALUE, as in MeasureMode=PAR.");
    auto requests = RequestsFor(text.substr(0, equals));
    auto& request = requests.front();
    if (request.Member->Allows != tarn4x::Access::ReadAndWrite) {
        throw Misuse(std::string(request.Member->Name) + " cannot be set",
                     "\"tarn4x members " + std::string(request.Member->Name) + "\" tells what it is.");
    }
    if (requests.size() > 1) {
        throw Misuse(std::string(request.Member->Name) + " needs an argument",
                     "Write it as " + request.Name + "=VALUE.");
    }
    const auto value = ParseNumber(text.substr(equals + 1), request.Type(), request.Name);
    return {std::move(request), value};
}

}  // namespace

Outcome Set(Context& context, const std::vector<std::string>& texts) {
    std::vector<Assignment> assignments;
    assignments.reserve(texts.size());
    for (const auto& text : texts) assignments.push_back(ParseAssignment(text));
    Outcome outcome;
    for (const auto& assignment : assignments) {
        auto& session = context.Receiver;
        session.Try(assignment.Member, [&] { Put(session.OnLine(), assignment.Member, assignment.Value); });
        const auto reading = Reader(session).Read(assignment.Member);
        const auto asked = ShowValue(assignment.Value, assignment.Member.Type());
        const bool taken = asked == ShowValue(reading.Result, assignment.Member.Type());
        auto json = ToJson(reading);
        json["asked"] = ToJson(Reading{.Asked = assignment.Member, .Result = assignment.Value})["value"];
        outcome.Results.push_back(std::move(json));
        if (reading.Error) {
            outcome.Errors.push_back(*reading.Error);
            return outcome;
        }
        if (context.Out.IsJson()) continue;
        context.Out.Line(reading.Asked.Name + "  " + reading.Text() + (taken ? "" : "  (asked for " + asked + ")"));
    }
    return outcome;
}

}  // namespace cli
