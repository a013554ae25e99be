// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "demo/Script.h"

#include <nlohmann/json.hpp>

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <array>

namespace dorvantel {

using namespace Qt::StringLiterals;

namespace {

using Json = nlohmann::ordered_json;

// What is wrong with a script; caught by `parse`, which puts the route in front.
struct ScriptMistake {
    QString text;
};

std::size_t wholeNumber(const Json& value, const std::string& key) {
    if (!value.is_number_unsigned()) {
        throw ScriptMistake{u"\"%1\" is not a whole number from 0"_s.arg(QString::fromStdString(key))};
    }
    return value.get<std::size_t>();
}

std::chrono::milliseconds milliseconds(const Json& value, const std::string& key) {
    return std::chrono::milliseconds(static_cast<std::int64_t>(wholeNumber(value, key)));
}

std::string text(const Json& value, const std::string& key) {
    if (!value.is_string()) {
        throw ScriptMistake{u"\"%1\" is not a text"_s.arg(QString::fromStdString(key))};
    }
    return value.get<std::string>();
}

int statusCode(const Json& value) {
    const std::size_t status = wholeNumber(value, "status");
    if (status < 200 || status > 599) {
        throw ScriptMistake{u"\"status\" is not between 200 and 599"_s};
    }
    return static_cast<int>(status);
}

std::string fileBytes(const Json& value, const QString& folder) {
    QFile file(QDir(folder).filePath(QString::fromStdString(text(value, "bodyFile"))));
    if (!file.open(QIODevice::ReadOnly)) {
        throw ScriptMistake{u"cannot read %1: %2"_s.arg(file.fileName(), file.errorString())};
    }
    return file.readAll().toStdString();
}

ScriptedStep::Way cutPlace(const Json& value) {
    if (value == "before") {
        return ScriptedStep::Way::Cut;
    }
    if (value == "inBody") {
        return ScriptedStep::Way::CutInBody;
    }
    throw ScriptMistake{u"\"cut\" is neither \"before\" nor \"inBody\""_s};
}

void setMember(ScriptedStep& step, const std::string& key, const Json& value, const QString& folder) {
    if (key == "delayMs") {
        step.delay = milliseconds(value, key);
    } else if (key == "status") {
        step.status = statusCode(value);
    } else if (key == "contentType") {
        step.contentType = text(value, key);
    } else if (key == "body") {
        step.body = value.is_string() ? value.get<std::string>() : value.dump();
    } else if (key == "bodyFile") {
        step.body = fileBytes(value, folder);
    } else if (key == "stall") {
        step.way = value == true ? ScriptedStep::Way::Stall : step.way;
    } else if (key == "cut") {
        step.way = cutPlace(value);
    } else if (key == "chunkBytes") {
        step.chunkBytes = wholeNumber(value, key);
    } else if (key == "chunkDelayMs") {
        step.chunkDelay = milliseconds(value, key);
    } else {
        throw ScriptMistake{u"\"%1\" is not known"_s.arg(QString::fromStdString(key))};
    }
}

ScriptedStep stepFrom(const Json& value, const QString& folder) {
    if (!value.is_object()) {
        throw ScriptMistake{u"a reply is not an object"_s};
    }
    ScriptedStep step;
    for (const auto& [key, member] : value.items()) {
        setMember(step, key, member, folder);
    }
    return step;
}

std::vector<ScriptedStep> stepsFrom(const Json& value, const QString& folder) {
    const Json list = value.is_array() ? value : Json::array({value});
    if (list.empty()) {
        throw ScriptMistake{u"the list of replies is empty"_s};
    }
    std::vector<ScriptedStep> steps;
    std::ranges::transform(list, std::back_inserter(steps),
                           [&folder](const Json& step) { return stepFrom(step, folder); });
    return steps;
}

bool isRoute(const std::string& name) {
    static constexpr std::array<std::string_view, 3> methods = {"GET /", "POST /", "DELETE /"};
    return std::ranges::any_of(methods, [&name](std::string_view method) { return name.starts_with(method); });
}

} // namespace

std::expected<Script, QString> Script::parse(const QByteArray& json, const QString& folder) {
    Json document;
    try {
        document = Json::parse(json.begin(), json.end());
    } catch (const Json::parse_error& error) {
        return std::unexpected(u"not JSON: %1"_s.arg(QString::fromUtf8(error.what())));
    }
    if (!document.is_object()) {
        return std::unexpected(u"not an object of routes"_s);
    }
    Script script;
    for (const auto& [route, value] : document.items()) {
        if (!isRoute(route)) {
            return std::unexpected(
                u"\"%1\" is no route such as \"POST /api/chat\""_s.arg(QString::fromStdString(route)));
        }
        try {
            script.m_routes[route].steps = stepsFrom(value, folder);
        } catch (const ScriptMistake& mistake) {
            return std::unexpected(u"%1: %2"_s.arg(QString::fromStdString(route), mistake.text));
        }
    }
    return script;
}

std::expected<Script, QString> Script::load(const QString& file) {
    QFile source(file);
    if (!source.open(QIODevice::ReadOnly)) {
        return std::unexpected(u"cannot read %1: %2"_s.arg(file, source.errorString()));
    }
    std::expected<Script, QString> script = parse(source.readAll(), QFileInfo(file).absolutePath());
    return script ? std::move(script) : std::unexpected(u"%1: %2"_s.arg(file, script.error()));
}

std::optional<ScriptedStep> Script::next(const std::string& method, const std::string& path) {
    const std::lock_guard lock(m_mutex);
    const auto route = m_routes.find(method + " " + path);
    if (route == m_routes.end()) {
        return std::nullopt;
    }
    RouteSteps& steps = route->second;
    const std::size_t index = std::min(steps.used++, steps.steps.size() - 1);
    return steps.steps[index];
}

} // namespace dorvantel
