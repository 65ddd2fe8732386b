// The register screen: the double click and the hand-over to the editor; the help page; a new
// price list: the next code, the checks of the panel, what is stored and shown, a double click
// while the panel is open, two terminals taking the same code, and a database that refuses the row.
#include "apoyo/ejecucion.h"
#include "apoyo/respuestas.h"
#include "apoyo/tiendaprueba.h"
#include "platform/datos/regional.h"
#include "platform/datos/sistema.h"

#include <QApplication>
#include <QHeaderView>
#include <QPushButton>
#include <QSqlError>
#include <QSqlQuery>
#include <functional>

using namespace Pantalla;
using namespace Sistema;

namespace {

std::unique_ptr<TiendaPrueba> tienda;
const QString Periodo = QStringLiteral("Compruebe el periodo de validez de la tarifa");

QString Descripcion(int codigo) {
    return tienda
        ->Valor("select descripcion from cabecera_precio where identificador = ?", {codigo})
        .toString();
}

int Listas() {
    return tienda->Valor("select count(*) from cabecera_precio").toInt();
}

/// Clicks `boton`, with ConEditor.
bool Pulsar(CommandButton *boton, const std::function<void(FrmTarifas &)> &mientras = {}) {
    return ConEditor([boton] { QTest::mouseClick(boton->widget(), Qt::LeftButton); }, mientras);
}

/// What the editor shows of its list: code, name, the dates' labels and controls, its
/// number of rows and the first product.
QString Abierta(FrmTarifas &e) {
    const Grid &g = *e.grid_Pseleccionados;
    return QStringList{e.lblCodigo->Caption(),
                       e.Label5->Caption(),
                       e.lblDesde->Caption(),
                       e.lblHasta->Caption(),
                       e.desde->Value().toString(Qt::ISODate),
                       e.hasta->Value().toString(Qt::ISODate),
                       QString::number(g.Rows()),
                       g.TextMatrix(1, ColLlano::Nombre)}
        .join('|');
}

bool ConFoco(Control *c) {
    const QWidget *foco = QApplication::focusWidget();
    return foco && (foco == c->widget() || c->widget()->isAncestorOf(foco));
}

/// Fills the panel the way the operator does, in the open register `f`.
void Rellenar(FrmListas &f, const QString &nombre, QDate desde, QDate hasta) {
    f.txtNomLista->setText(nombre);
    f.desde->setValue(desde);
    f.hasta->setValue(hasta);
}

} // namespace

class TstFrmListas : public QObject {
    Q_OBJECT

  private slots:
    void init() { tienda = std::make_unique<TiendaPrueba>(); }
    void cleanup() { tienda.reset(); }

    void dobleClicAbreEditor() {
        // The editor gets the row's code, name and dates, and lists that list's prices.
        tienda->Ejecutar(
            "insert into productos (codigo, codigocliente, nombre, borrar) values (1, 'C1', "
            "'Camisa', 0), (2, 'C2', 'Pantalon', 0)");
        tienda->Lista(7, "Clientes 'VIP'", QDate(2026, 3, 1), QDate(2026, 4, 15));
        tienda->Lista(8, "Otra");
        tienda->Ejecutar(
            "insert into detalle_precio (identificador, producto, precio) values (7, 1, 9), "
            "(8, 2, 25)");
        tienda->Registro();
        QString abierta;
        QVERIFY(DobleClic(7, [&](FrmTarifas &e) { abierta = Abierta(e); }));
        QCOMPARE(abierta, "7|Clientes 'VIP'|1/3/2026|15/4/2026|2026-03-01|2026-04-15|2|Camisa");
        QCOMPARE(frmListas().lblCodigo->Caption(), QStringLiteral("7"));
        QVERIFY(!frmTarifas().Loaded());
    }

    void vueltaDelEditor_data() {
        // What the editor writes to its list 7 on the program's connection, what another
        // terminal writes meanwhile, and the register's rows (code|name|end) once it closes.
        const auto caso = Pruebas::Tabla<QString, QString, QStringList>();
        const QString fin = FechaATexto(QDate(2026, 12, 31));
        caso("nothing written", "", "", {"5|Cinco|" + fin, "7|Siete|" + fin, "9|Nueve|" + fin});
        caso("its period",
             "update cabecera_precio set preciovalidohasta = '2027-03-31' "
             "where identificador = 7",
             "",
             {"5|Cinco|" + fin, "7|Siete|" + FechaATexto(QDate(2027, 3, 31)), "9|Nueve|" + fin});
        caso("its deletion", "delete from cabecera_precio where identificador = 7", "",
             {"5|Cinco|" + fin, "9|Nueve|" + fin});
        caso("another terminal renames, deletes and makes lists", "",
             "update cabecera_precio set descripcion = 'Otra' where identificador = 9; "
             "delete from cabecera_precio where identificador = 5; insert into cabecera_precio "
             "values (11, 'Once', '2026-01-01', '2026-01-01', '2026-12-31')",
             {"7|Siete|" + fin, "9|Otra|" + fin, "11|Once|" + fin});
        caso("both", "update cabecera_precio set preciovalidohasta = null where identificador = 7",
             "update cabecera_precio set descripcion = 'Otra' where identificador = 9",
             {"5|Cinco|" + fin, "7|Siete|", "9|Otra|" + fin});
    }
    void vueltaDelEditor() {
        const auto [delEditor, deOtraCaja, filas] = Pruebas::Fila<QString, QString, QStringList>();
        for (const auto &[codigo, nombre] : {std::pair{5, "Cinco"}, {7, "Siete"}, {9, "Nueve"}})
            tienda->Lista(codigo, QString::fromUtf8(nombre), QDate(2026, 1, 1),
                          QDate(2026, 12, 31));
        FrmListas &f = tienda->Registro();
        const auto listadas = [&f] {
            QStringList t;
            for (int r = 1; r < f.grid_precios->Rows(); ++r)
                t << QStringList{f.grid_precios->TextMatrix(r, ColListas::Codigo),
                                 f.grid_precios->TextMatrix(r, ColListas::Nombre),
                                 f.grid_precios->TextMatrix(r, ColListas::Hasta)}
                         .join('|');
            return t;
        };
        QVERIFY(DobleClic(7, [&](FrmTarifas &) {
            QSqlQuery q(SesionSuite.Conexion->Base());
            if (!delEditor.isEmpty())
                QVERIFY2(q.exec(delEditor), qPrintable(q.lastError().text()));
            // Another program of the suite, which tells no one.
            for (const QString &sentencia : deOtraCaja.split(';', Qt::SkipEmptyParts))
                tienda->Ejecutar(sentencia.trimmed());
        }));
        // In the database's order, which a server changes with an update.
        QStringList vistas = listadas(), esperadas = filas;
        vistas.sort();
        esperadas.sort();
        QCOMPARE(vistas, esperadas);
        QCOMPARE(f.grid_precios->Row(), 1);
    }

    void dobleClicSinFila() {
        // With the title row alone the current row is 0 and nothing opens.
        FrmListas &f = tienda->Registro();
        QCOMPARE(f.grid_precios->Rows(), 1);
        QTableView *v = f.grid_precios->vista();
        // One at a time: an editor opened by the first must not be left waiting by the second.
        for (QWidget *donde : {v->viewport(), v->horizontalHeader()->viewport()})
            QVERIFY(
                !ConEditor([&] { QTest::mouseDClick(donde, Qt::LeftButton, {}, QPoint(5, 5)); }));
        QCOMPARE(f.grid_precios->Row(), 0);
        QVERIFY(!frmTarifas().Loaded());
        QCOMPARE(f.lblCodigo->Caption(), QStringLiteral("lblCodigo"));
    }

    void ayuda() {
        // The help page rises from below the screen's edge onto the foot of the title bar and
        // stops exactly there; the viewer's Cerrar takes it back down. A link followed inside
        // the page is a notice that moves nothing.
        FrmListas &f = tienda->Registro();
        const auto deslizar = [&f] { // the timer's ticks by hand; where the panel stopped
            for (int tick = 0; f.tmrAyuda->Enabled() && tick < 500; ++tick)
                emit f.tmrAyuda->Tick();
            return f.tmrAyuda->Enabled() ? -1.0 : f.Open1->Top();
        };
        QTest::mouseClick(f.cmd_Ayuda->widget(), Qt::LeftButton);
        QCOMPARE(f.Open1->Top(), f.Height());
        QCOMPARE(deslizar(), f.fr_SeparacionH1->Height() + f.Frame1->Top());
        emit f.Open1->Aviso();
        QVERIFY(!f.tmrAyuda->Enabled());
        QTest::mouseClick(f.Open1->widget()->findChild<QPushButton *>("cerrar"), Qt::LeftButton);
        QCOMPARE(deslizar(), f.Height());
    }

    void nuevoCodigo_data() {
        const auto caso = Pruebas::Tabla<QStringList, QString>();
        caso("tabla vacía", QStringList{}, "1");
        caso("la más alta es 41",
             QStringList{"insert into cabecera_precio (identificador) values (5), (41), (3)"},
             "42");
        // A table some other program of the suite made without the key.
        caso("todas Null",
             QStringList{"drop table cabecera_precio",
                         "create table cabecera_precio (identificador integer, descripcion "
                         "varchar(50), fechaalta date, preciovalidodesde date, "
                         "preciovalidohasta date)",
                         "insert into cabecera_precio (descripcion) values ('a'), ('b')"},
             "1");
    }
    void nuevoCodigo() {
        const auto [preparar, codigo] = Pruebas::Fila<QStringList, QString>();
        for (const QString &sql : preparar)
            tienda->Ejecutar(sql);
        const int antes = Listas();
        FrmListas &f = frmListas();
        tienda->Registro(f);
        QTest::mouseClick(f.cmdNuevo->widget(), Qt::LeftButton);
        QCOMPARE(f.lblCodigo->Caption(), codigo);
        QVERIFY(f.frAltaLista->Visible() && !f.cmdNuevo->Visible());
        QCOMPARE(f.desde->Value(), Hoy());
        QCOMPARE(f.hasta->Value(), Hoy().addDays(30));
        QTRY_VERIFY(ConFoco(f.txtNomLista));

        // Cancelled: nothing stored. Opened again: cleared, and the code worked out afresh.
        Rellenar(f, QStringLiteral("Sin guardar"), QDate(2026, 5, 1), QDate(2026, 4, 1));
        QTest::mouseClick(f.cmdCancelar->widget(), Qt::LeftButton);
        QVERIFY(!f.frAltaLista->Visible() && f.cmdNuevo->Visible());
        QCOMPARE(Listas(), antes);
        tienda->Ejecutar(QStringLiteral("insert into cabecera_precio (identificador) values (99)"));
        QTest::mouseClick(f.cmdNuevo->widget(), Qt::LeftButton);
        QCOMPARE(f.lblCodigo->Caption(), QStringLiteral("100"));
        QCOMPARE(f.txtNomLista->Text(), QString());
        QCOMPARE(f.desde->Value(), Hoy());
    }

    void aceptar_data() {
        // mensaje: empty: stored, and the editor opens on it
        const auto caso = Pruebas::Tabla<QString, QDate, QDate, QString>();
        const QDate d1(2026, 1, 1), d31(2026, 1, 31);
        const QString sinNombre = "Tiene que indicar un nombre para la nueva tarifa";
        caso("sin nombre", "", d1, d31, sinNombre);
        caso("desde un dia despues", "V", d31.addDays(1), d31, Periodo);
        caso("sin nombre, periodo al reves", "", d31, d1, sinNombre);
        caso("barra", "Mayo|Junio", d1, d31,
             "El nombre de la tarifa no puede llevar el carácter |");
        caso("desde igual a hasta", "Un día", d1, d1, "");
        // Compared as dates: as texts, "15/12/2026" would come after "14/1/2027".
        caso("cruza el ano", "Navidad", QDate(2026, 12, 15), QDate(2027, 1, 14), "");
        caso("blancos", "   ", d1, d31, "");
        caso("comillas y comodines", "L'Oréal \"VIP\" 10% a_b \\n \\\\ ; drop table x; --", d1, d31,
             "");
    }
    void aceptar() {
        const auto [nombre, desde, hasta, mensaje] =
            Pruebas::Fila<QString, QDate, QDate, QString>();
        tienda->Lista(4, QStringLiteral("General"));
        FrmListas &f = frmListas();
        tienda->Registro(f);
        QTest::mouseClick(f.cmdNuevo->widget(), Qt::LeftButton);
        Rellenar(f, nombre, desde, hasta);
        RespuestasMensajes respuestas;
        int filasAlAbrir = 0;
        QString abierta;
        const bool abierto = Pulsar(f.cmdAceptar, [&](FrmTarifas &e) {
            filasAlAbrir = f.grid_precios->Rows(); // listed again before the editor opened
            abierta = Abierta(e);
        });
        if (!mensaje.isEmpty()) {
            // Refused: told why, the focus on what to mend, nothing stored, the panel open.
            QVERIFY(!abierto);
            QCOMPARE(respuestas.Mostrados(), QStringList{mensaje});
            QCOMPARE(respuestas.Titulos(), QStringList{QString()});
            QTRY_VERIFY(
                ConFoco(mensaje == Periodo ? static_cast<Control *>(f.desde) : f.txtNomLista));
            QCOMPARE(Listas(), 1);
            QVERIFY(f.frAltaLista->Visible());
            QCOMPARE(f.txtNomLista->Text(), nombre);
            return;
        }
        QVERIFY(abierto);
        const QString fechas = FechaATexto(desde) + '|' + FechaATexto(hasta) + '|' +
                               desde.toString(Qt::ISODate) + '|' + hasta.toString(Qt::ISODate);
        QCOMPARE(abierta, "5|" + nombre + '|' + fechas + "|2|");
        QCOMPARE(respuestas.Mostrados(), QStringList{});
        QCOMPARE(filasAlAbrir, 3);
        QVERIFY(!f.frAltaLista->Visible() && f.cmdNuevo->Visible());
        QCOMPARE(Descripcion(5), nombre);
        QCOMPARE(tienda->Valor("select cast(fechaalta as varchar(40)) || cast(preciovalidodesde as "
                               "varchar(40)) || cast(preciovalidohasta as varchar(40)) from "
                               "cabecera_precio where identificador = 5"),
                 QVariant(Hoy().toString(Qt::ISODate) + desde.toString(Qt::ISODate) +
                          hasta.toString(Qt::ISODate)));
        QCOMPARE(f.grid_precios->TextMatrix(FilaRegistro(5), ColListas::Nombre), nombre);
    }

    void dobleClicConPanelAbierto() {
        // The row double-clicked while the panel is open opens in the editor; Aceptar still
        // stores the new list under its own code, even when the clicked list went meanwhile.
        tienda->Lista(1, QStringLiteral("General"));
        tienda->Lista(2, QStringLiteral("Rebajas"));
        FrmListas &f = frmListas();
        tienda->Registro(f);
        QTest::mouseClick(f.cmdNuevo->widget(), Qt::LeftButton);
        QVERIFY(DobleClic(1, [](FrmTarifas &) {
            tienda->Ejecutar("delete from cabecera_precio where identificador = 1");
        }));
        QCOMPARE(f.lblCodigo->Caption(), QStringLiteral("1"));
        QVERIFY(f.frAltaLista->Visible());

        Rellenar(f, QStringLiteral("Nueva"), QDate(2026, 1, 1), QDate(2026, 1, 31));
        QString abierta;
        QVERIFY(Pulsar(f.cmdAceptar, [&](FrmTarifas &e) { abierta = e.lblCodigo->Caption(); }));
        QCOMPARE(abierta, QStringLiteral("3"));
        QCOMPARE(Descripcion(3), QStringLiteral("Nueva"));
        QCOMPARE(Listas(), 2);
    }

    void dosTerminales() {
        // Two registers on two connections to the same database, each its own terminal. Both
        // open the panel before either stores: they work out the same code.
        tienda->Lista(1, QStringLiteral("General"));
        auto otraConexion = std::make_unique<ADODB::Connection>();
        otraConexion->Open(tienda->db().Cadena());
        const auto enOtraCaja = [&](const std::function<void()> &paso) {
            std::swap(SesionSuite.Conexion, otraConexion);
            paso();
            std::swap(SesionSuite.Conexion, otraConexion);
        };
        FrmListas &caja1 = frmListas();
        tienda->Registro(caja1);
        FrmListas caja2;
        enOtraCaja([&] { tienda->Registro(caja2); });

        QTest::mouseClick(caja1.cmdNuevo->widget(), Qt::LeftButton);
        enOtraCaja([&] { QTest::mouseClick(caja2.cmdNuevo->widget(), Qt::LeftButton); });
        QCOMPARE(caja1.lblCodigo->Caption(), QStringLiteral("2"));
        QCOMPARE(caja2.lblCodigo->Caption(), QStringLiteral("2"));

        RespuestasMensajes respuestas;
        QString abiertaEn2, abiertaEn1;
        const QDate d1(2026, 1, 1), d31(2026, 1, 31);
        enOtraCaja([&] {
            Rellenar(caja2, QStringLiteral("De la caja 2"), d1, d31);
            QVERIFY(Pulsar(caja2.cmdAceptar,
                           [&](FrmTarifas &e) { abiertaEn2 = e.lblCodigo->Caption(); }));
        });
        Rellenar(caja1, QStringLiteral("De la caja 1"), d1, d31);
        QVERIFY(
            Pulsar(caja1.cmdAceptar, [&](FrmTarifas &e) { abiertaEn1 = e.lblCodigo->Caption(); }));
        // No error for the operator; the editor opens on the code actually stored.
        QCOMPARE(respuestas.Mostrados(), QStringList{});
        QCOMPARE(abiertaEn2, QStringLiteral("2"));
        QCOMPARE(abiertaEn1, QStringLiteral("3"));
        QCOMPARE(Descripcion(2), QStringLiteral("De la caja 2"));
        QCOMPARE(Descripcion(3), QStringLiteral("De la caja 1"));
        QCOMPARE(caja1.grid_precios->Rows(), 4);
        enOtraCaja([&] { caja2.Unload(); });
    }

    void baseQueRechaza() {
        // A database that takes no writes: its own words in the error report, nothing stored,
        // the panel still open to try again.
        FrmListas &f = frmListas();
        tienda->Registro(f);
        QTest::mouseClick(f.cmdNuevo->widget(), Qt::LeftButton);
        Rellenar(f, QStringLiteral("Otoño"), QDate(2026, 9, 1), QDate(2026, 9, 30));
        QSqlQuery q(SesionSuite.Conexion->Base());
        QVERIFY(q.exec(BaseDatosPrueba::EnPostgreSQL()
                           ? QStringLiteral("set default_transaction_read_only = on")
                           : QStringLiteral("pragma query_only = 1")));
        RespuestasMensajes respuestas;
        QVERIFY(!Pulsar(f.cmdAceptar));
        QCOMPARE(respuestas.Mostrados().size(), 1);
        QVERIFY2(respuestas.Mostrados().at(0).contains(QLatin1String("read")),
                 qPrintable(respuestas.Mostrados().at(0)));
        QCOMPARE(Listas(), 0);
        QVERIFY(f.frAltaLista->Visible());
        QCOMPARE(f.lblCodigo->Caption(), QStringLiteral("1"));
    }
};

TARIFAS_PRUEBAS(TstFrmListas)
#include "tst_frmlistas.moc"
