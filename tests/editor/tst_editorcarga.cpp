// The editor's load: the business mode, the sliding entry, the way out and the register's
// refresh, the next opening, the captions for the translators, and what a load that can't go
// on does.
#include "apoyo/ejecucion.h"
#include "apoyo/tiendaprueba.h"
#include "editor/frmtarifas.h"
#include "platform/datos/errorbd.h"
#include "register/frmlistas.h"
#include "session/principal.h"
#include "session/sesionsuite.h"
#include "suite/ui/svcaspecto.h"

#include <QStandardPaths>
#include <QtTest>

class TstEditorCarga : public QObject {
    Q_OBJECT

  private slots:
    void initTestCase() {
        QStandardPaths::setTestModeEnabled(true);
        QLocale::setDefault(QLocale(QLocale::Spanish, QLocale::Spain));
    }

    void modo_data() {
        QTest::addColumn<QString>("tipoNegocio");
        QTest::addColumn<bool>("tallaColor");
        QTest::newRow("TALLACOLOR") << TallaColor << true;
        QTest::newRow("minusculas") << QStringLiteral("tallacolor") << false;
        QTest::newRow("blanco detras") << QStringLiteral("TALLACOLOR ") << false;
        QTest::newRow("vacio") << QString() << false;
        QTest::newRow("otro negocio") << QStringLiteral("HOSTELERIA") << false;
    }
    void modo() {
        QFETCH(QString, tipoNegocio);
        QFETCH(bool, tallaColor);
        TiendaPrueba tienda(tipoNegocio);
        tienda.Producto(1, "C1", "Camisa", 12.5);
        tienda.Lista(1, "General");
        tienda.Precio(1, 1, 11, tallaColor ? QVariant("-1") : QVariant());
        FrmTarifas &e = tienda.CargarEditor(1);
        // The mode's catalogue is filled and shown; the other one stays empty.
        QCOMPARE(e.frResultado->Visible(), tallaColor);
        Grid &catalogo = tallaColor ? *e.grid_productos_textil : *e.grid_productos;
        Grid &otro = tallaColor ? *e.grid_productos : *e.grid_productos_textil;
        QCOMPARE(catalogo.TextMatrix(1, 1), QStringLiteral("Camisa"));
        QCOMPARE(otro.TextMatrix(1, 1), QString());
        QCOMPARE(Fila(*e.grid_Pseleccionados, 1),
                 (tallaColor ? QStringList{"C1", "Camisa", "1", "-1", "", "", "11", ""}
                             : QStringList{"C1", "Camisa", "1", "11", ""}));
    }

    void entrada_data() {
        QTest::addColumn<QString>("tipoNegocio");
        QTest::addColumn<double>("factor");
        QTest::newRow("llano") << QString() << 1.0;
        QTest::newRow("textil, 1,1") << TallaColor << 1.1;
    }
    void entrada() {
        // The catalogue comes in from the left, the variants' frame with it, and stops at its
        // place; an empty catalogue and an empty list run it all the same.
        QFETCH(QString, tipoNegocio);
        QFETCH(double, factor);
        TiendaPrueba tienda(tipoNegocio);
        tienda.Escala(factor);
        tienda.Lista(1, "General");
        FrmTarifas &e = tienda.CargarEditor(1);
        QVERIFY(e.grid_productos->Left() + e.grid_productos->Width() < 0);
        QVERIFY(e.tmrRegresaLista->Enabled());
        int ticks = 0;
        bool juntos = true;
        connect(e.tmrRegresaLista, &Timer::Tick, this, [&] {
            ++ticks;
            juntos = juntos && e.frResultado->Left() == e.grid_productos->Left();
        });
        QTRY_VERIFY(!e.tmrRegresaLista->Enabled());
        QVERIFY(juntos && ticks > 1);
        QCOMPARE(e.grid_productos->Left(), e.Frame2->Left());
        QTest::qWait(20); // nothing starts it again
        QCOMPARE(e.grid_productos->Left(), e.Frame2->Left());
    }

    void refrescoRegistro_data() {
        QTest::addColumn<bool>("cierreVentana");
        QTest::newRow("cmdSalir") << false;
        QTest::newRow("aspa") << true;
    }
    void refrescoRegistro() {
        // Whatever changed while the editor was open shows in the register once it closes.
        QFETCH(bool, cierreVentana);
        TiendaPrueba tienda;
        tienda.Lista(1, "General");
        tienda.Lista(2, "Borrada");
        FrmListas &registro = tienda.Registro();
        QVERIFY(tienda.AbrirEditor(
            1,
            [&](FrmTarifas &) {
                tienda.Ejecutar("update cabecera_precio set descripcion = 'Verano' where "
                                "identificador = 1");
                tienda.Ejecutar("delete from cabecera_precio where identificador = 2");
            },
            cierreVentana ? TiendaPrueba::Salida::CierreVentana : TiendaPrueba::Salida::cmdSalir));
        QVERIFY(!frmTarifas().Loaded());
        QCOMPARE(registro.grid_precios->Rows(), 2);
        QCOMPARE(registro.grid_precios->TextMatrix(1, 0), QStringLiteral("Verano"));
        QCOMPARE(registro.lblCodigo->Caption(), QStringLiteral("1"));
    }

    void cargaNueva() {
        // The second opening loads again: design texts, fresh colours, lists from the database.
        TiendaPrueba tienda;
        tienda.Producto(1, "C1", "Camisa", 12.5);
        tienda.Producto(2, "C2", "Abrigo", 40);
        tienda.Lista(1, "General");
        tienda.Precio(1, 1, 10);
        const QString foco = Principal::svcAspecto().ColorFoco(*SesionSuite.Conexion, 0);
        QVERIFY(tienda.AbrirEditor(1, [&](FrmTarifas &e) {
            e.lblCodProducto->setCaption(QStringLiteral("1"));
            e.lblNomProd->setCaption(QStringLiteral("Camisa"));
            e.estado.colorConFoco = QStringLiteral("0");
            QTRY_COMPARE(e.grid_productos->Left(), e.Frame2->Left());
        }));
        tienda.Precio(1, 2, 35);
        bool visto = false;
        QVERIFY(tienda.AbrirEditor(1, [&](FrmTarifas &e) {
            QCOMPARE(e.lblCodProducto->Caption(), QStringLiteral("codigo"));
            QCOMPARE(e.lblNomProd->Caption(), QStringLiteral("Label3"));
            QCOMPARE(e.estado.colorConFoco, foco);
            QCOMPARE(e.grid_Pseleccionados->Rows(), 3);
            QCOMPARE(e.grid_Pseleccionados->TextMatrix(1, 1), QStringLiteral("Abrigo"));
            QTRY_COMPARE(e.grid_productos->Left(), e.Frame2->Left());
            visto = true;
        }));
        QVERIFY(visto);
    }

    void captions() {
        // The hidden button collects the screen's captions for the translators.
        TiendaPrueba tienda;
        tienda.Lista(1, "General");
        FrmTarifas &e = tienda.CargarEditor(1);
        QVERIFY(!e.Command1->Visible());
        QVERIFY(QMetaObject::invokeMethod(e.Command1, "Click"));
        const QString sql = QStringLiteral("select texto from traducciones where formulario = "
                                           "'frmTarifas' and control = ?");
        QCOMPARE(tienda.Valor(sql, {"Label1"}).toString(), QStringLiteral("Lista de Productos"));
        QCOMPARE(tienda.Valor(sql, {""}).toString(), QStringLiteral("Gestion de Tarifas"));
    }

    void codigoInservible_data() {
        QTest::addColumn<QString>("codigo");
        QTest::newRow("texto de diseno") << QStringLiteral("lblCodigo");
        QTest::newRow("vacio") << QString();
        QTest::newRow("codigo con condicion") << QStringLiteral("1 or 1=1");
        QTest::newRow("codigo con sentencia") << QStringLiteral("1; delete from detalle_precio");
        QTest::newRow("decimal") << QStringLiteral("1.5");
    }
    void codigoInservible() {
        // A code that no list can bear runs no statement: the editor opens with the
        // catalogue and an empty list, and the database is as it was.
        QFETCH(QString, codigo);
        TiendaPrueba tienda;
        tienda.Producto(1, "C1", "Camisa", 12.5);
        tienda.Lista(1, "General");
        tienda.Precio(1, 1, 10);
        frmListas().Load();
        frmListas().lblCodigo->setCaption(codigo);
        frmTarifas().Load();
        FrmTarifas &e = frmTarifas();
        QCOMPARE(e.grid_productos->TextMatrix(1, 1), QStringLiteral("Camisa"));
        QCOMPARE(e.grid_Pseleccionados->Rows(), 2);
        QCOMPARE(e.grid_Pseleccionados->TextMatrix(1, 1), QString());
        QCOMPARE(tienda.Valor("select count(*) from detalle_precio").toInt(), 1);
    }

    void cargaFallida() {
        // A failing database leaves no half-built editor and says what failed.
        TiendaPrueba tienda;
        tienda.Lista(1, "General");
        tienda.Ejecutar(QStringLiteral("drop table productos"));
        QString texto;
        try {
            tienda.CargarEditor(1);
        } catch (const ErrorCarga &error) {
            texto = QString::fromUtf8(error.what());
        }
        QVERIFY2(texto.contains(QLatin1String("productos")), qPrintable(texto));
        QVERIFY(!frmTarifas().Loaded());
    }
};

TARIFAS_PRUEBAS(TstEditorCarga)
#include "tst_editorcarga.moc"
