#pragma once

#include "platform/datos/conexion.h"

#include <QString>
#include <QVariantList>

/// The condition of an update or a delete with its values kept apart: `texto` holds a ? for
/// each value of `valores`, in their order ("identificador = ? and producto = ?"), and the
/// values are bound when the statement runs, never written into it.
struct Criterio {
    QString texto;
    QVariantList valores;
};

/// The suite's record writer. Each write takes a field list, "col=value|col=value|", and
/// turns it into one statement with bound values typed by the column (see esquema.h):
/// whole numbers from their digits, dates from their regional text, prices typed with a comma
/// or a point and kept exact, texts as they are (an apostrophe, a % or any letter is just a
/// character). The criterion is the condition of the statement, with its values bound; the
/// suite's own form, a criterion of plain text, runs it as it stands, with nothing bound.
/// A criterion whose ?s (outside texts between apostrophes or quotes) are not as many as its
/// values is refused before anything runs, as is an empty one.
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
                           const QString &nombretienda, bool multitienda, const Criterio &criterio);
    void BorrarRegistro(ADODB::Connection &conexion, const QString &tabla,
                        const QString &nombretienda, bool multitienda, const Criterio &criterio);

    /// The suite's signatures: the criterion as plain text, with no value bound.
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
