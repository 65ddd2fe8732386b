#include "dialectos.h"

namespace ADODB {

const Dialecto *DialectoODBC::detras() const {
    static const DialectoPostgreSQL postgresql;
    static const DialectoSQLite sqlite;
    switch (Producto()) {
    case QSqlDriver::PostgreSQL:
        return &postgresql;
    case QSqlDriver::SQLite:
        return &sqlite;
    default:
        return nullptr;
    }
}

QString DialectoODBC::ParecidoSinMayusculas(const QString &columna) const {
    const Dialecto *d = detras();
    return d ? d->ParecidoSinMayusculas(columna) : Dialecto::ParecidoSinMayusculas(columna);
}
QString DialectoODBC::PatronParecido(const QString &texto) const {
    const Dialecto *d = detras();
    return d ? d->PatronParecido(texto) : Dialecto::PatronParecido(texto);
}
QString DialectoODBC::IndiceSinMayusculas(const QString &columna) const {
    const Dialecto *d = detras();
    return d ? d->IndiceSinMayusculas(columna) : Dialecto::IndiceSinMayusculas(columna);
}
QString DialectoODBC::DefinicionIndice() const {
    const Dialecto *d = detras();
    return d ? d->DefinicionIndice() : Dialecto::DefinicionIndice();
}
QString DialectoODBC::Limitar(const QString &sentencia, int filas) const {
    const Dialecto *d = detras();
    return d ? d->Limitar(sentencia, filas) : Dialecto::Limitar(sentencia, filas);
}

QString DialectoODBC::TipoSQL(TipoColumna tipo) const {
    // A PostgreSQL server behind the data source gets the tables it gets when reached
    // directly: exact prices as typed, unbounded texts, Booleans.
    if (Producto() == QSqlDriver::PostgreSQL)
        return Dialecto::TipoSQL(tipo);
    // Otherwise, types every SQL database behind ODBC knows. A bare "numeric" would keep no
    // decimals on some of them, and not all of them have a Boolean or an unbounded text.
    switch (tipo) {
    case TipoColumna::Texto:
        return QStringLiteral("varchar(255)");
    case TipoColumna::Decimal:
        return QStringLiteral("decimal(18,4)");
    case TipoColumna::Booleano:
        return QStringLiteral("smallint");
    default:
        return Dialecto::TipoSQL(tipo);
    }
}

} // namespace ADODB
