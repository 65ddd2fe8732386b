// How long the editor takes to open on a big catalogue, and to list a big size-and-colour
// price list, each beside the plain reading of the same rows by SQLite alone, in one run;
// and what the operator waits for, through the real screens.
//
//   load:  from the register's VerDetalles to the editor's window shown and exposed, for
//          1,000, 32,766, 100,000 and 1,000,000 products in both modes (1,200,000 variant
//          rows), beside SQLite reading the catalogue's query (prepare, step, each column as
//          text). Targets: <= 3 at 100,000, <= 1.5 at 1,000,000.
//   open:  the register's double click, by the mouse, to the editor shown and the program
//          idle, at 1,000,000 products. Target: <= 1.5 s.
//   memory: the program's peak (VmHWM) once the editor has opened at 100,000 and 1,000,000
//          products, beside the size of the same rows as plain text. Target: <= 3x at
//          1,000,000 (printed at 100,000, where the program's own libraries weigh most).
//   list:  ListarProductosLista_textil on a list of 10,000 stored variants, beside one join
//          that gives the same rows. Target: <= 3. The cost of asking each row's size and
//          colour with its own query is printed too, for comparison.
//   register: a register of 1,000,000 lists shown, and shown again after the editor closes.
//          Targets: <= 1 s each.
//
// Each figure is the best of a few runs. The row counts are checked against SQLite's; a wrong
// count or a missed target prints FAIL and the program ends with status 1. With --rapido the
// sizes are small and no time is judged, only the results: that is how CTest runs it.
#include "lecturabase.h"

#include "editor/frmtarifas.h"
#include "platform/datos/conexion.h"
#include "register/frmlistas.h"
#include "session/principal.h"
#include "session/sesionsuite.h"
#include "session/vida.h"
#include "suite/datos/esquema.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QSqlError>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QWindow>

#include <QFile>
#include <QTableView>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <stdexcept>
#include <vector>

using namespace ADODB;
using namespace Pantalla;

namespace {

constexpr int Repeticiones = 3;
bool fallo = false;
/// --rapido: small sizes, every result checked, no time judged.
bool rapido = false;

const QString TallaColor = QStringLiteral("TALLACOLOR");

const QString ConsultaCatalogo =
    QStringLiteral("Select * from productos where borrar =0 order by nombre asc");
const QString ConsultaCatalogoTextil =
    QStringLiteral("SELECT productos.*,productostextil.codigohijo ,productostextil.codcliente as "
                   "codcli,productostextil.precio as precioTextil,productos.codigocliente as "
                   "codcliP,tallas.DescripcionCorta as descTall, colorestextil.Nombre AS nomCol "
                   "  FROM ((productos LEFT JOIN productostextil ON productos.Codigo = "
                   "productostextil.CodigoPadre) "
                   "       LEFT JOIN tallas ON productostextil.Talla = tallas.codigo) LEFT JOIN "
                   "colorestextil ON productostextil.Color = colorestextil.codigo "
                   " WHERE PRODUCTOS.codigo <> null and PRODUCTOS.borrar = 0 ");
/// The size-and-colour list of list 1 in one statement: each stored row with its variant's
/// size, colour and shop code when the variant, its size and its colour all exist.
const QString JoinListaTextil = QStringLiteral(
    "select d.producto, d.codproductotextil, p.nombre, p.codigocliente, d.precio, v.desctalla, "
    "v.desccolor, v.codcliente from detalle_precio d join productos p on p.codigo = d.producto "
    "left join (select productostextil.codigopadre, productostextil.codigohijo, "
    "productostextil.codcliente, tallas.descripcioncorta as desctalla, colorestextil.nombre as "
    "desccolor from productostextil join tallas on tallas.codigo = productostextil.talla join "
    "colorestextil on colorestextil.codigo = productostextil.color) v on v.codigopadre = "
    "d.producto and v.codigohijo = d.codproductotextil where d.identificador = 1");

void Ejecutar(ADODB::Connection &c, const QString &sql) {
    QSqlQuery q(c.Base());
    if (!q.exec(sql))
        throw std::runtime_error(
            QString(q.lastError().text() + QStringLiteral(" in ") + sql).toStdString());
}

/// A suite database in `dir` with `productos` live products (codes 1..n, names in code
/// order), and in the size-and-colour shop three variants for every tenth product. List 1
/// holds 100 prices. `variantesLista` > 0 adds that many priced variants instead: products
/// n+1.. with five variants each, all of them in list 1.
void CrearTienda(ADODB::Connection &c, int productos, bool textil, int variantesLista = 0) {
    CrearTablasQueFaltan(c, TablasSuite());
    QSqlDatabase base = c.Base();
    base.transaction();
    Ejecutar(c, QStringLiteral("insert into opciones (numdecimales, estiloaspecto) values (2, 0)"));
    Ejecutar(c, QStringLiteral("insert into tallas values (1, 'S'), (2, 'M'), (3, 'XL')"));
    Ejecutar(c, QStringLiteral(
                    "insert into colorestextil values (1, 'Rojo'), (2, 'Azul'), (3, 'Negro')"));
    const QString n = QString::number(productos);
    Ejecutar(c, QStringLiteral(
                    "with recursive n(i) as (select 1 union all select i + 1 from n where i < ") +
                    n +
                    QStringLiteral(") insert into productos select i, 'C' || i, 'Producto ' || "
                                   "printf('%07d', i), i * 0.25, 'S' || (i % 7), 0 from n"));
    if (textil)
        Ejecutar(c,
                 QStringLiteral(
                     "insert into productostextil select p.codigo, 'H' || p.codigo || '-' || "
                     "t.codigo, t.codigo, t.codigo, case when t.codigo = 2 then 'V' || p.codigo "
                     "end, case when t.codigo = 3 then p.precio + 1 end from productos p, tallas t "
                     "where p.codigo % 10 = 0"));
    Ejecutar(c, QStringLiteral("insert into cabecera_precio values (1, 'General', '2026-01-01', "
                               "'2026-01-01', '2026-12-31')"));
    if (variantesLista > 0) {
        const int padres = variantesLista / 5;
        Ejecutar(c, QStringLiteral("with recursive n(i) as (select 1 union all select i + 1 from n "
                                   "where i < ") +
                        QString::number(padres) +
                        QStringLiteral(") insert into productos select ") + n +
                        QStringLiteral(
                            " + i, 'L' || i, 'Prenda ' || printf('%05d', i), 10, 'T', 0 from n"));
        Ejecutar(c,
                 QStringLiteral(
                     "with recursive k(j) as (select 1 union all select j + 1 from k where j < 5) "
                     "insert into productostextil select codigo, 'H' || codigo || '-' || j, "
                     "1 + j % 3, 1 + (j + 1) % 3, case when j = 1 then 'V' || codigo end, null "
                     "from productos, k where codigo > ") +
                     n);
        Ejecutar(c,
                 QStringLiteral("insert into detalle_precio select 1, codigopadre, 7.5, codigohijo "
                                "from productostextil where codigopadre > ") +
                     n);
    } else {
        Ejecutar(c, QStringLiteral("insert into detalle_precio select 1, codigo, precio - 0.1, ") +
                        (textil ? QStringLiteral("'-1'") : QStringLiteral("null")) +
                        QStringLiteral(" from productos where codigo % 1000 = 1"));
    }
    base.commit();
}

double Mejor(const std::function<void()> &paso) {
    double mejor = 1e300;
    for (int i = 0; i < Repeticiones; ++i) {
        QElapsedTimer reloj;
        reloj.start();
        paso();
        mejor = std::min(mejor, reloj.nsecsElapsed() / 1e6);
    }
    return mejor;
}

/// `objetivo` 0: printed, not judged.
void Informe(const char *que, double ms, double base, int filas, int filasBase, double objetivo) {
    const double ratio = ms / std::max(base, 1e-3);
    const bool filasBien = filas == filasBase;
    const bool juzgado = objetivo > 0 && !rapido;
    const bool ok = filasBien && (!juzgado || ratio <= objetivo);
    fallo = fallo || !ok;
    std::printf("%-40s %9.1f ms  sqlite %8.1f ms  ratio %6.2f  rows %7d/%-7d %s\n", que, ms, base,
                ratio, filas, filasBase,
                !filasBien ? "FAIL (rows)"
                : !juzgado ? "(no target)"
                : ok       ? "OK"
                           : "FAIL");
}

/// A time the operator waits, against its limit in ms.
void Espera(const char *que, double ms, double limite) {
    const bool ok = rapido || ms <= limite;
    fallo = fallo || !ok;
    std::printf("%-40s %9.1f ms  limit %8.1f ms  %s\n", que, ms, limite,
                rapido ? "(quick: not judged)"
                : ok   ? "OK"
                       : "FAIL");
}

/// A line of /proc/self/status, in kB (VmHWM: the peak so far, VmRSS: now).
double MemoriaKB(const char *clave) {
    QFile estado(QStringLiteral("/proc/self/status"));
    if (!estado.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray &linea : estado.readAll().split('\n'))
        if (linea.startsWith(clave))
            return linea.mid(qsizetype(qstrlen(clave)) + 1)
                .trimmed()
                .split(' ')
                .value(0)
                .toDouble();
    return 0;
}

/// The size in bytes of a grid's data rows as plain text: each cell's UTF-8 and a separator.
double TextoPlano(const Grid &g) {
    double bytes = 0;
    for (int f = 1; f < g.Rows(); ++f)
        for (int c = 0; c < g.Cols(); ++c)
            bytes += double(g.TextMatrix(f, c).toUtf8().size()) + 1;
    return bytes;
}

/// The session as start-up leaves it, on the database at `cadena`.
/// The run the screens belong to, from AbrirSesion to CerrarSesion.
std::unique_ptr<Principal::Vida> vida;

void AbrirSesion(const QString &cadena, const QString &tipoNegocio) {
    vida = std::make_unique<Principal::Vida>();
    SesionSuite.Conexion = std::make_unique<ADODB::Connection>();
    SesionSuite.Conexion->Open(cadena);
    SesionSuite.TipoNegocio = tipoNegocio;
    SesionSuite.AnchoDiseno = SesionSuite.AnchoPantalla = 15360;
    SesionSuite.AltoDiseno = SesionSuite.AltoPantalla = 11085;
}

void CerrarSesion() {
    frmTarifas().Unload();
    frmListas().Unload();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    vida.reset();
}

/// The register's hand-over of list 1, timed until the editor's window is exposed; the editor
/// is then left at once. Gives the catalogue's rows as the shown editor had them, and in
/// `texto`, when given, the size of the editor's rows as plain text.
int AbrirYCerrar(double &ms, double *texto = nullptr) {
    FrmListas &registro = frmListas();
    registro.lblCodigo->setCaption(QStringLiteral("1"));
    int filas = -1;
    QElapsedTimer reloj;
    QTimer sondeo;
    sondeo.setInterval(0);
    QObject::connect(&sondeo, &QTimer::timeout, [&] {
        FrmTarifas &e = frmTarifas();
        if (!e.Loaded() || !e.ventana()->isVisible() || !e.ventana()->windowHandle() ||
            !e.ventana()->windowHandle()->isExposed())
            return;
        ms = reloj.nsecsElapsed() / 1e6;
        sondeo.stop();
        const Grid &g = ModoTallaColor() ? *e.grid_productos_textil : *e.grid_productos;
        filas = g.Rows() - 1;
        if (texto)
            *texto = TextoPlano(g) + TextoPlano(*e.grid_Pseleccionados);
        e.Unload();
    });
    // The editor left last time is gone before this one is timed, as it is in the program,
    // where its widgets go while the operator looks at the register.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    sondeo.start();
    reloj.start();
    registro.VerDetalles(QStringLiteral("General"), QDate(2026, 1, 1), QDate(2026, 12, 31));
    sondeo.stop();
    return filas;
}

void MedirCarga(int productos, bool textil) {
    QTemporaryDir dir;
    const QString ruta = dir.filePath(QStringLiteral("suite.sqlite"));
    {
        ADODB::Connection c;
        c.Open(QStringLiteral("sqlite:") + ruta);
        CrearTienda(c, productos, textil);
    }
    AbrirSesion(QStringLiteral("sqlite:") + ruta, textil ? TallaColor : QString());
    frmListas().Load();
    const QString consulta = SesionSuite.Conexion->dialecto().Adaptar(
        textil ? ConsultaCatalogoTextil : ConsultaCatalogo);

    int filas = 0, filasBase = 0;
    const double base = Mejor([&] { filasBase = LecturaSQLite(ruta, consulta); });
    // Every live product has its row, and in the size-and-colour shop every tenth product
    // has three rows, one per variant, instead of one.
    const int esperadas = textil ? productos + 2 * (productos / 10) : productos;
    if (filasBase != esperadas) {
        std::printf("FAIL: SQLite reads %d catalogue rows, the shop has %d\n", filasBase,
                    esperadas);
        fallo = true;
    }
    // The load alone: the register's refill after the editor closes is not counted.
    double mejor = 1e300, texto = 0;
    for (int i = 0; i < Repeticiones; ++i) {
        double ms = 0;
        filas = AbrirYCerrar(ms, i == 0 ? &texto : nullptr);
        if (filas < 0)
            throw std::runtime_error("the editor never showed");
        mejor = std::min(mejor, ms);
    }
    char que[64];
    std::snprintf(que, sizeof que, "load %s %d products", textil ? "size-colour" : "plain",
                  productos);
    Informe(que, mejor, base, filas, filasBase,
            productos == 1000000  ? 1.5
            : productos == 100000 ? 3.0
                                  : 0);
    if (productos >= 100000) {
        // The peak of the whole program so far: the editor at this size is the biggest thing
        // it has held.
        const double pico = MemoriaKB("VmHWM:") * 1024;
        const double ratio = pico / std::max(texto, 1.0);
        const bool juzgado = productos == 1000000 && !rapido;
        const bool ok = !juzgado || ratio <= 3.0;
        fallo = fallo || !ok;
        std::printf("  memory: peak %7.1f MB, rows as text %7.1f MB  ratio %6.2f  %s\n",
                    pico / 1048576, texto / 1048576, ratio,
                    !juzgado ? "(no target)"
                    : ok     ? "OK"
                             : "FAIL");
    }
    CerrarSesion();
}

/// The register shown and active, as the operator has it.
FrmListas &RegistroVisible() {
    FrmListas &r = frmListas();
    r.Load();
    r.ventana()->show();
    if (!QTest::qWaitForWindowExposed(r.ventana()))
        throw std::runtime_error("the register was never exposed");
    QApplication::setActiveWindow(r.ventana());
    return r;
}

/// The operator's double click on the register's first row, from the press to the editor
/// shown, its first paint done and nothing left to do; the editor is then left at once.
/// `vuelta`, when given, gets the time from the editor's leaving to the register listed and
/// painted again.
double DobleClicHastaEditor(FrmListas &r, double *vuelta = nullptr) {
    QTableView *v = r.grid_precios->vista();
    const QPoint centro = v->visualRect(v->model()->index(0, 0)).center();
    QElapsedTimer reloj, regreso;
    double ms = -1;
    QTimer sondeo;
    sondeo.setInterval(0);
    QObject::connect(&sondeo, &QTimer::timeout, [&] {
        FrmTarifas &e = frmTarifas();
        if (!e.Loaded() || !e.ventana()->isVisible() || !e.ventana()->windowHandle() ||
            !e.ventana()->windowHandle()->isExposed())
            return;
        sondeo.stop();
        // The window is up; what the show queued (layouts, the first paint) runs before this
        // next zero timer does.
        QTimer::singleShot(0, [&] {
            ms = reloj.nsecsElapsed() / 1e6;
            regreso.start();
            frmTarifas().Unload();
        });
    });
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    sondeo.start();
    reloj.start();
    QTest::mouseClick(v->viewport(), Qt::LeftButton, {}, centro);
    QTest::mouseDClick(v->viewport(), Qt::LeftButton, {}, centro);
    sondeo.stop();
    if (ms < 0)
        throw std::runtime_error("the editor never showed after the double click");
    // Back in the register, which listed its rows again: its view updated and painted.
    r.grid_precios->Refresh();
    QCoreApplication::processEvents();
    if (vuelta)
        *vuelta = regreso.nsecsElapsed() / 1e6;
    return ms;
}

void MedirDobleClic(int productos) {
    QTemporaryDir dir;
    const QString ruta = dir.filePath(QStringLiteral("suite.sqlite"));
    {
        ADODB::Connection c;
        c.Open(QStringLiteral("sqlite:") + ruta);
        CrearTienda(c, productos, false);
    }
    AbrirSesion(QStringLiteral("sqlite:") + ruta, QString());
    FrmListas &r = RegistroVisible();
    double mejor = 1e300;
    for (int i = 0; i < Repeticiones; ++i)
        mejor = std::min(mejor, DobleClicHastaEditor(r));
    char que[64];
    std::snprintf(que, sizeof que, "open: double click, %d products", productos);
    Espera(que, mejor, 1500);
    CerrarSesion();
}

void MedirRegistro(int listas) {
    QTemporaryDir dir;
    const QString ruta = dir.filePath(QStringLiteral("suite.sqlite"));
    {
        ADODB::Connection c;
        c.Open(QStringLiteral("sqlite:") + ruta);
        CrearTienda(c, 100, false);
        Ejecutar(c, QStringLiteral("with recursive n(i) as (select 2 union all select i + 1 from n "
                                   "where i < %1) insert into cabecera_precio select i, 'Lista ' "
                                   "|| i, '2026-01-01', '2026-01-01', '2026-12-31' from n")
                        .arg(listas));
    }
    AbrirSesion(QStringLiteral("sqlite:") + ruta, QString());
    double mostrado = 1e300, vuelta = 1e300;
    int filas = 0;
    for (int i = 0; i < Repeticiones; ++i) {
        QElapsedTimer reloj;
        reloj.start();
        FrmListas &r = RegistroVisible();
        r.grid_precios->Refresh();
        mostrado = std::min(mostrado, reloj.nsecsElapsed() / 1e6);
        filas = r.grid_precios->Rows() - 1;
        double ms = 0;
        DobleClicHastaEditor(r, &ms);
        vuelta = std::min(vuelta, ms);
        r.Unload();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    if (filas != listas) {
        std::printf("FAIL: the register lists %d rows of %d lists\n", filas, listas);
        fallo = true;
    }
    char que[64];
    std::snprintf(que, sizeof que, "register: %d lists shown", filas);
    Espera(que, mostrado, 1000);
    std::snprintf(que, sizeof que, "register: back from the editor");
    Espera(que, vuelta, 1000);
    CerrarSesion();
}

void MedirListaTextil(int variantes) {
    QTemporaryDir dir;
    const QString ruta = dir.filePath(QStringLiteral("suite.sqlite"));
    {
        ADODB::Connection c;
        c.Open(QStringLiteral("sqlite:") + ruta);
        CrearTienda(c, 1000, true, variantes);
    }
    AbrirSesion(QStringLiteral("sqlite:") + ruta, TallaColor);
    frmListas().Load();
    frmListas().lblCodigo->setCaption(QStringLiteral("1"));
    FrmTarifas &e = frmTarifas();
    e.Load();

    int filasBase = 0;
    const double base = Mejor([&] { filasBase = LecturaSQLite(ruta, JoinListaTextil); });
    if (filasBase != variantes) {
        std::printf("FAIL: the join reads %d rows, the list has %d\n", filasBase, variantes);
        fallo = true;
    }
    const double lista = Mejor([&] { e.ListarProductosLista_textil(); });
    const Grid &g = *e.grid_Pseleccionados;
    const int filas = g.Rows() - 1;
    // Every stored variant exists, with its size and colour: each row shows them.
    int conTalla = 0;
    for (int f = 1; f < g.Rows(); ++f)
        conTalla += !g.TextMatrix(f, 4).isEmpty() && !g.TextMatrix(f, 5).isEmpty();
    char que[64];
    std::snprintf(que, sizeof que, "list size-colour %d variants", variantes);
    Informe(que, lista, base, filas, filasBase, 3.0);
    if (conTalla != filas) {
        std::printf("FAIL: %d of %d rows without size or colour\n", filas - conTalla, filas);
        fallo = true;
    }

    // For comparison: each row's size and colour asked with a query of its own.
    const double porFila = Mejor([&] {
        QString color, codCliente;
        for (int f = 1; f < g.Rows(); ++f)
            e.obtenerTallaYColor(g.TextMatrix(f, 2), g.TextMatrix(f, 3), color, codCliente);
    });
    std::printf("%-40s %9.1f ms  sqlite %8.1f ms  ratio %6.2f  (a query per row, for comparison)\n",
                "  same sizes, one query per row", porFila, base, porFila / std::max(base, 1e-3));
    CerrarSesion();
}

} // namespace

int main(int argc, char **argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication aplicacion(argc, argv);
    rapido = QCoreApplication::arguments().contains(QStringLiteral("--rapido"));
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    try {
        const std::vector<int> tamanos =
            rapido ? std::vector<int>{1000, 3000} : std::vector<int>{1000, 32766, 100000, 1000000};
        for (int productos : tamanos)
            for (bool textil : {false, true})
                MedirCarga(productos, textil);
        MedirDobleClic(rapido ? 3000 : 1000000);
        MedirListaTextil(rapido ? 500 : 10000);
        MedirRegistro(rapido ? 3000 : 1000000);
    } catch (const std::exception &error) {
        std::printf("FAIL: %s\n", error.what());
        return 1;
    }
    std::printf(fallo ? "FAIL\n" : "OK\n");
    return fallo ? 1 : 0;
}
