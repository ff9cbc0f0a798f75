// Where results go: standard output, or a file that appears whole or not at all.
#pragma once

#include <string>

namespace Host {

enum class Format { Table, Csv, Json };

/// Standard streams that are closed stay without effect. Otherwise the next file to be opened would take
/// their place, and what is said to people would be written into it. To be called before anything is opened.
void HoldStandardStreams();

/// Writes `text` to the file at `path`, or to standard output when `path` is empty. A regular file is written
/// aside and then renamed over the old one. Throws OutputError.
void WriteResult(const std::string& text, const std::string& path);

/// Says on standard error why the file at `path` is refused.
void PrintRefusal(const std::string& path, const std::string& refusal);

}  // namespace Host
