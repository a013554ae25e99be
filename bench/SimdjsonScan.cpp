// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "bench/SimdjsonScan.h"

#include <simdjson.h>

namespace dorvantel::bench {

namespace {

namespace ondemand = simdjson::ondemand;

template <typename Value>
std::uint64_t scan(Value&& value) {
    std::uint64_t sum = 0;
    switch (ondemand::json_type(value.type())) {
    case ondemand::json_type::object:
        for (auto field : value.get_object()) {
            sum += std::string_view(field.unescaped_key()).size() + scan(field.value());
        }
        return sum;
    case ondemand::json_type::array:
        for (auto element : value.get_array()) {
            sum += scan(element);
        }
        return sum;
    case ondemand::json_type::string:
        return std::string_view(value.get_string()).size();
    case ondemand::json_type::number:
        return static_cast<std::uint64_t>(double(value.get_double()));
    default:
        return 1;
    }
}

} // namespace

std::uint64_t simdjsonScan(const QByteArray& body) {
    static ondemand::parser parser;
    const auto size = static_cast<std::size_t>(body.size());
    ondemand::document document = parser.iterate(body.constData(), size, static_cast<std::size_t>(body.capacity()));
    return scan(document);
}

std::vector<std::uint8_t> simdjsonFileBytes(const QByteArray& body) {
    static ondemand::parser parser;
    const auto size = static_cast<std::size_t>(body.size());
    ondemand::document document = parser.iterate(body.constData(), size, static_cast<std::size_t>(body.capacity()));
    std::vector<std::uint8_t> bytes;
    for (auto number : document["file"].get_array()) {
        bytes.push_back(static_cast<std::uint8_t>(std::uint64_t(number.get_uint64())));
    }
    return bytes;
}

qsizetype simdjsonPadding() {
    return simdjson::SIMDJSON_PADDING;
}

} // namespace dorvantel::bench
