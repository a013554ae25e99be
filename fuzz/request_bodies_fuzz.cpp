// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "fuzz/Fuzz.h"
#include "service/RequestBodies.h"

#include <nlohmann/json.hpp>

using namespace dorvantel::fuzz;
using namespace dorvantel::service;

/// The bodies of all routes: what is taken is JSON, and a record that is read and written is the same one.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string body(textOf(data, size));
    std::string once = body;
    if (const auto record = readInsertBody(once)) {
        require(nlohmann::json::accept(body), "a record is JSON");
        require(!record->email.empty(), "a record has a key");
        std::string again = recordJSON(*record);
        const auto second = readInsertBody(again);
        require(second && *second == *record, "a record reads back as it was");
    } else {
        require(!record.error().message.empty(), "a refusal says why");
    }
    once = body;
    require(!readSearchBody(once) || nlohmann::json::accept(body), "a search is JSON");
    once = body;
    if (const auto key = readKeyBody(once)) {
        require(nlohmann::json::parse(body) == nlohmann::json(*key), "a key is the string that it is");
    }
    return 0;
}
