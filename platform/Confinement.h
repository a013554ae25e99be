// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <expected>
#include <string>

namespace dorvantel {

/// Locks this process in for the rest of its life, so that whoever takes it over with a hostile file has gained
/// nothing: from here on it computes, reads and writes what it has open, reads files, and starts threads. Every other
/// system call fails with EPERM, clone3 with ENOSYS (a seccomp filter that lists what is allowed): opening a file for
/// writing, creating, changing or removing one, any socket, another program, another process, and signals to others.
///
/// Where the kernel has Landlock, the files are those below /usr/share and /usr/local/share, where the fonts are;
/// reading any other fails with EACCES. Sizes and names of files can still be asked for.
///
/// Call it before there are threads; Landlock does not hold for those that run already. The error says, for people,
/// what could not be installed; the process must not touch the file then. In builds with sanitizers the checks at the
/// end of the process need more: processes, ptrace, pipes and all files that can be read are allowed there.
std::expected<void, std::string> confineThisProcess();

/// Whether the running kernel can keep a process from reading files (Landlock). Builds with sanitizers make no use of
/// it.
bool canConfineReading();

} // namespace dorvantel
