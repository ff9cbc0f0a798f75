#include "files/findings.h"

#include <utility>

#include "text/display.h"

namespace Host {

std::string Describe(const Fault& fault) {
    const std::string state = fault.value ? " is \"" + Excerpt(*fault.value) + "\"" : " is missing";
    return Printable(fault.where) + state + ", expected " + fault.expected;
}

void Refuse(std::string where, std::string_view value, std::string expected) {
    throw Refusal({std::move(where), std::string(value), std::move(expected)});
}

void RefuseMissing(std::string where, std::string expected) {
    throw Refusal({std::move(where), std::nullopt, std::move(expected)});
}

void Findings::Warn(const Fault& fault, std::string_view consequence) {
    if (strict_) throw Refusal(fault);
    warnings_.push_back(Describe(fault) + "; " + std::string(consequence));
}

}  // namespace Host
