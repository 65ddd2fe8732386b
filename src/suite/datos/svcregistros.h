#pragma once

#include "platform/datos/conexion.h"

#include <QString>

/// The suite's record writer. Each write takes a field list, "col=value|col=value|", and
/// turns it into one statement with bound values typed by the column (see esquema.h):
/// whole numbers from their digits, dates from their regional text, prices typed with a comma
/// or a point and kept exact, texts as they are (an apostrophe, a % or any letter is just a
/// character). The criterion is the condition of the statement as the program gives it.
/// A value that doesn't fit its column (letters in a number, an impossible date, a number
/// beyond 32 bits), an unknown table or column, or a malformed list raises ErrorBD with a
/// clear text and writes nothing. What was written is visible at once to the next query.
/// nombretienda and multitienda are accepted for the suite's store-aware tables; the tables
/// this program writes are the same for every store, so they change nothing here.
class SvcRegistros {
  public:
    void InsertarRegistro(ADODB::Connection &conexion, const QString &tabla, const QString &campos,
                          const QString &nombretienda, bool multitienda, const QString &extra);
    void ModificarRegistro(ADODB::Connection &conexion, const QString &tabla, const QString &campos,
                           const QString &nombretienda, bool multitienda, const QString &criterio,
                           int numero, const QString &extra1, const QString &extra2,
                           const QString &extra3);
    void BorrarRegistro(ADODB::Connection &conexion, const QString &tabla,
                        const QString &nombretienda, bool multitienda, const QString &criterio);

    /// What InsertarRegistro or ModificarRegistro would say of this field list before writing
    /// anything: "" when every value fits its column, else the reason it is refused (the text
    /// of the ErrorBD the write would raise). Touches no database: a screen asks it first, so
    /// that a typing slip is refused before any row of a change is deleted.
    QString ComprobarCampos(const QString &tabla, const QString &campos);
};
