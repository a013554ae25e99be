// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "service/api/Http.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace dorvantel::service {

/// `{"response":[…]}`: the candidates without score and PDF.
std::unique_ptr<AnswerBody> listAnswer(std::unique_ptr<Rows> rows);

/// `{"sql":…,"result":[…]}`: the candidates with their score.
std::unique_ptr<AnswerBody> searchAnswer(std::string_view sql, std::unique_ptr<Rows> rows);

/// `{"status":"ok",…}`: the state of a service whose store answers.
std::string healthJSON(const StoreStatus& status);

/// `{"file":[…]}`: one number a byte. `store`, which must outlive it, is asked for each piece while the answer is sent,
/// on whatever thread sends it; one that fails ends the answer in the middle.
std::unique_ptr<AnswerBody> fileAnswer(Store& store, std::int64_t version, std::size_t size);

} // namespace dorvantel::service
