#include "lotessqlite.h"

#include "sqlmotor.h"

#include "platform/datos/errorbd.h"

#include <QSqlDriver>
#include <QSqlError>
#include <memory>
#include <sqlite3.h>

namespace SQLMotor {

namespace {

/// Binds `v` to parameter `n` (1-based). A text is bound in place: `v` outlives the step.
int Enlazar(sqlite3_stmt *s, int n, const QVariant &v) {
    if (EsNulo(v))
        return sqlite3_bind_null(s, n);
    switch (v.typeId()) {
    case QMetaType::Double:
        return sqlite3_bind_double(s, n, v.toDouble());
    case QMetaType::QString: {
        const QString &texto = *static_cast<const QString *>(v.constData());
        return sqlite3_bind_text16(s, n, texto.utf16(), int(texto.size() * 2), SQLITE_STATIC);
    }
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::Bool:
        return sqlite3_bind_int64(s, n, v.toLongLong());
    default: {
        const QByteArray texto = v.toString().toUtf8();
        return sqlite3_bind_text(s, n, texto.constData(), int(texto.size()), SQLITE_TRANSIENT);
    }
    }
}

using Sentencia = std::unique_ptr<sqlite3_stmt, decltype(&sqlite3_finalize)>;

} // namespace

void InsertarLotesSQLite(ADODB::Connection &conexion, const QString &sentencia, int porLote,
                         const QString &resto, const std::vector<QVariant> &valores) {
    QSqlDatabase base = conexion.Base();
    const QVariant manejador =
        base.driverName() == QLatin1String("QSQLITE") ? base.driver()->handle() : QVariant();
    sqlite3 *db = manejador.isValid() && qstrcmp(manejador.typeName(), "sqlite3*") == 0
                      ? *static_cast<sqlite3 *const *>(manejador.constData())
                      : nullptr;
    if (!db)
        throw ADODB::ErrorBD(QStringLiteral("No se han podido grabar las filas: la conexión no "
                                            "es de una base de datos SQLite abierta."));

    const auto fallo = [&](const QString &texto) {
        const int codigo = sqlite3_extended_errcode(db);
        return conexion.Fallo(QSqlError(QStringLiteral("No se han podido grabar las filas"),
                                        QString::fromUtf8(sqlite3_errmsg(db)),
                                        QSqlError::StatementError, QString::number(codigo)),
                              texto);
    };
    const auto preparar = [&](const QString &texto) {
        sqlite3_stmt *s = nullptr;
        if (sqlite3_prepare16_v2(db, texto.utf16(), int(texto.size() * 2), &s, nullptr) !=
            SQLITE_OK) {
            sqlite3_finalize(s);
            throw fallo(texto);
        }
        return Sentencia(s, &sqlite3_finalize);
    };
    const auto correr = [&](sqlite3_stmt *s, const QString &texto, size_t desde, size_t n) {
        for (size_t i = 0; i < n; ++i)
            if (Enlazar(s, int(i + 1), valores[desde + i]) != SQLITE_OK)
                throw fallo(texto);
        if (sqlite3_step(s) != SQLITE_DONE)
            throw fallo(texto);
        sqlite3_reset(s);
    };

    const size_t lote = size_t(porLote);
    const size_t llenos = valores.size() / lote;
    if (llenos > 0) {
        const Sentencia s = preparar(sentencia);
        for (size_t i = 0; i < llenos; ++i)
            correr(s.get(), sentencia, i * lote, lote);
    }
    const size_t quedan = valores.size() - llenos * lote;
    if (quedan > 0) {
        const Sentencia s = preparar(resto);
        correr(s.get(), resto, llenos * lote, quedan);
    }
}

} // namespace SQLMotor
