#include "svcopciones.h"

#include "platform/datos/recordset.h"

namespace {

double anchoPantalla = 15360.0;
double altoPantalla = 11085.0;

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

double Tamano(const QVariant &v, double pantalla) {
    bool ok = false;
    const double d = v.toDouble(&ok);
    return ok && d > 0 ? d : pantalla;
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
    return Tamano(Opcion(conexion, QStringLiteral("anchopantalla")), anchoPantalla);
}

double SvcOpciones::LeerAltoPantalla(ADODB::Connection &conexion) {
    return Tamano(Opcion(conexion, QStringLiteral("altopantalla")), altoPantalla);
}

void SvcOpciones::FijarTamanoPantalla(double anchoTwips, double altoTwips) {
    anchoPantalla = anchoTwips;
    altoPantalla = altoTwips;
}
