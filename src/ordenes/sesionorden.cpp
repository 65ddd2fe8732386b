// The database and the shop a command works on, opened as the program's start-up opens them,
// without the screens' session.
#include "orden.h"

#include "intercambio/preciosdelista.h"
#include "platform/datos/recordset.h"
#include "platform/datos/regional.h"
#include "session/principal.h"
#include "suite/datos/svcconexion.h"
#include "suite/datos/svcopciones.h"

#include <QDate>

using namespace Sistema;

namespace Ordenes {

SesionOrden::SesionOrden() : conexion(std::make_unique<ADODB::Connection>()) {
    SvcConexion().AbrirConexion(QString(), *conexion);
    contexto.conexion = conexion.get();
    contexto.tallaColor = SvcOpciones().LeerTipoNegocio(*conexion) == QLatin1String("TALLACOLOR");
    contexto.terminal = Principal::LeerList2();
    {
        ADODB::Recordset rs;
        rs.Open(QStringLiteral("select numdecimales, nombretienda from opciones"), *conexion);
        if (rs.RecordCount() > 0) {
            const ADODB::Field decimales = rs.Fields(0);
            contexto.numDecimales = decimales.EsNulo() ? 0 : qBound(0, decimales.Entero(), 15);
            nombreTienda = rs.Fields(1).Texto();
        }
    }
    ADODB::Recordset rs;
    rs.Open(QStringLiteral("select empleado from opciones_terminal where identificador = ?"),
            {contexto.terminal}, *conexion);
    if (rs.RecordCount() > 0 && !rs.Fields(0).EsNulo())
        contexto.empleado = rs.Fields(0).Entero();
}

SesionOrden::~SesionOrden() = default;

std::optional<qint32> SesionOrden::Lista(const QString &texto, Consola &consola) {
    const std::optional<qint32> lista = BuscarLista(*conexion, texto);
    if (!lista)
        consola.errores << "tarifas: no hay ninguna tarifa de código o nombre \"" << texto
                        << "\"\n";
    return lista;
}

QDate LeerFecha(const QString &texto, const QString &opcion) {
    const QDate fecha = TextoAFecha(texto.trimmed());
    if (!fecha.isValid())
        throw UsoIncorrecto{QStringLiteral("--%1 \"%2\" no es una fecha (aaaa-mm-dd o %3)")
                                .arg(opcion, texto, FormatoFechaRegional().toLower())};
    return fecha;
}

} // namespace Ordenes
