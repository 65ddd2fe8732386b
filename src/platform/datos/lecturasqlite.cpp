#include "lecturasqlite.h"

#include "dialectos.h"
#include "errorbd.h"

#include <QDate>
#include <QDateTime>
#include <QSqlDriver>
#include <QTime>
#include <memory>
#include <sqlite3.h>
#include <vector>

namespace ADODB {

namespace {

using ClaseColumna = DialectoSQLite::ClaseColumna;

[[noreturn]] void Fallo(sqlite3 *db) {
    throw FalloSQLite{QSqlError(QString(), QString::fromUtf8(sqlite3_errmsg(db)),
                                QSqlError::StatementError,
                                QString::number(sqlite3_extended_errcode(db)))};
}

/// Binds one value the way Qt's SQLite driver would, so that both ways store alike.
int Enlazar(sqlite3_stmt *st, int n, const QVariant &v) {
    if (v.isNull())
        return sqlite3_bind_null(st, n);
    switch (v.typeId()) {
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Char:
    case QMetaType::SChar:
    case QMetaType::UChar:
    case QMetaType::UInt:
    case QMetaType::Long:
    case QMetaType::LongLong:
        return sqlite3_bind_int64(st, n, v.toLongLong());
    case QMetaType::ULong:
    case QMetaType::ULongLong:
        if (v.toULongLong() <= quint64(std::numeric_limits<qint64>::max()))
            return sqlite3_bind_int64(st, n, v.toLongLong());
        break;
    case QMetaType::Double:
    case QMetaType::Float:
        return sqlite3_bind_double(st, n, v.toDouble());
    case QMetaType::QByteArray: {
        const QByteArray b = v.toByteArray();
        return sqlite3_bind_blob64(st, n, b.constData(), sqlite3_uint64(b.size()),
                                   SQLITE_TRANSIENT);
    }
    case QMetaType::QDate:
        return sqlite3_bind_text(st, n, v.toDate().toString(Qt::ISODate).toUtf8().constData(), -1,
                                 SQLITE_TRANSIENT);
    case QMetaType::QDateTime:
        return sqlite3_bind_text(st, n,
                                 v.toDateTime().toString(Qt::ISODateWithMs).toUtf8().constData(),
                                 -1, SQLITE_TRANSIENT);
    default:
        break;
    }
    const QByteArray texto = v.toString().toUtf8();
    return sqlite3_bind_text64(st, n, texto.constData(), sqlite3_uint64(texto.size()),
                               SQLITE_TRANSIENT, SQLITE_UTF8);
}

/// The value of a column in a class other than Otra, as Qt's driver would give it to the
/// dialect, then normalised.
QVariant Crudo(sqlite3_stmt *st, int c) {
    switch (sqlite3_column_type(st, c)) {
    case SQLITE_INTEGER:
        return QVariant(qlonglong(sqlite3_column_int64(st, c)));
    case SQLITE_FLOAT:
        return QVariant(sqlite3_column_double(st, c));
    case SQLITE_BLOB:
        return QVariant(QByteArray(static_cast<const char *>(sqlite3_column_blob(st, c)),
                                   sqlite3_column_bytes(st, c)));
    case SQLITE_NULL:
        return {};
    default: {
        const auto *t = reinterpret_cast<const char *>(sqlite3_column_text(st, c));
        return QVariant(QString::fromUtf8(t, sqlite3_column_bytes(st, c)));
    }
    }
}

/// The day that a date column's text "yyyy-MM-dd" (perhaps followed by a time) stands for,
/// read straight from its bytes; an invalid date for any other text, which then goes the
/// general way. The same day as the general way gives, without a QString for each date.
QDate FechaISO(const unsigned char *t, int largo) {
    if (largo < 10 || t[4] != '-' || t[7] != '-')
        return {};
    int partes[3] = {0, 0, 0};
    const int desde[3] = {0, 5, 8}, cifras[3] = {4, 2, 2};
    for (int p = 0; p < 3; ++p)
        for (int i = desde[p]; i < desde[p] + cifras[p]; ++i) {
            if (t[i] < '0' || t[i] > '9')
                return {};
            partes[p] = partes[p] * 10 + (t[i] - '0');
        }
    return QDate(partes[0], partes[1], partes[2]);
}

/// Reads column `c` of the current row into `valores`.
void LeerValor(sqlite3_stmt *st, int c, ClaseColumna clase, ValoresResultado &valores) {
    const int tipo = sqlite3_column_type(st, c);
    if (tipo == SQLITE_NULL) {
        valores.AnadirNulo();
        return;
    }
    // The suite's dates, as it stores them: a register of a million lists reads two a row.
    if (clase == ClaseColumna::Fecha && tipo == SQLITE_TEXT) {
        const QDate fecha = FechaISO(sqlite3_column_text(st, c), sqlite3_column_bytes(st, c));
        if (fecha.isValid()) {
            valores.AnadirFecha(fecha);
            return;
        }
    }
    // The common cases stay in SQLite's bytes and numbers: texts of any column but a date or a
    // number, whole numbers and doubles of plain columns, and prices stored as numbers.
    if (clase == ClaseColumna::Otra || (clase == ClaseColumna::Decimal && tipo != SQLITE_TEXT)) {
        switch (tipo) {
        case SQLITE_INTEGER:
            if (clase == ClaseColumna::Decimal)
                valores.AnadirReal(double(sqlite3_column_int64(st, c)));
            else
                valores.AnadirEntero(sqlite3_column_int64(st, c));
            return;
        case SQLITE_FLOAT:
            valores.AnadirReal(sqlite3_column_double(st, c));
            return;
        case SQLITE_TEXT: {
            const auto *t = reinterpret_cast<const char *>(sqlite3_column_text(st, c));
            valores.AnadirUtf8(t, size_t(sqlite3_column_bytes(st, c)));
            return;
        }
        default:
            break;
        }
    }
    valores.Anadir(DialectoSQLite::NormalizarClase(Crudo(st, c), clase));
}

} // namespace

bool LeerSQLite(const QSqlDatabase &base, const QString &sentencia, const QVariantList &valores,
                LecturaSQLite &lectura, const std::function<void()> &porFila) {
    if (base.driverName() != QLatin1String("QSQLITE") || !base.isOpen() || !base.driver())
        return false;
    const QVariant handle = base.driver()->handle();
    if (qstrcmp(handle.typeName(), "sqlite3*") != 0)
        return false;
    sqlite3 *db = *static_cast<sqlite3 *const *>(handle.constData());
    if (!db)
        return false;

    const QByteArray texto = sentencia.toUtf8();
    sqlite3_stmt *crudo = nullptr;
    const char *resto = nullptr;
    if (sqlite3_prepare_v2(db, texto.constData(), int(texto.size()), &crudo, &resto) != SQLITE_OK)
        Fallo(db);
    const std::unique_ptr<sqlite3_stmt, int (*)(sqlite3_stmt *)> st(crudo, sqlite3_finalize);
    if (!st)
        throw ErrorBD(QStringLiteral("La sentencia está vacía.\nSentencia: ") + sentencia);
    // One statement at a time: what follows the first one is never run.
    for (const char *c = resto; c && *c; ++c)
        if (!QChar::isSpace(uchar(*c)) && *c != ';')
            throw ErrorBD(QStringLiteral("Unable to execute multiple statements at a time: "
                                         "se ha dado más de una sentencia.\nSentencia: ") +
                          sentencia);
    if (sqlite3_bind_parameter_count(st.get()) != valores.size())
        throw ErrorBD(QStringLiteral("La sentencia tiene %1 valores por enlazar y se han dado %2."
                                     "\nSentencia: ")
                          .arg(sqlite3_bind_parameter_count(st.get()))
                          .arg(valores.size()) +
                      sentencia);
    for (int i = 0; i < valores.size(); ++i)
        if (Enlazar(st.get(), i + 1, valores.at(i)) != SQLITE_OK)
            Fallo(db);

    const int columnas = sqlite3_column_count(st.get());
    std::vector<ClaseColumna> clases(size_t(columnas), ClaseColumna::Otra);
    lectura.nombres.clear();
    for (int c = 0; c < columnas; ++c) {
        lectura.nombres.append(QString::fromUtf8(sqlite3_column_name(st.get(), c)));
        if (const char *tipo = sqlite3_column_decltype(st.get(), c))
            clases[size_t(c)] = DialectoSQLite::ClaseDe(QString::fromUtf8(tipo));
    }
    lectura.valores.clear();
    lectura.filas = 0;
    for (;;) {
        const int rc = sqlite3_step(st.get());
        if (rc == SQLITE_DONE)
            break;
        if (rc != SQLITE_ROW)
            Fallo(db);
        for (int c = 0; c < columnas; ++c)
            LeerValor(st.get(), c, clases[size_t(c)], lectura.valores);
        ++lectura.filas;
        if (porFila) {
            porFila();
            lectura.valores.vaciar();
        }
    }
    return true;
}

} // namespace ADODB
