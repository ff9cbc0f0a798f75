// The command line of the program as text that can be given to a shell again.
#pragma once

#include <string>
#include <vector>

namespace Host {

/// `orvane` and `arguments`, quoted where a POSIX shell needs it; bytes that cannot be shown as they are
/// stand in the $'...' form.
std::string QuoteCommandLine(const std::vector<std::string>& arguments);

}  // namespace Host
