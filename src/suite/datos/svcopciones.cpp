#include "svcopciones.h"

#include "platform/datos/recordset.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace {

double anchoPantalla = AnchoDisenoTwips;
double altoPantalla = AltoDisenoTwips;

/// The first row's value of one column of opciones; Null when there is no row.
QVariant Opcion(ADODB::Connection &conexion, const QString &columna) {
    ADODB::Recordset rs;
    rs.Open(QStringLiteral("Select %1 from opciones").arg(columna), conexion);
    QVariant valor;
    if (rs.RecordCount() > 0)
        valor = rs.Fields(columna).Value();
    rs.Close();
    return valor;
}

qint16 Corto(const QVariant &v) {
    bool ok = false;
    const int n = v.toInt(&ok);
    return ok && n >= -32768 && n <= 32767 ? qint16(n) : 0;
}

/// One stored size, when it is a size to fit the screens to: a number from half the design's
/// size to ten times the display's. Anything else (1, 1e300, inf, or 1024 where twips were
/// meant) would make a window nobody can use; it counts as not set.
bool TamanoValido(const QVariant &v, double diseno, double pantalla) {
    bool ok = false;
    const double d = v.toDouble(&ok);
    return ok && std::isfinite(d) && d >= diseno / 2 && d <= 10 * std::max(pantalla, diseno);
}

/// The size to fit the screens to, one dimension of it: the stored one when it serves, else
/// the display's. Values stored but unusable are said once on stderr, both together.
double Tamano(ADODB::Connection &conexion, bool ancho) {
    const QVariant anchoGuardado = Opcion(conexion, QStringLiteral("anchopantalla"));
    const QVariant altoGuardado = Opcion(conexion, QStringLiteral("altopantalla"));
    const auto sinValor = [](const QVariant &v) { return v.isNull() || v.toDouble() == 0.0; };
    const bool anchoSirve = TamanoValido(anchoGuardado, AnchoDisenoTwips, anchoPantalla);
    const bool altoSirve = TamanoValido(altoGuardado, AltoDisenoTwips, altoPantalla);
    static bool dicho = false;
    if (!dicho &&
        ((!anchoSirve && !sinValor(anchoGuardado)) || (!altoSirve && !sinValor(altoGuardado)))) {
        dicho = true;
        std::fprintf(stderr, "%s\n",
                     qPrintable(QStringLiteral(
                                    "Las opciones anchopantalla y altopantalla (%1 x %2) no son un "
                                    "tamaño de pantalla en twips (de %3 x %4 a diez pantallas): "
                                    "se usa el de la pantalla.")
                                    .arg(anchoGuardado.toString(), altoGuardado.toString())
                                    .arg(AnchoDisenoTwips / 2)
                                    .arg(AltoDisenoTwips / 2)));
        std::fflush(stderr);
    }
    if (ancho)
        return anchoSirve ? anchoGuardado.toDouble() : anchoPantalla;
    return altoSirve ? altoGuardado.toDouble() : altoPantalla;
}

} // namespace

qint16 SvcOpciones::LeerEstiloAspecto(ADODB::Connection &conexion) {
    return Corto(Opcion(conexion, QStringLiteral("estiloaspecto")));
}

QString SvcOpciones::LeerTipoNegocio(ADODB::Connection &conexion) {
    const QVariant v = Opcion(conexion, QStringLiteral("tiponegocio"));
    return v.isNull() ? QString() : v.toString();
}

qint16 SvcOpciones::LeerIndicadorOpciones(ADODB::Connection &conexion) {
    return Corto(Opcion(conexion, QStringLiteral("indicadoropciones")));
}

double SvcOpciones::LeerAnchoPantalla(ADODB::Connection &conexion) {
    return Tamano(conexion, true);
}

double SvcOpciones::LeerAltoPantalla(ADODB::Connection &conexion) {
    return Tamano(conexion, false);
}

void SvcOpciones::FijarTamanoPantalla(double anchoTwips, double altoTwips) {
    anchoPantalla = anchoTwips;
    altoPantalla = altoTwips;
}
