// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "bench/Report.h"
#include "intake/CVText.h"
#include "tests/support/PlainCleaning.h"

#include <cstdio>
#include <cstdlib>

using namespace dorvantel;
using namespace dorvantel::bench;
using namespace Qt::StringLiterals;

namespace {

/// The page of a CV as PDFs give it: short lines, bullets and dashes, accents, telephone numbers, addresses.
const QString page = uR"(Lucía Hernández Muñoz
Ingeniera de software · Madrid, España
Tel: +34 91 555 12 34 • lucia.hernandez@example.com • https://example.com/~lucia

PERFIL
Ingeniera informática con más de 12 años de experiencia en el diseño y la construcción de servicios
distribuidos, la dirección de equipos de 4 a 9 personas y la mejora continua de los procesos de entrega.

EXPERIENCIA
2018 – actualidad   Directora técnica, Soluciones Ibéricas S. A. (Madrid)
• Migración de la plataforma de pagos (1 200 000 operaciones al día) sin interrupción del servicio.
• Reducción del 37 % en el coste de la infraestructura; "primer premio" de innovación de la compañía.
• Formación de ingenieros jóvenes: 14 becarios, de los que 11 siguen en la empresa.
2012 – 2018   Desarrolladora sénior, Telecomunicaciones Güell, Barcelona
• Programación en C++, Java y Python; automatización de pruebas; bases de datos PostgreSQL y Oracle.
• ¿Resultado? Un producto que atiende a 3 millones de clientes en España, México y Perú.

FORMACIÓN
2007 – 2012   Grado en Ingeniería Informática, Universidad Politécnica de Madrid (8,7/10)
2011   Estancia en la Universität Zürich, beca Erasmus

IDIOMAS
Español (lengua materna), inglés (C1), alemán (B2), catalán (B1)
)"_s;

} // namespace

int main(int argc, char** argv) {
    const QString text = page.repeated(1'000);
    if (cleanExtractedText(text) != test::plainlyCleanedText(text)) {
        std::fputs("the two ways of cleaning do not agree\n", stderr);
        return EXIT_FAILURE;
    }

    Report report(argc, argv);
    const auto quick = report.measure("cleanExtractedText", [&text] { return cleanExtractedText(text); });
    const auto plain = report.measure("plain loop", [&text] { return test::plainlyCleanedText(text); });
    report.run();

    const double megabytes = static_cast<double>(text.toUtf8().size()) / 1e6;
    report.atLeast("cleaning Spanish CV text (as UTF-8)", megabytes / report.seconds(quick), 300, "MB/s");
    report.atLeast("the same against a plain ICU break-iterator loop", report.ratio(plain, quick), 10, "times");
    return EXIT_SUCCESS;
}
