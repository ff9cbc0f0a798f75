// How the DATA segment of an FCS file is laid out, as the host read it from the TEXT segment: the record that
// goes with every conversion, and its table for integer parameters.
//
// Both are plain records with shallow assignment: a copy shares the arrays, and exactly one of the copies may
// be released. Nothing is freed by destruction.
#pragma once

#include <orvane/Platform.h>

namespace Orvane {

/// Conversion of integer and ASCII values, one entry per parameter in five parallel arrays. The caller fills
/// them for the direction that it is about to run; reading and writing need different numbers.
struct ORVANE_API OVFCSIntParFormat {
    int Count = 0;               ///< parameters, the length of each array
    double* Scale = nullptr;     ///< reading: factor of the raw value, inside the exponent for a logarithmic
                                 ///< parameter; writing: factor of the value, after its logarithm if any
    bool* IsLog = nullptr;       ///< whether the parameter is stored logarithmically
    double* Offset = nullptr;    ///< reading: factor of the power of ten, the value of channel 0 (the second
                                 ///< number of $PnE); writing: a value below it is written as channel 0
    double* LogScale = nullptr;  ///< writing: factor of the value before its logarithm, the reciprocal of the
                                 ///< value of channel 0
    double* Range = nullptr;     ///< writing: $PnR, one more than the largest channel

    /// A table without arrays.
    OVFCSIntParFormat() = default;
    /// A table for `count` parameters, as Initial makes it.
    explicit OVFCSIntParFormat(int count);

    /// Frees what the table held and makes five arrays of `count` zeros. Throws std::bad_alloc, also for a
    /// negative count, and then holds nothing.
    void Initial(int count);
    /// Frees the five arrays and zeroes every field. Harmless on a table without arrays.
    void Release();
};

/// The layout of a DATA segment in list mode.
struct ORVANE_API OVFCSPara {
    int Mode = 0;       ///< 0: list mode; anything else is not converted
    int ParCount = 0;   ///< $PAR, the values of one event, and the length of the arrays of `IntParFormat`
    int ByteWidth = 0;  ///< bytes per stored value: 2 or 4 for integers, 4 for floats, 8 for doubles, the
                        ///< number of characters for ASCII
    int BitWidth = 0;   ///< $PnB of integers: 16 is 16-bit words, anything else (10, too) 32-bit words
    int DataType = 0;   ///< $DATATYPE: 1 integer (I), 2 float (F), 3 double (D), 4 ASCII (A)
    bool LittleEndian = false;  ///< whether the least significant byte of a value comes first ($BYTEORD)
    OVFCSIntParFormat* IntParFormat = nullptr;  ///< owned; needed for integers and ASCII, else may be null

    OVFCSPara() = default;

    /// Zeroes every field and forgets the table without freeing it, as a record that shares its table needs.
    void Initial();
    /// Frees the table and zeroes every field.
    void Release();
    /// Replaces the table by a new one of zeros for `ParCount` parameters. Throws std::bad_alloc, also for a
    /// negative count, and then there is no table.
    void InitialIntParFormat();
};

}  // namespace Orvane
