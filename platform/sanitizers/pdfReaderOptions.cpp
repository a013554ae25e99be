// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT

// The sanitizers of clang ask another program for the names of functions, and the process that reads PDFs may start
// none: it would end in its last moment, at the check for leaks. So builds with a sanitizer, and no others, have it
// report addresses. What is left out by the name of a library is still left out.

extern "C" const char* __asan_default_options() { // NOLINT(bugprone-reserved-identifier): the sanitizer looks for it
    return "symbolize=0";
}

extern "C" const char* __tsan_default_options() { // NOLINT(bugprone-reserved-identifier): the same
    return "symbolize=0";
}
