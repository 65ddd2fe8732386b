#pragma once

#include "platform/datos/conexion.h"

#include <QtTest>
#include <memory>

/// A fresh suite database for one test, with every table of the suite (empty) and an open
/// connection on it. Everything goes when the object does. Failures raise ErrorBD with the
/// database's text.
///
/// Where it lives depends on the run: normally an SQLite file in a temporary directory of its
/// own; when TARIFAS_PRUEBAS_PG holds a PostgreSQL connection string (an account that may
/// create databases), a database of its own on that server, dropped afterwards.
class BaseDatosPrueba {
  public:
    /// `conTablas` false: the database exists (an empty SQLite file, or a database on the
    /// server) but holds no table, as a suite's database before its first use.
    explicit BaseDatosPrueba(bool conTablas = true);
    ~BaseDatosPrueba();
    BaseDatosPrueba(const BaseDatosPrueba &) = delete;
    BaseDatosPrueba &operator=(const BaseDatosPrueba &) = delete;

    /// True in the run on a PostgreSQL server.
    static bool EnPostgreSQL();
    /// The server's connection string in that run (empty otherwise).
    static QString CadenaServidor();

    ADODB::Connection &Conexion() { return *conexion; }
    /// The connection string that reaches this database ("sqlite:" + file, or the server's
    /// string naming the test's own database).
    QString Cadena() const { return cadena; }
    /// The SQLite file; empty in the PostgreSQL run.
    QString Ruta() const;
    /// The PostgreSQL database's name; empty in the SQLite run.
    QString NombreBase() const { return nombreBase; }
    /// The temporary directory, for any other file a test needs (in either run).
    QString Directorio() const { return dir.path(); }

    /// Runs setup SQL (a statement that changes data or the schema), with values bound to
    /// its "?" placeholders in order.
    void Ejecutar(const QString &sql, const QVariantList &valores = {});
    /// The first column of the first row of a query, as the driver gives it, Null when the
    /// query gives no row: for checking what was stored, without the recordset under test.
    QVariant Valor(const QString &sql, const QVariantList &valores = {});

  private:
    QTemporaryDir dir;
    QString cadena;
    QString nombreBase;
    std::unique_ptr<ADODB::Connection> conexion;
};

/// The SQLite file of a terminal's own data source at `ruta`, made anew: the table
/// listadostemporal with the one row (list1, list2). Failures raise ErrorBD.
void CrearTerminalSQLite(const QString &ruta, const QString &list1, const QString &list2);

/// Skips the rest of a test in the PostgreSQL run: for what is about SQLite files as such.
#define SOLO_SQLITE(motivo)                                                                        \
    do {                                                                                           \
        if (BaseDatosPrueba::EnPostgreSQL())                                                       \
            QSKIP(motivo);                                                                         \
    } while (false)

/// Skips a test outside the PostgreSQL run: for what only a server can show.
#define SOLO_POSTGRESQL(motivo)                                                                    \
    do {                                                                                           \
        if (!BaseDatosPrueba::EnPostgreSQL())                                                      \
            QSKIP(motivo);                                                                         \
    } while (false)
