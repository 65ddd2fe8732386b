// The command line's entry: which command, its options, its usage, and the statuses.
#include "ordenes.h"

#include "orden.h"

#include "platform/datos/errorbd.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QLocale>

#include <cstdio>
#include <cstring>
#include <exception>

using namespace ADODB;

namespace Ordenes {

namespace {

QList<DefinicionOrden> Definiciones() {
    return {OrdenListas(),  OrdenExportar(), OrdenImportar(),  OrdenCopiar(),
            OrdenCambiar(), OrdenImprimir(), OrdenHistorial(), OrdenDeshacer()};
}

QString Version() {
    return QStringLiteral("tarifas ") + QStringLiteral(TARIFAS_VERSION);
}

QString UsoGeneral() {
    QString texto = QStringLiteral("Uso: tarifas [COMANDO [ARGUMENTOS…]]\n\n"
                                   "Sin comando, el programa con sus pantallas. Con un comando, "
                                   "hace ese trabajo en la base de datos de la suite (TARIFAS_DB) "
                                   "sin pantalla y termina.\n\nComandos:\n");
    for (const DefinicionOrden &d : Definiciones())
        texto += QStringLiteral("  %1 %2\n      %3\n").arg(d.nombre, d.sinopsis, d.descripcion);
    texto += QStringLiteral(
        "\n  tarifas COMANDO --help   el uso de un comando\n"
        "  tarifas --version        la versión\n\n"
        "LISTA es el código de una tarifa o su nombre exacto. Los números admiten coma o punto "
        "decimal; las fechas, aaaa-mm-dd o la forma regional.\n"
        "Estado de salida: 0 hecho; 1 rechazado o fallido, sin escribir nada; 2 comando mal "
        "usado.\n");
    return texto;
}

QString UsoOrden(const DefinicionOrden &d, const QCommandLineParser &analizador) {
    QString texto =
        QStringLiteral("Uso: tarifas %1 %2\n%3\n").arg(d.nombre, d.sinopsis, d.descripcion);
    // Qt's own list of the options, without its first line (its idea of the usage line).
    const QString ayuda = analizador.helpText();
    const qsizetype opciones = ayuda.indexOf(QStringLiteral("\nOptions:"));
    if (opciones >= 0)
        texto += QStringLiteral("\nOpciones:") + ayuda.mid(opciones + 9);
    return texto;
}

int EjecutarOrden(const DefinicionOrden &d, const QStringList &argumentos, Consola &consola) {
    QCommandLineParser analizador;
    analizador.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    const QCommandLineOption ayuda({QStringLiteral("h"), QStringLiteral("help")},
                                   QStringLiteral("Muestra este uso."));
    analizador.addOption(ayuda);
    analizador.addOptions(d.opciones);
    // Qt's parser takes the program's name first.
    if (!analizador.parse(QStringList{QStringLiteral("tarifas")} + argumentos)) {
        consola.errores << "tarifas " << d.nombre << ": " << analizador.errorText() << "\n"
                        << UsoOrden(d, analizador);
        return MalUsado;
    }
    if (analizador.isSet(ayuda)) {
        consola.salida << UsoOrden(d, analizador);
        return Hecho;
    }
    const QStringList posicionales = analizador.positionalArguments();
    if (posicionales.size() != d.argumentos.size()) {
        consola.errores << "tarifas " << d.nombre << ": "
                        << (posicionales.size() < d.argumentos.size()
                                ? QStringLiteral("faltan argumentos")
                                : QStringLiteral("sobran argumentos"))
                        << "\n"
                        << UsoOrden(d, analizador);
        return MalUsado;
    }
    try {
        return d.ejecutar(analizador, posicionales, consola);
    } catch (const UsoIncorrecto &uso) {
        consola.errores << "tarifas " << d.nombre << ": " << uso.motivo << "\n"
                        << UsoOrden(d, analizador);
        return MalUsado;
    } catch (const ErrorBD &error) {
        consola.errores << "tarifas " << d.nombre << ": " << error.Texto() << "\n";
        return Rechazado;
    } catch (const std::exception &error) {
        consola.errores << "tarifas " << d.nombre << ": " << QString::fromLocal8Bit(error.what())
                        << "\n";
        return Rechazado;
    }
}

/// Qt's notes about the platform and the runtime folder are not the user's business; the
/// rest goes to stderr as it comes.
void SoloLoQueImporta(QtMsgType, const QMessageLogContext &contexto, const QString &texto) {
    if ((contexto.category && QByteArray(contexto.category).startsWith("qt.qpa")) ||
        texto.startsWith(QLatin1String("QStandardPaths: ")))
        return;
    std::fprintf(stderr, "%s\n", texto.toLocal8Bit().constData());
}

bool EsOpcionDeOrden(const char *argumento) {
    for (const char *o : {"--help", "-h", "-help", "--version", "-v", "-version"})
        if (std::strcmp(argumento, o) == 0)
            return true;
    return false;
}

} // namespace

bool EsOrden(int argc, char **argv) {
    return argc > 1 && (argv[1][0] != '-' || EsOpcionDeOrden(argv[1]));
}

int Ejecutar(int argc, char **argv) {
    // Printing lays out text, which needs Qt's fonts and so a GUI application; on the
    // offscreen platform, so that no display is asked for. Every other command needs none.
    const bool imprime = argc > 1 && std::strcmp(argv[1], "imprimir") == 0;
    if (imprime)
        qputenv("QT_QPA_PLATFORM", "offscreen");
    qInstallMessageHandler(SoloLoQueImporta);
    std::unique_ptr<QCoreApplication> aplicacion =
        imprime ? std::make_unique<QGuiApplication>(argc, argv)
                : std::make_unique<QCoreApplication>(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("tarifas"));
    QCoreApplication::setApplicationVersion(QStringLiteral(TARIFAS_VERSION));
    if (QLocale::system().language() == QLocale::C)
        QLocale::setDefault(QLocale(QLocale::Spanish, QLocale::Spain));

    QTextStream salida(stdout);
    QTextStream errores(stderr);
    Consola consola{salida, errores};
    const QStringList argumentos = QCoreApplication::arguments();
    const QString orden = argumentos.value(1);
    if (orden == QLatin1String("--help") || orden == QLatin1String("-h") ||
        orden == QLatin1String("-help")) {
        salida << UsoGeneral();
        return Hecho;
    }
    if (orden == QLatin1String("--version") || orden == QLatin1String("-v") ||
        orden == QLatin1String("-version")) {
        salida << Version() << "\n";
        return Hecho;
    }
    for (const DefinicionOrden &d : Definiciones())
        if (d.nombre == orden)
            return EjecutarOrden(d, argumentos.mid(2), consola);
    errores << "tarifas: no hay ningún comando \"" << orden << "\"\n\n" << UsoGeneral();
    return MalUsado;
}

QString EnUnCampo(QString texto) {
    for (QChar &c : texto)
        if (c == u'\t' || c == u'\n' || c == u'\r')
            c = u' ';
    return texto;
}

} // namespace Ordenes
