// The membership that the host program writes: one line per event, one column per population.
#pragma once

#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace Orvane::Testing {

inline std::vector<std::string> SplitFields(const std::string& line) {
    std::vector<std::string> fields;
    std::istringstream stream(line);
    for (std::string field; std::getline(stream, field, ',');)
        fields.push_back(field);
    return fields;
}

/// For each population one character per event.
inline std::map<std::string, std::string> ReadMembership(const std::string& path) {
    std::ifstream stream(path);
    std::string line;
    std::getline(stream, line);
    const std::vector<std::string> names = SplitFields(line);
    std::map<std::string, std::string> members;
    while (std::getline(stream, line)) {
        const std::vector<std::string> fields = SplitFields(line);
        for (std::size_t i = 1; i < names.size(); ++i)
            members[names[i]] += fields.at(i);
    }
    return members;
}

}  // namespace Orvane::Testing
