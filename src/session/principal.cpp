#include "principal.h"

#include "platform/datos/cadenaconexion.h"
#include "platform/datos/errorbd.h"
#include "platform/datos/recordset.h"
#include "platform/datos/sistema.h"
#include "sesionsuite.h"
#include "suite/datos/svcconexion.h"
#include "suite/datos/svcopciones.h"
#include "suite/ui/svcaspecto.h"
#include "suite/ui/svcescala.h"
#include "suite/ui/svcteclado.h"
#include "suite/ui/svctraduccion.h"
#include "vida.h"

#include <QDir>

using namespace ADODB;
using namespace Sistema;

RegistroSesion SesionSuite;

namespace Principal {

namespace {

/// The data source that names this terminal. Its one table, listadostemporal, is read at
/// start-up and never again.
const QString origenTerminal = QStringLiteral("dsn=") + OrigenTerminal;

/// A value of the terminal's table, over a connection that lives only for this call.
QString LeerListadoTemporal(const QString &columna) {
    ADODB::Connection conexion;
    conexion.ConnectionString = origenTerminal;
    conexion.Open(QString(), QString(), QString(), -1);
    QString resultado;
    try {
        ADODB::Recordset rs;
        rs.Open(QStringLiteral("Select %1 from listadostemporal").arg(columna), conexion);
        if (rs.RecordCount() > 0)
            resultado = rs.Fields(columna).Texto();
    } catch (const ErrorBD &error) {
        // The suite's terminal table lives apart from the suite's database: say which source
        // and what was looked for there, or the operator hunts in the wrong database.
        throw ErrorBD(QStringLiteral("No se puede leer el dato \"%1\" del terminal en la tabla "
                                     "listadostemporal del origen de datos \"%2\" (%3). "
                                     "Compruebe que esa tabla existe y tiene las columnas "
                                     "list1 y list2.\n")
                          .arg(columna, origenTerminal, conexion.Destino()) +
                      error.Texto());
    }
    return resultado;
}

qint16 Corto(const ADODB::Field &campo) {
    const qint32 n = campo.Entero();
    if (n < -32768 || n > 32767)
        throw ErrorBD(QStringLiteral("El valor %1 de %2 no cabe en un entero corto")
                          .arg(n)
                          .arg(campo.Name()));
    return qint16(n);
}

} // namespace

QString LeerList2() {
    return LeerListadoTemporal(QStringLiteral("list2"));
}
QString LeerList1() {
    return LeerListadoTemporal(QStringLiteral("list1"));
}

void CargarSesion() {
    ADODB::Connection &conexion = *SesionSuite.Conexion;
    SesionSuite.list2 = LeerList2();
    SesionSuite.list1 = LeerList1();
    SesionSuite.RutaFotos =
        DirectorioPrograma() + QDir::separator() + QStringLiteral("fotos") + QDir::separator();
    SesionSuite.EstiloAspecto = svcOpciones().LeerEstiloAspecto(conexion);
    SesionSuite.AnchoPantalla = svcOpciones().LeerAnchoPantalla(conexion);
    SesionSuite.AltoPantalla = svcOpciones().LeerAltoPantalla(conexion);
    SesionSuite.AnchoDiseno = AnchoDisenoTwips;
    SesionSuite.AltoDiseno = AltoDisenoTwips;
    SesionSuite.IndicadorOpciones = svcOpciones().LeerIndicadorOpciones(conexion);
    SesionSuite.RutaBandera = LeerBandera();
    SesionSuite.NombreRegional = LeerNombreRegional();
    SesionSuite.AjusteTeclado = svcTeclado().LeerAjusteTeclado();
    SesionSuite.TipoNegocio = svcOpciones().LeerTipoNegocio(conexion);

    {
        ADODB::Recordset rs;
        rs.Open(QStringLiteral("Select numdecimales from opciones"), conexion);
        if (rs.RecordCount() > 0) {
            const ADODB::Field campo = rs.Fields(QStringLiteral("NumDecimales"));
            SesionSuite.NumDecimales = campo.EsNulo() ? 0 : Corto(campo);
        }
        rs.Close();
    }
    {
        // The terminal's name came from another data source: it is bound, never spliced.
        ADODB::Recordset rs;
        rs.Open(QStringLiteral("Select empleado from opciones_terminal where identificador = ?"),
                {SesionSuite.list2}, conexion);
        if (rs.RecordCount() > 0) {
            const ADODB::Field campo = rs.Fields(QStringLiteral("empleado"));
            // A terminal with no employee assigned (Null) keeps employee 0.
            if (!campo.EsNulo())
                SesionSuite.empleado = campo.Entero();
        }
        rs.Close();
    }
    {
        ADODB::Recordset rs;
        rs.Open(QStringLiteral("Select segundoImpuesto,nombreimpuesto1 from configuracionRegional"),
                conexion);
        if (rs.RecordCount() > 0) {
            SesionSuite.SegundoImpuesto =
                rs.Fields(QStringLiteral("SegundoImpuesto")).Value().toBool();
            const ADODB::Field nombre = rs.Fields(QStringLiteral("nombreimpuesto1"));
            SesionSuite.nombreimpuesto1 =
                nombre.EsNulo() ? QStringLiteral("Impuesto") : nombre.Texto();
        }
        rs.Close();
    }
    SesionSuite.EmpleadoNombre = NombreEmpleado();
    LeerMultitienda();
}

void LeerMultitienda() {
    SesionSuite.nombretienda.clear();
    SesionSuite.multitienda = false;
    ADODB::Recordset rs;
    rs.Open(QStringLiteral("Select multitienda, nombretienda from opciones"),
            *SesionSuite.Conexion);
    if (rs.RecordCount() > 0) {
        const ADODB::Field campo = rs.Fields(QStringLiteral("multitienda"));
        const QString valor = campo.Texto();
        if (valor == QLatin1String("S") || valor == QLatin1String("T")) {
            SesionSuite.multitienda = true;
            SesionSuite.nombretienda = rs.Fields(QStringLiteral("nombretienda")).Texto();
        }
    }
    rs.Close();
}

QString LeerBandera() {
    QString resultado;
    ADODB::Recordset rs;
    rs.Open(QStringLiteral("Select bandera from configuracionregional"), *SesionSuite.Conexion);
    if (rs.RecordCount() > 0) {
        const QString ruta = rs.Fields(QStringLiteral("Bandera")).Texto();
        if (ExisteFichero(ruta) != 0)
            resultado = ruta;
    }
    rs.Close();
    return resultado;
}

QString LeerNombreRegional() {
    QString resultado;
    ADODB::Recordset rs;
    rs.Open(QStringLiteral("Select nombre from configuracionregional"), *SesionSuite.Conexion);
    if (rs.RecordCount() > 0)
        resultado = rs.Fields(QStringLiteral("nombre")).Texto();
    rs.Close();
    return resultado;
}

QString NombreEmpleado() {
    QString resultado;
    ADODB::Recordset rs;
    rs.Open(QStringLiteral("Select nombre, apellidos from empleados where codigo = ") +
                QString::number(SesionSuite.empleado),
            *SesionSuite.Conexion);
    if (rs.RecordCount() > 0)
        resultado = rs.Fields(QStringLiteral("nombre")).Texto() + QLatin1Char(' ') +
                    rs.Fields(QStringLiteral("apellidos")).Texto().left(1);
    rs.Close();
    return resultado;
}

namespace {

/// The services when no program lives (a test of start-up alone): they hold nothing of Qt or
/// of the database, so they may outlive everything.
template <class T> T &Servicio(T Vida::*miembro) {
    if (Vida *v = Vida::Actual())
        return v->*miembro;
    static T sinPrograma;
    return sinPrograma;
}

} // namespace

SvcConexion &svcConexion() {
    return Servicio(&Vida::conexion);
}
SvcOpciones &svcOpciones() {
    return Servicio(&Vida::opciones);
}
SvcAspecto &svcAspecto() {
    return Servicio(&Vida::aspecto);
}
SvcEscala &svcEscala() {
    return Servicio(&Vida::escala);
}
SvcTeclado &svcTeclado() {
    return Servicio(&Vida::teclado);
}
SvcTraduccion &svcTraduccion() {
    return Servicio(&Vida::traduccion);
}

void ReiniciarSesion() {
    SesionSuite = RegistroSesion();
}

} // namespace Principal
