#include "cambioprecios.h"

#include "aritmetica.h"
#include "cambiointerno.h"
#include "cambioporvalores.h"
#include "escritura.h"
#include "sqlmotor.h"

#include "platform/datos/errorbd.h"
#include "platform/datos/recordset.h"
#include "platform/datos/transaccion.h"

#include <algorithm>

using namespace ADODB;

using Alcance = PeticionCambio::Alcance;
using Base = PeticionCambio::Base;

namespace {

/// One row as read, before the rule.
struct FilaLeida {
    QVariant clave; ///< Null: the catalogue has it, the list doesn't
    qint32 producto = 0;
    QString variante;
    QString nombre;
    QString talla;
    QString color;
    bool tieneAnterior = false;
    QString anterior; ///< as stored, in text
    bool tieneBase = false;
    QString base;
};

/// The select of the rows a request reaches. `conNombres` adds the size's and colour's
/// words, which only the preview shows.
QString Consulta(const ContextoMotor &contexto, const PeticionCambio &p, SQLMotor::Motor motor,
                 bool conNombres) {
    const QString clave = SQLMotor::ClaveFila(motor, QStringLiteral("d"));
    const QString tallaColor =
        conNombres ? QStringLiteral(", t.descripcioncorta as talla, c.nombre as color")
                   : QStringLiteral(", '' as talla, '' as color");
    const QString unirTallaColor =
        conNombres ? QStringLiteral(" left join tallas t on t.codigo = pt.talla left join "
                                    "colorestextil c on c.codigo = pt.color")
                   : QString();
    if (p.alcance == Alcance::Catalogo) {
        if (!contexto.tallaColor)
            return QStringLiteral("select ") + clave +
                   QStringLiteral(" as clave, p.codigo as producto, '' as variante, cast(d.precio "
                                  "as text) as anterior, p.nombre, cast(p.precio as text) as base, "
                                  "'' as talla, '' as color from productos p left join "
                                  "detalle_precio d on d.identificador = ? and d.producto = "
                                  "p.codigo and coalesce(d.codproductotextil, '') = '' where "
                                  "p.borrar = 0");
        return QStringLiteral("select ") + clave +
               QStringLiteral(" as clave, p.codigo as producto, pt.codigohijo as variante, "
                              "cast(d.precio as text) as anterior, p.nombre, cast(coalesce("
                              "pt.precio, p.precio) as text) as base") +
               tallaColor +
               QStringLiteral(" from productos p join productostextil pt on pt.codigopadre = "
                              "p.codigo") +
               unirTallaColor +
               QStringLiteral(" left join detalle_precio d on d.identificador = ? and d.producto "
                              "= p.codigo and d.codproductotextil = pt.codigohijo where p.borrar "
                              "= 0");
    }
    const bool variantes = conNombres || p.base == Base::Catalogo;
    QString sql = QStringLiteral("select ") + clave +
                  QStringLiteral(" as clave, d.producto, coalesce(d.codproductotextil, '') as "
                                 "variante, cast(d.precio as text) as anterior, p.nombre, ") +
                  (p.base == Base::Catalogo
                       ? QStringLiteral("cast(coalesce(pt.precio, p.precio) as text) as base")
                       : QStringLiteral("'' as base")) +
                  tallaColor +
                  QStringLiteral(" from detalle_precio d left join productos p on p.codigo = "
                                 "d.producto");
    if (variantes)
        sql += QStringLiteral(" left join productostextil pt on pt.codigopadre = d.producto and "
                              "pt.codigohijo = d.codproductotextil") +
               unirTallaColor;
    sql += QStringLiteral(" where d.identificador = ?");
    if (p.alcance == Alcance::Seccion)
        sql += QStringLiteral(" and p.seccion = ?");
    return sql;
}

std::vector<FilaLeida> LeerFilas(const ContextoMotor &contexto, const PeticionCambio &p,
                                 bool conNombres) {
    ADODB::Connection &conexion = *contexto.conexion;
    const SQLMotor::Motor motor = SQLMotor::De(conexion);
    QVariantList valores{p.lista};
    if (p.alcance == Alcance::Seccion)
        valores << p.seccion;
    ADODB::Recordset rs;
    rs.Open(Consulta(contexto, p, motor, conNombres), valores, conexion);
    std::vector<FilaLeida> filas;
    filas.reserve(size_t(rs.RecordCount()));
    const ADODB::Field clave = rs.Fields(0), producto = rs.Fields(1), variante = rs.Fields(2),
                       anterior = rs.Fields(3), nombre = rs.Fields(4), base = rs.Fields(5),
                       talla = rs.Fields(6), color = rs.Fields(7);
    const QString prefijo = p.prefijo.trimmed();
    for (; !rs.Eof(); rs.MoveNext()) {
        FilaLeida f;
        f.nombre = nombre.Texto();
        if (p.alcance == Alcance::NombreEmpieza &&
            !f.nombre.startsWith(prefijo, Qt::CaseInsensitive))
            continue;
        f.clave = clave.Value();
        f.producto = producto.Entero();
        f.variante = variante.Texto();
        f.tieneAnterior = !anterior.EsNulo();
        f.anterior = anterior.Texto();
        if (p.base == Base::Catalogo) {
            f.tieneBase = !base.EsNulo();
            f.base = base.Texto();
        } else {
            f.tieneBase = f.tieneAnterior;
            f.base = f.anterior;
        }
        if (conNombres) {
            f.talla = talla.Texto();
            f.color = color.Texto();
        }
        filas.push_back(std::move(f));
    }
    return filas;
}

/// What the rule makes of one row.
struct Calculo {
    enum Desenlace { Cambia, Igual, Rechazada } clase;
    std::optional<Importe> anterior;
    std::optional<Importe> nuevo;
    QString motivo;
};

Calculo Calcular(const FilaLeida &f, const ReglaCambio &regla, Base base) {
    Calculo c{Calculo::Rechazada, std::nullopt, std::nullopt, QString()};
    if (f.tieneAnterior)
        c.anterior = Aritmetica::LeerGuardado(f.anterior);
    if (!f.tieneBase) {
        c.motivo = base == Base::Catalogo ? QStringLiteral("el producto no tiene precio en el "
                                                           "catálogo")
                                          : QStringLiteral("la fila no tiene precio");
        return c;
    }
    const std::optional<Importe> partida = Aritmetica::LeerGuardado(f.base);
    if (!partida) {
        c.motivo = QStringLiteral("el precio de partida \"%1\" no es un número").arg(f.base);
        return c;
    }
    c.nuevo = NuevoPrecio(*partida, regla, &c.motivo);
    if (!c.nuevo)
        return c;
    c.clase =
        c.anterior && *c.anterior == *c.nuevo && f.tieneAnterior ? Calculo::Igual : Calculo::Cambia;
    return c;
}

FilaCambio AFilaCambio(const FilaLeida &f, const Calculo &c) {
    FilaCambio r;
    r.producto = f.producto;
    r.variante = f.variante;
    r.nombre = f.nombre;
    r.talla = f.talla;
    r.color = f.color;
    r.anterior = c.anterior;
    r.nuevo = c.clase == Calculo::Rechazada ? std::nullopt : c.nuevo;
    r.motivo = c.motivo;
    return r;
}

bool PorNombre(const FilaCambio &a, const FilaCambio &b) {
    const int n = QString::localeAwareCompare(a.nombre, b.nombre);
    if (n != 0)
        return n < 0;
    if (a.producto != b.producto)
        return a.producto < b.producto;
    return a.variante < b.variante;
}

/// A short description of the change for the history: "-20 %, +1,00, a 0,05, ,95".
QString Describir(const PeticionCambio &p, int decimales) {
    QStringList partes;
    const auto texto = [](const Importe &i, int d) { return i.Texto(std::max(d, i.Escala())); };
    if (p.regla.porcentaje.Signo() != 0)
        partes << (p.regla.porcentaje.Signo() > 0 ? QStringLiteral("+") : QString()) +
                      texto(p.regla.porcentaje, 0) + QStringLiteral(" %");
    if (p.regla.suma.Signo() != 0)
        partes << (p.regla.suma.Signo() > 0 ? QStringLiteral("+") : QString()) +
                      texto(p.regla.suma, decimales);
    partes << QStringLiteral("redondeo ") + texto(p.regla.paso, decimales);
    if (p.regla.terminacion)
        partes << QStringLiteral("terminación ") + texto(*p.regla.terminacion, 0).mid(1);
    if (p.base == Base::Catalogo)
        partes << QStringLiteral("sobre el precio del catálogo");
    switch (p.alcance) {
    case Alcance::Todos:
        break;
    case Alcance::Seccion:
        partes << QStringLiteral("sección ") + p.seccion;
        break;
    case Alcance::NombreEmpieza:
        partes << QStringLiteral("nombres que empiezan por \"") + p.prefijo + QLatin1Char('"');
        break;
    case Alcance::Catalogo:
        partes << QStringLiteral("todo el catálogo");
        break;
    }
    return partes.join(QStringLiteral(", "));
}

} // namespace

QString ComprobarPeticion(const PeticionCambio &peticion) {
    if (peticion.alcance == Alcance::Catalogo && peticion.base != Base::Catalogo)
        return QStringLiteral("Para aplicar el cambio a todo el catálogo, el precio de partida "
                              "tiene que ser el del catálogo.");
    if (peticion.alcance == Alcance::Seccion && peticion.seccion.isEmpty())
        return QStringLiteral("Elija la sección cuyos precios quiere cambiar.");
    if (peticion.alcance == Alcance::NombreEmpieza && peticion.prefijo.trimmed().isEmpty())
        return QStringLiteral("Escriba el principio de los nombres cuyos precios quiere cambiar.");
    return {};
}

QStringList SeccionesCatalogo(const ContextoMotor &contexto) {
    ADODB::Recordset rs;
    rs.Open(QStringLiteral("select distinct seccion from productos where seccion is not null and "
                           "seccion <> '' order by seccion"),
            *contexto.conexion);
    QStringList secciones;
    for (; !rs.Eof(); rs.MoveNext())
        secciones << rs.Fields(0).Texto();
    return secciones;
}

VistaPreviaCambio PrevisualizarCambio(const ContextoMotor &contexto, const PeticionCambio &peticion,
                                      int maximo) {
    const QString motivo = ComprobarPeticion(peticion);
    if (!motivo.isEmpty())
        throw ErrorBD(motivo);
    VistaPreviaCambio vista;
    if (!SQLMotor::ExisteLista(*contexto.conexion, peticion.lista)) {
        vista.listaExiste = false;
        return vista;
    }
    const std::vector<FilaLeida> filas = LeerFilas(contexto, peticion, true);
    QList<FilaCambio> cambian;
    for (const FilaLeida &f : filas) {
        const Calculo c = Calcular(f, peticion.regla, peticion.base);
        switch (c.clase) {
        case Calculo::Cambia:
            ++vista.cambian;
            cambian << AFilaCambio(f, c);
            break;
        case Calculo::Igual:
            ++vista.iguales;
            break;
        case Calculo::Rechazada:
            vista.rechazadas << AFilaCambio(f, c);
            break;
        }
    }
    const qsizetype n = std::min<qsizetype>(std::max(0, maximo), cambian.size());
    std::partial_sort(cambian.begin(), cambian.begin() + n, cambian.end(), PorNombre);
    vista.primeras = cambian.mid(0, n);
    std::sort(vista.rechazadas.begin(), vista.rechazadas.end(), PorNombre);
    return vista;
}

CambiosFilas CalcularCambios(const ContextoMotor &contexto, const PeticionCambio &peticion,
                             CuentaCambio &cuenta) {
    const std::vector<FilaLeida> filas = LeerFilas(contexto, peticion, false);
    CambiosFilas cambios;
    for (const FilaLeida &f : filas) {
        const Calculo c = Calcular(f, peticion.regla, peticion.base);
        if (c.clase == Calculo::Rechazada)
            ++cuenta.rechazadas;
        if (c.clase != Calculo::Cambia)
            continue;
        if (f.clave.isNull())
            cambios.altas.push_back({f.producto, f.variante, *c.nuevo});
        else
            cambios.modificar.push_back({f.clave, *c.nuevo});
    }
    cuenta.cambiadas = cambios.Total();
    return cambios;
}

ResultadoCambio AplicarCambio(const ContextoMotor &contexto, const PeticionCambio &peticion) {
    const QString motivo = ComprobarPeticion(peticion);
    if (!motivo.isEmpty())
        throw ErrorBD(motivo + QStringLiteral(" No se ha grabado nada."));
    ADODB::Connection &conexion = *contexto.conexion;
    HistorialDisponible(conexion); // made, if need be, before the unit
    ResultadoCambio resultado;
    ADODB::Transaccion unidad(conexion);
    if (!SQLMotor::BloquearLista(conexion, peticion.lista)) {
        resultado.listaExiste = false;
        resultado.mensaje = QStringLiteral("La tarifa ya no existe: se ha eliminado desde otro "
                                           "puesto. No se ha cambiado ningún precio.");
        return resultado;
    }
    CuentaCambio cuenta;
    if (CambioPorValores(peticion)) {
        resultado.operacion = CambiarPorValores(contexto, peticion,
                                                Describir(peticion, contexto.numDecimales), cuenta);
    } else if (const CambiosFilas cambios = CalcularCambios(contexto, peticion, cuenta);
               cambios.Total() > 0) {
        // An apply that changes nothing leaves no operation in the history.
        RegistroOperacion registro(contexto, peticion.lista, TipoOperacion::Cambio,
                                   Describir(peticion, contexto.numDecimales));
        EscribirCambios(conexion, peticion.lista, cambios, &registro);
        resultado.operacion = registro.Cerrar();
    }
    unidad.Commit();
    resultado.cambiadas = cuenta.cambiadas;
    resultado.rechazadas = cuenta.rechazadas;
    resultado.mensaje = QStringLiteral("Precios cambiados: %1.").arg(cuenta.cambiadas);
    if (cuenta.rechazadas > 0)
        resultado.mensaje += QStringLiteral(" Se han dejado como estaban %1 filas que el cambio no "
                                            "puede calcular (vea la vista previa).")
                                 .arg(cuenta.rechazadas);
    return resultado;
}
