// Where results go: standard output, or a file that appears whole or not at all.
#pragma once

#include <string>

namespace Host {

enum class Format { Table, Csv, Json };

/// Writes `text` to the file at `path`, or to standard output when `path` is empty. A regular file is written
/// aside and then renamed over the old one. Throws std::runtime_error when it cannot be written.
void WriteResult(const std::string& text, const std::string& path);

/// Says on standard error why the file at `path` is refused.
void PrintRefusal(const std::string& path, const std::string& refusal);

}  // namespace Host
