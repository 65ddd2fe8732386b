// The import itself: the dry run made again inside one unit of work, with the list held, and
// its rows written in batches, with the history of every row, as one operation.
#include "importacion.h"

#include "motor/historial.h"
#include "platform/datos/recordset.h"
#include "platform/datos/transaccion.h"

#include <QSqlDriver>
#include <QSqlQuery>

namespace {

/// Rows per statement: a few hundred bound values, well within every database's limit.
constexpr int porLote = 200;

void Ejecutar(ADODB::Connection &conexion, const QString &sentencia, const QVariantList &valores) {
    const QString texto = conexion.dialecto().Adaptar(sentencia);
    QSqlQuery q(conexion.Base());
    if (!q.prepare(texto))
        throw conexion.Fallo(q.lastError(), texto);
    for (const QVariant &v : valores)
        q.addBindValue(v);
    if (!q.exec())
        throw conexion.Fallo(q.lastError(), texto);
}

/// Whether the list is still there, held until the unit ends: on a server its header row is
/// locked; on SQLite the unit already holds the database's write lock.
bool ListaViva(ADODB::Connection &conexion, qint32 lista) {
    const bool servidor = conexion.dialecto().Producto() == QSqlDriver::PostgreSQL;
    ADODB::Recordset rs;
    rs.Open(QStringLiteral("select identificador from cabecera_precio where identificador = ?") +
                (servidor ? QStringLiteral(" for update") : QString()),
            {lista}, conexion);
    return rs.RecordCount() > 0;
}

/// The rows whose old price goes: changed and removed ones, in batches.
void Borrar(const ContextoMotor &contexto, qint32 lista,
            const std::vector<const PrecioImportado *> &filas) {
    for (size_t inicio = 0; inicio < filas.size(); inicio += porLote) {
        const size_t fin = std::min(filas.size(), inicio + porLote);
        QVariantList valores{lista};
        QString condicion;
        for (size_t i = inicio; i < fin; ++i) {
            const PrecioImportado &f = *filas[i];
            if (!contexto.tallaColor) {
                // The plain shop's row of a product, whatever variant it may carry.
                condicion += (i == inicio ? QStringLiteral("?") : QStringLiteral(",?"));
                valores << f.producto;
            } else {
                condicion += (i == inicio ? QString() : QStringLiteral(" or ")) +
                             QStringLiteral("(producto = ? and coalesce(codproductotextil, '') "
                                            "= ?)");
                valores << f.producto << f.variante;
            }
        }
        Ejecutar(*contexto.conexion,
                 QStringLiteral("delete from detalle_precio where identificador = ? and ") +
                     (contexto.tallaColor ? QString(QLatin1Char('(') + condicion + QLatin1Char(')'))
                                          : QString(QStringLiteral("producto in (") + condicion +
                                                    QLatin1Char(')'))),
                 valores);
    }
}

/// The rows with their new price: added and changed ones, in batches.
void Insertar(const ContextoMotor &contexto, qint32 lista,
              const std::vector<const PrecioImportado *> &filas) {
    // The plain shop stores no variant (Null), as the editor does.
    const QVariant sinVariante(QMetaType::fromType<QString>());
    for (size_t inicio = 0; inicio < filas.size(); inicio += porLote) {
        const size_t fin = std::min(filas.size(), inicio + porLote);
        QVariantList valores;
        valores.reserve(qsizetype(fin - inicio) * 4);
        QString filasSql;
        for (size_t i = inicio; i < fin; ++i) {
            const PrecioImportado &f = *filas[i];
            filasSql += (i == inicio ? QStringLiteral("(?,?,?,?)") : QStringLiteral(",(?,?,?,?)"));
            valores << lista << f.producto << f.nuevo->TextoSQL()
                    << (contexto.tallaColor ? QVariant(f.variante) : sinVariante);
        }
        Ejecutar(*contexto.conexion,
                 QStringLiteral("insert into detalle_precio (identificador, producto, precio, "
                                "codproductotextil) values ") +
                     filasSql,
                 valores);
    }
}

} // namespace

ResultadoImportacion Importar(const ContextoMotor &contexto, qint32 lista, const QByteArray &datos,
                              ModoImportacion modo, bool soloValidas,
                              const QString &descripcion) {
    ResultadoImportacion resultado;
    ADODB::Transaccion unidad(*contexto.conexion);
    if (!ListaViva(*contexto.conexion, lista)) {
        resultado.estado = ResultadoImportacion::ListaBorrada;
        resultado.mensaje = QStringLiteral("La tarifa ya no existe: se ha eliminado desde otro "
                                           "puesto. No se ha importado nada.");
        return resultado;
    }
    resultado.plan = PlanearImportacion(contexto, lista, datos, modo);
    const PlanImportacion &plan = resultado.plan;
    if (!plan.error.isEmpty()) {
        resultado.estado = ResultadoImportacion::FicheroMalo;
        resultado.mensaje = plan.error;
        return resultado;
    }
    if (!plan.rechazadas.isEmpty() && !soloValidas) {
        resultado.estado = ResultadoImportacion::Rechazada;
        resultado.mensaje = QStringLiteral("Hay %1 líneas rechazadas: no se ha importado nada.")
                                .arg(plan.rechazadas.size());
        return resultado;
    }
    resultado.estado = ResultadoImportacion::Importada;
    resultado.mensaje = ResumenImportacion(plan);
    if (plan.cambios.empty())
        return resultado; // nothing to write, and no operation for the history

    std::vector<const PrecioImportado *> borrar, insertar;
    borrar.reserve(plan.cambios.size());
    insertar.reserve(plan.cambios.size());
    RegistroOperacion operacion(contexto, lista, TipoOperacion::Importacion, descripcion);
    for (const PrecioImportado &f : plan.cambios) {
        if (f.guardada)
            borrar.push_back(&f);
        if (f.nuevo)
            insertar.push_back(&f);
        operacion.Fila(f.producto, f.variante, f.anterior, f.nuevo);
    }
    Borrar(contexto, lista, borrar);
    Insertar(contexto, lista, insertar);
    resultado.operacion = operacion.Cerrar();
    unidad.Commit();
    return resultado;
}
