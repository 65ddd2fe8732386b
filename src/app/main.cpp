// tarifas: keeps the price lists of the shop's point-of-sale suite.
#include "app/principal.h"
#include "platform/ui/informeerror.h"
#include "platform/ui/twips.h"
#include "suite/datos/svcopciones.h"

#include <QLocale>
#include <QScreen>
#include <exception>

int main(int argc, char **argv) {
    AplicacionTarifas aplicacion(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("tarifas"));
    QGuiApplication::setApplicationDisplayName(QStringLiteral("Tarifas"));
    // Dates and prices follow the system's regional settings. A system with none (the C or
    // POSIX locale of a bare terminal) gets those of Spain, the suite's own, rather than
    // month names and a decimal point that no shop of the suite uses.
    if (QLocale::system().language() == QLocale::C)
        QLocale::setDefault(QLocale(QLocale::Spanish, QLocale::Spain));
    // Without a size stored by the suite, the screens fill the display.
    if (const QScreen *pantalla = QGuiApplication::primaryScreen()) {
        const QSize tamano = pantalla->availableGeometry().size();
        SvcOpciones::FijarTamanoPantalla(ATwips(tamano.width()), ATwips(tamano.height()));
    }
    try {
        return Principal::Main();
    } catch (const std::exception &error) {
        InformeError(QString::fromUtf8(error.what()));
    }
}
