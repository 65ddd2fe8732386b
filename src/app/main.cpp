// tarifas: keeps the price lists of the shop's point-of-sale suite.
#include "app/programa.h"
#include "ordenes/ordenes.h"
#include "platform/ui/informeerror.h"
#include "platform/ui/traduccionqt.h"
#include "platform/ui/twips.h"
#include "suite/datos/svcopciones.h"
#include "suite/ui/svcescala.h"

#include <QLocale>
#include <QScreen>

#include <cstdio>
#include <cstdlib>
#include <unistd.h>

using namespace Pantalla;

namespace {

/// While the application object is made: a display that can't be opened is a fatal error of
/// Qt's, which would abort with a core and a hint to reinstall. The operator gets one line
/// that says what is wrong instead, and the status 1; Qt's own lines about it are left out.
void SinPantalla(QtMsgType tipo, const QMessageLogContext &contexto, const QString &texto) {
    if (tipo == QtFatalMsg) {
        const QByteArray display = qgetenv("DISPLAY");
        std::fprintf(stderr,
                     "tarifas: no se pudo abrir la pantalla gráfica (DISPLAY=%s): el programa "
                     "necesita un escritorio.\n",
                     display.isEmpty() ? "sin definir" : display.constData());
        std::fflush(stderr);
        _exit(1);
    }
    // Qt's notes about the desktop are not the operator's business: the platform's, and the
    // one about a session without a runtime folder (su, a service), where the lock file has a
    // folder of its own anyway.
    if ((contexto.category && QByteArray(contexto.category).startsWith("qt.qpa")) ||
        texto.startsWith(QLatin1String("QStandardPaths: ")))
        return;
    std::fprintf(stderr, "%s\n", texto.toLocal8Bit().constData());
}

} // namespace

int main(int argc, char **argv) {
    // A command does its job without any display, before anything of the screens is made.
    if (Ordenes::EsOrden(argc, argv))
        return Ordenes::Ejecutar(argc, argv);
    const QtMessageHandler anterior = qInstallMessageHandler(SinPantalla);
    AplicacionTarifas aplicacion(argc, argv);
    qInstallMessageHandler(anterior);
    QCoreApplication::setApplicationName(QStringLiteral("tarifas"));
    QGuiApplication::setApplicationDisplayName(QStringLiteral("Tarifas"));
    // Dates and prices follow the system's regional settings. A system with none (the C or
    // POSIX locale of a bare terminal) gets those of Spain, the suite's own, rather than
    // month names and a decimal point that no shop of the suite uses.
    if (QLocale::system().language() == QLocale::C)
        QLocale::setDefault(QLocale(QLocale::Spanish, QLocale::Spain));
    // The screens speak Spanish, and so do Qt's own menus and buttons.
    CargarTraduccionQt();
    // Without a size stored by the suite, the screens fill the display.
    if (const QScreen *pantalla = QGuiApplication::primaryScreen()) {
        const QSize tamano = pantalla->availableGeometry().size();
        SvcOpciones::FijarTamanoPantalla(ATwips(tamano.width()), ATwips(tamano.height()));
        // Nor does a size stored for a bigger monitor push a window off this one.
        SvcEscala::FijarAreaDisponible(ATwips(tamano.width()), ATwips(tamano.height()));
    }
    // Main owns the session, the services and the screens, and ends them all before the
    // application object goes.
    return Principal::Main();
}
