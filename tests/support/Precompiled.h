// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

/// What most tests include and none changes, read once per build with clang. Nothing of our own: a change of it would
/// compile all tests again.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QtCore>
#include <QtNetwork>
#include <QtTest>
#include <QtWidgets>

#include <nlohmann/json.hpp>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <future>
#include <map>
#include <memory>
#include <optional>
#include <ranges>
#include <string>
#include <thread>
#include <unordered_map>
#include <vector>
