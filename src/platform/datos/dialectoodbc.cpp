#include "dialectos.h"

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
