#include "aperturasqlite.h"

#include "errorbd.h"
#include "espera.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QSqlDriver>
#include <QSqlError>
#include <QSqlQuery>
#include <atomic>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sqlite3.h>
#include <unistd.h>

namespace ADODB {

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

void ComprobarBaseSQLite(const QSqlDatabase &base, const QString &ruta) {
    QSqlQuery q(base);
    const Espera espera(QStringLiteral("el fichero SQLite \"%1\"").arg(ruta));
    if (q.exec(QStringLiteral("select count(*) from sqlite_master")))
        return;
    const QSqlError error = q.lastError();
    const QString texto = error.databaseText().trimmed();
    switch (error.nativeErrorCode().toInt() & 0xff) {
    case sqliteBusy:
    case sqliteLocked:
        Rechazar(ruta, QStringLiteral("otro programa lo tiene bloqueado y no lo ha dejado libre "
                                      "en %1 s (%2).")
                           .arg(EsperaBloqueoSQLiteActual() / 1000)
                           .arg(texto));
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

QString SoloLecturaSQLite(const QSqlDatabase &base, const QString &ruta) {
    // This account's own rights (the effective user's), as the writes will meet them.
    const auto escribible = [](const QString &camino) {
        return ::faccessat(AT_FDCWD, QFile::encodeName(camino).constData(), W_OK, AT_EACCESS) == 0;
    };
    // SQLite itself opens a file it may not write read-only, whatever the permissions say.
    const QVariant manejador = base.driver() ? base.driver()->handle() : QVariant();
    sqlite3 *db = qstrcmp(manejador.typeName(), "sqlite3*") == 0
                      ? *static_cast<sqlite3 *const *>(manejador.constData())
                      : nullptr;
    const QString consecuencia =
        QStringLiteral("se pueden consultar las tarifas, pero no guardar cambios. Para "
                       "guardarlos, pida que le den permiso de escritura.");
    if ((db && sqlite3_db_readonly(db, "main") == 1) || !escribible(ruta))
        return QStringLiteral("El fichero SQLite \"%1\" es de solo lectura: %2")
            .arg(ruta, consecuencia);
    const QString carpeta = QFileInfo(ruta).absolutePath();
    if (!escribible(carpeta))
        return QStringLiteral("La carpeta \"%1\" del fichero SQLite \"%2\" es de solo lectura "
                              "(al guardar, hay que crear en ella un fichero de paso): %3")
            .arg(carpeta, ruta, consecuencia);
    return {};
}

namespace {

std::atomic<int> limiteBloqueo{EsperaBloqueoSQLite};

/// SQLite's busy handler: called again and again while another connection holds the lock,
/// `veces` counting from 0 for each wait. A short sleep each time, and the wait told.
int Ocupada(void *, int veces) {
    thread_local QElapsedTimer reloj; // each thread waits on its own
    if (veces == 0)
        reloj.start();
    if (reloj.elapsed() >= limiteBloqueo)
        return 0; // SQLITE_BUSY for the statement
    Espera::Latido();
    sqlite3_sleep(veces < 10 ? 5 : 25);
    return 1;
}

} // namespace

void EsperarBloqueosSQLite(const QSqlDatabase &base) {
    const QVariant manejador = base.driver() ? base.driver()->handle() : QVariant();
    if (qstrcmp(manejador.typeName(), "sqlite3*") != 0)
        return;
    sqlite3 *db = *static_cast<sqlite3 *const *>(manejador.constData());
    if (!db)
        return;
    sqlite3_busy_handler(db, Ocupada, nullptr);
}

int EsperaBloqueoSQLiteActual() {
    return limiteBloqueo;
}

void FijarEsperaBloqueoSQLite(int ms) {
    limiteBloqueo = ms;
}

} // namespace ADODB
