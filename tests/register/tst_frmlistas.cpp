// The register screen: its load, its grid, the double click, the hand-over to the editor, and
// the help panel's slide.
#include "apoyo/ejecucion.h"
#include "apoyo/basedatosprueba.h"
#include "editor/frmtarifas.h"
#include "platform/datos/cadenaconexion.h"
#include "platform/datos/regional.h"
#include "platform/datos/sistema.h"
#include "register/frmlistas.h"
#include "session/principal.h"
#include "session/sesionsuite.h"
#include "session/vida.h"
#include "suite/datos/esquema.h"
#include "suite/ui/svcaspecto.h"

#include <QFile>
#include <QHeaderView>
#include <QPushButton>
#include <QSqlError>
#include <QSqlQuery>
#include <QStandardPaths>
#include <QTableView>
#include <QTemporaryDir>
#include <QtTest>
#include <functional>

namespace {

std::unique_ptr<BaseDatosPrueba> db;

std::unique_ptr<Principal::Vida> vida;

void Ejecutar(const QString &sql) { db->Ejecutar(sql); }

/// The help viewer's close button, as the operator presses it.
void CerrarAyuda(FrmListas &f) {
    QTest::mouseClick(f.Open1->widget()->findChild<QPushButton *>("cerrar"), Qt::LeftButton);
}

/// Gives the timer's ticks by hand until it stops; the number of ticks, or -1 when a tick
/// that left the timer running didn't move the panel by `paso`.
int Deslizar(FrmListas &f, double paso) {
    int ticks = 0;
    while (f.tmrAyuda->Enabled() && ticks < 500) {
        const double antes = f.Open1->Top();
        emit f.tmrAyuda->Tick();
        ++ticks;
        if (f.tmrAyuda->Enabled() && qAbs(f.Open1->Top() - (antes + paso)) > 0.01)
            return -1;
    }
    return ticks;
}

/// Runs `mientras` once the editor is shown, then leaves it with its exit button. The editor
/// is looked for without blocking, since the first check may come during the pass over
/// pending events inside the editor's own load.
void AlMostrarEditor(std::function<void()> mientras) {
    auto *sondeo = new QTimer;
    sondeo->setInterval(5);
    QObject::connect(sondeo, &QTimer::timeout, [sondeo, mientras] {
        FrmTarifas &e = frmTarifas();
        if (!(e.Loaded() && e.ventana()->isVisible()))
            return;
        sondeo->stop();
        sondeo->deleteLater();
        mientras();
        QTest::mouseClick(e.cmdSalir->widget(), Qt::LeftButton);
    });
    sondeo->start();
}

/// Double-clicks grid row `fila` (1-based) where it is drawn.
void DobleClic(Grid &grid, int fila) {
    QTableView *v = grid.vista();
    const QRect r = v->visualRect(v->model()->index(fila - 1, 0));
    QTest::mouseClick(v->viewport(), Qt::LeftButton, {}, r.center());
    QTest::mouseDClick(v->viewport(), Qt::LeftButton, {}, r.center());
}

} // namespace

class TstFrmListas : public QObject {
    Q_OBJECT
    void abrir(double ancho = 15360, double alto = 11085) {
        Ejecutar(QStringLiteral("update opciones set anchopantalla = %1, altopantalla = %2").arg(ancho).arg(alto));
        SesionSuite.AnchoPantalla = ancho;
        SesionSuite.AltoPantalla = alto;
        frmListas().Load();
    }

private slots:
    void initTestCase() {
        QStandardPaths::setTestModeEnabled(true);
        QLocale::setDefault(QLocale(QLocale::Spanish, QLocale::Spain));
    }

    void init() {
        vida = std::make_unique<Principal::Vida>();
        db = std::make_unique<BaseDatosPrueba>();
        SesionSuite.Conexion = std::make_unique<ADODB::Connection>();
        SesionSuite.Conexion->Open(db->Cadena());
        Ejecutar(QStringLiteral("insert into opciones (numdecimales, estiloaspecto) values (2, 0)"));
        SesionSuite.AnchoDiseno = 15360;
        SesionSuite.AltoDiseno = 11085;
    }
    void cleanup() {
        frmTarifas().Unload();
        frmListas().Unload();
        vida.reset();
        db.reset();
    }

    void carga_data() {
        QTest::addColumn<double>("ancho");
        QTest::addColumn<double>("alto");
        QTest::addColumn<double>("anchoNombre");
        QTest::newRow("diseno") << 15360.0 << 11085.0 << 5000.0;
        QTest::newRow("0,75") << 11520.0 << 8313.75 << 3750.0;
        QTest::newRow("1,25") << 19200.0 << 13856.25 << 6250.0;
    }
    void carga() {
        Ejecutar(QStringLiteral("insert into cabecera_precio values (1, 'General', '2026-01-01', '2026-01-01', '2026-12-31')"));
        Ejecutar(QStringLiteral("insert into cabecera_precio values (2, 'Rebajas', '2026-01-01', '2027-01-07', '2027-02-28')"));
        QFETCH(double, ancho);
        QFETCH(double, alto);
        abrir(ancho, alto);
        FrmListas &f = frmListas();
        Grid &g = *f.grid_precios;
        QCOMPARE(g.Cols(), 4);
        QCOMPARE(g.Rows(), 3);
        const QStringList titulos{"Nombre", "Desde", "Hasta", "Cod"};
        for (int c = 0; c < 4; ++c)
            QCOMPARE(g.TextMatrix(0, c), titulos[c]);
        QCOMPARE(g.TextMatrix(1, 0), QStringLiteral("General"));
        QCOMPARE(g.TextMatrix(2, 1), QStringLiteral("7/1/2027"));
        QCOMPARE(g.TextMatrix(2, 3), QStringLiteral("2"));
        QTEST(g.ColWidth(0), "anchoNombre");
        QCOMPARE(g.ColWidth(3), 0.0);
        // The colours read after the look was applied.
        QCOMPARE(f.estado.colorConFoco, Principal::svcAspecto().ColorFoco(*SesionSuite.Conexion, 0));
        QCOMPARE(f.estado.colorSinFoco, QString::number(f.txtNomLista->BackColor()));
        QCOMPARE(f.desde->CalendarBackColor(), f.frCabecera->BackColor());
        QCOMPARE(f.hasta->CalendarTitleBackColor(), f.frHijo->BackColor());
        QCOMPARE(f.hasta->CalendarTitleForeColor(), 0);
        // The help panel waits below the bottom edge, 100 twips in from the right, scaled.
        QCOMPARE(f.Open1->Top(), f.Height());
        QVERIFY(qAbs(f.Open1->Left() - (f.Width() - f.Open1->Width() - 100 * ancho / 15360)) < 1e-6);
        QVERIFY(!f.frAltaLista->Visible());
    }

    void dobleClicAbreEditor() {
        Ejecutar(QStringLiteral("insert into cabecera_precio values (7, 'Clientes ''VIP''', '2026-01-01', '2026-03-01', '2026-03-01')"));
        abrir();
        FrmListas &f = frmListas();
        f.ventana()->show();
        QVERIFY(QTest::qWaitForWindowExposed(f.ventana()));
        bool visto = false;
        AlMostrarEditor([&] {
            visto = true;
            FrmTarifas &e = frmTarifas();
            QCOMPARE(e.lblCodigo->Caption(), QStringLiteral("7"));
            QCOMPARE(e.Label5->Caption(), QStringLiteral("Clientes 'VIP'"));
            QCOMPARE(e.lblDesde->Caption(), QStringLiteral("1/3/2026"));
            QCOMPARE(e.lblHasta->Caption(), QStringLiteral("1/3/2026"));
            QCOMPARE(e.desde->Value(), QDate(2026, 3, 1));
            QCOMPARE(e.hasta->Value(), QDate(2026, 3, 1));
        });
        DobleClic(*f.grid_precios, 1);
        QVERIFY(visto);
        QCOMPARE(f.lblCodigo->Caption(), QStringLiteral("7"));
        QVERIFY(!frmTarifas().Loaded());
    }

    void dobleClicSinFila() {
        // With the title row alone the current row is 0 and nothing opens.
        abrir();
        FrmListas &f = frmListas();
        f.ventana()->show();
        QVERIFY(QTest::qWaitForWindowExposed(f.ventana()));
        QCOMPARE(f.grid_precios->Rows(), 1);
        QTest::mouseDClick(f.grid_precios->vista()->viewport(), Qt::LeftButton, {}, QPoint(5, 5));
        QTest::mouseDClick(f.grid_precios->vista()->horizontalHeader()->viewport(), Qt::LeftButton, {}, QPoint(5, 5));
        QCOMPARE(f.grid_precios->Row(), 0);
        QVERIFY(!frmTarifas().Loaded());
        QCOMPARE(f.lblCodigo->Caption(), QStringLiteral("lblCodigo"));
    }

    void refrescoTrasEditor() {
        // Whatever happened while the editor was open shows when it closes, even with no
        // change made in it.
        Ejecutar(QStringLiteral("insert into cabecera_precio values (1, 'General', '2026-01-01', '2026-01-01', '2026-12-31')"));
        Ejecutar(QStringLiteral("insert into cabecera_precio values (2, 'Borrada', '2026-01-01', '2026-01-01', '2026-12-31')"));
        abrir();
        FrmListas &f = frmListas();
        f.ventana()->show();
        QVERIFY(QTest::qWaitForWindowExposed(f.ventana()));
        AlMostrarEditor([] {
            Ejecutar(QStringLiteral("delete from cabecera_precio where identificador = 2"));
            Ejecutar(QStringLiteral("update cabecera_precio set preciovalidohasta = '2027-06-30' where identificador = 1"));
        });
        f.grid_precios->setRow(2);
        f.VerDetalles(QStringLiteral("Borrada"), QDate(2026, 1, 1), QDate(2026, 12, 31));
        QCOMPARE(f.grid_precios->Rows(), 2);
        QCOMPARE(f.grid_precios->TextMatrix(1, 2), QStringLiteral("30/6/2027"));

        // Opening again runs the editor's load again.
        AlMostrarEditor([] { QCOMPARE(frmTarifas().lblCodigo->Caption(), QStringLiteral("1")); });
        DobleClic(*f.grid_precios, 1);
        QCOMPARE(f.grid_precios->Rows(), 2);
    }

    void colorNombreLista() {
        abrir();
        FrmListas &f = frmListas();
        f.ventana()->show();
        f.frAltaLista->setVisible(true);
        QVERIFY(QTest::qWaitForWindowExposed(f.ventana()));
        f.txtNomLista->setText(QStringLiteral("Tarifa de otoño"));
        f.txtNomLista->SetFocus();
        QTRY_COMPARE(QString::number(f.txtNomLista->BackColor()), f.estado.colorConFoco);
        QCOMPARE(f.txtNomLista->SelStart(), 0);
        QCOMPARE(f.txtNomLista->SelLength(), 15);
        f.grid_precios->SetFocus();
        QTRY_COMPARE(QString::number(f.txtNomLista->BackColor()), f.estado.colorSinFoco);
    }

    void ayuda_data() {
        QTest::addColumn<double>("ancho");
        QTest::addColumn<double>("alto");
        // 9435 twips from the bottom to the top at design size: not a whole number of steps.
        QTest::newRow("diseno") << 15360.0 << 11085.0;
        QTest::newRow("1024x768") << 15360.0 << 11520.0;
        QTest::newRow("1280x1024") << 19200.0 << 15360.0;
    }
    void ayuda() {
        QFETCH(double, ancho);
        QFETCH(double, alto);
        abrir(ancho, alto);
        FrmListas &f = frmListas();
        f.ventana()->show();
        const double abajo = f.Height();
        const double arriba = f.fr_SeparacionH1->Height() + f.Frame1->Top();
        const int pasos = int(std::ceil((abajo - arriba) / 100));

        // Up a step of 100 a tick, the last one past the top; the next tick puts it exactly
        // there and stops. Down the same way onto the screen's height.
        QTest::mouseClick(f.cmd_Ayuda->widget(), Qt::LeftButton);
        QCOMPARE(f.Open1->RutaPagina, DirectorioPrograma() + QStringLiteral("\\ayudas\\tartpv.html"));
        QCOMPARE(f.Open1->Height(), abajo - arriba);
        QCOMPARE(f.Open1->Top(), abajo);
        QCOMPARE(Deslizar(f, -100), pasos + 1);
        QCOMPARE(f.Open1->Top(), arriba);
        emit f.Open1->Aviso(); // a link followed in the page: no request to close
        QVERIFY(!f.tmrAyuda->Enabled());
        CerrarAyuda(f);
        QCOMPARE(Deslizar(f, 100), pasos + 1);
        QCOMPARE(f.Open1->Top(), abajo);
        // Closed while hidden: one tick that moves nothing.
        CerrarAyuda(f);
        QCOMPARE(Deslizar(f, 0), 1);
        QCOMPARE(f.Open1->Top(), abajo);

        // Closed while rising: it turns back from where it is (a sixth step where single
        // precision left it a hair short of the bottom).
        QTest::mouseClick(f.cmd_Ayuda->widget(), Qt::LeftButton);
        for (int i = 0; i < 5; ++i)
            emit f.tmrAyuda->Tick();
        QVERIFY(qAbs(f.Open1->Top() - (abajo - 500)) < 0.01);
        CerrarAyuda(f);
        const int vuelta = Deslizar(f, 100);
        QVERIFY2(vuelta == 6 || vuelta == 7, qPrintable(QString::number(vuelta)));
        QCOMPARE(f.Open1->Top(), abajo);

        // Pressed while falling: from the bottom again, up to the top.
        QTest::mouseClick(f.cmd_Ayuda->widget(), Qt::LeftButton);
        Deslizar(f, -100);
        CerrarAyuda(f);
        emit f.tmrAyuda->Tick();
        QTest::mouseClick(f.cmd_Ayuda->widget(), Qt::LeftButton);
        QCOMPARE(f.Open1->Top(), abajo);
        QCOMPARE(Deslizar(f, -100), pasos + 1);
        QCOMPARE(f.Open1->Top(), arriba);
    }

    void salir() {
        abrir();
        bool cerrada = false;
        QTimer::singleShot(0, [&] {
            QTRY_VERIFY(frmListas().ventana() && frmListas().ventana()->isVisible());
            QTest::mouseClick(frmListas().cmdSalir->widget(), Qt::LeftButton);
            cerrada = true;
        });
        frmListas().ShowModal();
        QVERIFY(cerrada);
        QVERIFY(!frmListas().Loaded());
    }
};

TARIFAS_PRUEBAS(TstFrmListas)
#include "tst_frmlistas.moc"
