#pragma once

#include "tipocolumna.h"

#include <QSqlDriver>
#include <QSqlError>
#include <QString>
#include <QVariant>
#include <memory>

class QSqlDatabase;

namespace ADODB {

/// What differs between the databases the suite runs on. The program's statements are
/// written once; where a database reads one differently, the difference is named here
/// and nowhere else.
class Dialecto {
  public:
    virtual ~Dialecto() = default;

    /// The statement as this database must run it, with the same rows as a result.
    /// The suite's statements were written for a database on which "col <> null" is true
    /// for every non-Null value; on a database that follows the SQL standard (all of ours)
    /// such a comparison is never true, so it is read as "col is not null". Beyond that, the
    /// statements give on SQLite the rows the suite expects; a database that reads some of
    /// their text otherwise gets that text reworded, by the differences below.
    /// Texts between apostrophes and comments are never touched.
    virtual QString Adaptar(const QString &sentencia) const;

    /// A value of a result column as the program expects it: Null stays Null, a date is a
    /// QDate, a decimal is a double, a whole number a qlonglong, a text a QString.
    /// `tipoDeclarado` is what the database says of the column, when it says anything.
    virtual QVariant Normalizar(const QVariant &valor, const QString &tipoDeclarado) const;

    /// How the DDL of the suite's schema spells a kind of column: the SQL standard's
    /// names, which a dialect overrides only where its database spells one otherwise.
    virtual QString TipoSQL(TipoColumna tipo) const;

    /// The condition "`columna` matches the like pattern bound to the next placeholder, case
    /// ignored", spelt so that an index made on IndiceSinMayusculas(columna) answers it: with
    /// a fixed start ("X12%", or a whole code) it reads a range of that index, not the table.
    /// '%' and '_' are the wildcards; no other character is special (PatronParecido).
    virtual QString ParecidoSinMayusculas(const QString &columna) const;
    /// What to bind to that condition for a typed `texto`, so that only '%' and '_' are
    /// wildcards on every database.
    virtual QString PatronParecido(const QString &texto) const;
    /// The expression an index on `columna` is made on, for ParecidoSinMayusculas to use it.
    virtual QString IndiceSinMayusculas(const QString &columna) const;
    /// A select that reads how the database stored the index named by its one placeholder:
    /// one row whose one column is the index's definition ("create index ... on tabla
    /// (columnas)"), no row when there is no index of that name. Empty where the database
    /// can't be asked: its indexes are then taken as they are.
    virtual QString DefinicionIndice() const;
    /// The select `sentencia` cut to its first `filas` rows, where the database can say so;
    /// elsewhere unchanged (the reader takes the rows it needs).
    virtual QString Limitar(const QString &sentencia, int filas) const;

    /// The dialect of an open Qt database, from its driver (and, behind an ODBC data source,
    /// from the database product the driver reports).
    static std::unique_ptr<Dialecto> Para(const QSqlDatabase &base);

    /// How a database reads a statement's text where it differs from SQLite, which is what
    /// the suite's statements give the expected rows on. Each true member is rewritten by
    /// Adaptar. PostgreSQL differs in all four.
    struct Diferencias {
        /// "like" tells capitals from small letters ('abc' like 'A%' is false). SQLite's
        /// like ignores the case of ASCII letters: the statement gets "ilike".
        bool likeDistingueMayusculas = false;
        /// A backslash in a like pattern escapes the next character. SQLite has no escape
        /// character unless told: the pattern gets "escape ''".
        bool likeEscapaConBarra = false;
        /// Null sorts after every value in ascending order. SQLite puts Null first in an
        /// ascending order and last in a descending one: each item of "order by" says so.
        bool nuloOrdenaAlFinal = false;
        /// A name between double quotes keeps its case ("Nombre" is not the column nombre).
        /// In SQLite no name depends on case, and the suite's tables and columns are created
        /// in small letters: a quoted name is written in small letters.
        bool comillasDistinguenMayusculas = false;
    };
    const Diferencias &DiferenciasSQL() const { return diferencias; }

    /// The database product as the driver reports it (UnknownDbms when it says nothing):
    /// behind an ODBC data source, what the source leads to.
    QSqlDriver::DbmsType Producto() const { return producto; }

    /// A unit of work's three steps on this database. Each gives the database's error when
    /// the step fails, and an invalid QSqlError when it went through.
    virtual QSqlError ComenzarUnidad(QSqlDatabase &base) const;
    virtual QSqlError ConfirmarUnidad(QSqlDatabase &base) const;
    virtual QSqlError DeshacerUnidad(QSqlDatabase &base) const;

    /// Whether `error` (an invalid one when there is no statement to judge) says that the
    /// connection behind `base` is gone: the server or the network lost it, or the driver
    /// closed it. Its next use must open it again.
    virtual bool ConexionPerdida(const QSqlError &error, const QSqlDatabase &base) const;

    /// `consulta`, a select of one table's rows, made to hold those rows against other
    /// terminals' writes until the unit of work ends. Unchanged where the unit already holds
    /// the whole database (SQLite) or the database has no such lock.
    virtual QString BloquearFilas(const QString &consulta) const;

    /// The socket of a connection to a server, for the program's own deadline on a statement
    /// (shut down, it ends a call that waits on a server that no longer answers); -1 where
    /// there is none to reach. Read on the connection's own thread.
    virtual int SocketServidor(const QSqlDatabase &base) const;

    /// How a terminal hears of what other terminals commit on this database.
    enum class Seguimiento {
        /// The server's notifications, which writers send in their unit (PostgreSQL).
        Notificaciones,
        /// The file's own change counter, which moves only for other connections' commits
        /// (SQLite).
        ContadorFichero,
        /// Neither: a fingerprint of what the screens show, read again on a timer (any
        /// database behind ODBC, whose driver passes no notification on).
        Huella,
    };
    virtual Seguimiento SeguimientoCambios() const;

  private:
    Diferencias diferencias;
    QSqlDriver::DbmsType producto = QSqlDriver::UnknownDbms;
};

} // namespace ADODB
