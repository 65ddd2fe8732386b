// The operator's three everyday actions in the editor, each beside a plain baseline measured
// in the same run:
//
//   name:  one keystroke in ct_buscar_n through the real handler (the box's change, the
//          filter, the view's update and repaint) at 100,000 and 1,000,000 shuffled catalogue
//          rows and at 120,000 and 1,200,000 variant rows, beside a plain case-insensitive
//          prefix loop over the same names. Targets: <= 16 ms and <= 3x. A typed word of 6
//          keys, then emptying the box, is printed per key.
//   code:  iBuscarCodInternoItem at 100,000 products with 100,000 extra codes, beside an
//          indexed point look-up of the same code on the same database. Target <= 3x, on
//          SQLite and, when TARIFAS_PRUEBAS_PG names a server, on PostgreSQL; EXPLAIN must
//          show an index for both branches of the statement (and for the baseline).
//   save:  one save (delete + insert + grid update) into a list that holds 100,000 prices, in
//          a database of 1,000,000 detalle_precio rows, beside a raw delete + insert of the
//          same rows in one transaction. Target <= 3x.
//
// Databases are made as the program makes them (the schema's tables and indexes). Figures
// are medians. Every result is checked (rows shown, products found, prices stored, plans); a
// wrong result or a missed target prints FAIL and the program ends with status 1.
//
// With --rapido the sizes are small and no time is judged, only the results and the plans:
// that is how CTest runs it with the tests.
#include "baseservidor.h"
#include "editor/busquedacodigo.h"
#include "editor/frmtarifas.h"
#include "platform/datos/conexion.h"
#include "platform/ui/controles.h"
#include "register/frmlistas.h"
#include "session/principal.h"
#include "session/sesionsuite.h"
#include "session/vida.h"
#include "suite/datos/esquema.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QSqlError>
#include <QSqlQuery>
#include <QTableView>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <stdexcept>
#include <vector>

using namespace ADODB;
using namespace Pantalla;

namespace {

bool fallo = false;
/// --rapido: small sizes, every result checked, no time judged.
bool rapido = false;

/// The full size, or a small one in the quick run.
int Tamano(int completo, int pequeno) {
    return rapido ? pequeno : completo;
}

void Ejecutar(QSqlDatabase base, const QString &sql) {
    QSqlQuery q(base);
    if (!q.exec(sql))
        throw std::runtime_error(
            QString(q.lastError().text() + QStringLiteral(" in ") + sql).toStdString());
}

double Mediana(std::vector<double> v) {
    std::sort(v.begin(), v.end());
    return v[v.size() / 2];
}

double Medir(const std::function<void()> &paso) {
    QElapsedTimer reloj;
    reloj.start();
    paso();
    return reloj.nsecsElapsed() / 1e6;
}

void Comprobar(bool bien, const char *que) {
    if (!bien) {
        std::printf("FAIL: %s\n", que);
        fallo = true;
    }
}

void Informe(const char *que, double ms, double base, double maxRatio, double maxMs = 0) {
    const double ratio = ms / std::max(base, 1e-3);
    const bool ok = rapido || (ratio <= maxRatio && (maxMs <= 0 || ms <= maxMs));
    fallo = fallo || !ok;
    std::printf("%-46s %9.3f ms  base %9.3f ms  ratio %5.2f  %s\n", que, ms, base, ratio,
                rapido ? "(quick: not judged)"
                : ok   ? "OK"
                       : "FAIL");
}

/// Fresh statistics for the planner, as a server's own autovacuum keeps them. SQLite keeps
/// none unless told, and the program never tells it: its database is measured as it is.
void Estadisticas(QSqlDatabase base, bool postgresql) {
    if (postgresql)
        Ejecutar(base, QStringLiteral("analyze"));
}

/// `n` live products; names from a few words in a shuffled order (the code times a number
/// prime to n, modulo n); in the size-and-colour shop, `variantes` variants for each.
void Catalogo(QSqlDatabase base, int n, int variantes = 0) {
    Ejecutar(base, QStringLiteral("with recursive n(i) as (select 1 union all select i + 1 from n "
                                  "where i < %1) insert into productos select i, 'C' || i, "
                                  "case (i * 7919 %% 6) when 0 then 'Camisa ' when 1 then "
                                  "'Camiseta ' when 2 then 'Calcetin ' when 3 then 'Pantalon ' "
                                  "when 4 then 'CAMISOLA ' else 'Blusa ' end || "
                                  "cast(100000 + (i * 7919) %% %1 as text), i * 0.25, 'S', 0 "
                                  "from n")
                       .arg(n)
                       .replace(QStringLiteral("%%"), QStringLiteral("%")));
    if (variantes > 0)
        Ejecutar(base, QStringLiteral("with recursive k(j) as (select 1 union all select j + 1 "
                                      "from k where j < %1) insert into productostextil select "
                                      "codigo, 'H' || codigo || '-' || j, j, j, null, null from "
                                      "productos, k")
                           .arg(variantes));
}

// ---- the session ----

std::unique_ptr<Principal::Vida> vida;

FrmTarifas &AbrirEditor(const QString &cadena, const QString &tipoNegocio) {
    vida = std::make_unique<Principal::Vida>();
    SesionSuite.Conexion = std::make_unique<ADODB::Connection>();
    SesionSuite.Conexion->Open(cadena);
    SesionSuite.TipoNegocio = tipoNegocio;
    SesionSuite.NumDecimales = 2;
    SesionSuite.AnchoDiseno = SesionSuite.AnchoPantalla = 15360;
    SesionSuite.AltoDiseno = SesionSuite.AltoPantalla = 11085;
    frmListas().Load();
    frmListas().lblCodigo->setCaption(QStringLiteral("1"));
    FrmTarifas &e = frmTarifas();
    e.Load();
    e.lblCodigo->setCaption(QStringLiteral("1"));
    e.ventana()->show();
    QElapsedTimer espera;
    espera.start();
    while (e.tmrRegresaLista->Enabled() && espera.elapsed() < 10000)
        QApplication::processEvents();
    return e;
}

void CerrarSesion() {
    frmTarifas().Unload();
    frmListas().Unload();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    vida.reset();
}

QString NuevaSQLite(QTemporaryDir &dir, const std::function<void(QSqlDatabase)> &llenar) {
    const QString ruta = dir.filePath(QStringLiteral("suite.sqlite"));
    ADODB::Connection c;
    c.Open(QStringLiteral("sqlite:") + ruta);
    CrearTablasQueFaltan(c, TablasSuite());
    QSqlDatabase base = c.Base();
    base.transaction();
    Ejecutar(base,
             QStringLiteral("insert into opciones (numdecimales, estiloaspecto) values (2, 0)"));
    Ejecutar(base, QStringLiteral("insert into cabecera_precio values (1, 'General', "
                                  "'2026-01-01', '2026-01-01', '2026-12-31')"));
    llenar(base);
    base.commit();
    return QStringLiteral("sqlite:") + ruta;
}

// ---- name ----

void MedirNombre(int productos, int variantes) {
    const bool textil = variantes > 0;
    QTemporaryDir dir;
    const QString cadena =
        NuevaSQLite(dir, [&](QSqlDatabase b) { Catalogo(b, productos, variantes); });
    FrmTarifas &e = AbrirEditor(cadena, textil ? QStringLiteral("TALLACOLOR") : QString());
    Grid &g = textil ? *e.grid_productos_textil : *e.grid_productos;
    std::vector<QString> nombres;
    for (int f = 1; f < g.Rows(); ++f)
        nombres.push_back(g.TextMatrix(f, 1));
    QTableView *vista = g.vista();
    const auto tecla = [&](const QString &texto) {
        e.ct_buscar_n->setText(texto);
        g.Refresh(); // the view updated and repainted now
    };
    const auto base = [&](const QString &prefijo) {
        int cuenta = 0;
        for (const QString &n : nombres)
            cuenta += n.startsWith(prefijo, Qt::CaseInsensitive);
        return cuenta;
    };

    // The first keystroke after the editor opened, as the operator makes it: no sooner than
    // a reaction time after the editor showed (the names are ordered meanwhile, on another
    // thread, while the screen is the operator's).
    {
        QEventLoop espera;
        QTimer::singleShot(250, &espera, &QEventLoop::quit);
        espera.exec();
    }
    {
        int cuenta = 0;
        const double b = Medir([&] { cuenta = base(QStringLiteral("c")); });
        const double ms = Medir([&] { tecla(QStringLiteral("c")); });
        Comprobar(vista->model()->rowCount() == cuenta, "rows shown after the first keystroke");
        char que[80];
        std::snprintf(que, sizeof que, "  first key, %zu rows (<= 16 ms)", nombres.size());
        Informe(que, ms, b, 1e9, 16.0);
    }
    // One keystroke, each from the previous one's result as the operator types.
    const QStringList teclas = QStringLiteral("c ca cam cami camis camisa camis - p")
                                   .split(QLatin1Char(' '))
                                   .replaceInStrings(QStringLiteral("-"), QString());
    std::vector<double> medido, plano;
    for (int vuelta = 0; vuelta < 3; ++vuelta)
        for (const QString &t : teclas) {
            int cuenta = 0;
            plano.push_back(Medir([&] { cuenta = base(t); }));
            medido.push_back(Medir([&] { tecla(t); }));
            Comprobar(vista->model()->rowCount() == cuenta, "rows shown after a keystroke");
        }
    char que[80];
    std::snprintf(que, sizeof que, "name: one key, %zu %s rows", nombres.size(),
                  textil ? "variant" : "catalogue");
    Informe(que, Mediana(medido), Mediana(plano), 3.0, 16.0);

    if (!textil) {
        // A word typed key by key, then the box emptied.
        tecla(QString());
        QString palabra;
        for (const QChar c : QStringLiteral("camisa")) {
            palabra += c;
            int cuenta = 0;
            const double b = Medir([&] { cuenta = base(palabra); });
            const double ms = Medir([&] { tecla(palabra); });
            Comprobar(vista->model()->rowCount() == cuenta, "rows shown while typing");
            std::snprintf(que, sizeof que, "  typed \"%s\" (<= 16 ms)", qPrintable(palabra));
            Informe(que, ms, b, 1e9, 16.0);
        }
        const double b = Medir([&] { base(QString()); });
        const double ms = Medir([&] { tecla(QString()); });
        Comprobar(vista->model()->rowCount() == int(nombres.size()), "every row after emptying");
        Informe("  box emptied (<= 16 ms)", ms, b, 1e9, 16.0);
    }
    CerrarSesion();
}

// ---- code ----

/// The plan the database makes for `sentencia` with `valores`, one line a step.
QString Plan(QSqlDatabase base, bool postgresql, QString sentencia, const QVariantList &valores) {
    QSqlQuery q(base);
    if (postgresql) {
        // A server prepares no EXPLAIN: the values (plain codes of this bench) go in as
        // literals, which is what the server plans each search with.
        for (const QVariant &v : valores)
            sentencia.replace(sentencia.indexOf(QLatin1Char('?')), 1,
                              QLatin1Char('\'') + v.toString() + QLatin1Char('\''));
        if (!q.exec(QStringLiteral("explain ") + sentencia))
            throw std::runtime_error(q.lastError().text().toStdString());
    } else {
        q.prepare(QStringLiteral("explain query plan ") + sentencia);
        for (const QVariant &v : valores)
            q.addBindValue(v);
        if (!q.exec())
            throw std::runtime_error(q.lastError().text().toStdString());
    }
    QString plan;
    while (q.next())
        plan += q.value(postgresql ? 0 : 3).toString() + QLatin1Char('\n');
    return plan;
}

/// Whether `plan` names every one of `indices`; when not, it is printed.
bool ConIndices(const QString &plan, const QStringList &indices) {
    const bool bien = std::all_of(indices.begin(), indices.end(),
                                  [&](const QString &i) { return plan.contains(i); });
    if (!bien)
        std::printf("plan without %s:\n%s", qPrintable(indices.join(QStringLiteral(" and "))),
                    qPrintable(plan));
    return bien;
}

/// The baseline's point look-up of one code: a shop code, or an extra code compared as the
/// index on extra codes compares (without case), so that both read one entry of an index.
QString ConsultaPuntual(bool extra, bool postgresql) {
    if (!extra)
        return QStringLiteral("select codigo from productos where codigocliente = ?");
    return postgresql ? QStringLiteral("select codigo from productos_codigosextra where "
                                       "lower(codigo_extra) = lower(?)")
                      : QStringLiteral("select codigo from productos_codigosextra where "
                                       "codigo_extra = ? collate nocase");
}

void MedirCodigoEn(FrmTarifas &e, int productos, const char *donde) {
    QSqlDatabase base = SesionSuite.Conexion->Base();
    const Dialecto &dialecto = SesionSuite.Conexion->dialecto();
    const bool postgresql = dialecto.Producto() == QSqlDriver::PostgreSQL;
    const QString ixCodigo = QStringLiteral("ix_productos_codigocliente");
    const QString ixExtra = QStringLiteral("ix_codigosextra_codigo_extra");
    // Both branches of the search read an index, for a whole code, for a code with a
    // wildcard at its end and for one typed in small letters; so do the baselines.
    for (const char *codigo : {"C77", "X77%", "x77"}) {
        const BusquedaCodigo b = SentenciaBusquedaCodigo(dialecto, QLatin1String(codigo));
        Comprobar(ConIndices(Plan(base, postgresql, dialecto.Adaptar(b.sentencia), b.valores),
                             {ixCodigo, ixExtra}),
                  "EXPLAIN of the code search: an index for both branches");
    }
    Comprobar(ConIndices(Plan(base, postgresql, ConsultaPuntual(false, postgresql),
                              {QStringLiteral("C77")}),
                         {ixCodigo}),
              "EXPLAIN of the baseline's shop code");
    Comprobar(ConIndices(Plan(base, postgresql, ConsultaPuntual(true, postgresql),
                              {QStringLiteral("X77")}),
                         {ixExtra}),
              "EXPLAIN of the baseline's extra code");
    // Shop codes, extra codes and codes that exist nowhere, spread over the catalogue.
    struct Caso {
        QString codigo;
        qint64 esperado;
    };
    std::vector<Caso> casos;
    for (int i = 1; i <= 20; ++i) {
        const int p = i * 4999 % productos + 1;
        casos.push_back({QStringLiteral("C%1").arg(p), p});
        casos.push_back({QStringLiteral("X%1").arg(p), p});
        casos.push_back({QStringLiteral("x%1").arg(p), p});
        casos.push_back({QStringLiteral("N%1").arg(p), -1});
    }
    std::vector<double> medido, plano;
    for (int vuelta = 0; vuelta < 3; ++vuelta)
        for (const Caso &c : casos) {
            qint64 hallado = 0;
            medido.push_back(Medir([&] { hallado = e.iBuscarCodInternoItem(c.codigo); }));
            Comprobar(hallado == c.esperado, "product found by code");
            // The baseline: one indexed look-up of the same code, prepared and run afresh.
            const bool extra = c.codigo.startsWith(QLatin1Char('X'), Qt::CaseInsensitive);
            qint64 visto = -1;
            plano.push_back(Medir([&] {
                QSqlQuery q(base);
                q.prepare(ConsultaPuntual(extra, postgresql));
                q.addBindValue(c.codigo);
                if (!q.exec())
                    throw std::runtime_error(q.lastError().text().toStdString());
                if (q.next())
                    visto = q.value(0).toLongLong();
            }));
            Comprobar(visto == c.esperado, "the baseline finds the same product");
        }
    char que[80];
    std::snprintf(que, sizeof que, "code: search, %d products, %s", productos, donde);
    Informe(que, Mediana(medido), Mediana(plano), 3.0);
}

void MedirCodigo(const QString &cadena, int productos, const char *donde) {
    MedirCodigoEn(AbrirEditor(cadena, QString()), productos, donde);
    CerrarSesion();
}

void LlenarCodigos(QSqlDatabase base, int productos, bool postgresql) {
    Catalogo(base, productos);
    Ejecutar(base, QStringLiteral("insert into productos_codigosextra select codigo, 'X' || codigo "
                                  "from productos"));
    Estadisticas(base, postgresql);
}

// ---- save ----

void MedirGuardado() {
    // List 1 holds a price for every product; lists 2..10 as many again.
    const int productos = Tamano(100000, 2000);
    const int filas = 10 * productos;
    QTemporaryDir dir;
    const QString cadena = NuevaSQLite(dir, [&](QSqlDatabase b) {
        Catalogo(b, productos);
        Ejecutar(b, QStringLiteral("with recursive l(k) as (select 2 union all select k + 1 from "
                                   "l where k < 10) insert into cabecera_precio select k, 'L' || "
                                   "k, '2026-01-01', '2026-01-01', '2026-12-31' from l"));
        Ejecutar(b, QStringLiteral("insert into detalle_precio select l.identificador, p.codigo, "
                                   "p.precio, null from productos p, cabecera_precio l"));
    });
    FrmTarifas &e = AbrirEditor(cadena, QString());
    QSqlDatabase base = SesionSuite.Conexion->Base();
    Comprobar(e.grid_Pseleccionados->Rows() == productos + 1, "the list's prices listed");
    std::vector<double> medido, plano;
    for (int i = 1; i <= 30; ++i) {
        const int producto = i * 3331 % productos + 1;
        const QString precio = QStringLiteral("%1,5").arg(i);
        e.lblCodProducto->setCaption(QString::number(producto));
        e.lblCodCliente->setCaption(QStringLiteral("C%1").arg(producto));
        e.lblNomProd->setCaption(QStringLiteral("nombre"));
        // As the panel does when it opens: the price shown is what a save compares with.
        e.RecordarPrecioMostrado();
        e.txt_NuevoPrecio->setText(precio);
        bool guardado = false;
        medido.push_back(Medir([&] { guardado = e.GuardarProducto(); }));
        Comprobar(guardado, "the save went through");
        const int fila = e.ObtenerFila(QString::number(producto));
        Comprobar(fila < e.grid_Pseleccionados->Rows() &&
                      e.grid_Pseleccionados->TextMatrix(fila, 3) == precio,
                  "the grid shows the saved price");
        plano.push_back(Medir([&] {
            base.transaction();
            QSqlQuery q(base);
            q.prepare(QStringLiteral("delete from detalle_precio where identificador = 1 and "
                                     "producto = ?"));
            q.addBindValue(producto);
            q.exec();
            q.prepare(QStringLiteral("insert into detalle_precio (identificador, producto, precio) "
                                     "values (1, ?, ?)"));
            q.addBindValue(producto);
            q.addBindValue(QStringLiteral("%1.5").arg(i));
            if (!q.exec())
                throw std::runtime_error(q.lastError().text().toStdString());
            base.commit();
        }));
    }
    {
        QSqlQuery q(base);
        q.exec(QStringLiteral("select count(*) from detalle_precio"));
        q.next();
        Comprobar(q.value(0).toInt() == filas, "one row per price after the saves");
    }
    base = QSqlDatabase(); // the session's connection goes with it
    char que[80];
    std::snprintf(que, sizeof que, "save: %d-price list, %d rows", productos, filas);
    Informe(que, Mediana(medido), Mediana(plano), 3.0);
    CerrarSesion();
}

} // namespace

int main(int argc, char **argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication aplicacion(argc, argv);
    rapido = QCoreApplication::arguments().contains(QStringLiteral("--rapido"));
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    const int productosCodigo = Tamano(100000, 2000);
    try {
        MedirNombre(Tamano(100000, 2000), 0);
        MedirNombre(Tamano(40000, 700), 3); // 120,000 variant rows
        if (!rapido) {
            MedirNombre(1000000, 0);
            MedirNombre(400000, 3); // 1,200,000 variant rows
        }
        {
            QTemporaryDir dir;
            MedirCodigo(
                NuevaSQLite(dir, [&](QSqlDatabase b) { LlenarCodigos(b, productosCodigo, false); }),
                productosCodigo, "SQLite");
        }
        const QString servidor = qEnvironmentVariable("TARIFAS_PRUEBAS_PG");
        if (!servidor.isEmpty()) {
            EnBaseDelServidor(servidor, [&](const QString &cadena) {
                {
                    ADODB::Connection c;
                    c.Open(cadena);
                    CrearTablasQueFaltan(c, TablasSuite());
                    QSqlDatabase b = c.Base();
                    Ejecutar(b, QStringLiteral("insert into opciones (numdecimales, "
                                               "estiloaspecto) values (2, 0)"));
                    Ejecutar(b, QStringLiteral("insert into cabecera_precio values (1, 'General', "
                                               "'2026-01-01', '2026-01-01', '2026-12-31')"));
                    LlenarCodigos(b, productosCodigo, true);
                }
                MedirCodigo(cadena, productosCodigo, "PostgreSQL");
            });
        } else {
            std::printf("code: PostgreSQL not measured (TARIFAS_PRUEBAS_PG is empty)\n");
        }
        MedirGuardado();
    } catch (const std::exception &error) {
        std::printf("FAIL: %s\n", error.what());
        return 1;
    }
    std::printf(fallo ? "FAIL\n" : "OK\n");
    return fallo ? 1 : 0;
}
