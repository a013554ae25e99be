// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "ui/TokenObjects.h"

#include "platform/Fatal.h"

namespace dorvantel {

using namespace Qt::StringLiterals;

namespace {

bool isString(const QVariant& object) {
    return object.typeId() == QMetaType::QString;
}

} // namespace

TokenObjects tokenObjects(const QStringList& tokens) {
    return {tokens.begin(), tokens.end()};
}

std::optional<QStringList> allStrings(const TokenObjects& objects) {
    QStringList strings = stringsAmong(objects);
    if (strings.size() != objects.size()) {
        return std::nullopt;
    }
    return strings;
}

QStringList requiredStrings(const TokenObjects& objects) {
    std::optional<QStringList> strings = allStrings(objects);
    if (!strings) {
        fatalError(u"the value of a token field is not a list of strings"_s);
    }
    return *std::move(strings);
}

QStringList stringsAmong(const TokenObjects& objects) {
    QStringList strings;
    strings.reserve(objects.size());
    for (const QVariant& object : objects) {
        if (isString(object)) {
            strings.append(object.toString());
        }
    }
    return strings;
}

} // namespace dorvantel
