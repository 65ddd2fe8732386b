// tarifas: keeps the price lists of the shop's point-of-sale suite.
#include "app/principal.h"
#include "platform/ui/informeerror.h"
#include "platform/ui/twips.h"
#include "suite/datos/svcopciones.h"

#include <QScreen>
#include <exception>

int main(int argc, char **argv) {
    AplicacionTarifas aplicacion(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("tarifas"));
    QGuiApplication::setApplicationDisplayName(QStringLiteral("Tarifas"));
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
