#include "cli/Commands.h"

#include <cstdio>
#include <set>

#include "cli/Clean.h"

namespace cli {

namespace {

std::string TextOf(const Failure& failure) {
    std::string text = "tarn4x: ";
    if (failure.Number != 0) {
        text.append("error ").append(std::to_string(failure.Number)).append(", ");
        text.append(Clean(failure.Source)).append(": ");
    }
    text.append(Clean(failure.Description)).append("\n");
    if (!failure.Cause.empty()) text.append("        ").append(Clean(failure.Cause)).append("\n");
    if (!failure.Advice.empty()) text.append("        ").append(failure.Advice).append("\n");
    return text;
}

/// What is the same for several members is told once.
void ReportAll(const std::vector<Failure>& failures) {
    std::set<std::string> told;
    for (const auto& failure : failures) {
        if (told.insert(TextOf(failure)).second) Report(failure);
    }
}

}  // namespace

void Report(const Failure& failure) { std::fputs(TextOf(failure).c_str(), stderr); }

ExitCode Perform(Context& context, const Command& command) {
    Outcome outcome;
    try {
        outcome = command.Run(context);
    } catch (const Failure& failure) {
        outcome.Errors.push_back(failure);
    } catch (const platform::AutomationError& error) {
        outcome.Errors.push_back(context.Receiver.Explain(error));
    } catch (const Stopped&) {
        outcome.Errors.push_back(StoppedByUser());
    }
    const auto end = outcome.Errors.empty() ? outcome.End : outcome.Errors.front().Ends;
    if (context.Out.IsJson()) {
        if (outcome.Results.is_null()) return end;  // it has printed them itself
        Json document = {{"command", command.Name}, {"results", std::move(outcome.Results)}};
        if (!outcome.Errors.empty()) document["error"] = ToJson(outcome.Errors.front());
        context.Out.Line(Dump(document));
    } else {
        ReportAll(outcome.Errors);
    }
    return end;
}

}  // namespace cli
