#include "convert_command.h"

#include <algorithm>
#include <sstream>

#include "clipping.h"
#include "display.h"
#include "fcs_writer.h"
#include "numbers.h"
#include "output.h"
#include "parallel.h"
#include "progress.h"

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

void WriteEvents(Sample& sample, FcsWriter& writer, ClippingCounter& clipping) {
    for (Orvane::EventSection* section : sample.Events()) {
        clipping.Count(*section);
        writer.Write(*section);
    }
}

std::string Describe(const StoredFormat& format) {
    return std::string(format.IsInteger() ? "integers of " : "floating-point numbers of ") +
           std::to_string(format.Bits()) +
           (format.littleEndian ? " bits, little-endian" : " bits, big-endian") +
           (format.IsInteger() ? "; fractions are cut off" : "");
}

std::string Describe(const ConvertOptions& options, const FcsFile& file, const Findings& findings) {
    const std::vector<Parameter>& parameters = file.layout.parameters;
    const auto isLog = [](const Parameter& parameter) { return parameter.IsLog(); };
    std::ostringstream out;
    out << Printable(options.output) << '\n'
        << "events       " << file.data.events << '\n'
        << "data type    " << Describe(options.format) << '\n'
        << "values       " << (options.values == ValueKind::Scale ? "scale" : "channel");
    const auto logarithmic = std::count_if(parameters.begin(), parameters.end(), isLog);
    if (options.values == ValueKind::Scale && logarithmic != 0) {
        out << "; the amplification of " << logarithmic << " logarithmic parameters is applied, $PnE is 0,0";
    }
    out << '\n';
    for (const std::string& warning : findings.Warnings())
        out << "warning: " << warning << '\n';
    return out.str();
}

/// Returns what to say about it.
std::string Convert(const ConvertOptions& options) {
    Findings findings(options.strict);
    FcsFile file = OpenFcsFile(options.input, findings);
    WarnOfAnalysis(file, findings);
    SizePool({&file});
    Progress progress(file.data.events * file.layout.parameters.size());
    Sample sample(file, options.values, [&](std::uint64_t amount) { progress.Add(amount); });
    const std::vector<StoredParameter> parameters =
        DescribeParameters(sample.Events(), file.layout, options.values, options.format);
    OutputFile output(options.output);
    FcsWriter writer(output, file.keywords.List(), options.format, parameters, file.data.events);
    ClippingCounter clipping(options.format, parameters);
    WriteEvents(sample, writer, clipping);
    writer.Finish();
    clipping.Warn(findings);
    output.Commit();
    return Describe(options, file, findings);
}

}  // namespace

int RunConvert(const ConvertOptions& options) {
    std::string description;
    const std::string refusal = RunGuarded([&] { description = Convert(options); });
    if (!refusal.empty()) {
        PrintRefusal(options.input, refusal);
        return 1;
    }
    WriteResult(description, "");
    return 0;
}

}  // namespace Host
