// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <nlohmann/json.hpp>

#include <cstddef>
#include <string>

namespace dorvantel::test {

/// A body as a document, or as what is wrong with it.
class PlainDocument {
public:
    PlainDocument(const QByteArray& body) { // implicit: it is what every body is first
        // The library takes a NUL for the end of the text. JSON has none anywhere.
        if (!body.contains('\0')) {
            value = nlohmann::json::parse(body.begin(), body.end(), nullptr, false);
        }
        if (value.is_discarded()) {
            NumberWatch watch;
            nlohmann::json::sax_parse(body.begin(), body.end(), &watch);
            isTooLarge = watch.isTooLarge;
        }
    }

    bool isJson() const { return !value.is_discarded(); }

    nlohmann::json value = nlohmann::json::value_t::discarded;
    bool isTooLarge = false; ///< refused for a number that does not fit, so nobody knows whether the rest is right

private:
    /// Reads over a text and sees whether it is a number that the library refuses.
    struct NumberWatch : nlohmann::json_sax<nlohmann::json> {
        bool null() override { return true; }
        bool boolean(bool) override { return true; }
        bool number_integer(number_integer_t) override { return true; }
        bool number_unsigned(number_unsigned_t) override { return true; }
        bool number_float(number_float_t, const string_t&) override { return true; }
        bool string(string_t&) override { return true; }
        bool binary(binary_t&) override { return true; }
        bool start_object(std::size_t) override { return true; }
        bool key(string_t&) override { return true; }
        bool end_object() override { return true; }
        bool start_array(std::size_t) override { return true; }
        bool end_array() override { return true; }
        bool parse_error(std::size_t, const std::string&, const nlohmann::json::exception& error) override {
            isTooLarge = dynamic_cast<const nlohmann::json::out_of_range*>(&error) != nullptr;
            return false;
        }
        bool isTooLarge = false;
    };
};

} // namespace dorvantel::test
