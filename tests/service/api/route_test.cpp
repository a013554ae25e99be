// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/api/RecordsApi.h"

#include <gtest/gtest.h>

using namespace dorvantel::service;

namespace {

void expectOperation(const char* method, const char* target, Operation operation, const std::string& key = "") {
    const auto routed = route(method, target);
    ASSERT_TRUE(routed) << method << " " << target;
    EXPECT_EQ(routed->operation, operation) << method << " " << target;
    EXPECT_EQ(routed->key, key) << method << " " << target;
}

void expectRefusal(const char* method, const char* target, int status, const std::string& allow = "") {
    const auto routed = route(method, target);
    ASSERT_FALSE(routed) << method << " " << target;
    EXPECT_EQ(routed.error().status, status) << method << " " << target;
    EXPECT_EQ(routed.error().allow, allow) << method << " " << target;
    EXPECT_TRUE(routed.error().body.starts_with("{\"error\":\"")) << routed.error().body;
}

} // namespace

TEST(Route, FiveOperationsAndTheHealth) {
    expectOperation("GET", "/health", Operation::Health);
    expectOperation("GET", "/curriculums", Operation::List);
    expectOperation("POST", "/curriculums", Operation::Insert);
    expectOperation("POST", "/curriculums/search", Operation::Search);
    expectOperation("GET", "/curriculums/ana@example.com/file", Operation::FetchPDF, "ana@example.com");
    expectOperation("DELETE", "/curriculums/ana@example.com", Operation::Delete, "ana@example.com");
}

TEST(Route, KeysArePercentDecoded) {
    expectOperation("GET", "/curriculums/a%20%C3%B1%2Fb+%40x/file", Operation::FetchPDF, "a ñ/b+@x");
    expectOperation("DELETE", "/curriculums/%e2%82%ac", Operation::Delete, "€");
}

TEST(Route, WhatIsNoPercentCodeStaysAsItIs) {
    expectOperation("GET", "/curriculums/100%/file", Operation::FetchPDF, "100%");
    expectOperation("GET", "/curriculums/%zz%4/file", Operation::FetchPDF, "%zz%4");
}

TEST(Route, KeysMayHoldSlashes) {
    expectOperation("GET", "/curriculums/a/b@x/file", Operation::FetchPDF, "a/b@x");
    expectOperation("GET", "/curriculums/a/file/file", Operation::FetchPDF, "a/file");
    expectOperation("DELETE", "/curriculums/a/file", Operation::Delete, "a/file");
    expectOperation("DELETE", "/curriculums/search", Operation::Delete, "search");
}

TEST(Route, QueryDoesNotCount) {
    expectOperation("GET", "/curriculums?x=1", Operation::List);
    expectOperation("DELETE", "/curriculums/a?b@x", Operation::Delete, "a");
}

TEST(Route, WrongMethodNamesTheRightOnes) {
    expectRefusal("PUT", "/curriculums", 405, "GET, POST");
    expectRefusal("DELETE", "/curriculums", 405, "GET, POST");
    expectRefusal("OPTIONS", "/curriculums", 405, "GET, POST");
    expectRefusal("GET", "/curriculums/search", 405, "POST, DELETE");
    expectRefusal("POST", "/curriculums/a/file", 405, "GET, DELETE");
    expectRefusal("GET", "/curriculums/a", 405, "DELETE");
    expectRefusal("GET", "/curriculums/", 405, "DELETE");
}

TEST(Route, OtherAddressesAreNotFound) {
    for (const char* const target :
         {"/", "", "/curriculumsx", "/Curriculums", "/favicon.ico", "//curriculums", "*", "/health/"}) {
        expectRefusal("GET", target, 404);
        expectRefusal("DELETE", target, 404);
    }
}
