// Prices in and out of a list, each beside a plain baseline measured in the same run, on a
// list of 100,000 prices in a catalogue of 100,000 products:
//
//   export:  ExportarLista to a CSV, beside a raw read of the same rows through SQLite's own
//            interface, written to a file with fprintf. Targets: <= 1 s and <= 3x.
//   import:  the dry run plus the import (one unit of work, with its history, taking the dry
//            run when it still holds) of a file of 100,000 lines into an empty list, beside a raw
//            bulk insert of the same rows (one prepared insert, one transaction). Targets: <= 5 s
//            and <= 3x.
//
// On SQLite, and on PostgreSQL when TARIFAS_PRUEBAS_PG names a server: there the baselines go
// through the driver (the read with a forward-only query, the insert as one statement of two
// bound arrays, the quickest plain way into a server). Figures are medians of three. Every result
// is checked (rows written, lines read, prices stored); a wrong result, or a missed target in the
// full run, prints FAIL and ends with status 1. With --rapido (CI) the sizes are small and only the
// results are checked.
#include "baseservidor.h"
#include "perfilsqlite.h"

#include "intercambio/exportacion.h"
#include "intercambio/importacion.h"
#include "platform/datos/conexion.h"
#include "platform/datos/recordset.h"
#include "suite/datos/esquema.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QSqlError>
#include <QSqlQuery>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <sqlite3.h>
#include <stdexcept>
#include <vector>

namespace {

bool fallo = false;
bool rapido = false;

void Comprobar(bool bien, const char *que) {
    if (!bien) {
        std::printf("FAIL: %s\n", que);
        fallo = true;
    }
}

double Mediana(const std::function<void()> &preparar, const std::function<void()> &paso) {
    std::vector<double> v;
    for (int i = 0; i < 3; ++i) {
        preparar();
        QElapsedTimer reloj;
        reloj.start();
        paso();
        v.push_back(double(reloj.nsecsElapsed()) / 1e6);
    }
    std::sort(v.begin(), v.end());
    return v[1];
}

void Informe(const char *que, double ms, double base, double maxRatio, double maxMs) {
    const double ratio = ms / std::max(base, 1e-3);
    const bool bien = ratio <= maxRatio && ms <= maxMs;
    std::printf("%-8s %9.1f ms  baseline %9.1f ms  ratio %5.2fx  (targets <= %.0fx, <= %.0f "
                "ms)%s\n",
                que, ms, base, ratio, maxRatio, maxMs,
                rapido ? "  [rápido: no se exige]" : (bien ? "  ok" : "  FAIL"));
    if (!rapido && !bien)
        fallo = true;
}

void Ejecutar(ADODB::Connection &conexion, const QString &sql) {
    QSqlQuery q(conexion.Base());
    if (!q.exec(sql))
        throw std::runtime_error(
            QString(q.lastError().text() + QStringLiteral(" in ") + sql).toStdString());
}

qint64 Contar(ADODB::Connection &conexion, const QString &sql) {
    ADODB::Recordset rs;
    rs.Open(sql, conexion);
    return rs.Fields(0).Value().toLongLong();
}

/// The shop: `n` products, list 1 with a price for each; lists 2 and 3 empty.
void Llenar(ADODB::Connection &conexion, int n, bool postgresql) {
    CrearTablasQueFaltan(conexion, TablasSuite());
    Ejecutar(conexion, QStringLiteral("begin"));
    Ejecutar(conexion, QStringLiteral("insert into opciones (numdecimales, tiponegocio) values "
                                      "(2, '')"));
    for (int l = 1; l <= 3; ++l)
        Ejecutar(conexion, QStringLiteral("insert into cabecera_precio values (%1, 'Lista %1', "
                                          "'2026-01-01', '2026-01-01', '2026-12-31')")
                               .arg(l));
    if (postgresql) {
        // The same rows, set-wise: a statement a row would take longer than the measures.
        const QString serie = QStringLiteral("generate_series(1, %1) as i").arg(n);
        Ejecutar(conexion,
                 QStringLiteral("insert into productos select i, 'P' || lpad(i::text, 7, '0'), "
                                "'Producto ' || lpad(((i::bigint * 7919) % %1)::text, 7, '0'), "
                                "(10 + i % 90) + (i % 100) / 100.0, 'S', 0 from %2")
                     .arg(n)
                     .arg(serie));
        Ejecutar(conexion, QStringLiteral("insert into detalle_precio select 1, i, (5 + i % 90) "
                                          "+ 0.95, null from %1")
                               .arg(serie));
        Ejecutar(conexion, QStringLiteral("commit"));
        Ejecutar(conexion, QStringLiteral("analyze"));
        return;
    }
    QSqlQuery p(conexion.Base()), d(conexion.Base());
    p.prepare(QStringLiteral("insert into productos values (?, ?, ?, ?, 'S', 0)"));
    d.prepare(QStringLiteral("insert into detalle_precio values (1, ?, ?, null)"));
    for (int i = 1; i <= n; ++i) {
        p.addBindValue(i);
        p.addBindValue(QStringLiteral("P%1").arg(i, 7, 10, QLatin1Char('0')));
        p.addBindValue(QStringLiteral("Producto %1").arg((i * 7919) % n, 7, 10, QLatin1Char('0')));
        p.addBindValue(
            QStringLiteral("%1.%2").arg(10 + i % 90).arg(i % 100, 2, 10, QLatin1Char('0')));
        d.addBindValue(i);
        d.addBindValue(QStringLiteral("%1.95").arg(5 + i % 90));
        if (!p.exec() || !d.exec())
            throw std::runtime_error("fill");
    }
    Ejecutar(conexion, QStringLiteral("commit"));
}

/// The export's baseline: the same rows, in the same order, read with SQLite's own interface
/// and written as text. Gives the rows written.
int LecturaCruda(const QString &base, const QString &fichero) {
    sqlite3 *db = nullptr;
    sqlite3_open_v2(QFile::encodeName(base).constData(), &db, SQLITE_OPEN_READONLY, nullptr);
    sqlite3_stmt *s = nullptr;
    sqlite3_prepare_v2(db,
                       "select productos.codigocliente, productos.nombre, productos.precio, "
                       "detalle_precio.precio from productos, detalle_precio where "
                       "productos.borrar = 0 and productos.codigo = detalle_precio.producto and "
                       "detalle_precio.identificador = 1 order by nombre asc",
                       -1, &s, nullptr);
    FILE *f = std::fopen(QFile::encodeName(fichero).constData(), "wb");
    int filas = 0;
    while (sqlite3_step(s) == SQLITE_ROW) {
        std::fprintf(f, "%s;;%s;;;%.2f;%.2f\r\n", sqlite3_column_text(s, 0),
                     sqlite3_column_text(s, 1), sqlite3_column_double(s, 2),
                     sqlite3_column_double(s, 3));
        ++filas;
    }
    std::fclose(f);
    sqlite3_finalize(s);
    sqlite3_close(db);
    return filas;
}

/// The import's baseline: the same rows inserted with one prepared statement in one unit.
void InsercionCruda(const QString &base, int n) {
    sqlite3 *db = nullptr;
    sqlite3_open(QFile::encodeName(base).constData(), &db);
    sqlite3_exec(db, "begin immediate", nullptr, nullptr, nullptr);
    sqlite3_stmt *s = nullptr;
    sqlite3_prepare_v2(db, "insert into detalle_precio values (3, ?, ?, null)", -1, &s, nullptr);
    for (int i = 1; i <= n; ++i) {
        const QByteArray precio = QByteArray::number(5 + i % 90) + ".50";
        sqlite3_bind_int(s, 1, i);
        sqlite3_bind_text(s, 2, precio.constData(), int(precio.size()), SQLITE_TRANSIENT);
        sqlite3_step(s);
        sqlite3_reset(s);
    }
    sqlite3_finalize(s);
    sqlite3_exec(db, "commit", nullptr, nullptr, nullptr);
    sqlite3_close(db);
}

/// The export's baseline on a server: the same rows read through the driver, forward only.
int LecturaCrudaServidor(QSqlDatabase base, const QString &fichero) {
    QSqlQuery q(base);
    q.setForwardOnly(true);
    if (!q.exec(QStringLiteral(
            "select productos.codigocliente, productos.nombre, productos.precio, "
            "detalle_precio.precio from productos, detalle_precio where productos.borrar = 0 and "
            "productos.codigo = detalle_precio.producto and detalle_precio.identificador = 1 "
            "order by nombre asc")))
        throw std::runtime_error(q.lastError().text().toStdString());
    FILE *f = std::fopen(QFile::encodeName(fichero).constData(), "wb");
    int filas = 0;
    while (q.next()) {
        std::fprintf(f, "%s;;%s;;;%s;%s\r\n", q.value(0).toByteArray().constData(),
                     q.value(1).toByteArray().constData(), q.value(2).toByteArray().constData(),
                     q.value(3).toByteArray().constData());
        ++filas;
    }
    std::fclose(f);
    return filas;
}

/// The import's baseline on a server: the same rows inserted by one statement of two arrays.
void InsercionCrudaServidor(QSqlDatabase base, int n) {
    QByteArray productos = "{", precios = "{";
    for (int i = 1; i <= n; ++i) {
        const char *coma = i > 1 ? "," : "";
        productos += coma + QByteArray::number(i);
        precios += coma + QByteArray::number(5 + i % 90) + ".50";
    }
    productos += '}';
    precios += '}';
    QSqlQuery q(base);
    q.prepare(QStringLiteral("insert into detalle_precio select 3, p, v, null from "
                             "unnest(cast(? as integer[]), cast(? as numeric[])) as u(p, v)"));
    q.addBindValue(QString::fromLatin1(productos));
    q.addBindValue(QString::fromLatin1(precios));
    if (!base.transaction() || !q.exec() || !base.commit())
        throw std::runtime_error(q.lastError().text().toStdString());
}

} // namespace

/// Both measures on the database of `cadena` (for SQLite, the file `fichero`), filled anew.
void Medir(const QString &cadena, const QString &fichero, const char *nombre, bool postgresql,
           const QTemporaryDir &dir, int n) {
    ADODB::Connection conexion;
    conexion.Open(cadena);
    Llenar(conexion, n, postgresql);
    ContextoMotor contexto;
    contexto.conexion = &conexion;
    contexto.terminal = QStringLiteral("BENCH");
    contexto.numDecimales = 2;
    std::printf("%s: %d precios\n", nombre, n);

    const QString csv = dir.filePath(QStringLiteral("lista.csv"));
    const QString crudo = dir.filePath(QStringLiteral("crudo.csv"));
    int exportadas = 0, leidasCrudas = 0;
    const double exportar = Mediana([] {},
                                    [&] {
                                        const ResultadoExportacion r =
                                            ExportarLista(contexto, 1, csv, QLatin1Char(','));
                                        Comprobar(r.error.isEmpty(), "the export wrote its file");
                                        exportadas = r.filas;
                                    });
    const double lectura = Mediana([] {},
                                   [&] {
                                       leidasCrudas =
                                           postgresql ? LecturaCrudaServidor(conexion.Base(), crudo)
                                                      : LecturaCruda(fichero, crudo);
                                   });
    Comprobar(exportadas == n && leidasCrudas == n, "every price exported");
    QFile exportado(csv);
    exportado.open(QIODevice::ReadOnly);
    const QByteArray datos = exportado.readAll();
    Comprobar(datos.count('\n') == n + 1, "one line per price and the header");
    Informe("export", exportar, lectura, 3, 1000);

    // Into the empty list 2: every line adds a price.
    PlanImportacion plan;
    ResultadoImportacion resultado;
    const auto vaciar = [&] {
        Ejecutar(conexion, QStringLiteral("delete from detalle_precio where identificador in "
                                          "(2, 3)"));
    };
    double prueba = 0;
    const double importar = Mediana(vaciar, [&] {
        QElapsedTimer reloj;
        reloj.start();
        plan = PlanearImportacion(contexto, 2, datos, ModoImportacion::AnadirYActualizar);
        prueba = double(reloj.nsecsElapsed()) / 1e6;
        resultado = Importar(contexto, 2, datos, ModoImportacion::AnadirYActualizar, false,
                             QStringLiteral("bench"), &plan);
    });
    std::printf("         (the dry run alone, last of three: %.1f ms)\n", prueba);
    if (!rapido && !postgresql) {
        vaciar();
        Desglosar(conexion.Base(), "the dry run", [&] {
            plan = PlanearImportacion(contexto, 2, datos, ModoImportacion::AnadirYActualizar);
        });
        Desglosar(conexion.Base(), "the import", [&] {
            resultado = Importar(contexto, 2, datos, ModoImportacion::AnadirYActualizar, false,
                                 QStringLiteral("bench"), &plan);
        });
    }
    Comprobar(plan.anadidos == n && plan.rechazadas.isEmpty(), "the dry run adds every line");
    Comprobar(resultado.estado == ResultadoImportacion::Importada && resultado.plan.anadidos == n,
              "the import adds every line");
    Comprobar(Contar(conexion, QStringLiteral("select count(*) from detalle_precio where "
                                              "identificador = 2")) == n,
              "every price stored");
    Comprobar(Contar(conexion, QStringLiteral("select count(*) from detalle_precio a join "
                                              "detalle_precio b on a.producto = b.producto "
                                              "where a.identificador = 1 and "
                                              "b.identificador = 2 and a.precio <> b.precio")) == 0,
              "the imported prices are the exported ones");
    const double insercion = Mediana(vaciar, [&] {
        if (postgresql)
            InsercionCrudaServidor(conexion.Base(), n);
        else
            InsercionCruda(fichero, n);
    });
    Comprobar(Contar(conexion, QStringLiteral("select count(*) from detalle_precio where "
                                              "identificador = 3")) == n,
              "the baseline stored its rows");
    Informe("import", importar, insercion, 3, 5000);
}

int main(int argc, char **argv) {
    QCoreApplication aplicacion(argc, argv);
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    rapido = aplicacion.arguments().contains(QStringLiteral("--rapido"));
    const int n = rapido ? 2000 : 100000;
    try {
        QTemporaryDir dir;
        const QString base = dir.filePath(QStringLiteral("tienda.sqlite"));
        Medir(QStringLiteral("sqlite:") + base, base, "SQLite", false, dir, n);
        const QString servidor = qEnvironmentVariable("TARIFAS_PRUEBAS_PG");
        if (!servidor.isEmpty()) {
            EnBaseDelServidor(servidor, [&](const QString &cadena) {
                Medir(cadena, QString(), "PostgreSQL", true, dir, n);
            });
        } else {
            std::printf("PostgreSQL not measured (TARIFAS_PRUEBAS_PG is empty)\n");
        }
    } catch (const std::exception &e) {
        std::printf("FAIL: %s\n", e.what());
        return 1;
    }
    return fallo ? 1 : 0;
}
