// The editor's writes keep the price history: a saved price (plain or of a size and colour) and
// a deleted list each record one operation in the same unit; a refused price records nothing.
#include "apoyo/ejecucion.h"
#include "apoyo/respuestas.h"
#include "apoyo/tiendaprueba.h"
#include "dialogos/sesionmotor.h"
#include "motor/historial.h"

class TstEditorHistorial : public QObject {
    Q_OBJECT

  private slots:
    void guardarYEliminar_data() {
        const auto caso = Pruebas::Tabla<QString, QString>();
        caso("llano", "", "");
        caso("talla y color", TallaColor, "1-M");
    }
    void guardarYEliminar() {
        const auto [modo, hijo] = Pruebas::Fila<QString, QString>();
        TiendaPrueba tienda(modo);
        tienda.Talla(1, "M");
        tienda.Color(1, "Azul");
        tienda.Producto(1, "100", "Abrigo", 20);
        tienda.Producto(2, "200", "Bufanda", 8);
        tienda.Variante(1, "1-M", 1, 1, "100M", 21);
        tienda.Variante(2, "2-M", 1, 1, "200M", 9);
        tienda.Lista(1, "General");
        tienda.Precio(1, 1, "19.95", hijo.isEmpty() ? QVariant() : QVariant(hijo));
        RespuestasMensajes cajas;
        cajas.Responder(true);
        const QString hijo2 = hijo.isEmpty() ? QString() : QStringLiteral("2-M");
        QVERIFY(tienda.AbrirEditor(1, [&](FrmTarifas &e) {
            QVERIFY(GuardarPrecio(e, "1", "24,5", hijo));
            QVERIFY(GuardarPrecio(e, "2", "doce", hijo2)); // refused before its unit
            QVERIFY(GuardarPrecio(e, "2", "7", hijo2));
            QTest::mouseClick(e.cmdEliminar->widget(), Qt::LeftButton);
        }));
        const ContextoMotor contexto = ContextoSesion();
        const QList<OperacionHistorial> ops = OperacionesDeLista(contexto, 1);
        QCOMPARE(ops.size(), 3);
        QCOMPARE(ops[0].tipo, CodigoTipo(TipoOperacion::BorrarLista));
        QCOMPARE(ops[0].filas, 2);
        QCOMPARE(ops[1].tipo, CodigoTipo(TipoOperacion::Precio));
        const QList<FilaHistorial> bufanda = FilasDeOperacion(contexto, ops[1].numero);
        QCOMPARE(bufanda.size(), 1);
        QCOMPARE(bufanda[0].producto, 2);
        QCOMPARE(bufanda[0].variante, hijo2);
        QVERIFY(!bufanda[0].habia);
        QCOMPARE(bufanda[0].nuevo, Importe::Leer(u"7"));
        const QList<FilaHistorial> abrigo = FilasDeOperacion(contexto, ops[2].numero);
        QCOMPARE(abrigo.size(), 1);
        QCOMPARE(abrigo[0].variante, hijo);
        QCOMPARE(abrigo[0].anterior, Importe::Leer(u"19,95"));
        QCOMPARE(abrigo[0].nuevo, Importe::Leer(u"24,5"));
        if (!hijo.isEmpty()) {
            QCOMPARE(abrigo[0].talla, "M");
            QCOMPARE(abrigo[0].color, "Azul");
        }
    }
};

TARIFAS_PRUEBAS(TstEditorHistorial)
#include "tst_editorhistorial.moc"
