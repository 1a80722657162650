// Reading the fields of a scenario file's objects.
#pragma once

#include <nlohmann/json.hpp>

#include <algorithm>
#include <stdexcept>
#include <string>
#include <vector>

namespace doccam::virtualcam {

using Json = nlohmann::json;

inline void refuseUnknownFields(const Json& object, const std::vector<std::string>& known) {
    if (!object.is_object()) {
        throw std::runtime_error("expected an object, found " + object.dump());
    }
    for (const auto& [name, value] : object.items()) {
        if (std::find(known.begin(), known.end(), name) == known.end()) {
            throw std::runtime_error("unknown field \"" + name + "\"");
        }
    }
}

// Leaves value as it is if the field is missing or null.
template <typename Value>
void read(const Json& object, const char* name, Value& value) {
    if (object.contains(name) && !object.at(name).is_null()) {
        value = object.at(name).get<Value>();
    }
}

// A number that must lie between the bounds.
inline void readWithin(const Json& object, const char* name, double& value, double low,
                       double high) {
    read(object, name, value);
    if (!(value >= low && value <= high)) {
        throw std::runtime_error(std::string("impossible ") + name);
    }
}

} // namespace doccam::virtualcam
