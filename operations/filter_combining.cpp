// Filter vectors combined position by position, and set as a whole.
#include <cstring>

#include <orvane/OVFilterSection.h>

namespace Orvane {

bool OVFilterSection::And(std::vector<FilterSection*>& dest, std::vector<FilterSection*>& other) {
    if (dest.size() != other.size()) return false;
    for (std::size_t i = 0; i < dest.size(); ++i) {
        dest[i]->And(*other[i]);
    }
    return true;
}

bool OVFilterSection::Or(std::vector<FilterSection*>& dest, std::vector<FilterSection*>& other) {
    if (dest.size() != other.size()) return false;
    for (std::size_t i = 0; i < dest.size(); ++i) {
        dest[i]->Or(*other[i]);
    }
    return true;
}

bool OVFilterSection::Copy(std::vector<FilterSection*>& dest, std::vector<FilterSection*>& source) {
    if (dest.size() != source.size()) return false;
    for (std::size_t i = 0; i < dest.size(); ++i) {
        dest[i]->BaseSection::Copy(*source[i]);
        dest[i]->TrueCount = source[i]->TrueCount;
        // Deliberate: whole bytes only. The bits of a last partial byte stay as they were.
        std::memmove(dest[i]->Flags, source[i]->Flags, static_cast<std::size_t>(source[i]->Count / 8));
    }
    return true;
}

bool OVFilterSection::SetAllTrue(std::vector<FilterSection*>& sections) {
    for (FilterSection* section : sections) {
        section->SetAll(true);
        section->TrueCount = section->Count;
    }
    return !sections.empty();
}

bool OVFilterSection::SetAllFalse(std::vector<FilterSection*>& sections) {
    for (FilterSection* section : sections) {
        section->SetAll(false);
        section->TrueCount = 0;
    }
    return !sections.empty();
}

}  // namespace Orvane
