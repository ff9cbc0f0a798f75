// Compensation: from a spill-over matrix to the events without what the channels take from each other.
#pragma once

#include <string>
#include <vector>

#include <orvane/OVMatrix.h>
#include <orvane/Sections.h>

#include "fcs_files/fcs_spillover.h"

namespace Host {

/// A matrix of spill-over made ready for the columns of a sample: compensated = measured x inverse.
class Compensation {
public:
    /// Changes nothing.
    Compensation() = default;

    /// `coefficients`, row by row, are what one unit of channel i gives in each channel, and `channels` their
    /// columns. Throws Refusal, naming `where`, when the matrix cannot be inverted or a channel stands twice.
    Compensation(const std::string& where, const std::vector<double>& coefficients,
                 const std::vector<std::size_t>& channels);

    bool ChangesNothing() const { return channels_.empty(); }

private:
    friend class CompensatedEvents;

    /// Of the channels that change or that another one needs: the matrix as the library takes it, diagonal
    /// added, the rest subtracted.
    Orvane::OVMatrix matrix_;
    std::vector<int> channels_;
    std::vector<int> unchanged_;  ///< those of them that are only needed
};

/// The compensated twin of some raw events, which must outlive it. Columns that do not change are shared.
class CompensatedEvents {
public:
    CompensatedEvents(std::vector<Orvane::EventSection*>& raw, const Compensation& compensation);
    CompensatedEvents(const CompensatedEvents&) = delete;
    CompensatedEvents& operator=(const CompensatedEvents&) = delete;
    ~CompensatedEvents();

    std::vector<Orvane::EventSection*>& Sections() { return sections_; }

private:
    void Fill(const Compensation& compensation);
    void Release();

    std::vector<Orvane::EventSection*>& raw_;
    std::vector<Orvane::EventSection*> sections_;
};

/// Which matrix stands for that of a file.
struct CompensationChoice {
    enum class Source {
        FileIfUsable,  ///< that of the file; without one, or with one that cannot be used, none
        File,          ///< that of the file, which must have one
        Given,         ///< `matrix`
        None,
    };
    Source source = Source::FileIfUsable;
    Spillover matrix{};
};

/// What `--compensate` says: none, file or the path of a CSV file, which is read; empty for nothing. Throws
/// Refusal.
CompensationChoice ReadCompensationChoice(const std::string& text);

/// The matrix chosen for a file whose own is `ofFile`; null for none.
const Spillover* ChosenMatrix(const CompensationChoice& choice, const std::optional<Spillover>& ofFile);

/// The compensation of a file with these parameters and this matrix of its own. Throws Refusal when the
/// chosen matrix cannot be used, but only warns of one that nobody asked for.
Compensation ChooseCompensation(const CompensationChoice& choice, const std::optional<Spillover>& ofFile,
                                const EventLayout& layout, Findings& findings);

}  // namespace Host
