// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "demo/CvReader.h"

#include "platform/PDFPageReader.h"

#include "tests/support/PlainCleaning.h"
#include "tests/support/Print.h"

#include <gmock/gmock.h>

#include <QFile>

namespace dorvantel {
namespace {

using namespace Qt::StringLiterals;
using testing::IsSupersetOf;

struct Expected {
    const char* file;
    QString name;
    QString profession;
    QString email;
    std::vector<QString> techSkills; ///< some of them
    std::vector<QString> languages;  ///< some of them
};

void PrintTo(const Expected& expected, std::ostream* out) {
    *out << expected.file;
}

class RealCv : public testing::TestWithParam<Expected> {
protected:
    void SetUp() override {
        if (!qEnvironmentVariableIsSet("DORVANTEL_TEST_DATA")) {
            GTEST_SKIP() << "DORVANTEL_TEST_DATA is not set: no real CVs to read";
        }
    }
};

TEST_P(RealCv, GivesWhatAReaderSees) {
    QFile file(qEnvironmentVariable("DORVANTEL_TEST_DATA") + u"/cv/"_s + QString::fromUtf8(GetParam().file) +
               u".pdf"_s);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << file.fileName().toStdString();
    const std::optional<QStringList> pages = readPageTexts(file.readAll());
    ASSERT_TRUE(pages.has_value());
    const CvFacts facts = readCv(test::plainlyCleanedText(pages->join(QString())));
    EXPECT_EQ(facts.name, GetParam().name);
    EXPECT_EQ(facts.profession, GetParam().profession);
    EXPECT_EQ(facts.email, GetParam().email);
    EXPECT_THAT(std::vector<QString>(facts.techSkills.begin(), facts.techSkills.end()),
                IsSupersetOf(GetParam().techSkills));
    EXPECT_THAT(std::vector<QString>(facts.languages.begin(), facts.languages.end()),
                IsSupersetOf(GetParam().languages));
}

INSTANTIATE_TEST_SUITE_P(
    TestData, RealCv,
    testing::Values(Expected{"es-fullstack-compiled",
                             u"Utku Cikmaz"_s,
                             u"Desarrollador Full Stack"_s,
                             u"utkucikmaz@gmail.com"_s,
                             {u"React"_s, u"Django"_s, u"PostgreSQL"_s},
                             {u"Turco"_s, u"Inglés"_s, u"Alemán"_s, u"Español"_s}},
                    Expected{"fr-fullstack-compiled",
                             u"Utku Cikmaz"_s,
                             u"Développeur Full Stack"_s,
                             u"utkucikmaz@gmail.com"_s,
                             {u"TypeScript"_s, u"Docker"_s},
                             {u"Francés"_s, u"Turco"_s}},
                    Expected{"de-fullstack-compiled",
                             u"Utku Cikmaz"_s,
                             u"Full Stack Entwickler"_s,
                             u"utkucikmaz@gmail.com"_s,
                             {u"Vue.js"_s, u"MongoDB"_s},
                             {u"Alemán"_s, u"Inglés"_s}},
                    Expected{"es-unam-posgrado",
                             u"José Doroteo Arango Arámbula"_s,
                             u"Ingeniero de software"_s,
                             u"panchovilla@gmail.com"_s,
                             {u"Impresión 3D"_s, u"MATLAB"_s, u"LaTeX"_s},
                             {u"Español"_s}},
                    Expected{"en-awesome-cv-5p",
                             u"Claud D. Park"_s,
                             u"DevOps Engineer"_s,
                             u"posquit0.bj@gmail.com"_s,
                             {u"Kubernetes"_s, u"Terraform"_s},
                             {u"Coreano"_s, u"Japonés"_s}},
                    Expected{"en-europass-betty-smith",
                             u"Betty Smith"_s,
                             u"European project manager"_s,
                             u"smith@kotmail.com"_s,
                             {u"Microsoft Office"_s, u"HTML"_s},
                             {u"Inglés"_s, u"Francés"_s, u"Alemán"_s}},
                    Expected{"it-europass-conte",
                             u"Anna Paola Conte"_s,
                             u"Gesitone risorse umane"_s,
                             u"annapaola.conte@example.it"_s,
                             {u"Excel"_s},
                             {u"Italiano"_s, u"Inglés"_s}},
                    Expected{"en-openresume-reactpdf",
                             u"John Doe"_s,
                             u"Software Engineer"_s,
                             u"hello@openresume.com"_s,
                             {u"GraphQL"_s, u"Redis"_s},
                             {u"Inglés"_s}},
                    Expected{"en-laverne-word-mac",
                             u"Leo Leopard"_s,
                             u"Volunteer Swim Coach"_s,
                             u"lleopard@laverne.edu"_s,
                             {u"PowerPoint"_s},
                             {u"Español"_s}},
                    Expected{"en-minimalistic-6p",
                             u"Jan Küster"_s,
                             u"Research Software Engineer"_s,
                             u"info@jankuester.com"_s,
                             {u"Python"_s, u"Scrum"_s},
                             {u"Inglés"_s}},
                    Expected{"en-two-column",
                             u"Jan Küster"_s,
                             u"Consultant and Software Engineer"_s,
                             u"info@jankuester.com"_s,
                             {u"Gestión de proyectos"_s, u"Git"_s},
                             {u"Inglés"_s}},
                    Expected{"en-sidebar-left-4p",
                             u"Ilya Rumyantsev"_s,
                             u"Freelance Automation Consultant and Developer"_s,
                             u"contact@example.com"_s,
                             {u"Ansible"_s, u"Python"_s},
                             {u"Inglés"_s}},
                    Expected{"en-rendercv-71p",
                             u"John Doe"_s,
                             u"AI Researcher and Entrepreneur"_s,
                             u"johndoe@example.com"_s,
                             {u"Python"_s},
                             {u"Inglés"_s}},
                    Expected{"en-rendercv-minimal", u"John Doe"_s, u"Software Engineer"_s, QString(), {}, {}},
                    Expected{"pt-br-modelo", QString(), QString(), QString(), {}, {}},
                    Expected{"derived-es-unam-posgrado-scan", QString(), QString(), QString(), {}, {}}),
    [](const auto& tested) {
        std::string name = tested.param.file;
        std::replace(name.begin(), name.end(), '-', '_');
        return name;
    });

} // namespace
} // namespace dorvantel
