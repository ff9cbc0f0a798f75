#include "files/output.h"

#include <fcntl.h>
#include <unistd.h>

#include <iostream>

#include "files/output_file.h"
#include "text/display.h"

namespace Host {

/// Opened for reading only, so that writing still fails.
void HoldStandardStreams() {
    int descriptor = 0;
    while (descriptor >= 0 && descriptor <= STDERR_FILENO)
        descriptor = open("/dev/null", O_RDONLY);
    if (descriptor >= 0) close(descriptor);
}

void WriteResult(const std::string& text, const std::string& path) {
    if (path.empty()) {
        std::cout << text << std::flush;
        if (!std::cout) throw OutputError("standard output cannot be written");
        return;
    }
    OutputFile file(path);
    file.Write(text.data(), text.size());
    file.Commit();
}

void PrintRefusal(const std::string& path, const std::string& refusal) {
    std::cerr << "orvane: " << Printable(path) << ": " << refusal << '\n';
}

}  // namespace Host
