// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "bench/SampleBodies.h"

#include <array>
#include <random>
#include <string>

namespace dorvantel::bench {

namespace {

constexpr std::array words = {
    "experiencia",  "gestión",   "equipos",  "de",        "la",        "dirección", "administración", "y",
    "desarrollo",   "años",      "con",      "clientes",  "en",        "empresa",   "análisis",       "una",
    "responsable",  "del",       "diseño",   "proyectos", "formación", "que",       "técnica",        "los",
    "industriales", "logística", "compañía", "para",      "selección", "informes",  "planificación",  "el",
};
constexpr std::array names = {"María", "José", "Lucía", "Íñigo", "Begoña", "Andrés", "Sofía", "Raúl"};
constexpr std::array surnames = {"García", "Núñez", "Ortega", "Ibáñez", "Peña", "Martín", "López", "Vidal"};

class BodyWriter {
public:
    explicit BodyWriter(const BodyShape& shape)
        : m_shape(shape) {
        const qsizetype perRecord = 1'700 + 4 * static_cast<qsizetype>(shape.pdfBytes);
        m_out.reserve(shape.records * perRecord);
    }

    QByteArray write(const char* head, bool withScore) {
        m_out += head;
        for (int i = 0; i < m_shape.records; ++i) {
            m_out += i == 0 ? "" : ",";
            record(i, withScore);
        }
        m_out += "]}";
        return std::move(m_out);
    }

    QByteArray writeFile() {
        m_out += '{';
        bytes();
        m_out += '}';
        return std::move(m_out);
    }

private:
    template <typename List>
    const char* one(const List& list) {
        return list[m_random() % list.size()];
    }

    void text(int length) {
        for (const qsizetype end = m_out.size() + length; m_out.size() < end;) {
            m_out += one(words);
            m_out += ' ';
        }
    }

    /// Below `limit`; small numbers come far more often, as a few skills stand in most CVs and most skills in few.
    unsigned skewed(int limit) {
        const double part = static_cast<double>(m_random() % 65'536) / 65'536;
        return static_cast<unsigned>(limit * part * part * part);
    }

    void values(const char* key, const char* prefix, int distinct, int count) {
        m_out += key;
        for (int i = 0; i < count; ++i) {
            m_out += i == 0 ? "\"" : ",\"";
            m_out += prefix;
            m_out += std::to_string(skewed(distinct)).c_str();
            m_out += '"';
        }
        m_out += ']';
    }

    void record(int index, bool withScore) {
        m_out += "{\"name\":\"";
        m_out += QByteArray(one(names)) + ' ' + one(surnames) + ' ' + one(surnames);
        m_out += "\",\"profession\":\"Técnica de ";
        m_out += QByteArray(one(words)) + ' ' + one(words);
        m_out += "\",\"email\":\"candidata." + QByteArray::number(index) + "@example.com\",\"summarizedText\":\"";
        text(450);
        m_out += R"(","invitationMail":"Estimada candidata:\n\n)";
        for (int paragraph = 0; paragraph < 4; ++paragraph) {
            text(150);
            m_out += R"(\n\n)";
        }
        m_out += R"(Un cordial saludo.","jsonCVData":{"gender":"Femenino",)";
        values("\"softSkills\":[", "Capacidad número ", 300, 6);
        values(",\"techSkills\":[", "Técnica ", 2'000, 10);
        values(",\"languages\":[", "Idioma ", 40, 3);
        m_out += '}';
        if (withScore) {
            m_out += ",\"score\":" + QByteArray::number(static_cast<double>(m_random() % 10'000) / 100);
        }
        if (m_shape.pdfBytes > 0) {
            m_out += ',';
            bytes();
        }
        m_out += '}';
    }

    void bytes() {
        m_out += "\"file\":[";
        for (int i = 0; i < m_shape.pdfBytes; ++i) {
            m_out += i == 0 ? "" : ",";
            m_out += std::to_string(m_random() % 256).c_str();
        }
        m_out += ']';
    }

    BodyShape m_shape;
    QByteArray m_out;
    std::minstd_rand m_random{20'260'101};
};

} // namespace

QByteArray listBody(const BodyShape& shape) {
    return BodyWriter(shape).write("{\"response\":[", false);
}

QByteArray searchBody(const BodyShape& shape) {
    return BodyWriter(shape).write("{\"sql\":\"SELECT name FROM curriculums\",\"result\":[", true);
}

QByteArray fileBody(int pdfBytes) {
    return BodyWriter({.records = 0, .pdfBytes = pdfBytes}).writeFile();
}

} // namespace dorvantel::bench
