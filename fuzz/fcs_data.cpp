// The DATA segment: the first bytes choose words, order, scales and where segments are cut, the rest is DATA.
// Reading, writing and reading again are compared with the plain formulas of the tests under every
// instruction set.
#include "tests/support/fcs_data.h"
#include "fuzz/input.h"
#include "fuzz/target.h"
#include "tests/support/instruction_sets.h"
#include "tests/support/pool.h"

namespace {

using namespace Orvane::Testing;
using Fuzz::Input;

void ExpectPlainFormulas(Input input) {
    const Layout& layout = Layouts[input.Below(static_cast<int>(std::size(Layouts)))];
    Para para(layout, 1 + input.Below(24), input.Below(2) == 0);
    const auto place = static_cast<Columns::Place>(input.Below(3));
    std::vector<int> lengths(std::size_t{1} + static_cast<std::size_t>(input.Below(4)));
    for (int& length : lengths)
        length = input.Below(1 << 12);
    const auto scale = input.Take<double>();
    if (layout.Kind == Inexact) para.IntParFormat->Scale[0] = scale;

    int left = static_cast<int>(input.Left());
    int events = 0;
    for (int& length : lengths) {
        length = &length == &lengths.back() ? left : std::min(length, left);
        left -= length;
        events += length / (para.ByteWidth * para.ParCount);
    }
    Segments segments(lengths);
    for (std::size_t s = 0; s < lengths.size(); ++s)
        for (int i = 0; i < lengths[s]; ++i)
            segments.Raw(s)[i] = input.Take<unsigned char>();

    Columns columns(para.ParCount, events, place);
    ExpectPlainReading(columns, segments, para);
    if (para.DataType == 4) return;  // is only read
    para.InvertLogScales();
    ExpectPlainWriting(columns, static_cast<int>(lengths.size()), para);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const SmallPool pool(512);
    for (const Orvane::InstructionSet set : AvailableInstructionSets()) {
        const ScopedInstructionSet scope(set);
        ExpectPlainFormulas(Input(data, size));
    }
    return 0;
}
