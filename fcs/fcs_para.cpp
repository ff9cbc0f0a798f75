// The layout records of a DATA segment: making and freeing their arrays.
#include <orvane/OVFCSPara.h>

#include <cstddef>
#include <memory>
#include <new>

namespace Orvane {
namespace {

template <class T>
std::unique_ptr<T[]> MakeZeros(int count) {
    if (count < 0) throw std::bad_array_new_length();
    return std::make_unique<T[]>(static_cast<std::size_t>(count));
}

}  // namespace

OVFCSIntParFormat::OVFCSIntParFormat(int count) {
    Initial(count);
}

void OVFCSIntParFormat::Initial(int count) {
    Release();
    auto scale = MakeZeros<double>(count);
    auto isLog = MakeZeros<bool>(count);
    auto offset = MakeZeros<double>(count);
    auto logScale = MakeZeros<double>(count);
    auto range = MakeZeros<double>(count);
    Count = count;
    Scale = scale.release();
    IsLog = isLog.release();
    Offset = offset.release();
    LogScale = logScale.release();
    Range = range.release();
}

void OVFCSIntParFormat::Release() {
    delete[] Scale;
    delete[] IsLog;
    delete[] Offset;
    delete[] LogScale;
    delete[] Range;
    *this = OVFCSIntParFormat();
}

void OVFCSPara::Initial() {
    *this = OVFCSPara();
}

void OVFCSPara::Release() {
    if (IntParFormat != nullptr) IntParFormat->Release();
    delete IntParFormat;
    Initial();
}

void OVFCSPara::InitialIntParFormat() {
    if (IntParFormat != nullptr) IntParFormat->Release();
    delete IntParFormat;
    IntParFormat = nullptr;
    IntParFormat = new OVFCSIntParFormat(ParCount);
}

}  // namespace Orvane
