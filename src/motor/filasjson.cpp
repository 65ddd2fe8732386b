#include "filasjson.h"

#include "sqlmotor.h"

namespace SQLMotor {

namespace {

/// `texto` as a JSON string, quotes included.
void AnadirCadena(QString &json, QStringView texto) {
    json += QLatin1Char('"');
    for (const QChar c : texto) {
        const char16_t u = c.unicode();
        if (u == u'"' || u == u'\\') {
            json += QLatin1Char('\\');
            json += c;
        } else if (u < 0x20) {
            json += QStringLiteral("\\u%1").arg(int(u), 4, 16, QLatin1Char('0'));
        } else {
            json += c;
        }
    }
    json += QLatin1Char('"');
}

void AnadirValor(QString &json, const QVariant &v) {
    if (EsNulo(v)) {
        json += QLatin1String("null");
        return;
    }
    switch (v.typeId()) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
        json += QString::number(v.toLongLong());
        return;
    case QMetaType::Bool:
        json += v.toBool() ? QLatin1Char('1') : QLatin1Char('0');
        return;
    case QMetaType::QString:
        AnadirCadena(json, *static_cast<const QString *>(v.constData()));
        return;
    default:
        AnadirCadena(json, v.toString());
        return;
    }
}

} // namespace

QString FilasJson(const QStringList &columnas, const std::vector<QVariant> &valores, size_t desde,
                  size_t hasta) {
    // The keys of every row, written once: `{"a":` and `,"b":`.
    QStringList claves;
    for (qsizetype c = 0; c < columnas.size(); ++c)
        claves << (c == 0 ? QStringLiteral("{\"") : QStringLiteral(",\"")) + columnas[c] +
                      QStringLiteral("\":");
    const size_t n = size_t(columnas.size());
    QString json;
    json.reserve(qsizetype((hasta - desde) * 20)); // a key and a value: about 20 characters
    json += QLatin1Char('[');
    for (size_t i = desde; i < hasta; i += n) {
        if (i > desde)
            json += QLatin1Char(',');
        for (size_t c = 0; c < n; ++c) {
            json += claves[qsizetype(c)];
            AnadirValor(json, valores[i + c]);
        }
        json += QLatin1Char('}');
    }
    json += QLatin1Char(']');
    return json;
}

} // namespace SQLMotor
