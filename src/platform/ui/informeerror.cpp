#include "informeerror.h"

#include "form.h"
#include "indicadorespera.h"
#include "mensajes.h"

#include <QGuiApplication>

#include <cstdio>
#include <exception>

namespace Pantalla {

AplicacionTarifas::AplicacionTarifas(int &argc, char **argv) : QApplication(argc, argv) {
    InstalarIndicadorEspera();
}

bool AplicacionTarifas::notify(QObject *receptor, QEvent *evento) {
    try {
        return QApplication::notify(receptor, evento);
    } catch (const FinPrograma &) {
        // The program is already ending.
    } catch (const std::exception &error) {
        if (!Form::Terminando())
            MostrarError(QString::fromUtf8(error.what()));
        Form::TerminarPrograma(1);
    } catch (...) {
        if (!Form::Terminando())
            MostrarError(QStringLiteral("Error no identificado."));
        Form::TerminarPrograma(1);
    }
    return false;
}

void MostrarError(const QString &texto) {
    std::fprintf(stderr, "%s\n", texto.toLocal8Bit().constData());
    std::fflush(stderr);
    // Nobody sees a box on the offscreen platform, and a test answering the boxes only wants
    // the record: the box would wait for ever.
    const bool sinPantalla = QGuiApplication::platformName() == QLatin1String("offscreen") ||
                             QGuiApplication::platformName() == QLatin1String("minimal");
    if (Contestador *c = ContestadorMensajes())
        c->Contestar(texto, {});
    else if (!sinPantalla && qobject_cast<QApplication *>(QCoreApplication::instance()))
        MsgBoxError(texto);
}

} // namespace Pantalla
