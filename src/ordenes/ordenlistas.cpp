// tarifas listas: every list of the register, one a line.
#include "orden.h"

#include "platform/datos/recordset.h"

#include <QDate>

namespace Ordenes {

namespace {

int Listas(const QCommandLineParser &, const QStringList &, Consola &consola) {
    SesionOrden sesion;
    ADODB::Recordset rs;
    rs.Open(QStringLiteral("select identificador, descripcion, preciovalidodesde, "
                           "preciovalidohasta from cabecera_precio order by identificador"),
            sesion.Conexion());
    const ADODB::Field codigo = rs.Fields(0), nombre = rs.Fields(1), desde = rs.Fields(2),
                       hasta = rs.Fields(3);
    const QString iso = QStringLiteral("yyyy-MM-dd");
    for (; !rs.Eof(); rs.MoveNext())
        consola.salida << codigo.Texto() << '\t' << EnUnCampo(nombre.Texto()) << '\t'
                       << desde.Value().toDate().toString(iso) << '\t'
                       << hasta.Value().toDate().toString(iso) << '\n';
    return Hecho;
}

} // namespace

DefinicionOrden OrdenListas() {
    return {QStringLiteral("listas"),
            QString(),
            QStringLiteral("Las tarifas, una por línea: código, nombre, desde y hasta "
                           "(aaaa-mm-dd), separados por tabuladores."),
            {},
            {},
            Listas};
}

} // namespace Ordenes
