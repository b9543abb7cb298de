#include "cli/CommandLine.h"

#include <CLI/CLI.hpp>

namespace cli {

namespace {

constexpr auto Description =
    "Measures with a Tarn 4x DVB-T test receiver, from a command line.\n"
    "All members of the driver XTarn4x can be read, set and watched by their names.";

constexpr auto Examples =
    "Examples:\n"
    "  tarn4x --simulated get MeasureRfLevel RF\n"
    "  tarn4x --host 10.0.0.5 get MeasureOfdmMerRmsDb --switch\n"
    "  tarn4x --host 10.0.0.5 set RF=474e6 MeasureMode=PAR\n"
    "  tarn4x --serial COM3:9600 watch MeasureRfLevel MeasureBerBeforeRS --every 5\n"
    "  tarn4x members 'MeasureOfdm*'\n"
    "\n"
    "TARN4X_RECEIVER=\"--host 10.0.0.5\" in the environment names the receiver once for all.\n"
    "Exit codes: 0 done, 1 the receiver or the driver refused, 2 wrong usage, 3 no connection.";

/// Help in the program's own words.
class Formatter final : public CLI::Formatter {
  public:
    Formatter() {
        label("SUBCOMMAND", "COMMAND");
        label("Subcommands", "Commands");
        label("Positionals", "Arguments");
        label("TEXT", "");
        label("REQUIRED", "");
    }

    std::string make_option_name(const CLI::Option* option, bool isPositional) const override {
        auto name = CLI::Formatter::make_option_name(option, isPositional);
        const auto brace = name.find('{');  // what a flag stands for without a value
        if (brace == name.npos) return name;
        return name.substr(0, brace) + (name.find("simulated") == name.npos ? "[=PORT]" : "[=SEED]");
    }
};

/// The options that tell where the receiver is.
void AddReceiver(CLI::App& app, std::optional<Destination>& receiver) {
    constexpr auto group = "The receiver";
    const auto choose = [&receiver](Destination destination) {
        if (receiver) throw Misuse("More than one receiver is named", "Name one of them.");
        receiver = std::move(destination);
    };
    const auto option = [&](const char* name, const char* form, const char* help, auto make) {
        app.add_option_function<std::string>(
               name, [=](const std::string& text) { choose(make(text)); }, help)
            ->type_name(form)
            ->group(group);
    };
    option("--host", "ADDRESS[:PORT]", "In the network; port 5025 unless another is given", Destination::Host);
    option("--serial", "PORT[:BAUD]", "On a serial port; 19200 baud unless told otherwise", Destination::Serial);
    option("--gpib", "BOARD:ADDRESS", "On GPIB, through an installed VISA runtime", Destination::Gpib);
    app.add_flag_function(
           "--front-panel{5026}", [=](std::int64_t port) { choose(Destination::FrontPanel(static_cast<int>(port))); },
           "Behind the front-panel application on this PC, at port 5026 or another PORT")
        ->group(group);
    app.add_flag_function(
           "--simulated{1}", [=](std::int64_t seed) { choose(Destination::Simulated(static_cast<unsigned>(seed))); },
           "A simulated one inside this program; each SEED is another one")
        ->group(group);
}

void AddSession(CLI::App& app, Session::Options& options) {
    AddReceiver(app, options.Receiver);
    app.add_option("--trace", options.Trace, "Append the dialogue to a file, which tarn4x-sim --replay takes")
        ->type_name("FILE");
    app.add_flag("--no-waits", options.NoWaits, "Leave out the pauses that an instrument needs (for tarn4x-sim)");
}

CLI::App* AddCommand(CLI::App& app, const char* name, const char* help) {
    auto* command = app.add_subcommand(name, help);
    command->group("Commands");
    command->footer("\nThe receiver, --json and what else holds for every command: tarn4x --help");
    return command;
}

/// Makes a command of the application; its options are kept as long as the command is.
template <class Options>
CLI::App* Add(CLI::App& app, const char* name, const char* help, Command& chosen, std::shared_ptr<Options> options,
              Outcome (*run)(Context&, const Options&)) {
    auto* command = AddCommand(app, name, help);
    command->callback([=, &chosen] { chosen = {name, [=](Context& context) { return run(context, *options); }}; });
    return command;
}

CLI::App* Add(CLI::App& app, const char* name, const char* help, Command& chosen, Outcome (*run)(Context&)) {
    auto* command = AddCommand(app, name, help);
    command->callback([=, &chosen] { chosen = {name, run}; });
    return command;
}

void AddCommands(CLI::App& app, Command& chosen) {
    app.require_subcommand(1);
    app.fallthrough();

    Add(app, "identify", "Shows maker, model, serial number, firmware and installed options", chosen, Identify);

    auto pattern = std::make_shared<std::string>();
    Add(app, "members", "Lists what can be read, set and called, with units, measure modes and values", chosen, pattern,
        ListMembers)
        ->add_option("PATTERN", *pattern, "A member, a part of a name, or a pattern with * and ?");

    constexpr auto members = "Members by name, in any letter case; ImpulseResponse stands for all echoes";
    auto get = std::make_shared<GetOptions>();
    auto* command = Add(app, "get", "Reads members", chosen, get, Get);
    command->add_option("MEMBER", get->Members, members)->required();
    command->add_flag("--switch", get->Switch, "Go to the measure modes that they need, and back at the end");

    auto assignments = std::make_shared<std::vector<std::string>>();
    Add(app, "set", "Sets members, and reads them back", chosen, assignments, Set)
        ->add_option("MEMBER=VALUE", *assignments,
                     "Numbers as 474e6, values of enumerations by name or number, times and dates as 12:34:56 and "
                     "2025-01-31")
        ->required();

    auto method = std::make_shared<std::string>();
    Add(app, "call", "Calls a method or a function", chosen, method, Call)
        ->add_option("METHOD", *method, "With its arguments: 'MeasureOfdmCarrierRange(0,1704)'")
        ->required();

    auto watch = std::make_shared<WatchOptions>();
    command =
        Add(app, "watch", "Reads members again and again: a table on a terminal, otherwise CSV", chosen, watch, Watch);
    command->add_option("MEMBER", watch->Members, members)->required();
    command->add_option("--every", watch->Every, "Time from one sample to the next (1)")
        ->type_name("SECONDS")
        ->check(CLI::Range(0.0, 1e9).description(""));
    command->add_option("--for", watch->For, "How long; otherwise until Ctrl-C")
        ->type_name("SECONDS")
        ->check(CLI::Range(0.0, 1e9).description(""));
    command->add_option("--count", watch->Count, "How many samples")
        ->type_name("N")
        ->check(CLI::Range(1, 1'000'000'000).description(""));
    command->add_flag("--switch", watch->Switch, "Go to a measure mode that has them all, and back at the end");

    auto file = std::make_shared<std::string>();
    Add(app, "screenshot", "Saves the receiver's screen", chosen, file, Screenshot)
        ->add_option("FILE", *file, "Ending in .png, or in .pcx for the picture as the receiver sends it")
        ->required();

    Add(app, "ports", "Lists the serial ports of this computer", chosen, ListPorts);
}

void AddScript(CLI::App& app, Command& chosen) {
    auto script = std::make_shared<ScriptOptions>();
    auto* command = Add(app, "script", "Runs commands from a file, one a line, in one session", chosen, script, Script);
    command->add_option("FILE", script->File, "A text file, - for the standard input; # begins a comment")->required();
    command->add_flag("--keep-going", script->KeepGoing, "Go on after a line that failed");
}

constexpr auto Help = "tarn4x --help tells how it is used, tarn4x COMMAND --help how a command is.";

/// Parses with an application whose errors become ours.
template <class Parse>
void Guarded(Parse&& parse) {
    try {
        parse();
    } catch (const CLI::RequiredError& error) {
        if (std::string_view(error.what()).find("subcommand") != std::string_view::npos) {
            throw Misuse("There is no command, or none of that name", "tarn4x --help lists the commands.");
        }
        throw Misuse(error.what(), Help);
    } catch (const CLI::Success&) {
        throw Misuse("Help and version are no commands of a script and no receiver", Help);
    } catch (const CLI::ParseError& error) {
        throw Misuse(error.what(), Help);
    } catch (const std::invalid_argument&) {
        throw Misuse("What stands behind \"=\" is no number", "Write --simulated=2 or --front-panel=5027.");
    }
}

Session::Options ParseDefaults(const std::string& words) {
    Session::Options options;
    CLI::App app;
    AddSession(app, options);
    try {
        Guarded([&] { app.parse(words, false); });
    } catch (Failure& failure) {
        failure.Description.insert(0, "TARN4X_RECEIVER: ");
        throw;
    }
    return options;
}

}  // namespace

CommandLine ParseArguments(std::vector<std::string> arguments, const std::string& defaults) {
    CommandLine line;
    CLI::App app(Description, "tarn4x");
    app.footer(Examples);
    app.formatter(std::make_shared<Formatter>());
    app.allow_windows_style_options(false);
    app.set_version_flag("--version", "tarn4x " TARN4X_VERSION);
    auto& settings = line.Settings;
    AddSession(app, settings);
    app.add_flag("--json", line.Json, "Print JSON, an object a line");
    AddCommands(app, line.Run);
    AddScript(app, line.Run);
    std::ranges::reverse(arguments);
    Guarded([&] {
        try {
            app.parse(std::move(arguments));
        } catch (const CLI::CallForVersion& version) {
            line.Text = std::string(version.what()) + '\n';
        } catch (const CLI::CallForHelp&) {
            line.Text = app.help();
        }
    });
    if (!settings.Receiver && line.Text.empty()) {
        auto more = ParseDefaults(defaults);
        settings.Receiver = std::move(more.Receiver);
        settings.NoWaits |= more.NoWaits;
        if (settings.Trace.empty()) settings.Trace = std::move(more.Trace);
    }
    return line;
}

Command ParseScriptLine(const std::string& line) {
    Command command;
    CLI::App app("", "tarn4x");
    app.allow_windows_style_options(false);
    AddCommands(app, command);
    Guarded([&] { app.parse(line, false); });
    return command;
}

}  // namespace cli
