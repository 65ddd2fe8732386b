#include "aperturasqlite.h"

#include "errorbd.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QSqlError>
#include <QSqlQuery>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <unistd.h>

namespace {

// SQLite's primary result codes that tell the causes apart.
constexpr int sqliteBusy = 5;
constexpr int sqliteLocked = 6;
constexpr int sqliteCorrupt = 11;
constexpr int sqliteCantOpen = 14;
constexpr int sqliteNotADb = 26;

[[noreturn]] void Rechazar(const QString &ruta, const QString &causa) {
    throw ErrorBD(
        QStringLiteral("No se puede abrir el fichero SQLite \"%1\": %2").arg(ruta, causa));
}

/// The system's words for why `ruta` can't be reached that way ("Permission denied").
QString CausaSistema(const QString &ruta, int modo) {
    if (::access(QFile::encodeName(ruta).constData(), modo) == 0)
        return {};
    return QString::fromLocal8Bit(std::strerror(errno));
}

} // namespace

void ComprobarFicheroSQLite(const QString &ruta) {
    const QFileInfo fichero(ruta);
    if (fichero.exists()) {
        if (fichero.isDir())
            Rechazar(ruta, QStringLiteral("es una carpeta, no un fichero."));
        const QString causa = CausaSistema(ruta, R_OK);
        if (!causa.isEmpty())
            Rechazar(ruta, QStringLiteral("no se puede leer (%1).").arg(causa));
        return;
    }
    const QString carpeta = fichero.absolutePath();
    const QFileInfo infoCarpeta(carpeta);
    if (!infoCarpeta.isDir())
        throw ErrorBD(QStringLiteral("No se puede crear el fichero SQLite \"%1\": la carpeta "
                                     "\"%2\" no existe.")
                          .arg(ruta, carpeta));
    const QString causa = CausaSistema(carpeta, W_OK | X_OK);
    if (!causa.isEmpty())
        throw ErrorBD(QStringLiteral("No se puede crear el fichero SQLite \"%1\": no se puede "
                                     "escribir en la carpeta \"%2\" (%3).")
                          .arg(ruta, carpeta, causa));
}

void ComprobarBaseSQLite(const QSqlDatabase &base, const QString &ruta, int esperaMaxima) {
    QSqlQuery q(base);
    // Short waits inside SQLite, so that the operator hears of a long one; the connection's
    // own wait comes back afterwards.
    q.exec(QStringLiteral("pragma busy_timeout = 1000"));
    QElapsedTimer reloj;
    reloj.start();
    bool avisado = false;
    while (!q.exec(QStringLiteral("select count(*) from sqlite_master"))) {
        const QSqlError error = q.lastError();
        const QString texto = error.databaseText().trimmed();
        switch (error.nativeErrorCode().toInt() & 0xff) {
        case sqliteBusy:
        case sqliteLocked:
            if (reloj.elapsed() >= esperaMaxima)
                Rechazar(ruta, QStringLiteral("otro programa lo tiene bloqueado y no lo ha "
                                              "dejado libre en %1 s (%2).")
                                   .arg(esperaMaxima / 1000)
                                   .arg(texto));
            if (!avisado) {
                std::fprintf(stderr, "%s\n",
                             qPrintable(QStringLiteral("La base de datos \"%1\" está ocupada por "
                                                       "otro programa: se espera hasta %2 s a "
                                                       "que la deje libre.")
                                            .arg(ruta)
                                            .arg(esperaMaxima / 1000)));
                std::fflush(stderr);
                avisado = true;
            }
            continue;
        case sqliteNotADb:
            Rechazar(ruta, QStringLiteral("no es una base de datos SQLite (%1).").arg(texto));
        case sqliteCorrupt:
            Rechazar(ruta, QStringLiteral("está dañado (%1).").arg(texto));
        case sqliteCantOpen:
            Rechazar(ruta, QStringLiteral("%1 (%2).").arg(texto, CausaSistema(ruta, R_OK | W_OK)));
        default:
            Rechazar(ruta, texto);
        }
    }
    q.exec(QStringLiteral("pragma busy_timeout = 5000"));
}
