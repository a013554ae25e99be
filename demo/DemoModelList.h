// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <nlohmann/json.hpp>

#include <string>
#include <string_view>

namespace dorvantel {

/// One of the two models that the stand-in offers. Their names and details say that they are none.
struct DemoModelEntry {
    std::string_view name;       ///< with its tag
    std::string_view capability; ///< "completion" or "embedding"
    bool makesVectors;

    nlohmann::ordered_json tag() const;  ///< its entry in the answer of /api/tags
    nlohmann::ordered_json show() const; ///< the answer of /api/show
};

/// By name, with or without ":latest", case ignored; null when there is none.
const DemoModelEntry* findDemoModel(std::string_view name);

/// The name with the tag it stands for: "demo" is "demo:latest".
std::string withTag(std::string_view name);

/// The answer of /api/tags.
nlohmann::ordered_json demoTags();

} // namespace dorvantel
