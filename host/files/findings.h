// What is wrong with a file: a fault that ends its reading (Refusal), or one that its results can be given
// with (a warning). Both name the place, the offending value and what was expected there; the file's name is
// added where they are printed.
#pragma once

#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Host {

/// One thing that is not as it should be.
struct Fault {
    std::string where;                 ///< the keyword, or the field of HEADER
    std::optional<std::string> value;  ///< the bytes that stand there; none when it is missing
    std::string expected;
};

/// `where is "value", expected ...` for people, control characters shown as escapes and long values cut.
std::string Describe(const Fault& fault);

/// A file that cannot be used.
class Refusal : public std::runtime_error {
public:
    explicit Refusal(Fault fault) : std::runtime_error(Describe(fault)), fault_(std::move(fault)) {}

    /// What it is about.
    const Fault& Cause() const { return fault_; }

private:
    Fault fault_;
};

[[noreturn]] void Refuse(std::string where, std::string_view value, std::string expected);
[[noreturn]] void RefuseMissing(std::string where, std::string expected);

/// The warnings of one file, in the order in which they were found. When strict, the first one is a refusal.
class Findings {
public:
    explicit Findings(bool strict) : strict_(strict) {}

    /// Notes `fault` and what was done about it.
    void Warn(const Fault& fault, std::string_view consequence);

    const std::vector<std::string>& Warnings() const { return warnings_; }

private:
    bool strict_;
    std::vector<std::string> warnings_;
};

}  // namespace Host
