#include "traduccionqt.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QTranslator>

#include <cstdio>

namespace Pantalla {

bool CargarTraduccionQt() {
    // One for the program's whole run, owned by the application object.
    static QTranslator *traduccion = nullptr;
    if (traduccion)
        return true;
    auto *nueva = new QTranslator(QCoreApplication::instance());
    const QString carpeta = QLibraryInfo::path(QLibraryInfo::TranslationsPath);
    if (!nueva->load(QStringLiteral("qtbase_es"), carpeta)) {
        delete nueva;
        std::fprintf(stderr,
                     "tarifas: no se encuentra la traducción de Qt qtbase_es en %s: los menús y "
                     "botones propios de Qt saldrán en inglés.\n",
                     qUtf8Printable(carpeta));
        return false;
    }
    QCoreApplication::installTranslator(nueva);
    traduccion = nueva;
    return true;
}

} // namespace Pantalla
