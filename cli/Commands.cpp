#include "cli/Commands.h"

#include <cstdio>

#include "cli/Clean.h"

namespace cli {

void Report(const Failure& failure) {
    std::string text = "tarn4x: ";
    if (failure.Number != 0) {
        text.append("error ")
            .append(std::to_string(failure.Number))
            .append(", ")
            .append(Clean(failure.Source))
            .append(": ");
    }
    text.append(Clean(failure.Description)).append("\n");
    if (!failure.Cause.empty()) text.append("        ").append(Clean(failure.Cause)).append("\n");
    if (!failure.Advice.empty()) text.append("        ").append(failure.Advice).append("\n");
    std::fputs(text.c_str(), stderr);
}

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
    const auto end = outcome.Errors.empty() ? Done : outcome.Errors.front().Ends;
    if (context.Out.IsJson()) {
        if (outcome.Results.is_null()) return end;  // it has printed them itself
        Json document = {{"command", command.Name}, {"results", std::move(outcome.Results)}};
        if (!outcome.Errors.empty()) document["error"] = ToJson(outcome.Errors.front());
        context.Out.Line(Dump(document));
    } else {
        for (const auto& failure : outcome.Errors) Report(failure);
    }
    return end;
}

}  // namespace cli
