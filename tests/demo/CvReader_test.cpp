// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "demo/CvReader.h"

#include "demo/CvName.h"
#include "demo/CvProfession.h"
#include "demo/CvSkills.h"
#include "demo/CvSummary.h"

#include "tests/support/Print.h"

#include <gmock/gmock.h>

namespace dorvantel {
namespace {

using namespace Qt::StringLiterals;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

QString nameOf(const QString& text) {
    return readCv(text).name;
}

TEST(CvName, IsTheFirstLineOfCapitalisedWords) {
    EXPECT_EQ(nameOf(u"Currículum Vitae\nMaría del Pilar Sáez Ortiz\nMadrid"_s), u"María del Pilar Sáez Ortiz"_s);
}

TEST(CvName, InCapitalsIsWrittenAsANameIs) {
    EXPECT_EQ(nameOf(u"JOSÉ DE LA FUENTE ARANDA\nINGENIERO CIVIL"_s), u"José de la Fuente Aranda"_s);
}

TEST(CvName, IsNeverAHeadingAPlaceOrAProfession) {
    EXPECT_EQ(nameOf(u"Datos Personales\nUniversidad Complutense\nIngeniera Civil\nSelene Tizón Ferro\nExperiencia"_s),
              u"Selene Tizón Ferro"_s);
}

TEST(CvName, MayBehindALabelStandAnywhere) {
    EXPECT_EQ(nameOf(u"Hoja de vida\nNombre: Zuleyma Xicoténcatl Rey\nCiudad Puebla"_s), u"Zuleyma Xicoténcatl Rey"_s);
}

TEST(CvName, SurnamesBeforeTheFirstNameAreTurned) {
    EXPECT_EQ(nameOf(u"Apellidos y nombre: López García Ana"_s), u"Ana López García"_s);
}

TEST(CvName, MayTakeTwoLines) {
    EXPECT_EQ(nameOf(u"LUCÍA\nFERRER CAMPOS\nDiseñadora"_s), u"Lucía Ferrer Campos"_s);
}

TEST(CvName, BesideItsHeadingInCapitalsIsFound) {
    EXPECT_EQ(nameOf(u"PERSONAL INFORMATION Betty Smith\nsmith@example.com"_s), u"Betty Smith"_s);
}

TEST(CvName, LosesTitlesAndDegrees) {
    EXPECT_EQ(nameOf(u"Dra. Elena Castaño Vidal PhD\nQuímica"_s), u"Elena Castaño Vidal"_s);
}

TEST(CvName, MayEndInASurnameThatIsACity) {
    EXPECT_EQ(nameOf(u"Luis Valencia Lima\nContable"_s), u"Luis Valencia Lima"_s);
}

TEST(CvName, ComesFromTheAddressWhenNoLineHoldsOne) {
    EXPECT_EQ(nameOf(u"contacto: lucia.ferrer@example.com\n600 555 101"_s), u"Lucía Ferrer"_s);
}

TEST(CvName, OfTheAddressIsNotInventedFromANickname) {
    EXPECT_EQ(nameOf(u"superman99@example.com\nEXPERIENCIA"_s), QString());
}

TEST(CvName, LikenessToTheAddressDecidesBetweenTwo) {
    EXPECT_EQ(nameOf(u"Bosque Animado Ediciones\nIria Souto Varela\niria.souto@example.com"_s), u"Iria Souto Varela"_s);
}

TEST(CvEmail, IsTheFirstAddressInLowerCase) {
    EXPECT_EQ(emailIn(u"Web www.ana.es Correo: Ana.Ruiz@Example.COM otra@example.com"_s), u"ana.ruiz@example.com"_s);
    EXPECT_EQ(emailIn(u"mailto:ana-ruiz@mail.example.com."_s), u"ana-ruiz@mail.example.com"_s);
    EXPECT_EQ(emailIn(u"@ana ana@ ana@casa"_s), QString());
}

TEST(CvProfession, IsTheTitleUnderTheName) {
    EXPECT_EQ(readCv(u"Carmen Ortega Villalba\nEnfermera de cuidados intensivos\nCórdoba"_s).profession,
              u"Enfermera de cuidados intensivos"_s);
}

TEST(CvProfession, InCapitalsIsWrittenAsATitleIs) {
    EXPECT_EQ(readCv(u"ANA RUIZ SANZ\nJEFA DE OBRA Y CONSULTORA SAP"_s).profession, u"Jefa de Obra y Consultora SAP"_s);
}

TEST(CvProfession, BehindALabelLosesTheLabel) {
    EXPECT_EQ(readCv(u"Ana Ruiz Sanz\nMadrid\nTel 600\nCorreo\nDNI\nPuesto solicitado: Contable"_s).profession,
              u"Contable"_s);
}

TEST(CvProfession, OfTheProfileIsInTheGenderOfTheCandidate) {
    EXPECT_EQ(readCv(u"Laura Gil Pons\nlaura@example.com\n\nPerfil\nI work as a nurse in Leeds"_s).profession,
              u"Enfermera"_s);
}

TEST(CvProfession, IsElseTheLatestJobWithoutItsEmployerAndDates) {
    EXPECT_EQ(readCv(u"John Doe\nExperience\nSoftware Engineer at Company X 2020-2023\nWaiter 2010"_s).profession,
              u"Software Engineer"_s);
}

TEST(CvProfession, AFieldOfStudyIsNoProfession) {
    EXPECT_EQ(
        readCv(u"Ana Ruiz Sanz\nana@example.com\nFormación\nLicenciatura en Química por la Universidad"_s).profession,
        QString());
}

TEST(CvProfession, AnUnknownTradeUnderTheNameIsTaken) {
    EXPECT_EQ(readCv(u"Utku Cikmaz\nDéveloppeur Full Stack\nHamburg Germany"_s).profession,
              u"Développeur Full Stack"_s);
}

TEST(CvSummary, IsTheProfileInWholeSentences) {
    const QString sentence = u"Contable con catorce años de experiencia en empresas de distribución."_s;
    EXPECT_EQ(summaryIn(CvText(u"Ana Ruiz\nPerfil\n"_s + sentence + u"\nExperiencia\nContable en Acme"_s)), sentence);
}

TEST(CvSummary, EndsWithASentenceWhenItIsLong) {
    const QString sentence = u"He trabajado para empresas de distribución en tres países y me gusta lo que hago. "_s;
    const QString summary = summaryIn(CvText(u"Perfil\n"_s + sentence.repeated(12)));
    EXPECT_LE(summary.size(), 480);
    EXPECT_TRUE(summary.endsWith(u'.'));
}

TEST(CvSummary, StopsBeforeAHeadingThatRanIntoTheLine) {
    EXPECT_EQ(summaryIn(CvText(
                  u"Ana Ruiz\nPerfil\nTrabajo con orden y disfruto mucho con los números de la casa. Experiencia\n"
                  "Contable 2019"_s)),
              u"Trabajo con orden y disfruto mucho con los números de la casa."_s);
}

TEST(CvSummary, IsComposedFromTheFactsWhenTheCvIsAllLists) {
    EXPECT_EQ(readCv(u"Ana Ruiz Sanz\nContable\nConocimientos\nSAP\nFacturación\nIdiomas\nEspañol\nInglés"_s).summary,
              u"Contable con conocimientos de SAP y Facturación. Idiomas: Español e Inglés."_s);
}

TEST(CvSkills, ComeInTheOrderOfTheTextEachOnce) {
    EXPECT_THAT(technicalSkillsIn(CvText(u"Photoshop, contabilidad, accounting y PHOTOSHOP"_s)),
                ElementsAre(u"Photoshop"_s, u"Contabilidad"_s));
}

TEST(CvSkills, WordsWithOtherMeaningsCountOnlyAmongSkills) {
    EXPECT_THAT(technicalSkillsIn(CvText(u"I go home every spring with the teams"_s)), IsEmpty());
    EXPECT_THAT(technicalSkillsIn(CvText(u"Habilidades técnicas\nGo Spring"_s)), ElementsAre(u"Go"_s, u"Spring"_s));
    EXPECT_THAT(technicalSkillsIn(CvText(u"Python Go R"_s)), ElementsAre(u"Python"_s, u"Go"_s, u"R"_s));
}

TEST(CvSkills, AnAddressHoldsNoSkill) {
    EXPECT_THAT(technicalSkillsIn(CvText(u"www.photoshop.com/python figma@example.com"_s)), IsEmpty());
}

TEST(CvSkills, PersonalSkillsAreFoundInBothLanguages) {
    EXPECT_THAT(softSkillsIn(CvText(u"Habilidades: trabajo en equipo, comunicación\nproblem solving"_s)),
                ElementsAre(u"Trabajo en equipo"_s, u"Comunicación"_s, u"Resolución de problemas"_s));
}

TEST(CvSkills, ADegreeInCommunicationIsNoPersonalSkill) {
    EXPECT_THAT(softSkillsIn(CvText(u"Licenciada en Comunicación por la Universidad Autónoma"_s)), IsEmpty());
}

TEST(CvLanguages, CountInTheirSectionOrBesideALevel) {
    EXPECT_THAT(languagesIn(CvText(u"Idiomas\nEspañol nativo\nInglés"_s)), ElementsAre(u"Español"_s, u"Inglés"_s));
    EXPECT_THAT(languagesIn(CvText(u"Nivel B2 de francés certificado"_s)), ElementsAre(u"Francés"_s));
    EXPECT_THAT(languagesIn(CvText(u"German native\nEnglish c1"_s)), ElementsAre(u"Alemán"_s, u"Inglés"_s));
}

TEST(CvLanguages, CuisineAndNationalityAreNone) {
    EXPECT_THAT(languagesIn(CvText(u"Cocinero de restaurante italiano\nnationality: English"_s)), IsEmpty());
}

TEST(CvLanguages, TheLanguageOfTheCvIsSpoken) {
    const QString prose = u"He trabajado en una empresa de la ciudad y me gusta lo que hago con los clientes. "_s;
    EXPECT_THAT(languagesIn(CvText(prose.repeated(8) + u"\nIdiomas\nInglés"_s)),
                ElementsAre(u"Español"_s, u"Inglés"_s));
}

TEST(CvReader, TextWithoutCommasBracketsAndPlusSignsIsReadAsWell) {
    const CvFacts facts =
        readCv(u"Marcos Ledesma Rivas\nJefe de cocina\nmarcos.ledesma@example.com  600555104  Getaria\n"
               "Habilidades\nCocina mediterránea  APPCC  Liderazgo\nIdiomas\nEuskera nativo"_s);
    EXPECT_EQ(facts.name, u"Marcos Ledesma Rivas"_s);
    EXPECT_EQ(facts.profession, u"Jefe de cocina"_s);
    EXPECT_EQ(facts.email, u"marcos.ledesma@example.com"_s);
    EXPECT_THAT(facts.techSkills, ElementsAre(u"Cocina mediterránea"_s, u"APPCC"_s));
    EXPECT_THAT(facts.softSkills, ElementsAre(u"Liderazgo"_s));
    EXPECT_THAT(facts.languages, ElementsAre(u"Euskera"_s));
}

TEST(CvReader, NothingComesOfNothing) {
    for (const QString& text : {QString(), u"\n\n  \n"_s, u"....::::"_s, u"12 34 56"_s, QString(QChar(0))}) {
        const CvFacts facts = readCv(text);
        EXPECT_EQ(facts.name, QString());
        EXPECT_EQ(facts.profession, QString());
        EXPECT_EQ(facts.summary, QString());
        EXPECT_THAT(facts.techSkills, IsEmpty());
        EXPECT_THAT(facts.languages, IsEmpty());
    }
}

TEST(CvReader, HostileTextIsReadWithoutHarm) {
    readCv(QString(QChar(0xd800)) + u" solo"_s + QChar(0xdc00));
    readCv(u"a@"_s.repeated(20'000));
    readCv(u"A"_s.repeated(300'000));
    readCv(u"Ana "_s.repeated(50'000));
    readCv(u"\u0301\u0301 Gestión\u0301 de\u200b proyectos \ufffe"_s);
}

} // namespace
} // namespace dorvantel
