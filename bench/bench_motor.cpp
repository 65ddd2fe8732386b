// The whole-list engine beside plain SQL on the same database, measured in one run:
//
//   change:  a bulk change (+10 %, rounded to 0,01) of a list of 100,000 prices in a database
//            of 1,000,000 detalle_precio rows, history included, beside one SQL update of the
//            same number of rows of another list. Targets: <= 3x and <= 2 s.
//   preview: the preview of that change. Target: <= 1 s.
//   copy:    a copy of a 100,000-price list, history included, beside an insert … select of
//            the same rows. Target: <= 3x.
//
// On SQLite, and on PostgreSQL when TARIFAS_PRUEBAS_PG names a server. Figures are medians of
// three. Every result is checked (rows changed, a price worked out by hand, the history's
// rows, the copy's rows); a wrong result or, in the full run, a missed target prints FAIL and
// the program ends with status 1. With --rapido the lists hold 2,000 prices: the results are
// checked and the ratios printed, not judged (too small to time).
#include "baseservidor.h"
#include "perfilsqlite.h"

#include "motor/aritmetica.h"
#include "motor/cambioprecios.h"
#include "motor/copialista.h"
#include "motor/historial.h"
#include "platform/datos/conexion.h"
#include "platform/datos/transaccion.h"
#include "suite/datos/esquema.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QSqlError>
#include <QSqlQuery>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <stdexcept>
#include <vector>

namespace {

bool fallo = false;
bool rapido = false;

constexpr int Listas = 10;

QSqlQuery Ejecutar(QSqlDatabase base, const QString &sql) {
    QSqlQuery q(base);
    if (!q.exec(sql))
        throw std::runtime_error(
            QString(q.lastError().text() + QStringLiteral(" in ") + sql).toStdString());
    return q;
}

qlonglong Valor(QSqlDatabase base, const QString &sql) {
    QSqlQuery q = Ejecutar(base, sql);
    return q.next() ? q.value(0).toLongLong() : -1;
}

QString Precio(QSqlDatabase base, int lista, int producto) {
    QSqlQuery q = Ejecutar(base, QStringLiteral("select cast(precio as text) from detalle_precio "
                                                "where identificador = %1 and producto = %2")
                                     .arg(lista)
                                     .arg(producto));
    return q.next() ? q.value(0).toString() : QString();
}

double Medir(const std::function<void()> &paso) {
    QElapsedTimer reloj;
    reloj.start();
    paso();
    return double(reloj.nsecsElapsed()) / 1e6;
}

double Mediana(std::vector<double> v) {
    std::sort(v.begin(), v.end());
    return v[v.size() / 2];
}

void Comprobar(bool bien, const char *que) {
    if (!bien) {
        std::printf("FAIL: %s\n", que);
        fallo = true;
    }
}

void Informe(const char *que, double ms, double base, double maxRatio, double maxMs) {
    const double ratio = base > 0 ? ms / std::max(base, 1e-3) : 0;
    const bool ok = rapido || ((maxRatio <= 0 || ratio <= maxRatio) && (maxMs <= 0 || ms <= maxMs));
    fallo = fallo || !ok;
    std::printf("%-34s %9.1f ms  base %9.1f ms  ratio %5.2f  %s\n", que, ms, base, ratio,
                rapido ? "(rápido: no se juzga)"
                : ok   ? "OK"
                       : "FAIL");
}

/// The catalogue and `Listas` lists of `porLista` prices each, written set-wise.
void Llenar(QSqlDatabase base, bool postgresql, int porLista) {
    const QString serie =
        postgresql ? QStringLiteral("select generate_series(1, %1) as i").arg(porLista)
                   : QStringLiteral("with recursive n(i) as (select 1 union all select i + 1 "
                                    "from n where i < %1) select i from n")
                         .arg(porLista);
    Ejecutar(base, QStringLiteral("begin"));
    Ejecutar(base, QStringLiteral("insert into productos (codigo, codigocliente, nombre, precio, "
                                  "seccion, borrar) select i, cast(i as text), 'Producto ' || "
                                  "cast(i as text), (i % 9973 + 1) / 100.0, 'S', 0 from (%1) s")
                       .arg(serie));
    for (int lista = 1; lista <= Listas; ++lista) {
        Ejecutar(base, QStringLiteral("insert into cabecera_precio (identificador, descripcion, "
                                      "fechaalta, preciovalidodesde, preciovalidohasta) values "
                                      "(%1, 'Lista %1', '2026-01-01', '2026-01-01', "
                                      "'2026-12-31')")
                           .arg(lista));
        // Prices of two decimals, 0,10 to 99,99 (so that + 10 % changes each), in a different
        // order in each list.
        Ejecutar(base,
                 QStringLiteral(
                     "insert into detalle_precio (identificador, producto, "
                     "precio) select %1, i, ((cast(i as bigint) * %2) % 9990 + 10) / 100.0 from "
                     "(%3) s")
                     .arg(lista)
                     .arg(7919 + lista * 104729)
                     .arg(serie));
    }
    Ejecutar(base, QStringLiteral("commit"));
    Ejecutar(base, QStringLiteral("analyze"));
}

void Medir(const QString &cadena, const char *nombre, int porLista) {
    ADODB::Connection conexion;
    conexion.Open(cadena);
    QSqlDatabase base = conexion.Base();
    ContextoMotor contexto;
    contexto.conexion = &conexion;
    contexto.terminal = QStringLiteral("BENCH");
    contexto.numDecimales = 2;
    Comprobar(HistorialDisponible(conexion), "the history's tables were made");
    std::printf("%s: %d lists of %d prices (%lld price rows)\n", nombre, Listas, porLista,
                Valor(base, QStringLiteral("select count(*) from detalle_precio")));

    PeticionCambio peticion;
    peticion.regla.porcentaje = Importe::DeUnidades(10, 0);
    peticion.regla.paso = Importe::DeUnidades(1, 2);

    // Bulk change: the baseline on lists 1-3, the engine on lists 4-6, one each in turn.
    std::vector<double> base_, motor, vista;
    for (int i = 0; i < 3; ++i) {
        base_.push_back(Medir([&] {
            ADODB::Transaccion unidad(conexion);
            Ejecutar(base, QStringLiteral("update detalle_precio set precio = round(precio * "
                                          "1.1, 2) where identificador = %1")
                               .arg(1 + i));
            unidad.Commit();
        }));
        peticion.lista = 4 + i;
        const std::optional<Importe> antes =
            Aritmetica::LeerGuardado(Precio(base, peticion.lista, 7));
        ResultadoCambio r;
        motor.push_back(Medir([&] { r = AplicarCambio(contexto, peticion); }));
        Comprobar(r.listaExiste && r.cambiadas == porLista && r.rechazadas == 0,
                  "the change reached every row of the list");
        const std::optional<Importe> despues =
            Aritmetica::LeerGuardado(Precio(base, peticion.lista, 7));
        Comprobar(antes && despues && NuevoPrecio(*antes, peticion.regla) == despues,
                  "a changed price is the rule's");
        Comprobar(Valor(base, QStringLiteral("select count(*) from historial_precio where "
                                             "operacion = %1")
                                  .arg(r.operacion)) == porLista,
                  "the history holds a row for each change");
        peticion.lista = 7 + i;
        VistaPreviaCambio v;
        vista.push_back(Medir([&] { v = PrevisualizarCambio(contexto, peticion); }));
        Comprobar(v.cambian + v.iguales == porLista && v.rechazadas.isEmpty() &&
                      !v.primeras.isEmpty(),
                  "the preview counts every row");
    }
    Informe("change, history included", Mediana(motor), Mediana(base_), 3, 2000);
    Informe("preview", Mediana(vista), 0, 0, 1000);
    if (!rapido && conexion.Base().driverName() == QLatin1String("QSQLITE")) {
        Desglosar(base, "the baseline's update", [&] {
            ADODB::Transaccion unidad(conexion);
            Ejecutar(base, QStringLiteral("update detalle_precio set precio = round(precio * "
                                          "1.1, 2) where identificador = 1"));
            unidad.Commit();
        });
        peticion.lista = 4;
        Desglosar(base, "the change", [&] { AplicarCambio(contexto, peticion); });
    }

    // Copy: the baseline copies list 10 into code 1000; the engine copies it into a new list.
    std::vector<double> baseCopia, copia;
    for (int i = 0; i < 3; ++i) {
        baseCopia.push_back(Medir([&] {
            ADODB::Transaccion unidad(conexion);
            Ejecutar(base, QStringLiteral("insert into detalle_precio (identificador, producto, "
                                          "precio, codproductotextil) select 1000, producto, "
                                          "precio, codproductotextil from detalle_precio where "
                                          "identificador = 10"));
            unidad.Commit();
        }));
        Ejecutar(base, QStringLiteral("delete from detalle_precio where identificador = 1000"));
        ResultadoCopia r;
        copia.push_back(Medir([&] {
            r = CopiarLista(contexto, {10, QStringLiteral("Copia"), QDate(2027, 1, 1),
                                       QDate(2027, 12, 31), std::nullopt});
        }));
        Comprobar(r.origenExiste && r.filas == porLista &&
                      Valor(base, QStringLiteral("select count(*) from detalle_precio where "
                                                 "identificador = %1")
                                      .arg(r.nueva)) == porLista &&
                      Precio(base, r.nueva, 7) == Precio(base, 10, 7),
                  "the copy holds every price of the list");
        Ejecutar(
            base,
            QStringLiteral("delete from detalle_precio where identificador = %1").arg(r.nueva));
        Ejecutar(
            base,
            QStringLiteral("delete from cabecera_precio where identificador = %1").arg(r.nueva));
    }
    Informe("copy, history included", Mediana(copia), Mediana(baseCopia), 3, 0);
}

} // namespace

int main(int argc, char **argv) {
    QCoreApplication aplicacion(argc, argv);
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    rapido = aplicacion.arguments().contains(QStringLiteral("--rapido"));
    const int porLista = rapido ? 2000 : 100000;
    try {
        {
            QTemporaryDir dir;
            const QString cadena = QStringLiteral("sqlite:") + dir.filePath(QStringLiteral("b.db"));
            {
                ADODB::Connection c;
                c.Open(cadena);
                CrearTablasQueFaltan(c, TablasSuite());
                Llenar(c.Base(), false, porLista);
            }
            Medir(cadena, "SQLite", porLista);
        }
        const QString servidor = qEnvironmentVariable("TARIFAS_PRUEBAS_PG");
        if (!servidor.isEmpty()) {
            EnBaseDelServidor(servidor, [&](const QString &cadena) {
                {
                    ADODB::Connection c;
                    c.Open(cadena);
                    CrearTablasQueFaltan(c, TablasSuite());
                    Llenar(c.Base(), true, porLista);
                }
                Medir(cadena, "PostgreSQL", porLista);
            });
        } else {
            std::printf("PostgreSQL not measured (TARIFAS_PRUEBAS_PG is empty)\n");
        }
    } catch (const std::exception &e) {
        std::printf("FAIL: %s\n", e.what());
        return 1;
    }
    std::printf("%s\n", fallo ? "FAIL" : "OK");
    return fallo ? 1 : 0;
}
