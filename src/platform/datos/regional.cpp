#include "regional.h"

#include <QDateTime>
#include <QLocale>
#include <QTime>

#include <charconv>
#include <cmath>

namespace Sistema {

namespace {

/// Rewrites every run of one letter of a date format, leaving quoted literals alone.
/// `cambio` gets the letter and the run's length and gives the replacement.
template <typename Cambio> QString CambiarCampos(const QString &formato, Cambio cambio) {
    QString resultado;
    resultado.reserve(formato.size() + 2);
    bool citado = false;
    for (qsizetype i = 0; i < formato.size();) {
        const QChar c = formato.at(i);
        if (c == QLatin1Char('\'')) {
            citado = !citado;
            resultado += c;
            ++i;
            continue;
        }
        qsizetype fin = i + 1;
        if (!citado && c.isLetter())
            while (fin < formato.size() && formato.at(fin) == c)
                ++fin;
        const qsizetype largo = fin - i;
        resultado += citado ? formato.mid(i, largo) : cambio(c, largo, formato.mid(i, largo));
        i = fin;
    }
    return resultado;
}

/// The regional format made lenient for reading: a day or month written with one digit
/// or two reads the same ("1/3/2026" and "01/03/2026").
QString FormatoLectura() {
    return CambiarCampos(FormatoFechaRegional(), [](QChar c, qsizetype largo, const QString &run) {
        if ((c == QLatin1Char('d') || c == QLatin1Char('M')) && largo == 2)
            return QString(c);
        return run;
    });
}

} // namespace

QString FormatoFechaRegional() {
    // Qt's short formats write a two-digit year for Spain and the US, and a two-digit year
    // reads back in the 1900s: "1/1/01" would be 1901. Every year gets its four digits.
    return CambiarCampos(QLocale().dateFormat(QLocale::ShortFormat),
                         [](QChar c, qsizetype, const QString &run) {
                             return c == QLatin1Char('y') ? QStringLiteral("yyyy") : run;
                         });
}

QString FechaATexto(const QDate &fecha) {
    if (!fecha.isValid())
        return {};
    return QLocale().toString(fecha, FormatoFechaRegional());
}

QDate TextoAFecha(const QString &texto) {
    const QString limpio = texto.trimmed();
    if (limpio.isEmpty())
        return {};
    const QDate regional = QLocale().toDate(limpio, FormatoLectura());
    if (regional.isValid())
        return regional;
    return QDate::fromString(limpio, QStringLiteral("yyyy-MM-dd"));
}

QString NumeroATexto(double valor) {
    if (valor == 0)
        valor = 0; // no "-0"
    // A catalogue writes a price per row: the common case (a finite number, a locale with
    // ASCII digits) is done by std::to_chars, whose shortest fixed form is the one QLocale
    // writes, with the locale's separator and sign put in. The locale's marks are read again
    // only when the default locale changes.
    struct Marcas {
        QLocale locale;
        bool digitosAscii;
        QString decimal, negativo;
    };
    thread_local Marcas marcas{QLocale::c(), true, QStringLiteral("."), QStringLiteral("-")};
    const QLocale actual;
    if (!(marcas.locale == actual))
        marcas = {actual, actual.zeroDigit() == QLatin1String("0"), actual.decimalPoint(),
                  actual.negativeSign()};
    char cifras[400]; // the longest fixed form of a double is 300-odd characters
    const auto [fin, error] =
        std::isfinite(valor) && marcas.digitosAscii
            ? std::to_chars(cifras, cifras + sizeof cifras, valor, std::chars_format::fixed)
            : std::to_chars_result{cifras, std::errc::value_too_large};
    if (error != std::errc()) {
        QLocale regional = actual;
        regional.setNumberOptions(regional.numberOptions() | QLocale::OmitGroupSeparator);
        return regional.toString(valor, 'f', QLocale::FloatingPointShortest);
    }
    const char *inicio = cifras;
    QString texto;
    texto.reserve(qsizetype(fin - cifras) + 2);
    if (*inicio == '-') {
        texto += marcas.negativo;
        ++inicio;
    }
    for (const char *c = inicio; c != fin; ++c) {
        if (*c == '.')
            texto += marcas.decimal;
        else
            texto += QLatin1Char(*c);
    }
    return texto;
}

QString ValorATexto(const QVariant &valor) {
    if (valor.isNull())
        return {};
    switch (valor.typeId()) {
    case QMetaType::QDate:
        return FechaATexto(valor.toDate());
    case QMetaType::QDateTime: {
        const QDateTime momento = valor.toDateTime();
        const QString dia = FechaATexto(momento.date());
        if (momento.time() == QTime(0, 0))
            return dia;
        return dia + QLatin1Char(' ') + momento.time().toString(QStringLiteral("HH:mm:ss"));
    }
    case QMetaType::QTime:
        return valor.toTime().toString(QStringLiteral("HH:mm:ss"));
    case QMetaType::Double:
    case QMetaType::Float:
        return NumeroATexto(valor.toDouble());
    case QMetaType::Bool:
        return valor.toBool() ? QStringLiteral("Verdadero") : QStringLiteral("Falso");
    case QMetaType::Int:
    case QMetaType::Short:
    case QMetaType::Long:
    case QMetaType::LongLong:
    case QMetaType::SChar:
        return QString::number(valor.toLongLong());
    case QMetaType::UInt:
    case QMetaType::UShort:
    case QMetaType::ULong:
    case QMetaType::ULongLong:
    case QMetaType::UChar:
        return QString::number(valor.toULongLong());
    case QMetaType::QByteArray:
        return QString::fromUtf8(valor.toByteArray());
    default:
        return valor.toString();
    }
}

} // namespace Sistema
