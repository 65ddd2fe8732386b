#pragma once

#include "platform/datos/conexion.h"

#include <QString>
#include <QTemporaryDir>
#include <QVariant>
#include <QVariantList>
#include <memory>

/// A fresh SQLite database of the suite for one test: a file in a temporary directory of its
/// own, with every table of the suite (empty), and an open connection on it. Everything goes
/// when the object does. Failures raise ErrorBD with SQLite's text.
class BaseDatosPrueba {
  public:
    BaseDatosPrueba();
    ~BaseDatosPrueba();
    BaseDatosPrueba(const BaseDatosPrueba &) = delete;
    BaseDatosPrueba &operator=(const BaseDatosPrueba &) = delete;

    ADODB::Connection &Conexion() { return *conexion; }
    /// The database file, and the connection string that reaches it ("sqlite:" + file).
    QString Ruta() const;
    QString Cadena() const;
    /// The temporary directory, for any other file a test needs.
    QString Directorio() const { return dir.path(); }

    /// Runs setup SQL (a statement that changes data or the schema), with values bound to
    /// its "?" placeholders in order.
    void Ejecutar(const QString &sql, const QVariantList &valores = {});
    /// The first column of the first row of a query, as the driver gives it, Null when the
    /// query gives no row: for checking what was stored, without the recordset under test.
    QVariant Valor(const QString &sql, const QVariantList &valores = {});

  private:
    QTemporaryDir dir;
    std::unique_ptr<ADODB::Connection> conexion;
};
