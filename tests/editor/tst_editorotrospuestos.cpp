// Two terminals on one list: what another terminal stores (a price, the period, the name, the
// list's end) shows on the open editor and the register without a click, and a save over a
// price that changed meanwhile asks first, naming both prices. The other terminal is the test
// database's own connection, writing as the program does (the record writer, in one unit).
#include "apoyo/ejecucion.h"
#include "apoyo/respuestas.h"
#include "apoyo/tiendaprueba.h"
#include "platform/datos/regional.h"
#include "platform/datos/transaccion.h"
#include "platform/ui/traduccionqt.h"
#include "suite/datos/svcregistros.h"

#include <QClipboard>
#include <QMenu>

using namespace Pantalla;
using namespace Sistema;

namespace {

/// Another terminal's change: `cambio` runs through the record writer in one unit of work.
void OtroPuesto(TiendaPrueba &t,
                const std::function<void(ADODB::Connection &, SvcRegistros &)> &cambio) {
    ADODB::Connection &c = t.db().Conexion();
    SvcRegistros r;
    ADODB::Transaccion unidad(c);
    cambio(c, r);
    unidad.Commit();
}

/// The list's rows as "code|price", sorted (a server lists variants in no fixed order).
QStringList Precios(const FrmTarifas &e) {
    const Grid &g = *e.grid_Pseleccionados;
    const int precio = ModoTallaColor() ? 6 : 3;
    QStringList filas;
    for (int f = 1; f < g.Rows(); ++f)
        filas << g.TextMatrix(f, 2) + '|' + g.TextMatrix(f, precio);
    filas.sort();
    return filas;
}

/// What the editor shows of the list: its prices, its name, the stored period, the dates.
QString Vista(const FrmTarifas &e) {
    return Precios(e).join(' ') + " / " + e.Label5->Caption() + " / " + e.lblDesde->Caption() +
           '-' + e.lblHasta->Caption() + " / " + FechaATexto(e.desde->Value()) + '-' +
           FechaATexto(e.hasta->Value());
}

/// The names the register lists, sorted (the register lists them in the database's order).
QStringList Nombres() {
    const Grid &g = *frmListas().grid_precios;
    QStringList nombres;
    for (int f = 1; f < g.Rows(); ++f)
        nombres << g.TextMatrix(f, 0);
    nombres.sort();
    return nombres;
}

const QString Lista1 = QStringLiteral("identificador=1");

/// The editor open on list 1, General, 1/1/2026-31/12/2026, as the register hands it over.
FrmTarifas &Abierta(TiendaPrueba &t) {
    FrmTarifas &e = t.Abierto();
    e.lblDesde->setCaption("1/1/2026");
    e.lblHasta->setCaption("31/12/2026");
    e.Label5->setCaption("General");
    e.desde->setValue(QDate(2026, 1, 1));
    e.hasta->setValue(QDate(2026, 12, 31));
    return e;
}

} // namespace

class TstEditorOtrosPuestos : public QObject {
    Q_OBJECT

  private slots:
    void initTestCase() { QVERIFY(CargarTraduccionQt()); }

    void sigue_data() {
        // What the other terminal does, and the editor's view afterwards: its prices, name,
        // stored period and dates shown. Product 1 is 11, product 2 is 8; the list is General,
        // 1/1/2026-31/12/2026.
        const auto caso = Pruebas::Tabla<QString, QString, QString>();
        const QString periodo = " / General / 1/1/2026-31/12/2026 / 1/1/2026-31/12/2026";
        caso("un precio cambiado", {}, "precio", "1|22 2|8" + periodo);
        caso("un precio nuevo", {}, "nuevo", "1|11 2|8 3|4,5" + periodo);
        caso("sin precios", {}, "vaciar", "|" + periodo);
        caso("talla y color: un precio cambiado", TallaColor, "precio", "1|22 2|8" + periodo);
        caso("otro periodo", {}, "periodo",
             "1|11 2|8 / General / 1/2/2026-28/2/2027 / 1/2/2026-28/2/2027");
        caso("otro nombre", {}, "nombre",
             "1|11 2|8 / Verano / 1/1/2026-31/12/2026 / 1/1/2026-31/12/2026");
    }
    void sigue() {
        const auto [tipo, cambio, esperada] = Pruebas::Fila<QString, QString, QString>();
        TiendaPrueba t(tipo);
        t.Producto(1, "A1", "Abrigo", 30);
        t.Producto(2, "C2", "Camisa", 9);
        t.Producto(3, "B3", "Bufanda", 5);
        t.Lista(1, "General");
        const QVariant hijo = tipo.isEmpty() ? QVariant() : QVariant("-1");
        t.Precio(1, 1, 11, hijo);
        t.Precio(1, 2, 8, hijo);
        FrmTarifas &e = Abierta(t);
        RespuestasMensajes cajas;
        OtroPuesto(t, [&](ADODB::Connection &c, SvcRegistros &r) {
            if (cambio == "precio")
                r.ModificarRegistro(c, "detalle_precio", "precio=22|", {}, false,
                                    Lista1 + " and producto=1", 0, {}, {}, {});
            else if (cambio == "nuevo")
                r.InsertarRegistro(c, "detalle_precio", "identificador=1|producto=3|precio=4,5|",
                                   {}, false, {});
            else if (cambio == "vaciar")
                r.BorrarRegistro(c, "detalle_precio", {}, false, Lista1);
            else if (cambio == "periodo")
                r.ModificarRegistro(c, "cabecera_precio",
                                    "preciovalidodesde=01/02/2026|preciovalidohasta=28/02/2027|",
                                    {}, false, Lista1, 0, {}, {}, {});
            else
                r.ModificarRegistro(c, "cabecera_precio", "descripcion=Verano|", {}, false, Lista1,
                                    0, {}, {}, {});
        });
        QTRY_COMPARE(Vista(e), esperada);
        // Following asks nothing.
        QCOMPARE(cajas.Mostrados(), QStringList());
        QVERIFY(e.Loaded());
    }

    void periodoAMedias() {
        // The operator is changing the period when another terminal stores one: the stored
        // period (what Cancel puts back) follows, the dates being typed stay.
        TiendaPrueba t;
        t.Lista(1, "General");
        FrmTarifas &e = Abierta(t);
        e.desde->setValue(QDate(2026, 5, 5));
        OtroPuesto(t, [](ADODB::Connection &c, SvcRegistros &r) {
            r.ModificarRegistro(c, "cabecera_precio", "preciovalidodesde=01/03/2026|", {}, false,
                                Lista1, 0, {}, {}, {});
        });
        QTRY_COMPARE(e.lblDesde->Caption(), QStringLiteral("1/3/2026"));
        QCOMPARE(e.desde->Value(), QDate(2026, 5, 5));
        QCOMPARE(e.hasta->Value(), QDate(2026, 12, 31));
        QVERIFY(e.cmdAceptarFecha->Visible());
        QTest::mouseClick(e.cmdCancelarFecha->widget(), Qt::LeftButton);
        QCOMPARE(e.desde->Value(), QDate(2026, 3, 1));
    }

    void listaEliminada() {
        // Another terminal deletes the list in hand: the editor closes and says why, and the
        // register stops listing it; nothing is written by this terminal.
        TiendaPrueba t;
        t.Producto(1, "A1", "Abrigo", 30);
        t.Lista(1, "General");
        t.Lista(2, "Rebajas");
        t.Precio(1, 1, 11);
        t.Registro();
        FrmTarifas &e = Abierta(t);
        RespuestasMensajes cajas;
        OtroPuesto(t, [](ADODB::Connection &c, SvcRegistros &r) {
            r.BorrarRegistro(c, "detalle_precio", {}, false, Lista1);
            r.BorrarRegistro(c, "cabecera_precio", {}, false, Lista1);
        });
        QTRY_VERIFY(!e.Loaded());
        QCOMPARE(cajas.Mostrados(),
                 QStringList("La tarifa \"General\" se ha eliminado desde otro puesto: se cierra "
                             "su ventana."));
        QTRY_COMPARE(Nombres(), QStringList("Rebajas"));
        QCOMPARE(t.Volcado(), QStringList("cabecera_precio|2|Rebajas|2026-01-01|2026-01-01|"
                                          "2026-12-31"));
    }

    void registroSigue_data() {
        const auto caso = Pruebas::Tabla<QString, QStringList>();
        caso("una lista nueva", "nueva", {"General", "Outlet", "Rebajas"});
        caso("una lista renombrada", "renombrar", {"Rebajas", "Verano"});
        caso("una lista eliminada", "eliminar", {"Rebajas"});
    }
    void registroSigue() {
        // The register follows the lists other terminals create, rename and delete, keeping
        // the operator's selection on the same list.
        const auto [cambio, nombres] = Pruebas::Fila<QString, QStringList>();
        TiendaPrueba t;
        t.Lista(1, "General");
        t.Lista(2, "Rebajas");
        FrmListas &r = t.Registro();
        r.grid_precios->setRow(FilaRegistro(2));
        OtroPuesto(t, [&](ADODB::Connection &c, SvcRegistros &s) {
            if (cambio == "nueva")
                s.InsertarRegistro(c, "cabecera_precio", "identificador=3|descripcion=Outlet|", {},
                                   false, {});
            else if (cambio == "renombrar")
                s.ModificarRegistro(c, "cabecera_precio", "descripcion=Verano|", {}, false, Lista1,
                                    0, {}, {}, {});
            else
                s.BorrarRegistro(c, "cabecera_precio", {}, false, Lista1);
        });
        QTRY_COMPARE(Nombres(), nombres);
        QCOMPARE(r.grid_precios->TextMatrix(r.grid_precios->Row(), 3), QStringLiteral("2"));
    }

    void precioAjeno_data() {
        // The panel opens on product 1 showing `mostrado` in the list ("" for no price); the
        // other terminal then stores `ajeno` ("" deletes it; "=" changes nothing); the operator
        // saves 33 and answers `si`. `guardado`: what the list holds afterwards ("" none).
        const auto caso = Pruebas::Tabla<QString, QString, QString, bool, QString, QString>();
        caso("nadie lo cambia: no se pregunta", {}, "11", "=", true, "33", "");
        caso("cambiado, Sí", {}, "11", "22", true, "33",
             "esta pantalla mostraba 11, y ahora es 22.\n\n¿Guardar su precio, 33, en lugar de "
             "22?");
        caso("cambiado, No", {}, "11", "22", false, "22", "mostraba 11, y ahora es 22");
        caso("el mismo importe escrito de otra forma", {}, "11", "11.00", true, "33", "");
        caso("quitado, Sí", {}, "11", "", true, "33",
             "mostraba 11, y ahora no tiene ninguno.\n\n¿Guardar su precio, 33?");
        caso("puesto donde no había, No", {}, "", "22", false, "22",
             "no le mostraba ninguno, y ahora es 22");
        caso("talla y color: nadie lo cambia", TallaColor, "11", "=", true, "33", "");
        caso("talla y color: cambiado, No", TallaColor, "11", "22", false, "22",
             "mostraba 11, y ahora es 22");
    }
    void precioAjeno() {
        const auto [tipo, mostrado, ajeno, si, guardado, pregunta] =
            Pruebas::Fila<QString, QString, QString, bool, QString, QString>();
        TiendaPrueba t(tipo);
        const QString hijo = tipo.isEmpty() ? QString() : QStringLiteral("-1");
        t.Producto(1, "A1", "Abrigo", 30);
        t.Lista(1, "General");
        if (!mostrado.isEmpty())
            t.Precio(1, 1, mostrado.toInt(), hijo.isEmpty() ? QVariant() : QVariant(hijo));
        FrmTarifas &e = Abierta(t);
        RespuestasMensajes cajas;
        cajas.Responder(si);
        QVERIFY(ClicProducto(e, "1", hijo));
        if (ajeno != "=")
            OtroPuesto(t, [&](ADODB::Connection &c, SvcRegistros &r) {
                r.BorrarRegistro(c, "detalle_precio", {}, false, Lista1);
                if (!ajeno.isEmpty())
                    r.InsertarRegistro(
                        c, "detalle_precio",
                        "identificador=1|producto=1|precio=" + ajeno + '|' +
                            (hijo.isEmpty() ? QString() : "CodProductoTextil=" + hijo + '|'),
                        {}, false, {});
            });
        Teclear(e.txt_NuevoPrecio, "33");
        const QVariant valor = t.Valor("select precio from detalle_precio");
        QCOMPARE(valor.isNull() ? QString() : QString::number(valor.toDouble()), guardado);
        QCOMPARE(t.Valor("select count(*) from detalle_precio").toInt(),
                 guardado.isEmpty() ? 0 : 1);
        if (pregunta.isEmpty()) {
            QCOMPARE(cajas.Mostrados(), QStringList());
            return;
        }
        QCOMPARE(cajas.Mostrados().size(), 1);
        const QString texto = cajas.Mostrados().at(0);
        QVERIFY2(texto.startsWith("Otro puesto ha cambiado el precio de \"Abrigo\"") &&
                     texto.contains(pregunta),
                 qPrintable(texto));
        // No: nothing saved, the panel open on the typed price, the list showing the stored
        // one; a second Accept is the operator's decision, and saves without asking again.
        if (!si) {
            QVERIFY(e.frCambio->Visible());
            QCOMPARE(Precios(e), QStringList("1|22"));
            QTest::mouseClick(e.cmdAceptar->widget(), Qt::LeftButton);
            QCOMPARE(t.Valor("select precio from detalle_precio").toDouble(), 33.0);
            QCOMPARE(cajas.Mostrados().size(), 1);
        }
    }

    void propioPrecioSinPregunta() {
        // The grid shows a price as the operator typed it ("12.50"), the database gives it
        // back its own way ("12,5"): the same amount, and this terminal's own price, so the
        // next save asks nothing.
        TiendaPrueba t;
        t.Producto(1, "A1", "Abrigo", 30);
        t.Lista(1, "General");
        FrmTarifas &e = Abierta(t);
        RespuestasMensajes cajas;
        QVERIFY(ClicProducto(e, "1"));
        Teclear(e.txt_NuevoPrecio, "12.50");
        QCOMPARE(Precios(e), QStringList("1|12.50"));
        QVERIFY(ClicProducto(e, "1"));
        Teclear(e.txt_NuevoPrecio, "33");
        QCOMPARE(cajas.Mostrados(), QStringList());
        QCOMPARE(t.Valor("select precio from detalle_precio").toDouble(), 33.0);
    }

    void codigoFueraDeMargen() {
        // A product numbered beyond 32 bits (a catalogue filled by another program) can't go
        // into a list: the message blames the code, not the price, and nothing is stored.
        SOLO_SQLITE("the suite's catalogue on a server holds 32-bit codes only");
        TiendaPrueba t;
        t.Producto(2147483648LL, "G1", "Gorro", 30);
        t.Lista(1, "General");
        FrmTarifas &e = Abierta(t);
        RespuestasMensajes cajas;
        QVERIFY(ClicProducto(e, "2147483648"));
        Teclear(e.txt_NuevoPrecio, "7");
        QCOMPARE(cajas.Mostrados(),
                 QStringList("\"Gorro\" no se puede poner en una tarifa: su código interno, "
                             "2147483648, está fuera del margen de códigos que guarda una tarifa "
                             "(de -2147483648 a 2147483647). No se ha guardado nada."));
        QCOMPARE(t.Valor("select count(*) from detalle_precio").toInt(), 0);
        QVERIFY(e.frCambio->Visible());
    }

    void pegar_data() {
        // A paste is typed through the price filter, in a shop of two decimals.
        const auto caso = Pruebas::Tabla<QString, QString, QString>();
        for (const char *via : {"Ctrl+V", "Mayús+Insert", "menú"}) {
            const QString v = QString::fromUtf8(via);
            caso(qPrintable(v + ": 0,001"), v, "0,001", "0,00");
            caso(qPrintable(v + ": una celda copiada"), v, "12,5\n", "12,5");
            caso(qPrintable(v + ": letras"), v, "1x2.5", "12.5");
        }
    }
    void pegar() {
        const auto [via, portapapeles, esperado] = Pruebas::Fila<QString, QString, QString>();
        TiendaPrueba t;
        t.Producto(1, "A1", "Abrigo", 30);
        t.Lista(1, "General");
        FrmTarifas &e = Abierta(t);
        QVERIFY(ClicProducto(e, "1"));
        QWidget *caja = e.txt_NuevoPrecio->widget();
        QGuiApplication::clipboard()->setText(portapapeles);
        if (via == "Ctrl+V") {
            QTest::keyClick(caja, Qt::Key_V, Qt::ControlModifier);
        } else if (via == "Mayús+Insert") {
            QTest::keyClick(caja, Qt::Key_Insert, Qt::ShiftModifier);
        } else {
            QContextMenuEvent menu(QContextMenuEvent::Keyboard, QPoint(2, 2),
                                   caja->mapToGlobal(QPoint(2, 2)));
            QApplication::sendEvent(caja, &menu);
            QTRY_VERIFY(qobject_cast<QMenu *>(QApplication::activePopupWidget()));
            auto *abierto = qobject_cast<QMenu *>(QApplication::activePopupWidget());
            auto *pegar = abierto->findChild<QAction *>("edit-paste");
            QVERIFY(pegar);
            // Qt's own texts in Spanish.
            QVERIFY2(pegar->text().startsWith("&Pegar"), qPrintable(pegar->text()));
            pegar->trigger();
            abierto->close();
        }
        QCOMPARE(e.txt_NuevoPrecio->Text(), esperado);
        // Nothing pasted accepts the price on its own: the panel waits for Enter.
        QVERIFY(e.frCambio->Visible());
        QCOMPARE(t.Valor("select count(*) from detalle_precio").toInt(), 0);
    }
};

TARIFAS_PRUEBAS(TstEditorOtrosPuestos)
#include "tst_editorotrospuestos.moc"
