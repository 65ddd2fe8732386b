#pragma once

#include "tipocolumna.h"

#include <QString>
#include <QVariant>
#include <memory>

class QSqlDatabase;

/// What differs between the databases the suite runs on. The program's statements are
/// written once; where a database reads one differently, the difference is named here
/// and nowhere else.
class Dialecto {
public:
    virtual ~Dialecto() = default;
    virtual QString Nombre() const = 0;

    /// The statement as this database must run it, with the same rows as a result.
    /// The suite's statements were written for a database on which "col <> null" is true
    /// for every non-Null value; on a database that follows the SQL standard (all of ours)
    /// such a comparison is never true, so it is read as "col is not null".
    virtual QString Adaptar(const QString &sentencia) const;

    /// A value of a result column as the program expects it: Null stays Null, a date is a
    /// QDate, a decimal is a double, a whole number a qlonglong, a text a QString.
    /// `tipoDeclarado` is what the database says of the column, when it says anything.
    virtual QVariant Normalizar(const QVariant &valor, const QString &tipoDeclarado) const;

    /// How the DDL of the suite's schema spells a kind of column: the SQL standard's
    /// names, which a dialect overrides only where its database spells one otherwise.
    virtual QString TipoSQL(TipoColumna tipo) const;

    /// The dialect of an open Qt database, from its driver.
    static std::unique_ptr<Dialecto> Para(const QSqlDatabase &base);
};
