#include "commands/convert_command.h"

#include <orvane/OVEventSection.h>

#include <algorithm>
#include <numeric>
#include <sstream>

#include "fcs_files/clipping.h"
#include "fcs_files/fcs_writer.h"
#include "files/output.h"
#include "files/parallel.h"
#include "files/progress.h"
#include "text/display.h"
#include "text/numbers.h"

namespace Host {
namespace {

/// Only TEXT and DATA are written.
void WarnOfAnalysis(const FcsFile& file, Findings& findings) {
    const std::string* inText = file.keywords.Find("$BEGINANALYSIS");
    std::uint64_t begin = file.header.analysis.begin;
    if (begin == 0 && inText != nullptr) begin = ParseUnsigned(*inText).value_or(0);
    if (begin == 0) return;
    findings.Warn({"begin of ANALYSIS", std::to_string(begin), "0, no such segment"}, "it is left out");
}

/// The population to write; null for every event.
GatedPopulation* ChoosePopulation(GatedSample& sample, const std::string& name) {
    for (GatedPopulation& population : sample.Populations()) {
        if (population.name == name) return &population;
    }
    return nullptr;
}

/// Takes the events of a population out of one section after another.
class Extraction {
public:
    Extraction() = default;
    Extraction(const Extraction&) = delete;
    Extraction& operator=(const Extraction&) = delete;
    ~Extraction() { Release(); }

    /// Those of `events`, packed. They are there until the next call.
    std::vector<Orvane::EventSection*>& Take(Orvane::EventSection* events, Orvane::FilterSection* members) {
        Release();
        std::vector<Orvane::EventSection*> source{events};
        std::vector<Orvane::FilterSection*> filter{members};
        std::vector<int> signals(static_cast<std::size_t>(events->SignalCount));
        std::iota(signals.begin(), signals.end(), 0);
        Orvane::OVEventSection().ExtractEventSection(sections_, source, filter, signals);
        return sections_;
    }

private:
    void Release() { Orvane::OVEventSection().ReleaseVectorSection(sections_); }

    std::vector<Orvane::EventSection*> sections_;
};

void WriteAll(std::vector<Orvane::EventSection*>& sections, FcsWriter& writer, ClippingCounter& clipping) {
    for (Orvane::EventSection* section : sections) {
        clipping.Count(*section);
        writer.Write(*section);
    }
}

void WriteEvents(GatedSample& sample, GatedPopulation* population, FcsWriter& writer,
                 ClippingCounter& clipping) {
    if (population == nullptr) return WriteAll(sample.Events(), writer, clipping);
    Extraction extraction;
    for (std::size_t i = 0; i < sample.Events().size(); ++i) {
        WriteAll(extraction.Take(sample.Events()[i], population->members.Sections()[i]), writer, clipping);
    }
}

/// Compensated events must not be compensated again.
std::vector<Keyword> ChooseKeywords(const FcsFile& file, const GatedSample& sample) {
    std::vector<Keyword> keywords = file.keywords.List();
    if (sample.IsCompensated()) {
        std::erase_if(keywords, [](const Keyword& keyword) { return IsSpilloverKeyword(keyword.name); });
    }
    return keywords;
}

std::string Describe(const StoredFormat& format) {
    return std::string(format.IsInteger() ? "integers of " : "floating-point numbers of ") +
           std::to_string(format.Bits()) +
           (format.littleEndian ? " bits, little-endian" : " bits, big-endian") +
           (format.IsInteger() ? "; fractions are cut off" : "");
}

/// How the events were taken, and how they are written.
std::string Describe(const ConvertOptions& options, const FcsFile& file, const GatedSample& sample,
                     std::uint64_t events) {
    const std::vector<Parameter>& parameters = file.layout.parameters;
    const auto isLog = [](const Parameter& parameter) { return parameter.IsLog(); };
    std::ostringstream out;
    out << Printable(options.output) << '\n' << "events       " << events;
    if (!options.analysis.population.empty()) {
        out << " of " << file.data.events << ", population " << Printable(options.analysis.population);
    }
    out << '\n'
        << "data type    " << Describe(options.format) << '\n'
        << "values       " << (options.values == ValueKind::Scale ? "scale" : "channel");
    const auto logarithmic = std::count_if(parameters.begin(), parameters.end(), isLog);
    if (options.values == ValueKind::Scale && logarithmic != 0) {
        out << "; the amplification of " << logarithmic << " logarithmic parameters is applied, $PnE is 0,0";
    }
    if (sample.IsCompensated()) out << "; compensated, without a matrix";
    out << '\n';
    return out.str();
}

std::string ListWarnings(const Findings& findings) {
    std::string lines;
    for (const std::string& warning : findings.Warnings())
        lines += "warning: " + warning + '\n';
    return lines;
}

/// Returns what to say about it.
std::string Convert(const ConvertOptions& options, const Analysis& analysis) {
    Findings findings(options.strict);
    FcsFile file = OpenFcsFile(options.input, findings);
    WarnOfAnalysis(file, findings);
    SizePool({&file});
    Progress progress(file.data.events * file.layout.parameters.size());
    GatedSample sample(file, analysis, findings, [&](std::uint64_t amount) { progress.Add(amount); });
    GatedPopulation* population = ChoosePopulation(sample, analysis.population);
    const std::uint64_t events = population == nullptr ? file.data.events : population->count;
    const std::vector<StoredParameter> parameters =
        DescribeParameters(sample.Events(), file.layout, options.values, options.format);
    OutputFile output(options.output);
    FcsWriter writer(output, ChooseKeywords(file, sample), options.format, parameters, events);
    ClippingCounter clipping(options.format, parameters);
    WriteEvents(sample, population, writer, clipping);
    writer.Finish();
    clipping.Warn(findings);
    output.Commit();
    return Describe(options, file, sample, events) + ListWarnings(findings);
}

}  // namespace

int RunConvert(const ConvertOptions& options) {
    const Analysis analysis = ReadAnalysis(options.analysis, options.values);
    std::string description;
    const std::string refusal = RunGuarded([&] { description = Convert(options, analysis); });
    if (!refusal.empty()) {
        PrintRefusal(options.input, refusal);
        return 1;
    }
    WriteResult(description, "");
    return 0;
}

}  // namespace Host
