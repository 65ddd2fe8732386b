#include "valoresresultado.h"

#include "regional.h"

#include <limits>

using namespace Sistema;

namespace ADODB {

void ValoresResultado::AnadirEntero(qint64 n) {
    Celda c{Tipo::Entero, 0, {0}};
    c.entero = n;
    celdas.push_back(c);
}

void ValoresResultado::AnadirReal(double d) {
    Celda c{Tipo::Real, 0, {0}};
    c.real = d;
    celdas.push_back(c);
}

void ValoresResultado::AnadirUtf8(const char *bytes, size_t largo) {
    if (largo > std::numeric_limits<std::uint32_t>::max()) {
        Anadir(QVariant(QString::fromUtf8(bytes, qsizetype(largo))));
        return;
    }
    Celda c{Tipo::Utf8, std::uint32_t(largo), {0}};
    c.posicion = utf8.size();
    utf8.insert(utf8.end(), bytes, bytes + largo);
    celdas.push_back(c);
}

void ValoresResultado::AnadirFecha(const QDate &fecha) {
    if (!fecha.isValid()) {
        Anadir(QVariant(fecha));
        return;
    }
    Celda c{Tipo::Fecha, 0, {0}};
    c.entero = fecha.toJulianDay();
    celdas.push_back(c);
}

void ValoresResultado::AnadirBooleano(bool b) {
    Celda c{Tipo::Booleano, 0, {0}};
    c.entero = b ? 1 : 0;
    celdas.push_back(c);
}

void ValoresResultado::Anadir(const QVariant &valor) {
    if (valor.isNull()) {
        AnadirNulo();
        return;
    }
    switch (valor.typeId()) {
    case QMetaType::LongLong:
        AnadirEntero(valor.toLongLong());
        return;
    case QMetaType::Double:
        AnadirReal(valor.toDouble());
        return;
    case QMetaType::QDate:
        if (valor.toDate().isValid()) {
            AnadirFecha(valor.toDate());
            return;
        }
        break;
    case QMetaType::Bool:
        AnadirBooleano(valor.toBool());
        return;
    default:
        break;
    }
    // Texts from other drivers, date-times, blobs: kept as they came.
    Celda c{Tipo::Variante, 0, {0}};
    c.posicion = otros.size();
    otros.push_back(valor);
    celdas.push_back(c);
}

void ValoresResultado::clear() {
    // A finished result gives its memory back: a catalogue's bytes are no small thing.
    std::vector<Celda>().swap(celdas);
    std::vector<char>().swap(utf8);
    std::vector<QVariant>().swap(otros);
}

void ValoresResultado::vaciar() {
    celdas.clear();
    utf8.clear();
    otros.clear();
}

QString ValoresResultado::TextoUtf8(const Celda &c) const {
    // An empty text is a value, not a Null: it stays an empty (non-null) string.
    if (c.largo == 0)
        return QStringLiteral("");
    return QString::fromUtf8(utf8.data() + c.posicion, qsizetype(c.largo));
}

QVariant ValoresResultado::Valor(size_t i) const {
    const Celda &c = celdas[i];
    switch (c.tipo) {
    case Tipo::Nulo:
        return {};
    case Tipo::Entero:
        return QVariant(qlonglong(c.entero));
    case Tipo::Real:
        return QVariant(c.real);
    case Tipo::Utf8:
        return QVariant(TextoUtf8(c));
    case Tipo::Fecha:
        return QVariant(QDate::fromJulianDay(c.entero));
    case Tipo::Booleano:
        return QVariant(c.entero != 0);
    case Tipo::Variante:
        return otros[c.posicion];
    }
    return {};
}

QString ValoresResultado::Texto(size_t i) const {
    const Celda &c = celdas[i];
    switch (c.tipo) {
    case Tipo::Nulo:
        return {};
    case Tipo::Entero:
        return QString::number(c.entero);
    case Tipo::Real:
        return NumeroATexto(c.real);
    case Tipo::Utf8:
        return TextoUtf8(c);
    case Tipo::Fecha:
        return FechaATexto(QDate::fromJulianDay(c.entero));
    case Tipo::Booleano:
    case Tipo::Variante:
        return ValorATexto(Valor(i));
    }
    return {};
}

} // namespace ADODB
