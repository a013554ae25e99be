// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "service/api/Http.h"

#include <memory>
#include <string>

namespace dorvantel::service {

/// `{"response":[…]}`: the candidates without score and PDF.
std::unique_ptr<AnswerBody> listAnswer(std::unique_ptr<Rows> rows);

/// `{"sql":…,"result":[…]}`: the candidates with their score.
std::unique_ptr<AnswerBody> searchAnswer(std::string_view sql, std::unique_ptr<Rows> rows);

/// `{"status":"ok",…}`: the state of a service whose store answers.
std::string healthJSON(const StoreStatus& status);

/// `{"file":[…]}`: one number a byte.
std::unique_ptr<AnswerBody> fileAnswer(Store& store, std::int64_t version, std::size_t size);

} // namespace dorvantel::service
