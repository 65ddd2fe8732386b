#pragma once

#include "conexion.h"
#include "valoresresultado.h"

#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVariantList>

#include <functional>

namespace ADODB {

enum CursorTypeEnum {
    adOpenForwardOnly = 0,
    adOpenKeyset = 1,
    adOpenDynamic = 2,
    adOpenStatic = 3
};
enum LockTypeEnum { adLockReadOnly = 1, adLockPessimistic = 2, adLockOptimistic = 3 };
enum CommandTypeEnum { adCmdUnspecified = -1, adCmdText = 1 };

class Recordset;

/// One column of the current row. A light handle: it is valid while its recordset is open
/// and reads the row the recordset stands on when asked.
class Field {
  public:
    QString Name() const;
    /// The value as the database gave it, normalised by the dialect (Null stays Null).
    QVariant Value() const;
    bool EsNulo() const;
    /// The value's default text form (regional dates and decimals); Null gives "".
    QString Texto() const;
    /// True when the value is a text the database gave as UTF-8: then `bytes` are its bytes,
    /// in place, valid while the recordset stands on this row. A listing copies them without
    /// making a QString first.
    bool TextoUtf8(QByteArrayView &bytes) const;
    /// The value as a signed 32-bit whole number; raises ErrorBD when it is Null, not a
    /// number, or does not fit.
    qint32 Entero() const;

  private:
    friend class Recordset;
    Field(const Recordset *recordset, int indice) : rs(recordset), columna(indice) {}
    const Recordset *rs;
    int columna;
};

/// A query's rows, in the manner of ADO's Recordset. Open with a static cursor reads the
/// whole result at once, so RecordCount is exact before the first row is read and the
/// recordset holds no cursor on the database afterwards. Other cursor types are read the
/// same way. Row positions are 0-based; Eof() is true past the last row.
///
/// On SQLite the rows are read through SQLite's own interface, on any other database
/// through Qt's driver; either way the values are kept compactly (ValoresResultado) and a
/// field's text is made when it is asked for.
class Recordset {
  public:
    Recordset() = default;
    Recordset(const Recordset &) = delete;
    Recordset &operator=(const Recordset &) = delete;

    /// Runs `sentencia` on `conexion`; raises ErrorBD with the database's text on failure.
    void Open(const QString &sentencia, Connection &conexion, int cursorType = adOpenStatic,
              int lockType = adLockOptimistic, int options = adCmdUnspecified);
    /// The same, with values bound to the statement's "?" placeholders: for anything a
    /// person typed, so that no text of theirs ever becomes part of the statement.
    void Open(const QString &sentencia, const QVariantList &valores, Connection &conexion,
              int cursorType = adOpenStatic, int lockType = adLockOptimistic,
              int options = adCmdUnspecified);
    void Close();
    /// Runs `sentencia` (with `valores` bound to its "?" placeholders, as Open) and hands its
    /// rows to `porFila` one at a time, as they are read, with the recordset standing on each:
    /// Fields read it and RecordCount counts the rows read so far. No row is kept once handed
    /// over, so a result of a million rows never lies whole in memory beside what the caller
    /// makes of it. The recordset is closed afterwards, and also when the statement fails or
    /// `porFila` raises (which ends the reading and goes through).
    void Recorrer(const QString &sentencia, Connection &conexion,
                  const std::function<void()> &porFila, const QVariantList &valores = {});

    int RecordCount() const { return filas; }
    bool Eof() const { return posicion >= filas; }
    bool Bof() const { return filas == 0 || posicion < 0; }
    void MoveNext();
    void MoveFirst() { posicion = 0; }

    /// The column of that name, whatever the case of its letters ("DESCTALL" finds the
    /// alias descTall). Raises ErrorBD when the result has no such column.
    Field Fields(const QString &nombre) const;
    Field Fields(int indice) const;
    int ColumnCount() const { return int(nombres.size()); }

  private:
    friend class Field;
    /// The index of the current row's value in column `columna`; raises ErrorBD with no
    /// current row.
    size_t Celda(int columna) const;
    /// Runs `texto` through Qt's driver and keeps its rows: every database but SQLite.
    void LeerConQt(Connection &conexion, const Dialecto &dialecto, const QString &texto,
                   const QVariantList &valores, const std::function<void()> &porFila);
    /// Reads the adapted `texto` whole, or row by row into `porFila` when it is given.
    void Leer(Connection &conexion, const QString &sentencia, const QVariantList &valores,
              const std::function<void()> &porFila);
    /// Stands on the row just read, held alone in `fila`, and hands it to `porFila`.
    void EnFila(const QStringList &columnas, ValoresResultado &fila, int leidas,
                const std::function<void()> &porFila);

    QStringList nombres;
    ValoresResultado celdas; // row-major, filas x nombres.size()
    int filas = 0;
    int posicion = 0;
    int primera = 0; ///< the row of the first values in `celdas` (a row at a time: the current)
    bool abierto = false;
};

} // namespace ADODB
