// The same work on the events of many files: all are opened first, so that the pool can be sized for the
// largest and progress is shown as a share of the whole.
#pragma once

#include "fcs_files/fcs_file.h"
#include "files/parallel.h"
#include "files/progress.h"

namespace Host {

/// A file whose description has been read and whose events have not.
struct OpenedFile {
    FcsFile file;
    Findings findings;
};

/// Opens the files at `paths`, on up to `jobs` threads.
std::vector<Outcome<OpenedFile>> OpenAll(const std::vector<std::string>& paths, unsigned jobs, bool strict);

/// Sizes the pool for those that could be opened and returns the number of their values.
std::uint64_t PreparePool(const std::vector<Outcome<OpenedFile>>& opened);

/// Opens the files at `paths` and gives each that can be opened to `work`, on up to `jobs` threads. A file
/// has a result unless it was refused, there or by `work`.
template <class Result>
std::vector<Outcome<Result>> CollectFromFiles(
    const std::vector<std::string>& paths, unsigned jobs, bool strict,
    const std::function<Result(std::size_t, OpenedFile&, Progress&)>& work) {
    std::vector<Outcome<OpenedFile>> opened = OpenAll(paths, jobs, strict);
    Progress progress(PreparePool(opened));
    std::vector<Outcome<Result>> outcomes(paths.size());
    RunParallel(paths.size(), jobs, [&](std::size_t i) {
        outcomes[i].refusal = opened[i].refusal;
        if (!opened[i].result) return;
        outcomes[i].refusal =
            RunGuarded([&] { outcomes[i].result.emplace(work(i, *opened[i].result, progress)); });
        opened[i].result.reset();  // many open files are more than the system allows
    });
    return outcomes;
}

}  // namespace Host
