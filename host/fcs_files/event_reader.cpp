#include "fcs_files/event_reader.h"

#include "fcs_files/ascii_values.h"
#include "fcs_files/rearranging_reader.h"

namespace Host {
namespace {

/// Words that the library reads as they stand.
class StoredReader : public EventReader {
public:
    explicit StoredReader(FcsFile& file) : file_(file), position_(file.data.begin) {}

    WordFormat Format() const override {
        const EventLayout& layout = file_.layout;
        const auto bits = static_cast<int>(layout.parameters[0].width);
        const int type = layout.type == DataType::Integer ? 1 : layout.type == DataType::Float ? 2 : 3;
        const auto bytes = static_cast<unsigned>(bits / 8);
        return {type, bits / 8, bits, IsLittleEndian(layout.byteOrder->Significances(bytes))};
    }

    void Read(unsigned char* dest, std::uint64_t events) override {
        const auto bytes = static_cast<std::size_t>(events * file_.layout.EventBytes());
        file_.bytes.Read(position_, dest, bytes);
        position_ += bytes;
    }

private:
    FcsFile& file_;
    std::uint64_t position_;
};

}  // namespace

std::unique_ptr<EventReader> MakeEventReader(FcsFile& file) {
    if (file.layout.freeFormat) return std::make_unique<FreeAsciiReader>(file);
    if (file.layout.type == DataType::Ascii) return std::make_unique<FixedAsciiReader>(file);
    if (RearrangingReader::IsNeeded(file.layout)) return std::make_unique<RearrangingReader>(file);
    return std::make_unique<StoredReader>(file);
}

}  // namespace Host
