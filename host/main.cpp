// The `orvane` program: its commands and options. Exit status: 0, 1 when a file was refused, 2 for wrong
// usage.
#include <CLI/CLI.hpp>

#include <cstdio>
#include <filesystem>
#include <map>
#include <string>
#include <system_error>
#include <vector>

#include "commands/acquire_command.h"
#include "commands/command_line.h"
#include "commands/convert_command.h"
#include "commands/gate_command.h"
#include "commands/info_command.h"
#include "commands/plot_command.h"
#include "commands/report_command.h"
#include "commands/stats_command.h"
#include "files/output.h"
#include "files/output_file.h"
#include "files/parallel.h"
#include "text/numbers.h"

namespace {

namespace fs = std::filesystem;

constexpr int Refused = 1;
constexpr int WrongUsage = 2;

const std::map<std::string, Host::Format> InfoFormats{{"table", Host::Format::Table},
                                                      {"json", Host::Format::Json}};
const std::map<std::string, Host::Format> StatsFormats{
    {"table", Host::Format::Table}, {"csv", Host::Format::Csv}, {"json", Host::Format::Json}};
const std::map<std::string, Host::StoredType> StoredTypes{{"F", Host::StoredType::Float},
                                                          {"D", Host::StoredType::Double},
                                                          {"I16", Host::StoredType::Int16},
                                                          {"I32", Host::StoredType::Int32}};
const std::map<std::string, bool> ByteOrders{{"little", true}, {"big", false}};
const std::map<std::string, Host::ValueKind> ValueKinds{{"channel", Host::ValueKind::Channel},
                                                        {"scale", Host::ValueKind::Scale}};

const std::map<std::string, Host::PlotKind> PlotKinds{{"dot", Host::PlotKind::Dot},
                                                      {"density", Host::PlotKind::Density},
                                                      {"contour", Host::PlotKind::Contour},
                                                      {"histogram", Host::PlotKind::Histogram}};
const std::map<std::string, Host::ScaleChoice> ScaleChoices{{"linear", Host::ScaleChoice::Linear},
                                                            {"asinh", Host::ScaleChoice::Asinh},
                                                            {"auto", Host::ScaleChoice::Auto}};

/// An empty value would count as an option that was not given, and an unset variable of a shell is one.
const CLI::Validator NotEmpty(
    [](const std::string& text) { return text.empty() ? "the value is empty" : ""; }, "");

/// Stricter than the reading of numbers by the library for arguments, which takes large ones for the largest.
const CLI::Validator Unsigned(
    [](const std::string& text) {
        return Host::ParseUnsigned(text) ? "" : text + " is not a whole number of 64 bits";
    },
    "");

/// An option with the names of `choices` for values.
template <class Value, class Choice>
CLI::Option* AddChoice(CLI::App& command, const std::string& name, Value& value,
                       const std::map<std::string, Choice>& choices, const std::string& help) {
    return command
        .add_option_function<std::string>(
            name, [&value, &choices](const std::string& choice) { value = choices.at(choice); }, help)
        ->check(CLI::IsMember(choices));
}

/// Returns the option for gates.
CLI::Option* AddAnalysis(CLI::App& command, Host::AnalysisOptions& options) {
    command.add_option(
        "--compensate", options.compensate,
        "none, file (the matrix of the file, which is used where there is one unless this says otherwise) or "
        "a CSV file: a line with the names of the channels and a line of numbers for each");
    return command.add_option("--gates", options.gates, "Gates, as Gating-ML 2.0");
}

/// Also of files that are still to be made.
bool IsSameFile(const std::string& a, const std::string& b) {
    std::error_code error;
    return fs::equivalent(a, b, error) ||
           fs::absolute(a).lexically_normal() == fs::absolute(b).lexically_normal();
}

/// What is made from a file must not take its place.
void RequireOtherOutput(const std::string& output, std::vector<std::string> inputs,
                        const Host::AnalysisOptions& options) {
    inputs.insert(inputs.end(), {options.gates, options.compensate});
    for (const std::string& input : inputs) {
        std::error_code error;
        if (fs::equivalent(output, input, error)) {
            throw CLI::ValidationError(output, "a file to read cannot be the one to write");
        }
    }
}

/// Channel values are neither compensated nor gated.
void RequireScaleValues(Host::ValueKind values, const Host::AnalysisOptions& options) {
    const bool plain = options.gates.empty() && (options.compensate.empty() || options.compensate == "none");
    if (values == Host::ValueKind::Scale || plain) return;
    throw CLI::ValidationError("--values", "gates and compensation need scale values");
}

void AddInfo(CLI::App& program, Host::InfoOptions& options, int& status) {
    CLI::App* command = program.add_subcommand("info", "Say what FCS files say about themselves");
    command->add_option("files", options.files, "FCS files")->required();
    AddChoice(*command, "--format", options.format, InfoFormats, "table or json");
    command->add_flag("--strict", options.strict, "Refuse a file for what would be a warning");
    command->callback([&] { status = Host::RunInfo(options); });
}

void AddStats(CLI::App& program, Host::StatsOptions& options, int& status) {
    CLI::App* command = program.add_subcommand("stats", "Compute the statistics of FCS files");
    command->add_option("files", options.files, "FCS files")->required();
    command->add_option("--parameters", options.parameters, "Names of parameters ($PnN), separated by commas")
        ->delimiter(',')
        ->allow_extra_args(false);
    AddChoice(*command, "--values", options.values, ValueKinds,
              "scale (amplification and gain applied) or channel (as stored)");
    CLI::Option* gates = AddAnalysis(*command, options.analysis);
    command
        ->add_option("--population", options.analysis.population, "Report only the population of this name")
        ->needs(gates);
    AddChoice(*command, "--format", options.format, StatsFormats, "table, csv or json");
    command->add_option("-o,--output", options.output, "Write to a file instead of standard output");
    command->add_option("--jobs", options.jobs, "Number of files at a time")->check(CLI::Range(1, 1024));
    command->add_flag("--strict", options.strict, "Refuse a file for what would be a warning");
    command->callback([&] {
        RequireScaleValues(options.values, options.analysis);
        RequireOtherOutput(options.output, options.files, options.analysis);
        status = Host::RunStats(options);
    });
}

void AddGate(CLI::App& program, Host::GateOptions& options, int& status) {
    CLI::App* command = program.add_subcommand("gate", "Count the populations of an FCS file");
    command->add_option("file", options.file, "FCS file")->required();
    AddAnalysis(*command, options.analysis)->required();
    command->add_option("--membership", options.membership,
                        "Write a CSV file with one line per event: 1 in each population that it belongs to");
    AddChoice(*command, "--format", options.format, StatsFormats, "table, csv or json");
    command->add_option("-o,--output", options.output, "Write to a file instead of standard output");
    command->add_flag("--strict", options.strict, "Refuse a file for what would be a warning");
    command->callback([&] {
        RequireOtherOutput(options.output, {options.file}, options.analysis);
        RequireOtherOutput(options.membership, {options.file}, options.analysis);
        if (!options.output.empty() && !options.membership.empty() &&
            IsSameFile(options.output, options.membership))
            throw CLI::ValidationError("--membership", "the file is that of --output");
        status = Host::RunGate(options);
    });
}

void AddConvert(CLI::App& program, Host::ConvertOptions& options, int& status) {
    CLI::App* command = program.add_subcommand("convert", "Write the events of an FCS file as FCS 3.1");
    command->add_option("input", options.input, "FCS file")->required();
    command->add_option("output", options.output, "File to write; that of the input is replaced")
        ->required()
        ->check(NotEmpty);
    AddChoice(*command, "--type", options.format.type, StoredTypes,
              "F (32-bit floats), D (doubles), I16 or I32 (unsigned integers)");
    AddChoice(*command, "--order", options.format.littleEndian, ByteOrders, "little or big");
    AddChoice(*command, "--values", options.values, ValueKinds,
              "scale (amplification and gain applied) or channel (as stored)");
    CLI::Option* gates = AddAnalysis(*command, options.analysis);
    CLI::Option* population = command->add_option("--population", options.analysis.population,
                                                  "Write only the events of the population of this name");
    population->needs(gates);
    gates->needs(population);
    command->add_flag("--strict", options.strict, "Refuse a file for what would be a warning");
    command->callback([&] {
        RequireScaleValues(options.values, options.analysis);
        RequireOtherOutput(options.output, {}, options.analysis);
        status = Host::RunConvert(options);
    });
}

void AddReport(CLI::App& program, Host::ReportOptions& options, int& status) {
    CLI::App* command = program.add_subcommand("report", "Make a web page about FCS files");
    command->add_option("files", options.files, "FCS files")->required();
    AddAnalysis(*command, options.analysis);
    command->add_option("-o,--output", options.output, "The HTML file to write")->required();
    command->add_option("--jobs", options.jobs, "Number of files at a time")->check(CLI::Range(1, 1024));
    command->add_flag("--strict", options.strict, "Refuse a file for what would be a warning");
    command->callback([&] {
        RequireOtherOutput(options.output, options.files, options.analysis);
        status = Host::RunReport(options);
    });
}

void AddAcquire(CLI::App& program, Host::AcquireOptions& options) {
    constexpr int MostEvents = 10'000'000;
    constexpr int HighestRate = 1'000'000;
    CLI::App* command = program.add_subcommand("acquire", "Acquire events from a simulated instrument");
    command->footer(
        "The instrument measures blood stained in six colors. The same seed gives the same file, byte for "
        "byte, at any rate.\nAn interrupt (Ctrl-C) stops the acquisition; the events so far are kept.");
    command->add_option("--events", options.events, "Number of events")
        ->check(CLI::Range(1, MostEvents))
        ->capture_default_str();
    command->add_option("--seed", options.seed, "Number that decides which blood is simulated")
        ->check(Unsigned)
        ->capture_default_str();
    command
        ->add_option("--rate", options.rate,
                     "Events per second; 0 for as fast as possible, which is the default")
        ->check(CLI::Range(0, HighestRate));
    command->add_option("--gates", options.gates,
                        "Gates to count while it runs, as Gating-ML 2.0, instead of those for leukocytes");
    command->add_option("-o,--output", options.output, "FCS file to write")->required();
    command->callback([&] {
        RequireOtherOutput(options.output, {options.gates}, {});
        Host::RunAcquire(options);
    });
}

/// The scale and the range of an axis. Returns the options.
std::vector<CLI::Option*> AddAxis(CLI::App& command, const std::string& axis, Host::AxisChoice& choice) {
    CLI::Option* scale = AddChoice(
        command, "--" + axis + "-scale", choice.scale, ScaleChoices,
        "linear, asinh, or auto: linear for scatter, widths and time, asinh for others that go below "
        "zero or over several decades");
    const std::string name = "--" + axis + "-range";
    CLI::Option* range = command.add_option_function<std::string>(
        name,
        [&choice, name](const std::string& text) {
            choice.range = Host::ParseRange(text);
            if (!choice.range)
                throw CLI::ValidationError(name, text + " is not MIN,MAX, floats at least 0.0001 apart");
        },
        "MIN,MAX instead of what the values reach");
    return {scale, range};
}

void AddPlot(CLI::App& program, Host::PlotOptions& options, int& status) {
    CLI::App* command = program.add_subcommand("plot", "Draw the events of an FCS file");
    command->add_option("file", options.file, "FCS file")->required();
    command->add_option("--x", options.x, "Parameter ($PnN) on the horizontal axis")->required();
    CLI::Option* y = command->add_option("--y", options.y, "Parameter on the vertical axis");
    AddChoice(*command, "--kind", options.kind, PlotKinds,
              "dot, density, contour or histogram; density with --y (dot with --overlay), else histogram");
    CLI::Option* gates = AddAnalysis(*command, options.analysis);
    command->add_option("--population", options.analysis.population, "Draw only the population of this name")
        ->needs(gates);
    AddAxis(*command, "x", options.xAxis);
    for (CLI::Option* option : AddAxis(*command, "y", options.yAxis))
        option->needs(y);
    command->add_option_function<std::string>(
        "--size",
        [&options](const std::string& text) {
            if (!Host::ParseSize(text, options.size)) {
                throw CLI::ValidationError("--size", text + " is not WIDTHxHEIGHT, each 160 to 2400");
            }
        },
        "WIDTHxHEIGHT in units of 1/96 inch, 640x520 if not given");
    command->add_option("--scale", options.size.scale, "Pixels for each unit, 2 for print for instance")
        ->check(CLI::Range(1, 4));
    command->add_option("--overlay", options.overlay, "More files over the first, separated by commas")
        ->delimiter(',')
        ->allow_extra_args(false);
    command->add_option("-o,--output", options.output, "The PNG file to write")->required();
    command->add_flag("--strict", options.strict, "Refuse a file for what would be a warning");
    command->callback([&] {
        const std::string fault = Host::CheckPlot(options);
        if (!fault.empty()) throw CLI::ValidationError(fault);
        RequireOtherOutput(options.output, options.overlay, options.analysis);
        RequireOtherOutput(options.output, {options.file}, options.analysis);
        status = Host::RunPlot(options);
    });
}

/// In every option, so that none can be forgotten.
void RefuseEmptyValues(CLI::App& program) {
    for (CLI::App* command : program.get_subcommands([](CLI::App*) { return true; })) {
        for (CLI::Option* option : command->get_options()) {
            if (option->nonpositional() && option->get_type_size() > 0) option->check(NotEmpty);
        }
    }
}

int Run(int argc, char** argv) {
    CLI::App program("Flow cytometry list-mode files: what they hold, in numbers and pictures", "orvane");
    program.require_subcommand(1);
    program.set_version_flag("--version", ORVANE_VERSION);
    Host::InfoOptions info;
    Host::StatsOptions stats;
    Host::GateOptions gate;
    Host::ConvertOptions convert;
    Host::PlotOptions plot;
    Host::ReportOptions report;
    report.commandLine = Host::QuoteCommandLine({argv + 1, argv + argc});
    Host::AcquireOptions acquire;
    int status = 0;
    AddInfo(program, info, status);
    AddStats(program, stats, status);
    AddGate(program, gate, status);
    AddConvert(program, convert, status);
    AddPlot(program, plot, status);
    AddReport(program, report, status);
    AddAcquire(program, acquire);
    RefuseEmptyValues(program);
    try {
        program.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        if (program.exit(error) != 0) return WrongUsage;
        Host::WriteResult("", "");  // throws if the help could not be printed
    }
    return status;
}

}  // namespace

int main(int argc, char** argv) {
    Host::HoldStandardStreams();
    int status = Refused;
    std::string failure;
    try {
        failure = Host::RunGuarded([&] { status = Run(argc, argv); });
    } catch (const Host::OutputError& error) {
        failure = error.what();
    }
    if (!failure.empty()) std::fprintf(stderr, "orvane: %s\n", failure.c_str());
    return status;
}
