// tarifas-espera: the line that says the program waits on a database server. Started by the
// program's watchdog a second into a wait that blocks the program's own window (which can't
// repaint until the server answers), ended by it with SIGTERM as soon as the wait is over. It
// takes no input and no focus: a frameless line across the bottom of the waiting window, with
// the wait cursor over it, above every other window.
//
//     tarifas-espera --padre PID --lugar X,Y,ANCHO,ALTO --texto TEXTO
//
// It also ends by itself once the program it speaks for is gone, so that a program that ends
// abruptly leaves nothing behind on the screen.
#include <QApplication>
#include <QLabel>
#include <QScreen>
#include <QTimer>
#include <QToolTip>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>

namespace {

/// The value after `nombre` in the arguments; empty when it is not given.
QString Argumento(const QStringList &argumentos, const QString &nombre) {
    const qsizetype i = argumentos.indexOf(nombre);
    return i >= 0 && i + 1 < argumentos.size() ? argumentos.at(i + 1) : QString();
}

/// "X,Y,ANCHO,ALTO" as a rectangle; an invalid one when it is not that.
QRect Lugar(const QString &texto) {
    const QStringList partes = texto.split(QLatin1Char(','));
    if (partes.size() != 4)
        return {};
    int valores[4] = {};
    for (int i = 0; i < 4; ++i) {
        bool ok = false;
        valores[i] = partes.at(i).trimmed().toInt(&ok);
        if (!ok)
            return {};
    }
    return {valores[0], valores[1], valores[2], valores[3]};
}

} // namespace

int main(int argc, char **argv) {
    QApplication aplicacion(argc, argv);
    const QStringList argumentos = QCoreApplication::arguments();
    bool ok = false;
    const qint64 padre = Argumento(argumentos, QStringLiteral("--padre")).toLongLong(&ok);
    const QString texto = Argumento(argumentos, QStringLiteral("--texto"));
    if (!ok || padre <= 0 || texto.isEmpty()) {
        std::fprintf(stderr, "uso: tarifas-espera --padre PID --lugar X,Y,ANCHO,ALTO --texto "
                             "TEXTO\n");
        return 2;
    }
    QRect ventana = Lugar(Argumento(argumentos, QStringLiteral("--lugar")));
    if (!ventana.isValid() && QGuiApplication::primaryScreen())
        ventana = QGuiApplication::primaryScreen()->availableGeometry();

    QLabel linea(texto);
    linea.setWindowFlags(Qt::ToolTip | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                         Qt::WindowDoesNotAcceptFocus);
    linea.setAttribute(Qt::WA_ShowWithoutActivating);
    linea.setPalette(QToolTip::palette());
    linea.setAutoFillBackground(true);
    linea.setFrameStyle(QFrame::Box | QFrame::Plain);
    linea.setAlignment(Qt::AlignCenter);
    linea.setWordWrap(true);
    linea.setMargin(8);
    linea.setCursor(Qt::WaitCursor);
    // Across the bottom of the waiting window, inside it: where the operator looks.
    const int ancho = std::max(ventana.width(), 200);
    linea.setFixedWidth(ancho);
    const int alto = linea.heightForWidth(ancho);
    linea.setGeometry(ventana.x(), ventana.y() + ventana.height() - alto, ancho, alto);
    linea.show();

    // The program it speaks for ended without ending it: nothing is left on the screen.
    QTimer vigia;
    QObject::connect(&vigia, &QTimer::timeout, [padre] {
        if (::kill(pid_t(padre), 0) != 0 && errno == ESRCH)
            QCoreApplication::quit();
    });
    vigia.start(500);
    return QApplication::exec();
}
