#include "fcs_files/opened_files.h"

#include "fcs_files/sample.h"

namespace Host {

std::vector<Outcome<OpenedFile>> OpenAll(const std::vector<std::string>& paths, unsigned jobs, bool strict) {
    return Collect<OpenedFile>(paths.size(), jobs, [&](std::size_t i) {
        Findings findings(strict);
        FcsFile file = OpenFcsFile(paths[i], findings);
        return OpenedFile{std::move(file), std::move(findings)};
    });
}

std::uint64_t PreparePool(const std::vector<Outcome<OpenedFile>>& opened) {
    std::vector<const FcsFile*> files;
    std::uint64_t values = 0;
    for (const Outcome<OpenedFile>& outcome : opened) {
        if (!outcome.result) continue;
        files.push_back(&outcome.result->file);
        values += files.back()->data.events * files.back()->layout.parameters.size();
    }
    SizePool(files);
    return values;
}

}  // namespace Host
