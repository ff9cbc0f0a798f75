#include "output.h"

#include <iostream>
#include <stdexcept>

#include "display.h"
#include "output_file.h"

namespace Host {

void WriteResult(const std::string& text, const std::string& path) {
    if (path.empty()) {
        std::cout << text << std::flush;
        if (!std::cout) throw std::runtime_error("standard output cannot be written");
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
