// Composite gates: dest = or |= or &= ([not] real [and parent]), in one scratch section of bits.
#include <cstring>

#include <orvane/OVFilterSection.h>

#include "memory/pooled.h"

namespace Orvane {
namespace {

enum class Take { Real, NotReal };
enum class Into { Copy, Or, And };

void Combine(Into into, FilterSection& dest, FilterSection& bits) {
    switch (into) {
        case Into::Copy:
            std::memcpy(dest.Flags, bits.Flags, static_cast<std::size_t>(bits.Capacity / 8));
            return;
        case Into::Or:
            return dest.Or(bits);
        case Into::And:
            return dest.And(bits);
    }
}

/// `parent` is null for the forms without one.
bool Compose(Into into, std::vector<FilterSection*>& dest, Take take, std::vector<FilterSection*>& real,
             std::vector<FilterSection*>* parent) {
    if (dest.size() != real.size() || (parent != nullptr && dest.size() != parent->size())) return false;
    if (dest.empty()) return true;
    const PooledBits bits;
    FilterSection scratch;
    scratch.Flags = reinterpret_cast<std::uint32_t*>(bits.Get());
    for (std::size_t i = 0; i < dest.size(); ++i) {
        scratch.Copy(*real[i]);
        if (take == Take::NotReal) scratch.Not();
        if (parent != nullptr) scratch.And(*(*parent)[i]);
        Combine(into, *dest[i], scratch);
    }
    return true;
}

}  // namespace

bool OVFilterSection::Composite_Comp_Copy_RealAndParent(std::vector<FilterSection*>& dest,
                                                        std::vector<FilterSection*>& real,
                                                        std::vector<FilterSection*>& parent) {
    return Compose(Into::Copy, dest, Take::Real, real, &parent);
}

bool OVFilterSection::Composite_Comp_Copy_NotRealAndParent(std::vector<FilterSection*>& dest,
                                                           std::vector<FilterSection*>& real,
                                                           std::vector<FilterSection*>& parent) {
    return Compose(Into::Copy, dest, Take::NotReal, real, &parent);
}

bool OVFilterSection::Composite_Comp_Copy_NotReal(std::vector<FilterSection*>& dest,
                                                  std::vector<FilterSection*>& real) {
    return Compose(Into::Copy, dest, Take::NotReal, real, nullptr);
}

bool OVFilterSection::Composite_Comp_Or_RealAndParent(std::vector<FilterSection*>& dest,
                                                      std::vector<FilterSection*>& real,
                                                      std::vector<FilterSection*>& parent) {
    return Compose(Into::Or, dest, Take::Real, real, &parent);
}

bool OVFilterSection::Composite_Comp_Or_NotRealAndParent(std::vector<FilterSection*>& dest,
                                                         std::vector<FilterSection*>& real,
                                                         std::vector<FilterSection*>& parent) {
    return Compose(Into::Or, dest, Take::NotReal, real, &parent);
}

bool OVFilterSection::Composite_Comp_And_NotRealAndParent(std::vector<FilterSection*>& dest,
                                                          std::vector<FilterSection*>& real,
                                                          std::vector<FilterSection*>& parent) {
    return Compose(Into::And, dest, Take::NotReal, real, &parent);
}

bool OVFilterSection::Composite_Comp_Or_NotReal(std::vector<FilterSection*>& dest,
                                                std::vector<FilterSection*>& real) {
    return Compose(Into::Or, dest, Take::NotReal, real, nullptr);
}

bool OVFilterSection::Composite_Comp_And_NotReal(std::vector<FilterSection*>& dest,
                                                 std::vector<FilterSection*>& real) {
    return Compose(Into::And, dest, Take::NotReal, real, nullptr);
}

}  // namespace Orvane
