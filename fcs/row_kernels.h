// Values of whole rows: flat runs of values as they stand in the raw bytes, at any address, converted without
// regard to which event they belong to. Raw values are in native order unless they are being reversed.
#pragma once

namespace Orvane {

/// Reverses the bytes of values of 2, 4 or 8 bytes.
void ReverseValues(const unsigned char* from, unsigned char* to, int valueBytes, int count);

/// Doubles, narrowed to the nearest float and widened from it.
void NarrowRow(const unsigned char* raw, float* values, int count);
void WidenRow(const float* values, unsigned char* raw, int count);

/// values[i] = word i * scales[i], formed in double. The float form is for scales that a float holds: the
/// product of 16 and 24 bits is exact in double, so that rounding it and rounding the float product are the
/// same.
void ScaleRow16(const unsigned char* raw, const float* scales, float* values, int count);
void ScaleRow16(const unsigned char* raw, const double* scales, float* values, int count);
void ScaleRow32(const unsigned char* raw, const double* scales, float* values, int count);

/// The low 16 bits of the 32-bit words that stand in place of the floats.
void StoreLowHalves(const float* words, unsigned char* raw, int count);

}  // namespace Orvane
