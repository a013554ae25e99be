// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/http/RequestHead.h"

#include <gtest/gtest.h>

using namespace dorvantel::service;

namespace {

std::string headWith(const std::string& headers) {
    return "POST /curriculums HTTP/1.1\r\nHost: localhost\r\n" + headers + "\r\n";
}

int statusOf(const std::string& head) {
    const auto read = readRequestHead(head);
    return read ? 0 : read.error().status;
}

} // namespace

TEST(RequestHead, TellsWhereTheRequestEnds) {
    const std::string plain = headWith("");
    EXPECT_EQ(readRequestHead(plain)->size, plain.size());
    EXPECT_EQ(readRequestHead(plain)->bodyLength, 0U);
    EXPECT_FALSE(readRequestHead(plain)->isChunked);
    EXPECT_EQ(readRequestHead(headWith("content-LENGTH:\t12 \r\n"))->bodyLength, 12U);
    EXPECT_EQ(readRequestHead(headWith("Content-Length: 18446744073709551615\r\n"))->bodyLength, UINT64_MAX);
    EXPECT_TRUE(readRequestHead(headWith("Transfer-encoding: Chunked\r\n"))->isChunked);
}

TEST(RequestHead, LengthIsAPlainNumberOrRefused) {
    for (const char* const value : {"", "-1", "+1", "1 2", "0x10", "1,1", "12a", "18446744073709551616", "1.0"}) {
        EXPECT_EQ(statusOf(headWith("Content-Length: " + std::string(value) + "\r\n")), 400) << value;
    }
}

TEST(RequestHead, LengthIsSaidOnce) {
    EXPECT_EQ(statusOf(headWith("Content-Length: 1\r\nContent-Length: 1\r\n")), 400);
    EXPECT_EQ(statusOf(headWith("Content-Length: 1\r\nTransfer-Encoding: chunked\r\n")), 400);
    EXPECT_EQ(statusOf(headWith("Transfer-Encoding: chunked\r\nContent-Length: 1\r\n")), 400);
    EXPECT_EQ(statusOf(headWith("Transfer-Encoding: chunked\r\nTransfer-Encoding: chunked\r\n")), 400);
}

TEST(RequestHead, OnlyChunksAreATransferEncoding) {
    for (const char* const value : {"", "gzip", "gzip, chunked", "chunked, chunked", "identity", "xchunked"}) {
        EXPECT_EQ(statusOf(headWith("Transfer-Encoding: " + std::string(value) + "\r\n")), 400) << value;
    }
}

TEST(RequestHead, HeaderThatIsNoneIsRefused) {
    for (const std::string header :
         {"no colon", ": no name", "space : x", " folded", "\tfolded", "na\"me: x", "Content-Length : 5"}) {
        EXPECT_EQ(statusOf(headWith(header + "\r\n")), 400) << header;
    }
}

TEST(RequestHead, RequestLineHasThreePartsAndAKnownVersion) {
    for (const char* const line :
         {"", "GET", "GET /", "GET  HTTP/1.1", "GET / HTTP/2.0", "GET / HTTP/1.1 ", " GET / HTTP/1.1",
          "GET / / HTTP/1.1", "G\"T / HTTP/1.1", "GET / http/1.1", "GET\t/\tHTTP/1.1", "{\"name\":\"x\"}"}) {
        EXPECT_EQ(statusOf(std::string(line) + "\r\n\r\n"), 400) << line;
    }
    EXPECT_EQ(statusOf("GET / HTTP/1.0\r\n\r\n"), 0);
}

TEST(RequestHead, BareLineEndsAndControlCharactersAreRefused) {
    for (const std::string& header : {std::string("A: b\nContent-Length: 5"), std::string("A: b\rc"),
                                      std::string("A: b\0c", 6), std::string("A: \x01")}) {
        EXPECT_EQ(statusOf(headWith(header + "\r\n")), 400) << header;
    }
    EXPECT_EQ(statusOf(std::string("GET /") + '\0' + " HTTP/1.1\r\n\r\n"), 400);
    EXPECT_EQ(statusOf(headWith("A: tab\tand \xc3\xb1\r\n")), 0);
}

TEST(RequestHead, HeadersAreCounted) {
    std::string headers;
    for (std::size_t i = 1; i < maxHeaderLines; ++i) {
        headers += "A: b\r\n";
    }
    EXPECT_EQ(statusOf(headWith(headers)), 0);
    EXPECT_EQ(statusOf(headWith(headers + "A: b\r\n")), 431);
}

TEST(RequestHead, LinesAndTheWholeHaveALimit) {
    const std::string line = "A: " + std::string(maxRequestLine - 3, 'x') + "\r\n";
    EXPECT_EQ(statusOf(headWith(line)), 0);
    EXPECT_EQ(statusOf(headWith("x" + line)), 431);
    EXPECT_EQ(statusOf(headWith(line + line + line + line)), 431);
    const auto get = [](std::size_t size) { return "GET /" + std::string(size - 14, 'x') + " HTTP/1.1\r\n\r\n"; };
    EXPECT_EQ(statusOf(get(maxRequestLine)), 0);
    EXPECT_EQ(statusOf(get(maxRequestLine + 1)), 414);
    EXPECT_EQ(statusOf(get(maxRequestHead + 1)), 414);
}

TEST(RequestHead, HeadWithoutAnEndIsBlamedOnWhatIsTooLong) {
    EXPECT_EQ(endlessHead("GET /" + std::string(40'000, 'x')).status, 414);
    EXPECT_EQ(endlessHead("GET / HTTP/1.1\r\n" + std::string(40'000, 'x')).status, 431);
}
