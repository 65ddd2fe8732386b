// The register of price lists at the size of the biggest chains: how long the operator waits
// for it to show, and to come back to it after each editor, beside SQLite alone reading the
// same rows (prepare, step, each column as text), in one run.
//
//   shown: from the register's load to its window shown, exposed and painted.
//   other terminal: another terminal renames a list, deletes one and makes one; the register
//          follows (SeguirCambios, which its change watch calls) and must show all three.
//   back:  from the editor's leaving to the register up to date and painted, the editor having
//          changed its own list's period.
//
// Targets at 1,000,000 lists: each at most 1 s. Each figure is the best of a few runs; the
// rows are checked against SQLite's (their number, and the texts of the first, the last and
// the changed rows), so a fast wrong answer fails. One line a measure; a wrong result or a
// missed target prints FAIL and the program ends with status 1. With --rapido the sizes are
// small and no time is judged, only the results: that is how CTest runs it.
#include "lecturabase.h"

#include "editor/frmtarifas.h"
#include "platform/datos/conexion.h"
#include "platform/datos/regional.h"
#include "register/columnaslistas.h"
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

#include <algorithm>
#include <cstdio>
#include <memory>
#include <stdexcept>
#include <vector>

using namespace ADODB;
using namespace Pantalla;
using namespace Sistema;

namespace {

constexpr int Repeticiones = 3;
bool fallo = false;
/// --rapido: small sizes, every result checked, no time judged.
bool rapido = false;

const QString Consulta = QStringLiteral("select descripcion, preciovalidodesde, preciovalidohasta, "
                                        "identificador from cabecera_precio");

void Ejecutar(ADODB::Connection &c, const QString &sql) {
    QSqlQuery q(c.Base());
    if (!q.exec(sql))
        throw std::runtime_error(
            QString(q.lastError().text() + QStringLiteral(" in ") + sql).toStdString());
}

/// A shop with a hundred products and `listas` price lists, codes 1..n: list i is called
/// "Lista i" and runs from day i % 400 of 2026 for a year; every seventh has no end.
void CrearTienda(ADODB::Connection &c, int listas) {
    CrearTablasQueFaltan(c, TablasSuite());
    QSqlDatabase base = c.Base();
    base.transaction();
    Ejecutar(c, QStringLiteral("insert into opciones (numdecimales, estiloaspecto) values (2, 0)"));
    Ejecutar(c, QStringLiteral("with recursive n(i) as (select 1 union all select i + 1 from n "
                               "where i < 100) insert into productos select i, 'C' || i, "
                               "'Producto ' || i, i * 0.25, 'S', 0 from n"));
    Ejecutar(c, QStringLiteral("with recursive n(i) as (select 1 union all select i + 1 from n "
                               "where i < %1) insert into cabecera_precio select i, 'Lista ' || i, "
                               "'2026-01-01', date('2026-01-01', '+' || (i % 400) || ' days'), "
                               "case when i % 7 = 0 then null else date('2026-01-01', '+' || "
                               "(i % 400 + 365) || ' days') end from n")
                    .arg(listas));
    base.commit();
}

/// What the register must show of list `codigo`, read from the database: name, dates as
/// regional text (empty when Null), code. Empty when there is no such list.
QStringList Esperada(ADODB::Connection &c, qint64 codigo) {
    QSqlQuery q(c.Base());
    q.prepare(QStringLiteral("select descripcion, preciovalidodesde, preciovalidohasta from "
                             "cabecera_precio where identificador = ?"));
    q.addBindValue(codigo);
    if (!q.exec() || !q.next())
        return {};
    const auto fecha = [&](int columna) {
        return q.isNull(columna)
                   ? QString()
                   : FechaATexto(QDate::fromString(q.value(columna).toString(), Qt::ISODate));
    };
    return {q.value(0).toString(), fecha(1), fecha(2), QString::number(codigo)};
}

QStringList Fila(const Grid &g, int fila) {
    QStringList textos;
    for (int c = 0; c < 4; ++c)
        textos << g.TextMatrix(fila, c);
    return textos;
}

/// The grid's row of list `codigo`, or -1.
int FilaDe(const Grid &g, qint64 codigo) {
    const QString texto = QString::number(codigo);
    for (int f = 1; f < g.Rows(); ++f)
        if (g.TextMatrix(f, ColListas::Codigo) == texto)
            return f;
    return -1;
}

void Comprobar(bool bien, const QString &que) {
    if (!bien) {
        std::printf("FAIL: %s\n", qPrintable(que));
        fallo = true;
    }
}

/// The register's rows against the database: as many as SQLite reads, and the first and last
/// rows, and each list of `codigos`, as the database holds them (a list gone has no row).
void ComprobarRegistro(const Grid &g, int filasBase, const std::vector<qint64> &codigos) {
    ADODB::Connection &c = *SesionSuite.Conexion;
    Comprobar(
        g.Rows() - 1 == filasBase,
        QStringLiteral("the register lists %1 rows, SQLite %2").arg(g.Rows() - 1).arg(filasBase));
    for (int fila : {1, g.Rows() - 1}) {
        const QStringList textos = Fila(g, fila);
        Comprobar(textos == Esperada(c, textos.last().toLongLong()),
                  QStringLiteral("row %1 shows %2").arg(fila).arg(textos.join(QLatin1Char('|'))));
    }
    for (qint64 codigo : codigos) {
        const QStringList esperada = Esperada(c, codigo);
        const int fila = FilaDe(g, codigo);
        Comprobar(esperada.isEmpty() ? fila < 0 : fila > 0 && Fila(g, fila) == esperada,
                  QStringLiteral("list %1 shows as %2, it is %3")
                      .arg(codigo)
                      .arg(fila > 0 ? Fila(g, fila).join(QLatin1Char('|')) : QStringLiteral("-"),
                           esperada.join(QLatin1Char('|'))));
    }
}

/// A time the operator waits, beside SQLite's reading of the same rows, against its limit
/// (none: 0).
void Informe(const char *que, double ms, double base, double limite) {
    const bool ok = rapido || limite <= 0 || ms <= limite;
    fallo = fallo || !ok;
    char meta[32] = "no limit";
    if (limite > 0)
        std::snprintf(meta, sizeof meta, "limit %.0f ms", limite);
    std::printf("%-36s %9.1f ms  sqlite %8.1f ms  ratio %6.2f  %-14s %s\n", que, ms, base,
                ms / std::max(base, 1e-3), meta,
                rapido ? "(quick: not judged)"
                : ok   ? "OK"
                       : "FAIL");
}

/// The register loaded and shown, as the operator has it at start-up.
FrmListas &Mostrar() {
    FrmListas &r = frmListas();
    r.Load();
    r.ventana()->show();
    if (!QTest::qWaitForWindowExposed(r.ventana()))
        throw std::runtime_error("the register was never exposed");
    r.grid_precios->Refresh();
    QCoreApplication::processEvents();
    return r;
}

/// The register's hand-over of the first row's list to the editor, which writes that list's
/// end date `hasta` and is left as soon as it shows. Gives the time from its leaving to the
/// register up to date and painted.
double IdaYVuelta(FrmListas &r, const QString &hasta) {
    const QString codigo = r.grid_precios->TextMatrix(1, ColListas::Codigo);
    r.lblCodigo->setCaption(codigo);
    QElapsedTimer regreso;
    bool mostrado = false;
    QTimer sondeo;
    sondeo.setInterval(0);
    QObject::connect(&sondeo, &QTimer::timeout, [&] {
        FrmTarifas &e = frmTarifas();
        if (!e.Loaded() || !e.ventana()->isVisible())
            return;
        sondeo.stop();
        mostrado = true;
        // The editor's own write, on the program's connection, as a change of period is.
        Ejecutar(*SesionSuite.Conexion, QStringLiteral("update cabecera_precio set "
                                                       "preciovalidohasta = '%1' where "
                                                       "identificador = %2")
                                            .arg(hasta, codigo));
        regreso.start();
        e.Unload();
    });
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    sondeo.start();
    r.VerDetalles(r.grid_precios->TextMatrix(1, ColListas::Nombre), QDate(2026, 1, 1),
                  QDate(2026, 12, 31));
    sondeo.stop();
    if (!mostrado)
        throw std::runtime_error("the editor never showed");
    r.grid_precios->Refresh();
    QCoreApplication::processEvents();
    return regreso.nsecsElapsed() / 1e6;
}

void Medir(int listas) {
    QTemporaryDir dir;
    const QString ruta = dir.filePath(QStringLiteral("suite.sqlite"));
    const QString cadena = QStringLiteral("sqlite:") + ruta;
    {
        ADODB::Connection c;
        c.Open(cadena);
        CrearTienda(c, listas);
    }
    auto vida = std::make_unique<Principal::Vida>();
    SesionSuite.Conexion = std::make_unique<ADODB::Connection>();
    SesionSuite.Conexion->Open(cadena);
    SesionSuite.TipoNegocio.clear();
    SesionSuite.AnchoDiseno = SesionSuite.AnchoPantalla = 15360;
    SesionSuite.AltoDiseno = SesionSuite.AltoPantalla = 11085;
    // Another terminal, on the same file.
    ADODB::Connection otra;
    otra.Open(cadena);

    double base = 1e300, mostrado = 1e300, vuelta = 1e300, seguido = 1e300;
    qint64 siguiente = listas + 1;
    for (int i = 0; i < Repeticiones; ++i) {
        QElapsedTimer reloj;
        reloj.start();
        FrmListas &r = Mostrar();
        mostrado = std::min(mostrado, reloj.nsecsElapsed() / 1e6);
        reloj.start();
        const int filasBase = LecturaSQLite(ruta, Consulta);
        base = std::min(base, reloj.nsecsElapsed() / 1e6);
        ComprobarRegistro(*r.grid_precios, filasBase, {});

        // Meanwhile, at another terminal: a list renamed, one deleted, one made.
        const qint64 renombrada = 2 + i, borrada = listas / 2 + i, nueva = siguiente++;
        Ejecutar(otra, QStringLiteral("update cabecera_precio set descripcion = 'Otra %1', "
                                      "preciovalidohasta = null where identificador = %2")
                           .arg(i)
                           .arg(renombrada));
        Ejecutar(
            otra,
            QStringLiteral("delete from cabecera_precio where identificador = %1").arg(borrada));
        Ejecutar(otra, QStringLiteral("insert into cabecera_precio values (%1, 'Nueva %1', "
                                      "'2026-02-01', '2026-02-01', '2027-01-31')")
                           .arg(nueva));
        reloj.start();
        // Called here rather than waited for: the watch's turn would add its half second.
        r.SeguirCambios();
        r.grid_precios->Refresh();
        seguido = std::min(seguido, reloj.nsecsElapsed() / 1e6);
        ComprobarRegistro(*r.grid_precios, LecturaSQLite(ruta, Consulta),
                          {renombrada, borrada, nueva});
        // The watch's own turn comes and goes before the editor is timed.
        QTest::qWait(700);

        vuelta = std::min(vuelta, IdaYVuelta(r, QStringLiteral("2027-0%1-15").arg(i + 3)));
        ComprobarRegistro(*r.grid_precios, LecturaSQLite(ruta, Consulta),
                          {r.grid_precios->TextMatrix(1, ColListas::Codigo).toLongLong()});
        Comprobar(r.grid_precios->TextMatrix(1, ColListas::Hasta) ==
                      FechaATexto(QDate(2027, 3 + i, 15)),
                  QStringLiteral("the editor's period shows as %1")
                      .arg(r.grid_precios->TextMatrix(1, ColListas::Hasta)));
        r.Unload();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    char que[64];
    std::snprintf(que, sizeof que, "register: %d lists shown", listas);
    Informe(que, mostrado, base, listas >= 1000000 ? 1000 : 0);
    std::snprintf(que, sizeof que, "register: %d lists, other terminal", listas);
    Informe(que, seguido, base, listas >= 1000000 ? 1000 : 0);
    std::snprintf(que, sizeof que, "register: %d lists, back", listas);
    Informe(que, vuelta, base, listas >= 1000000 ? 1000 : 0);
    frmTarifas().Unload();
    frmListas().Unload();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    vida.reset();
    SesionSuite.Conexion.reset();
}

} // namespace

int main(int argc, char **argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication aplicacion(argc, argv);
    rapido = QCoreApplication::arguments().contains(QStringLiteral("--rapido"));
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    try {
        for (int listas : rapido ? std::vector<int>{3000} : std::vector<int>{100000, 1000000})
            Medir(listas);
    } catch (const std::exception &error) {
        std::printf("FAIL: %s\n", error.what());
        return 1;
    }
    std::printf(fallo ? "FAIL\n" : "OK\n");
    return fallo ? 1 : 0;
}
