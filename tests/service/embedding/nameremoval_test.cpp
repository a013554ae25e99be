// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/embedding/NameRemoval.h"

#include <gtest/gtest.h>

using dorvantel::service::withoutNameAndEmail;

namespace {

/// Of a text about María García López, maria.garcia82@correo.example.
std::string kept(std::string_view text) {
    return withoutNameAndEmail(text, "María García López", "maria.garcia82@correo.example");
}

} // namespace

TEST(WithoutNameAndEmail, TextWithoutThemStaysAsItIs) {
    const std::string text = "  Contable con  diez años de experiencia.\n\nExcel, SAP: C++ (2019-2024) y O'Reilly 😀";
    EXPECT_EQ(kept(text), text);
    EXPECT_EQ(kept(""), "");
    EXPECT_EQ(withoutNameAndEmail(text, "", ""), text);
}

TEST(WithoutNameAndEmail, WholeNameGoes) {
    EXPECT_EQ(kept("María García López es contable."), "es contable.");
    EXPECT_EQ(kept("El perfil de María García López destaca."), "El perfil de destaca.");
    EXPECT_EQ(kept("Es contable María García López"), "Es contable ");
}

TEST(WithoutNameAndEmail, AnyCaseAndAnyAccentsAreTheName) {
    EXPECT_EQ(kept("MARÍA GARCÍA LÓPEZ es contable"), "es contable");
    EXPECT_EQ(kept("maria garcia lopez es contable"), "es contable");
    EXPECT_EQ(kept("Mari\u0301a Garcia es contable"), "es contable");
    EXPECT_EQ(withoutNameAndEmail("ANIBAL NUNEZ y Aníbal Núñez", "Aníbal Núñez", "a@b"), "y ");
}

TEST(WithoutNameAndEmail, PartOfTheNameGoesAsAWholeWord) {
    EXPECT_EQ(kept("A María le gusta. García lidera; López, también."), "A le gusta. lidera; , también.");
    EXPECT_EQ(kept("Mariano Garciaparra y Lopezuela"), "Mariano Garciaparra y Lopezuela");
}

TEST(WithoutNameAndEmail, OtherOrdersOfTheNameGo) {
    EXPECT_EQ(kept("García López, María: contable"), ", : contable");
    EXPECT_EQ(kept("GARCIA-LOPEZ es contable"), "es contable");
}

TEST(WithoutNameAndEmail, OrdinaryWordInLowerCaseStays) {
    const auto about = [](std::string_view text) { return withoutNameAndEmail(text, "Ana Torres Blanco", "a@b"); };
    EXPECT_EQ(about("Torres instala torres en blanco y negro"), "instala torres en blanco y negro");
    EXPECT_EQ(about("torres blanco es instaladora. Diez años."), "es instaladora. Diez años.");
}

TEST(WithoutNameAndEmail, TextWithoutCapitalsIsReadWithoutThem) {
    EXPECT_EQ(kept("a maría le gusta liderar"), "a le gusta liderar");
}

TEST(WithoutNameAndEmail, SmallWordsGoOnlyWithTheNameTheyBelongTo) {
    const auto about = [](std::string_view text) {
        return withoutNameAndEmail(text, "Juan Carlos de la Fuente y Ruiz", "x@y");
    };
    EXPECT_EQ(about("Juan Carlos de la Fuente y Ruiz trabaja"), "trabaja");
    EXPECT_EQ(about("De la Fuente trabaja"), "trabaja");
    EXPECT_EQ(about("responsable de la contabilidad y de La Rioja"), "responsable de la contabilidad y de La Rioja");
    EXPECT_EQ(about("el equipo de Fuente y de Ruiz"), "el equipo de y de ");
}

TEST(WithoutNameAndEmail, InitialsAndTitlesBeforeTheNameGoWithIt) {
    EXPECT_EQ(kept("M. García López trabaja"), "trabaja");
    EXPECT_EQ(kept("Trabaja con la Sra. García desde 2019"), "Trabaja con desde 2019");
    EXPECT_EQ(kept("Doña María y el señor García"), "y ");
    EXPECT_EQ(kept("D. M. García dirige. El Sr. Pérez no."), "dirige. El Sr. Pérez no.");
    EXPECT_EQ(withoutNameAndEmail("A Ana Gil le gusta", "Ana Gil", "x@y"), "A le gusta");
    EXPECT_EQ(kept("lenguaje C. García lo enseña"), "lenguaje C. lo enseña");
    EXPECT_EQ(withoutNameAndEmail("María José trabaja", "Mª José Gil", "x@y"), "trabaja");
}

TEST(WithoutNameAndEmail, LetterInLowerCaseBeforeTheNameIsNoInitial) {
    EXPECT_EQ(withoutNameAndEmail("Llevó el apartado a. Ana Gil lo cerró", "Ana Gil", "x@x.example"),
              "Llevó el apartado a. lo cerró");
}

TEST(WithoutNameAndEmail, SentenceThatEndsWithTheNameAndOneThatBeginsWithItStayTwo) {
    EXPECT_EQ(kept("Dirige García. María coordina."), "Dirige . coordina.");
}

TEST(WithoutNameAndEmail, EveryEmailAddressGoes) {
    EXPECT_EQ(kept("Contacto: Maria.Garcia82@Correo.example."), "Contacto: .");
    EXPECT_EQ(kept("(mgl@otro.example) o <mailto:maria.garcia82@correo.example>"), "() o <>");
    EXPECT_EQ(kept("arroba @ sola"), "arroba @ sola");
}

TEST(WithoutNameAndEmail, PartBeforeTheAtGoesWhereItIsMadeOfTheName) {
    EXPECT_EQ(kept("En la red: maria.garcia82, siempre"), "En la red: , siempre");
    EXPECT_EQ(withoutNameAndEmail("Usuaria MGarcia en la red", "Ana García", "mgarcia@x.example"), "Usuaria en la red");
    EXPECT_EQ(withoutNameAndEmail("Firma como agl82", "Ana García López", "agl82@x.example"), "Firma como ");
    EXPECT_EQ(withoutNameAndEmail("Experta en contabilidad", "Ana García", "contabilidad@x.example"),
              "Experta en contabilidad");
}

TEST(WithoutNameAndEmail, PartBeforeTheAtStaysInsideAnotherWord) {
    EXPECT_EQ(withoutNameAndEmail("Firma como agil", "Ana Gil", "agil@x.example"), "Firma como ");
    EXPECT_EQ(withoutNameAndEmail("Vidrio fragil, trato agilizado", "Ana Gil", "agil@x.example"),
              "Vidrio fragil, trato agilizado");
}

TEST(WithoutNameAndEmail, PartBeforeTheAtThatIsAWordOfTheNameIsTakenAsThatWord) {
    EXPECT_EQ(withoutNameAndEmail("Torres instala torres", "Ana Torres", "torres@x.example"), "instala torres");
}

TEST(WithoutNameAndEmail, WebAddressesGo) {
    EXPECT_EQ(kept("Véase https://red.example/in/mgl-82 y (www.museo.example), siempre"), "Véase y (), siempre");
}

TEST(WithoutNameAndEmail, WhatLooksLikeAnAddressGoesWhereItHoldsTheName) {
    EXPECT_EQ(kept("red.example/mariagarcia"), "");
    EXPECT_EQ(kept("red.example/in/maria-g y más"), "y más");
    EXPECT_EQ(kept("cuenta @GarciaLopez"), "cuenta ");
    EXPECT_EQ(kept("Node.js/React, CI/CD, @angular/core"), "Node.js/React, CI/CD, @angular/core");
}

TEST(WithoutNameAndEmail, AddressWithoutSchemeOrPathGoesWhereItHoldsTheName) {
    EXPECT_EQ(kept("Véase mariagarcia.com, siempre"), "Véase , siempre");
    EXPECT_EQ(kept("blog.garcia.example y MARIAGARCIA.EXAMPLE."), "y .");
    EXPECT_EQ(kept("lopez-consultora.example:8080 hoy"), "hoy");
    EXPECT_EQ(kept("Node.js, ASP.NET, 3.5 y S.L."), "Node.js, ASP.NET, 3.5 y S.L.");
}

TEST(WithoutNameAndEmail, AccountsMadeOfTheNameGo) {
    for (const char* const account :
         {"maria_garcia",     "maria.garcia", "Maria.Garcia", "garcia.maria", "m.garcia",           "m_garcia",
          "mgarcia",          "mgarcia92",    "MGarcia",      "mariagarcia",  "MariaGarcia",        "MaríaGarcía92",
          "mariagarcialopez", "garcia82",     "82garcia",     "garcia_dev",   "GarciaDev",          "devGarcia",
          "maria/garcia",     "maria·lopez",  "#MariaGarcia", "@maria",       "maria.garcia-lopez", "garcia1.maria2",
          "mglopez",          "maria_g",      "maria.g",      "la_maria"}) {
        EXPECT_EQ(kept("Su cuenta, " + std::string(account) + ", Excel"), "Su cuenta, , Excel") << account;
    }
}

TEST(WithoutNameAndEmail, AccountsOfNamesWithSmallWordsGo) {
    const auto about = [](std::string_view text) { return withoutNameAndEmail(text, "Juan de la Fuente", "x@y"); };
    for (const char* const account : {"juandelafuente", "jdelafuente", "delafuente", "juan_de_la_fuente", "juanfuente",
                                      "JuanDeLaFuente", "juan.delafuente"}) {
        EXPECT_EQ(about("Su cuenta, " + std::string(account) + ", Excel"), "Su cuenta, , Excel") << account;
    }
    EXPECT_EQ(about("de_la y dela"), "de_la y dela");
}

TEST(WithoutNameAndEmail, AccountsOfNamesInOtherLettersGo) {
    EXPECT_EQ(withoutNameAndEmail("Es li_wei, liwei.example, weili o li.wei", "Li Wei", "x@y"), "Es , , o ");
    EXPECT_EQ(withoutNameAndEmail("lukasz_żółć y ŁukaszŻółć", "Łukasz Żółć", "x@y"), "y ");
    EXPECT_EQ(withoutNameAndEmail("obrien92, brien.example", "O'Brien Vidal", "x@y"), ", ");
}

TEST(WithoutNameAndEmail, WordsThatOnlyLookLikeAccountsStay) {
    const std::string text = "JavaScript, snake_case, web3, C++17, e.g., TCP/IP, #Excel, mariachi, García2 no";
    EXPECT_EQ(withoutNameAndEmail(text, "Ana Ruiz", "x@y"), text);
    EXPECT_EQ(withoutNameAndEmail("semana, analista, anagrama, ana-torres", "Ana Torres", "x@y"),
              "semana, analista, anagrama, ");
    EXPECT_EQ(withoutNameAndEmail("analista", "Ana Li", "x@y"), "analista");
    EXPECT_EQ(withoutNameAndEmail("Dirige Torres.Después instala torres", "Ana Torres", "x@y"),
              "Dirige .Después instala torres");
}

TEST(WithoutNameAndEmail, NameInLowerCaseInAnotherOrderGoes) {
    EXPECT_EQ(kept("Dirige garcia lopez maria"), "Dirige ");
}

TEST(WithoutNameAndEmail, EveryTitleGoesWithItsArticle) {
    for (const char* const title : {"la Dra.",      "la Dra",
                                    "la dra.",      "la Dr.ª",
                                    "la Doctora",   "la Prof.ª",
                                    "la Profª",     "la Profª.",
                                    "la Profa.",    "la profesora",
                                    "la Lic.",      "la Licda.",
                                    "la Lic.ª",     "la licenciada",
                                    "la Ing.",      "la Arq.",
                                    "la ingeniera", "la Abg.",
                                    "la Mtra.",     "la Sra.",
                                    "la Sr.ª",      "la Srta.",
                                    "la señora",    "doña",
                                    "Dña.",         "D.ª",
                                    "Dª",           "el Dr.",
                                    "el Prof.",     "el Lic.",
                                    "el Ing.",      "el Arq.",
                                    "el Sr.",       "don",
                                    "D.",           "el Sr. D.",
                                    "la Sra. D.ª",  "la Prof.ª Dra.",
                                    "el Prof. Dr.", "Mr.",
                                    "Mr",           "Mrs.",
                                    "Ms.",          "Miss",
                                    "Mx.",          "Dr.",
                                    "Frau",         "Mme",
                                    "la",           "el"}) {
        EXPECT_EQ(kept("Dirige " + std::string(title) + " García con Excel"), "Dirige con Excel") << title;
        EXPECT_EQ(kept("Dirige " + std::string(title) + " M. García con Excel"), "Dirige con Excel") << title;
    }
}

TEST(WithoutNameAndEmail, ArticleInAPrepositionGoesAndThePrepositionStays) {
    EXPECT_EQ(kept("El equipo del Dr. García y el de la Dra. García"), "El equipo de y el de ");
    EXPECT_EQ(kept("Ayuda al Sr. García, a la Sra. García, al Sr. López."), "Ayuda a , a , a .");
}

TEST(WithoutNameAndEmail, TitlesBeforeAnAccountOrAnAddressGo) {
    EXPECT_EQ(kept("Dirige la Dra. MariaGarcia con Excel"), "Dirige con Excel");
    EXPECT_EQ(kept("Dirige la Sra. maria.garcia82 con Excel"), "Dirige con Excel");
    EXPECT_EQ(kept("Escribir al Sr. mgl@otro.example"), "Escribir a ");
    EXPECT_EQ(kept("Véase la https://red.example/x"), "Véase la ");
}

TEST(WithoutNameAndEmail, TitlesOfOthersStay) {
    EXPECT_EQ(kept("Ayuda a la Dra. Pérez. García opera."), "Ayuda a la Dra. Pérez. opera.");
    EXPECT_EQ(kept("Doctora en física y profesora"), "Doctora en física y profesora");
}

TEST(WithoutNameAndEmail, InitialsBehindTheNameGoWithIt) {
    EXPECT_EQ(kept("María G. dirige"), "dirige");
    EXPECT_EQ(kept("María G. L. dirige"), "dirige");
    EXPECT_EQ(kept("María C. dirige"), "C. dirige");
}

TEST(WithoutNameAndEmail, AbbreviatedMariaIsMaria) {
    EXPECT_EQ(kept("M.ª García y Mª López"), "y ");
}

TEST(WithoutNameAndEmail, HugeTextsTakeNoMoreThanTheirSize) {
    const std::string dots(1'000'000, '.');
    EXPECT_EQ(kept(dots), dots);
    EXPECT_EQ(kept(dots + "/@").size(), dots.size() + 2);
    std::string words;
    for (int i = 0; i < 100'000; ++i) {
        words += "Ana ";
    }
    EXPECT_EQ(withoutNameAndEmail(words, words, words), "");
    EXPECT_EQ(withoutNameAndEmail(words, "de la Ana", "x@y"), "");
    std::string smallWords;
    for (int i = 0; i < 100'000; ++i) {
        smallWords += "de la ";
    }
    EXPECT_EQ(withoutNameAndEmail(smallWords, "Ana " + smallWords, "x@y"), smallWords);
    std::string lower = "X ";
    for (int i = 0; i < 100'000; ++i) {
        lower += "ana de la ";
    }
    EXPECT_EQ(withoutNameAndEmail(lower, "Ana de la Ana", "x@y"), "X de la ");
}

TEST(WithoutNameAndEmail, NameWithoutLettersIsNoName) {
    EXPECT_EQ(withoutNameAndEmail("a\u0301 \u0301 . Ana", "\u0301 . \u0301", "\u0301@"), "a\u0301 \u0301 . Ana");
    EXPECT_EQ(withoutNameAndEmail("Ana \xff\xfe", "\xff", "\xff@\xff"), "Ana \uFFFD\uFFFD");
}

TEST(WithoutNameAndEmail, SameTextRemainsWhateverTheName) {
    const auto about = [](const std::string& name, const std::string& email) {
        const std::string first = name.substr(0, name.find(' '));
        return withoutNameAndEmail(name + " (" + email + ") es contable. " + first + " dirige con " + name + ".", name,
                                   email);
    };
    const std::string remaining = about("Ana Ruiz", "ana@x.example");
    EXPECT_EQ(remaining, "() es contable. dirige con .");
    EXPECT_EQ(about("Juan Carlos de la Fuente y Ruiz", "jcf@y.example"), remaining);
    EXPECT_EQ(about("O'Brien Sánchez-Vidal", "obrien.sv@z.example"), remaining);
    EXPECT_EQ(about("Łukasz Żółć", "lukasz@z.example"), remaining);
}
