#include "commands/acquire_command.h"

#include <algorithm>
#include <chrono>
#include <numeric>
#include <sstream>
#include <thread>

#include "acquisition/acquisition.h"
#include "acquisition/instrument.h"
#include "acquisition/live_counts.h"
#include "fcs_files/fcs_writer.h"
#include "fcs_files/stored_parameters.h"
#include "files/interruption.h"
#include "files/output.h"
#include "gating/gating_ml.h"
#include "text/display.h"
#include "text/numbers.h"

namespace Host {
namespace {

constexpr int WindowEvents = 10'000;

/// The parameters of the file. The largest time is not known yet.
EventLayout DescribeSignals() {
    EventLayout layout;
    layout.type = DataType::Float;
    for (const Instrument::Signal& signal : Instrument::Signals()) {
        Parameter parameter;
        parameter.name = signal.name;
        parameter.stain = signal.marker;
        parameter.range = Instrument::Range;
        layout.parameters.push_back(parameter);
    }
    layout.parameters.back().range.reset();
    return layout;
}

std::vector<std::size_t> DyeChannels() {
    std::vector<std::size_t> channels(DyeCount);
    std::iota(channels.begin(), channels.end(), Instrument::FirstDye);
    return channels;
}

std::string FormatSpillover(const EventLayout& layout) {
    std::string text = std::to_string(DyeCount);
    for (const std::size_t channel : DyeChannels())
        text += ',' + layout.parameters[channel].name;
    for (const double coefficient : Instrument::Spillover())
        text += ',' + Shortest(coefficient);
    return text;
}

std::vector<Keyword> ListKeywords(const EventLayout& layout, std::uint64_t seed) {
    std::vector<Keyword> keywords{{"$CYT", "Orvane simulated instrument"},
                                  {"$COM", "Simulated blood, seed " + std::to_string(seed)},
                                  {"$TIMESTEP", Shortest(Instrument::SecondsPerTick)},
                                  {"$SPILLOVER", FormatSpillover(layout)}};
    for (std::size_t p = 0; p < layout.parameters.size(); ++p) {
        const std::string& stain = layout.parameters[p].stain;
        if (!stain.empty()) keywords.push_back({"$P" + std::to_string(p + 1) + 'S', stain});
    }
    return keywords;
}

Acquisition MakeAcquisition(const Compensation& compensation) {
    std::vector<int> channelMap;
    for (const Instrument::Signal& signal : Instrument::Signals())
        channelMap.push_back(signal.channel);
    const std::vector<float> gains(channelMap.size(), Instrument::Gain);
    return {channelMap, gains, compensation, WindowEvents};
}

/// The sizes of buffers, and when they are due: at least ten times a second if there are so many events.
class Pace {
public:
    explicit Pace(int rate) : rate_(rate) {}

    int BufferEvents() const {
        constexpr int Most = 1000;
        return rate_ == 0 ? Most : std::clamp(rate_ / 10, 1, Most);
    }

    /// Waits until an instrument with this rate has measured `events` events.
    void Await(int events) const {
        if (rate_ == 0) return;
        const std::chrono::duration<double> due(static_cast<double>(events) / rate_);
        std::this_thread::sleep_until(start_ + std::chrono::duration_cast<Clock::duration>(due));
    }

private:
    using Clock = std::chrono::steady_clock;

    int rate_;
    Clock::time_point start_ = Clock::now();
};

/// Shows the live counts every second, or ten times, and at the end. Returns the number of events, at least
/// one buffer of them.
int Acquire(const AcquireOptions& options, const StrategyBinding& binding, Acquisition& acquisition) {
    const Interruption interruption;
    WriteResult("counts of the last " + std::to_string(WindowEvents) + " events\n", "");
    const int interval = options.rate != 0 ? options.rate : std::max(1, options.events / 10);
    Instrument instrument(options.seed);
    const Pace pace(options.rate);
    int events = 0;
    bool finished = false;
    while (!finished) {
        const int more = std::min(pace.BufferEvents(), options.events - events);
        pace.Await(events + more);
        Orvane::OVCollectData buffer = instrument.Measure(more);
        acquisition.Take(buffer);
        const bool due = (events + more) / interval != events / interval;
        events += more;
        finished = events == options.events || interruption.Requested();
        if (due || finished) WriteResult(FormatLiveCounts(binding, acquisition), "");
    }
    return events;
}

void Write(OutputFile& output, Acquisition& acquisition, const EventLayout& layout, std::uint64_t seed) {
    const StoredFormat format;
    std::vector<StoredParameter> parameters =
        DescribeParameters(acquisition.Events(), layout, ValueKind::Scale, format);
    for (StoredParameter& parameter : parameters)
        parameter.gain = 1.0;
    const long events = Orvane::OVEventSection().GetTotalCount(acquisition.Events());
    FcsWriter writer(output, ListKeywords(layout, seed), format, parameters,
                     static_cast<std::uint64_t>(events));
    for (Orvane::EventSection* section : acquisition.Events())
        writer.Write(*section);
    writer.Finish();
    output.Commit();
}

}  // namespace

/// The file is opened first: nobody wants to learn at the end that the events cannot be written.
void RunAcquire(const AcquireOptions& options) {
    const Strategy strategy = options.gates.empty() ? BloodStrategy() : ReadStrategy(options.gates);
    const EventLayout layout = DescribeSignals();
    const StrategyBinding binding(strategy, layout);
    OutputFile output(options.output);
    const Compensation compensation("$SPILLOVER", Instrument::Spillover(), DyeChannels());
    Acquisition acquisition = MakeAcquisition(compensation);
    const int events = Acquire(options, binding, acquisition);
    Write(output, acquisition, layout, options.seed);
    std::ostringstream description;
    description << Printable(options.output) << '\n' << "events       " << events;
    if (events != options.events) description << " of " << options.events << ", stopped";
    description << "\nseed         " << options.seed << '\n';
    WriteResult(description.str(), "");
}

}  // namespace Host
