// The same work on many files: several at a time, results in the files' order, and one that is refused does
// not keep the others from their results.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "files/output.h"

namespace Host {

/// The result for one file, or why there is none.
template <class Result>
struct Outcome {
    std::optional<Result> result;
    std::string refusal;
};

/// Runs work(0) to work(count - 1) on up to `jobs` threads.
void RunParallel(std::size_t count, unsigned jobs, const std::function<void(std::size_t)>& work);

/// Runs `work` and returns why it failed, whatever was thrown: a refusal, memory that is short, a call that
/// the library refuses. Empty when it succeeded. Only OutputError, which is about no input, is passed on.
std::string RunGuarded(const std::function<void()>& work);

/// `work` for every index, as RunParallel and RunGuarded run it.
template <class Result>
std::vector<Outcome<Result>> Collect(std::size_t count, unsigned jobs,
                                     const std::function<Result(std::size_t)>& work) {
    std::vector<Outcome<Result>> outcomes(count);
    RunParallel(count, jobs, [&](std::size_t i) {
        outcomes[i].refusal = RunGuarded([&] { outcomes[i].result.emplace(work(i)); });
    });
    return outcomes;
}

/// Prints the refusals of the files at `paths` and returns the exit status: 0, or 1 when there is one.
template <class Result>
int PrintRefusals(const std::vector<std::string>& paths, const std::vector<Outcome<Result>>& outcomes) {
    int status = 0;
    for (std::size_t i = 0; i < outcomes.size(); ++i) {
        if (outcomes[i].refusal.empty()) continue;
        PrintRefusal(paths[i], outcomes[i].refusal);
        status = 1;
    }
    return status;
}

}  // namespace Host
