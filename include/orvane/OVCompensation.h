// Spill-over compensation of event sections.
#pragma once

#include <vector>

#include <orvane/OVMatrix.h>
#include <orvane/Platform.h>
#include <orvane/Sections.h>

namespace Orvane {

/// Removes the spill-over between the channels of a compensation set.
///
/// A set of n channels is three arguments that run in parallel:
/// - `matrix`, at least n x n: row i makes output channel i, column j is the part of channel j in it;
/// - `baselines`, at least n values in data units;
/// - `channels`, n signal indices of the event sections, in any order. Empty: there is no such set.
///
/// With x the raw values of an event, b the baselines and M the matrix, channel i becomes
///
///     x_i * M_ii + (b_i - b_i * M_ii) - sum over j != i of (x_j - b_j) * M_ij
///
/// The differences are formed in float, everything else in double; the terms are subtracted one by one from
/// j = 0 on and the result is narrowed to float. Off-diagonal coefficients are subtracted: positive
/// spill-over fractions are meant. Those that are 0 or NaN are left out, so that an infinite or undefined
/// value spreads only into channels that it has a part in. Negative results stay.
///
/// Output sections must hold the columns of the set and room for the events of the input; their headers and
/// all other columns stay as they are. They may share columns with the input, or be the input, provided that
/// no row reads a column that an earlier row has written; a difference is read by the first row that needs
/// it. Rows are then worked off one after another, with the differences in columns of the pool: when it is
/// exhausted, OutOfMemoryException* is thrown and the rows so far are written. Nothing else is thrown or
/// checked.
class ORVANE_API IOVCompensation {
public:
    virtual ~IOVCompensation() = default;

    /// Applies set 1, then set 2, from every input section to the output section at the same position.
    virtual void CalcCompensation(std::vector<EventSection*>& outputs, std::vector<EventSection*>& inputs,
                                  const OVMatrix& matrix1, std::vector<float>& baselines1,
                                  std::vector<int>& channels1, const OVMatrix& matrix2,
                                  std::vector<float>& baselines2, std::vector<int>& channels2) = 0;

    /// The same for one pair of sections.
    virtual void CalcCompensation_Section(EventSection* output, EventSection* input, const OVMatrix& matrix1,
                                          std::vector<float>& baselines1, std::vector<int>& channels1,
                                          const OVMatrix& matrix2, std::vector<float>& baselines2,
                                          std::vector<int>& channels2) = 0;
};

/// The operations of IOVCompensation. An object holds nothing; make one wherever it is needed.
class ORVANE_API OVCompensation : public IOVCompensation {
public:
    void CalcCompensation(std::vector<EventSection*>& outputs, std::vector<EventSection*>& inputs,
                          const OVMatrix& matrix1, std::vector<float>& baselines1,
                          std::vector<int>& channels1, const OVMatrix& matrix2,
                          std::vector<float>& baselines2, std::vector<int>& channels2) override;
    void CalcCompensation_Section(EventSection* output, EventSection* input, const OVMatrix& matrix1,
                                  std::vector<float>& baselines1, std::vector<int>& channels1,
                                  const OVMatrix& matrix2, std::vector<float>& baselines2,
                                  std::vector<int>& channels2) override;

private:
    void CalcCompensationSection(EventSection* output, EventSection* input, const OVMatrix& matrix,
                                 std::vector<float>& baselines, std::vector<int>& channels) const;
};

}  // namespace Orvane
