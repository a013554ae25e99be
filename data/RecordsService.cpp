// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "data/RecordsService.h"

#include "platform/Fatal.h"

namespace dorvantel {

using namespace Qt::StringLiterals;

QString caseName(APIError error) {
    switch (error) {
    case APIError::responseProblem:
        return u"responseProblem"_s;
    case APIError::decodingProblem:
        return u"decodingProblem"_s;
    case APIError::encodingProblem:
        return u"encodingProblem"_s;
    }
    fatalError(u"an APIError that is none of the three"_s);
}

} // namespace dorvantel
