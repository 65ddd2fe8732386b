#include "svcregistros.h"

#include "esquema.h"
#include "platform/datos/avisocambios.h"
#include "platform/datos/errorbd.h"
#include "platform/datos/regional.h"

#include <QRegularExpression>
#include <QSqlError>
#include <QSqlQuery>
#include <QStringList>
#include <QVariantList>
#include <limits>

using namespace ADODB;
using namespace Sistema;

// How a field list's values are read:
//   whole numbers   an optional sign and digits ("12", "-3", "+7"); spaces around them are
//                   ignored. Beyond 32 bits (16 for a small whole number) is refused.
//   dates           the regional text of a date ("31/12/2026" in Spain, "12/31/2026" in the
//                   US) or ISO "2026-12-31".
//   prices          digits with at most one decimal separator, a comma or a point, whichever
//                   the operator typed: "12,5", "12.50", "-3", ",75". There is no thousands
//                   separator: "1.234" is one euro and 234 thousandths, and "1.234,56" (two
//                   separators) is refused, as are letters and more than 15 significant
//                   digits (what every database of the suite keeps exactly). The value goes
//                   to the database as exact decimal text with a point, never through a float.
//   reals           the same form, as a double.
//   Booleans        S, T, Sí, 1, -1, Verdadero, True, Yes, Y / N, F, 0, Falso, False, No
//                   (any case).
//   texts           exactly as given: an empty text is stored empty, not as Null.
// An empty value of any kind but text is refused.

namespace {

struct Campo {
    const ColumnaEsquema *columna;
    QVariant valor;
};

[[noreturn]] void NoCabe(const TablaEsquema &tabla, const ColumnaEsquema &columna,
                         const QString &valor, const QString &motivo) {
    throw ErrorBD(
        QStringLiteral("El valor \"%1\" no vale para %2.%3: %4. No se ha grabado nada.")
            .arg(valor, QLatin1String(tabla.nombre), QLatin1String(columna.nombre), motivo));
}

QVariant Entero(const TablaEsquema &tabla, const ColumnaEsquema &columna, const QString &valor,
                qlonglong minimo, qlonglong maximo, const QString &clase) {
    static const QRegularExpression forma(QStringLiteral("^[+-]?[0-9]+$"));
    const QString t = valor.trimmed();
    if (!forma.match(t).hasMatch())
        NoCabe(tabla, columna, valor,
               QStringLiteral("se esperaba un número entero (solo cifras y, delante, un signo)"));
    bool ok = false;
    const qlonglong n = t.toLongLong(&ok);
    if (!ok || n < minimo || n > maximo)
        NoCabe(tabla, columna, valor,
               QStringLiteral("no cabe en un %1 (de %2 a %3)").arg(clase).arg(minimo).arg(maximo));
    return QVariant(int(n));
}

/// A number typed with a comma or a point as its decimal separator, as exact text with a
/// point ("12,50" -> "12.50", ",5" -> "0.5", "+007" -> "7"); empty when it isn't one.
QString DecimalNormalizado(const QString &valor) {
    static const QRegularExpression forma(QStringLiteral("^([+-]?)([0-9]*)(?:[.,]([0-9]*))?$"));
    const QRegularExpressionMatch m = forma.match(valor.trimmed());
    if (!m.hasMatch())
        return {};
    QString entera = m.captured(2);
    const QString fraccion = m.captured(3);
    if (entera.isEmpty() && fraccion.isEmpty())
        return {};
    while (entera.size() > 1 && entera.startsWith(QLatin1Char('0')))
        entera.remove(0, 1);
    if (entera.isEmpty())
        entera = QStringLiteral("0");
    // Significant digits: neither leading nor trailing zeros count ("0.0050" has two).
    QString fraccionUtil = fraccion;
    while (fraccionUtil.endsWith(QLatin1Char('0')))
        fraccionUtil.chop(1);
    QString cifras = (entera == QLatin1String("0") ? QString() : entera) + fraccionUtil;
    while (cifras.startsWith(QLatin1Char('0')))
        cifras.remove(0, 1);
    if (cifras.size() > 15)
        return {};
    QString texto = entera;
    if (!fraccion.isEmpty())
        texto += QLatin1Char('.') + fraccion;
    if (m.captured(1) == QLatin1String("-") && !cifras.isEmpty())
        texto.prepend(QLatin1Char('-'));
    return texto;
}

QVariant Booleano(const TablaEsquema &tabla, const ColumnaEsquema &columna, const QString &valor) {
    const QString t = valor.trimmed();
    for (const char *si : {"S", "T", "Sí", "Si", "1", "-1", "Verdadero", "True", "Yes", "Y"})
        if (t.compare(QString::fromUtf8(si), Qt::CaseInsensitive) == 0)
            return QVariant(true);
    for (const char *no : {"N", "F", "0", "Falso", "False", "No"})
        if (t.compare(QString::fromUtf8(no), Qt::CaseInsensitive) == 0)
            return QVariant(false);
    NoCabe(tabla, columna, valor,
           QStringLiteral("se esperaba S o N (también Verdadero o Falso, 1 o 0)"));
}

QVariant Convertir(const TablaEsquema &tabla, const ColumnaEsquema &columna, const QString &valor) {
    if (columna.tipo != TipoColumna::Texto && valor.trimmed().isEmpty())
        NoCabe(tabla, columna, valor, QStringLiteral("está vacío"));
    switch (columna.tipo) {
    case TipoColumna::Entero:
        return Entero(tabla, columna, valor, std::numeric_limits<qint32>::min(),
                      std::numeric_limits<qint32>::max(), QStringLiteral("número entero"));
    case TipoColumna::EnteroCorto:
        return Entero(tabla, columna, valor, std::numeric_limits<qint16>::min(),
                      std::numeric_limits<qint16>::max(), QStringLiteral("número entero corto"));
    case TipoColumna::Fecha: {
        const QDate fecha = TextoAFecha(valor);
        if (!fecha.isValid())
            NoCabe(tabla, columna, valor,
                   QStringLiteral("no es una fecha válida (se espera %1)")
                       .arg(FormatoFechaRegional()));
        return fecha;
    }
    case TipoColumna::Decimal:
    case TipoColumna::Real: {
        const QString texto = DecimalNormalizado(valor);
        if (texto.isEmpty())
            NoCabe(
                tabla, columna, valor,
                QStringLiteral("se esperaba un número con, a lo sumo, una coma o un punto decimal "
                               "y no más de 15 cifras"));
        if (columna.tipo == TipoColumna::Decimal)
            return texto;
        return texto.toDouble();
    }
    case TipoColumna::Booleano:
        return Booleano(tabla, columna, valor);
    case TipoColumna::Texto:
        // A null QString would be bound as Null: an empty text must stay an empty text.
        return valor.isEmpty() ? QVariant(QStringLiteral("")) : QVariant(valor);
    }
    return valor;
}

const TablaEsquema &Tabla(const QString &nombre) {
    const TablaEsquema *tabla = BuscarTabla(nombre);
    if (!tabla)
        throw ErrorBD(
            QStringLiteral("La tabla \"%1\" no es de la base de la tienda. No se ha grabado nada.")
                .arg(nombre));
    return *tabla;
}

/// Reads "col=value|col=value|" into typed values, in the caller's order. Every item is
/// checked before anything runs.
std::vector<Campo> LeerCampos(const TablaEsquema &tabla, const QString &campos) {
    const auto malFormada = [&](const QString &motivo) {
        return ErrorBD(
            QStringLiteral(
                "Lista de campos mal formada para %1 (\"%2\"): %3. No se ha grabado nada.")
                .arg(QLatin1String(tabla.nombre), campos, motivo));
    };
    if (campos.isEmpty())
        throw malFormada(QStringLiteral("está vacía"));
    const QStringList elementos = campos.split(QLatin1Char('|'));
    if (!elementos.last().isEmpty())
        throw malFormada(QStringLiteral("el último elemento, \"%1\", no termina en \"|\"")
                             .arg(elementos.last()));
    std::vector<Campo> resultado;
    for (qsizetype i = 0; i + 1 < elementos.size(); ++i) {
        const QString &elemento = elementos.at(i);
        const qsizetype igual = elemento.indexOf(QLatin1Char('='));
        if (igual < 0)
            throw malFormada(
                QStringLiteral("\"%1\" no tiene la forma columna=valor (un valor no puede "
                               "llevar \"|\")")
                    .arg(elemento));
        const QString nombre = elemento.left(igual).trimmed();
        if (nombre.isEmpty())
            throw malFormada(QStringLiteral("\"%1\" no dice la columna").arg(elemento));
        const ColumnaEsquema *columna = BuscarColumna(tabla, nombre);
        if (!columna)
            throw malFormada(QStringLiteral("la tabla no tiene la columna \"%1\"").arg(nombre));
        for (const Campo &c : resultado)
            if (c.columna == columna)
                throw malFormada(QStringLiteral("la columna \"%1\" aparece dos veces").arg(nombre));
        resultado.push_back({columna, Convertir(tabla, *columna, elemento.mid(igual + 1))});
    }
    return resultado;
}

/// How many values a condition asks for: its ?s, leaving out those inside a text between
/// apostrophes or a name between double quotes (a doubled apostrophe opens and closes again).
qsizetype Marcas(const QString &texto) {
    qsizetype marcas = 0;
    QChar dentro;
    for (const QChar c : texto) {
        if (!dentro.isNull()) {
            if (c == dentro)
                dentro = QChar();
        } else if (c == u'\'' || c == u'"') {
            dentro = c;
        } else if (c == u'?') {
            ++marcas;
        }
    }
    return marcas;
}

const Criterio &CriterioObligatorio(const TablaEsquema &tabla, const Criterio &criterio) {
    // An empty criterion would reach every row of the table: never what a caller meant.
    if (criterio.texto.trimmed().isEmpty())
        throw ErrorBD(
            QStringLiteral(
                "Falta el criterio para %1: no se cambia una tabla entera. No se ha grabado nada.")
                .arg(QLatin1String(tabla.nombre)));
    const qsizetype marcas = Marcas(criterio.texto);
    if (marcas != criterio.valores.size())
        throw ErrorBD(QStringLiteral("El criterio para %1 (\"%2\") pide %3 valores y lleva %4. "
                                     "No se ha grabado nada.")
                          .arg(QLatin1String(tabla.nombre), criterio.texto)
                          .arg(marcas)
                          .arg(criterio.valores.size()));
    return criterio;
}

void Ejecutar(ADODB::Connection &conexion, const QString &sentencia,
              const std::vector<Campo> &campos, const QVariantList &valoresCriterio = {}) {
    if (!conexion.Abierta())
        throw ErrorBD(QStringLiteral("La conexión no está abierta.\nSentencia: ") + sentencia);
    const QString texto = conexion.dialecto().Adaptar(sentencia);
    QSqlQuery q(conexion.Base());
    // Under the connection's deadline: a server that stops answering is given up.
    if (!conexion.Ejecutar([&] {
            if (!q.prepare(texto))
                return false;
            for (const Campo &c : campos)
                q.addBindValue(c.valor);
            for (const QVariant &v : valoresCriterio)
                q.addBindValue(v);
            return q.exec();
        }))
        throw conexion.Fallo(q.lastError(), texto);
    // A unit tells the other terminals when it commits; a write on its own, now.
    if (!conexion.EnTransaccion())
        ADODB::AnunciarCambios(conexion);
}

} // namespace

void SvcRegistros::InsertarRegistro(ADODB::Connection &conexion, const QString &tabla,
                                    const QString &campos, const QString &, bool, const QString &) {
    const TablaEsquema &t = Tabla(tabla);
    const std::vector<Campo> valores = LeerCampos(t, campos);
    QStringList columnas, marcas;
    for (const Campo &c : valores) {
        columnas << QLatin1String(c.columna->nombre);
        marcas << QStringLiteral("?");
    }
    Ejecutar(conexion,
             QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
                 .arg(QLatin1String(t.nombre), columnas.join(QStringLiteral(", ")),
                      marcas.join(QStringLiteral(", "))),
             valores);
}

void SvcRegistros::ModificarRegistro(ADODB::Connection &conexion, const QString &tabla,
                                     const QString &campos, const QString &, bool,
                                     const Criterio &criterio) {
    const TablaEsquema &t = Tabla(tabla);
    const std::vector<Campo> valores = LeerCampos(t, campos);
    const Criterio &donde = CriterioObligatorio(t, criterio);
    QStringList asignaciones;
    for (const Campo &c : valores)
        asignaciones << QLatin1String(c.columna->nombre) + QStringLiteral(" = ?");
    Ejecutar(conexion,
             QStringLiteral("UPDATE %1 SET %2 WHERE ")
                     .arg(QLatin1String(t.nombre), asignaciones.join(QStringLiteral(", "))) +
                 donde.texto,
             valores, donde.valores);
}

void SvcRegistros::BorrarRegistro(ADODB::Connection &conexion, const QString &tabla,
                                  const QString &, bool, const Criterio &criterio) {
    const TablaEsquema &t = Tabla(tabla);
    const Criterio &donde = CriterioObligatorio(t, criterio);
    Ejecutar(conexion,
             QStringLiteral("DELETE FROM %1 WHERE ").arg(QLatin1String(t.nombre)) + donde.texto, {},
             donde.valores);
}

void SvcRegistros::ModificarRegistro(ADODB::Connection &conexion, const QString &tabla,
                                     const QString &campos, const QString &nombretienda,
                                     bool multitienda, const QString &criterio, int,
                                     const QString &, const QString &, const QString &) {
    ModificarRegistro(conexion, tabla, campos, nombretienda, multitienda, Criterio{criterio, {}});
}

void SvcRegistros::BorrarRegistro(ADODB::Connection &conexion, const QString &tabla,
                                  const QString &nombretienda, bool multitienda,
                                  const QString &criterio) {
    BorrarRegistro(conexion, tabla, nombretienda, multitienda, Criterio{criterio, {}});
}

QString SvcRegistros::ComprobarCampos(const QString &tabla, const QString &campos) {
    try {
        LeerCampos(Tabla(tabla), campos);
    } catch (const ErrorBD &e) {
        return e.Texto();
    }
    return {};
}
