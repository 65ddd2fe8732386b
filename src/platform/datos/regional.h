#pragma once

#include <QDate>
#include <QString>
#include <QVariant>

namespace Sistema {

/// Text forms by the system's regional settings (QLocale(), which tests may set).
/// Dates always carry a four-digit year, so every date from 1601 to 9999 reads back as
/// itself: the locale's own short format, with its year widened.
QString FechaATexto(const QDate &fecha);
/// Reads a date written by FechaATexto, or in ISO form (yyyy-MM-dd); an invalid QDate when
/// the text is neither.
QDate TextoAFecha(const QString &texto);
/// The short date format in use, with a four-digit year ("dd/MM/yyyy" for Spain).
QString FormatoFechaRegional();

/// A number's default text: the shortest form that reads back as the same number, with the
/// regional decimal separator and no grouping ("12,5" in Spain, "12.5" in the US).
QString NumeroATexto(double valor);

/// The default text form of any value read from the database: dates as above, whole
/// numbers as digits, decimals as NumeroATexto, booleans as "Verdadero"/"Falso", Null as "".
QString ValorATexto(const QVariant &valor);

} // namespace Sistema
