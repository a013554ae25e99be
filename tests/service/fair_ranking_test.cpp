// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/embedding/Embedding.h"
#include "service/ranking/VectorIndex.h"

#include <QRegularExpression>
#include <QString>

#include <algorithm>
#include <array>
#include <functional>
#include <random>

#include <gtest/gtest.h>

using namespace dorvantel::service;

namespace {

constexpr std::size_t people = 1'000;
constexpr std::size_t dimension = 64;

constexpr std::array femaleNames{"María", "Lucía", "Ana Belén", "Begoña", "Sofía", "María de los Ángeles", "Inés"};
constexpr std::array maleNames{"José", "Andrés", "Íñigo", "Juan Carlos", "Raúl", "Li", "Joan-Marc"};
constexpr std::array surnames{"García", "Núñez Peña",    "de la Fuente", "Ortega y Gasset", "O'Brien",
                              "Ibáñez", "Sánchez-Vidal", "Wei",          "von Humboldt",    "Martín López"};
constexpr std::array professions{"Contable", "Ingeniera de datos", "Enfermero", "Soldadora", "Docente de física"};
constexpr std::array skills{"Excel", "SAP", "Python", "Soldadura TIG", "Triaje", "Docencia", "SQL", "AutoCAD"};
constexpr std::array tasks{"lleva las cuentas de una cooperativa", "diseña almacenes de datos",
                           "coordina el turno de noche", "suelda depósitos a presión", "imparte clases en secundaria"};

/// Who somebody is, apart from what they can do.
struct Person {
    std::string name;
    std::string email;
    std::string gender;
};

/// What somebody can do, and a summary that says who they are.
struct Career {
    std::string profession;
    std::string task;
    std::size_t manner; ///< how the summary mentions them
    CVData cvData;
};

std::string upperCase(std::string text) {
    std::ranges::transform(text, text.begin(),
                           [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; });
    return text;
}

/// The words of a name without accents, as they are put together to one of an account.
std::string accountOf(const std::string& name, const std::string& between, bool isCapital) {
    QString plain = QString::fromStdString(name).normalized(QString::NormalizationForm_D);
    plain.removeIf([](QChar character) { return character.isMark(); });
    std::string account;
    for (QString word : plain.split(QRegularExpression(QStringLiteral("[^A-Za-z]+")))) {
        word = word.toLower();
        word[0] = isCapital ? word[0].toUpper() : word[0];
        account += (account.empty() ? "" : between) + word.toStdString();
    }
    return account;
}

std::string summaryOf(const Career& career, const Person& person) {
    const std::string& name = person.name;
    const bool isWoman = person.gender == "Femenino";
    const std::string handle = person.email.substr(0, person.email.find('@'));
    const std::array<std::string, 21> mentions{
        name + " " + career.task + ".",
        "Desde 2015 " + name + " (" + person.email + ") " + career.task + ". A " + name + " le gusta.",
        upperCase(name) + " " + career.task + ".",
        (isWoman ? "La Sra. " : "El Sr. ") + name + " " + career.task + ". Contacto: " + person.email,
        "El perfil de " + name + ", que " + career.task + ", es sólido.",
        (isWoman ? "Doña " : "Don ") + name + " " + career.task + "; véase https://red.example/" +
            person.email.substr(0, person.email.find('@')),
        "En red.example/" + person.email.substr(0, person.email.find('@')) + " dice que " + career.task + ".",
        "Sin nombre: " + career.task + ". Escribir a <" + upperCase(person.email) + ">.",
        "Se llama " + name + "\ny " + career.task + "\n" + person.email,
        (isWoman ? "La Dra. " : "El Dr. ") + name + " " + career.task + ".",
        "El equipo " + std::string(isWoman ? "de la Prof.ª " : "del Prof. ") + name + " " + career.task + ".",
        (isWoman ? "Profª. Dra. " : "Prof. Dr. ") + name + " " + career.task + ".",
        (isWoman ? "La licenciada " : "El licenciado ") + name + " (" + (isWoman ? "Ing.ª " : "Ing. ") + name + ") " +
            career.task + ".",
        (isWoman ? "Mrs. " : "Mr. ") + name + ", " + (isWoman ? "Ms " : "Mx ") + name + ": " + career.task + ".",
        (isWoman ? "La " : "El ") + name + " " + career.task + ", " + (isWoman ? "D.ª " : "D. ") + name + ".",
        "Con " + accountOf(name, "", false) + ".example, " + career.task + ".",
        "Con " + accountOf(name, "_", false) + " en la red, " + career.task + ".",
        "Con " + accountOf(name, ".", false) + " y " + accountOf(name, "-", false) + " en la red, " + career.task + ".",
        "Con " + accountOf(name, "", true) + "92 y @" + accountOf(name, "", true) + " en la red, " + career.task + ".",
        "Con " + accountOf(name, "", false) + " y " + accountOf(name, ".", true) + " en la red, " + career.task + ".",
        "Con " + upperCase(handle) + " y blog." + accountOf(name, "-", false) + ".example/cv, " + career.task + ".",
    };
    return mentions[career.manner % mentions.size()];
}

/// Stands in for a model: texts with the same words have near vectors, every byte counts.
std::vector<float> vectorOf(const std::string& text) {
    std::vector<double> vector(dimension);
    for (std::size_t i = 0; i + 3 <= text.size(); ++i) {
        std::mt19937_64 bits(std::hash<std::string>()(text.substr(i, 3)));
        for (double& number : vector) {
            number += static_cast<double>(bits() % 2'001) - 1'000;
        }
    }
    return *unitVector(vector);
}

class FairRankingTest : public testing::Test {
protected:
    FairRankingTest() {
        for (std::size_t i = 0; i < people; ++i) {
            const bool isWoman = i % 2 == 0;
            const std::string name = std::string(isWoman ? pick(femaleNames) : pick(maleNames)) + " " + pick(surnames);
            persons.push_back({name, emailOf(name, i), isWoman ? "Femenino" : "Masculino"});
            careers.push_back(
                {pick(professions), pick(tasks), random(), {"", {pick(skills)}, {pick(skills), pick(skills)}, {}}});
        }
    }

    template <typename List>
    const char* pick(const List& list) {
        return list[random() % list.size()];
    }
    static std::string emailOf(const std::string& name, std::size_t number) {
        QString local = QString::fromStdString(name).normalized(QString::NormalizationForm_D).toLower();
        local.removeIf([](QChar character) { return !character.isLetter(); });
        return local.toStdString() + std::to_string(number) + "@correo.example";
    }

    using Cast = std::function<const Person&(std::size_t)>;

    /// What the vector of a career is made of when it is that of `person`.
    std::string textOf(std::size_t career, const Person& person) const {
        Unembedded candidate{1,
                             person.name,
                             person.email,
                             careers[career].profession,
                             summaryOf(careers[career], person),
                             careers[career].cvData};
        candidate.cvData.gender = person.gender;
        candidate.cvData.languages = {person.gender == "Femenino" ? "Español" : "Inglés"};
        return embeddingText(candidate);
    }
    /// The vectors of all careers, each of them that of the person whom `cast` gives it.
    VectorIndex indexOf(const Cast& cast) const {
        VectorIndex index;
        for (std::size_t i = 0; i < people; ++i) {
            index.put(static_cast<std::int64_t>(i) + 1, vectorOf(textOf(i, cast(i))));
        }
        return index;
    }

    std::mt19937 random{8};
    std::vector<Person> persons;
    std::vector<Career> careers;
};

} // namespace

TEST_F(FairRankingTest, TextsAreTheSameWhoeverItIs) {
    for (std::size_t i = 0; i < people; ++i) {
        ASSERT_EQ(textOf(i, persons[i]), textOf(i, persons[i ^ 1U]))
            << persons[i].name << ", " << persons[i ^ 1U].name << ": " << summaryOf(careers[i], persons[i]);
    }
}

TEST_F(FairRankingTest, SwappedNamesEmailsAndGendersLeaveEveryRankingAsItWas) {
    const VectorIndex index = indexOf([this](std::size_t i) -> const Person& { return persons[i]; });
    // Neighbours, who are of different gender, change places; and everybody becomes somebody far away.
    const VectorIndex swapped = indexOf([this](std::size_t i) -> const Person& { return persons[i ^ 1U]; });
    const VectorIndex moved = indexOf([this](std::size_t i) -> const Person& { return persons[(i + 377) % people]; });
    for (std::size_t query = 0; query < 60; ++query) {
        const std::string asked = query % 3 == 0   ? persons[query].name
                                  : query % 3 == 1 ? std::string(pick(professions)) + " que " + pick(tasks)
                                                   : std::string(pick(skills));
        const auto ranking = index.best(vectorOf(asked), std::nullopt, people);
        ASSERT_EQ(ranking.size(), people);
        ASSERT_TRUE(swapped.best(vectorOf(asked), std::nullopt, people) == ranking) << asked;
        ASSERT_TRUE(moved.best(vectorOf(asked), std::nullopt, people) == ranking) << asked;
    }
}

TEST_F(FairRankingTest, CareersStillMoveTheRanking) {
    const VectorIndex index = indexOf([this](std::size_t i) -> const Person& { return persons[i]; });
    std::ranges::shuffle(careers, random);
    const VectorIndex shuffled = indexOf([this](std::size_t i) -> const Person& { return persons[i]; });
    const auto asked = vectorOf("Soldadora que suelda depósitos a presión");
    EXPECT_NE(index.best(asked, std::nullopt, people), shuffled.best(asked, std::nullopt, people));
}
