// The register's context menu: its items by row, a copy of a list (with and without a change
// on the way, and the slips its dialog refuses), the price history with its undo, and a
// database that keeps no history.
#include "apoyo/ejecucion.h"
#include "apoyo/respuestas.h"
#include "apoyo/tiendaprueba.h"
#include "dialogos/dlgcambiarprecios.h"
#include "dialogos/dlgcopiartarifa.h"
#include "dialogos/dlghistorial.h"
#include "dialogos/menus.h"
#include "editor/columnas.h"
#include "motor/importe.h"
#include "register/columnaslistas.h"

#include <QCheckBox>
#include <QDateEdit>
#include <QLabel>
#include <QLineEdit>
#include <QTableWidget>

namespace {

const QString Copiar = QStringLiteral("Copiar tarifa…");
const QString Cambiar = QStringLiteral("Cambiar precios…");
const QString Historial = QStringLiteral("Historial de precios…");
// The ways in and out of a list, which also need one.
const QStringList EntradaYSalida{QStringLiteral("Exportar…"), QStringLiteral("Importar…"),
                                 QStringLiteral("Imprimir…")};

/// List 1 "General" prices a shirt and trousers; list 2 "Otra" has no price.
void Tienda(TiendaPrueba &t) {
    t.Lista(1, QStringLiteral("General"));
    t.Lista(2, QStringLiteral("Otra"));
    t.Producto(1, "C1", "Camisa", "25");
    t.Producto(2, "P2", "Pantalón", "40");
    t.Precio(1, 1, "20");
    t.Precio(1, 2, "30");
}

QString Normal(const QString &texto) {
    const std::optional<Importe> i = Importe::Leer(texto);
    return i ? i->Reducido().TextoSQL() : QStringLiteral("?") + texto;
}

/// List `lista`'s prices as "product=price", by product.
QStringList Precios(TiendaPrueba &t, int lista) {
    QStringList filas;
    QSqlQuery q(t.db().Conexion().Base());
    q.prepare("select producto, cast(precio as varchar(40)) from detalle_precio where "
              "identificador = ? order by producto");
    q.addBindValue(lista);
    if (!q.exec())
        qWarning("Could not read the prices");
    while (q.next())
        filas << q.value(0).toString() + '=' + Normal(q.value(1).toString());
    return filas;
}

/// Picks `item` on the register's row of list `lista`; when dialog `D` shows, runs `mientras`.
template <class D>
bool DesdeRegistro(int lista, const QString &item, const std::function<void(D &)> &mientras) {
    return ConDialogo<D>(
        [&] {
            if (!Elegir(ClicDerecho(*frmListas().grid_precios, FilaRegistro(lista)), item))
                qWarning("No item %s", qPrintable(item));
        },
        mientras);
}

/// A bulk change of `porcentaje` % on every price of list `lista`, from the register.
void CambiarTodo(int lista, const QString &porcentaje) {
    if (!DesdeRegistro<DlgCambiarPrecios>(lista, Cambiar, [&](DlgCambiarPrecios &d) {
            Hijo<QLineEdit>(d, "txtPorcentaje")->setText(porcentaje);
            Pulsar(d, "btnVistaPrevia");
            Pulsar(d, "btnAplicar");
        }))
        qWarning("The change's dialog did not show");
}

QString Mensaje(QWidget &d) {
    return Hijo<QLabel>(d, "lblMensaje")->text();
}

} // namespace

class TstMenuListas : public QObject {
    Q_OBJECT
  private slots:
    void porFila_data() {
        const auto caso = Pruebas::Tabla<int, QStringList>();
        caso("a list", 1, QStringList{Copiar, Cambiar, Historial} + EntradaYSalida);
        caso("the title row", 0, {});
        caso("below the last row", -1, {});
    }
    void porFila() {
        const auto [fila, habilitados] = Pruebas::Fila<int, QStringList>();
        TiendaPrueba t;
        Tienda(t);
        FrmListas &r = t.Registro();
        QMenu *menu = ClicDerecho(*r.grid_precios, fila);
        QVERIFY(menu);
        QCOMPARE(Habilitados(menu), habilitados);
        CerrarMenus();
    }

    void copiar_data() {
        const auto caso = Pruebas::Tabla<QString, QStringList>();
        caso("as it is", "", {"1=20", "2=30"});
        caso("with +10 % on the way", "10", {"1=22", "2=33"});
    }
    void copiar() {
        const auto [porcentaje, copiados] = Pruebas::Fila<QString, QStringList>();
        TiendaPrueba t;
        Tienda(t);
        t.Registro();
        RespuestasMensajes respuestas;
        QString enEditor;
        QStringList filasEditor;
        const bool editor = ConEditor(
            [&] {
                QVERIFY(DesdeRegistro<DlgCopiarTarifa>(1, Copiar, [&](DlgCopiarTarifa &d) {
                    QCOMPARE(Hijo<QLineEdit>(d, "txtNombre")->text(), "Copia de General");
                    Hijo<QLineEdit>(d, "txtNombre")->setText("Verano");
                    if (!porcentaje.isEmpty()) {
                        Hijo<QCheckBox>(d, "chkCambio")->setChecked(true);
                        Hijo<QLineEdit>(d, "txtPorcentaje")->setText(porcentaje);
                    }
                    Pulsar(d, "btnCopiar");
                }));
            },
            [&](FrmTarifas &e) {
                enEditor = e.Label5->Caption() + '/' + e.lblCodigo->Caption();
                for (int f = 1; f < e.grid_Pseleccionados->Rows(); ++f)
                    filasEditor << e.grid_Pseleccionados->TextMatrix(f, ColLlano::Codigo) + '=' +
                                       Normal(
                                           e.grid_Pseleccionados->TextMatrix(f, ColLlano::Precio));
            });
        // The editor opened the copy, code 3, as it opens a new list.
        QVERIFY(editor);
        QCOMPARE(enEditor, "Verano/3");
        QCOMPARE(filasEditor, copiados);
        QCOMPARE(Precios(t, 3), copiados);
        QCOMPARE(Precios(t, 1), QStringList({"1=20", "2=30"}));
        QCOMPARE(t.Valor("select descripcion from cabecera_precio where identificador = 3"),
                 QVariant("Verano"));
        // The register lists the copy.
        QVERIFY(FilaRegistro(3) > 0);
        QCOMPARE(frmListas().grid_precios->TextMatrix(FilaRegistro(3), ColListas::Nombre),
                 "Verano");
        QCOMPARE(respuestas.Mostrados(), QStringList());
    }

    void copiaRechazada_data() {
        const auto caso = Pruebas::Tabla<QString, int, QString>();
        caso("no name", "", 0, "Tiene que indicar un nombre para la nueva tarifa");
        caso("a name with |", "Vera|no", 0, "El nombre de la tarifa no puede llevar el carácter |");
        caso("a period that ends before it starts", "Verano", -1,
             "Compruebe el periodo de validez de la tarifa");
    }
    void copiaRechazada() {
        const auto [nombre, dias, mensaje] = Pruebas::Fila<QString, int, QString>();
        TiendaPrueba t;
        Tienda(t);
        t.Registro();
        const QStringList antes = t.Volcado();
        RespuestasMensajes respuestas;
        QVERIFY(DesdeRegistro<DlgCopiarTarifa>(1, Copiar, [&](DlgCopiarTarifa &d) {
            Hijo<QLineEdit>(d, "txtNombre")->setText(nombre);
            auto *hasta = Hijo<QDateEdit>(d, "dtHasta");
            hasta->setDate(Hijo<QDateEdit>(d, "dtDesde")->date().addDays(dias));
            Pulsar(d, "btnCopiar");
            QCOMPARE(Mensaje(d), mensaje);
            QVERIFY(d.isVisible());
        }));
        QCOMPARE(t.Volcado(), antes);
        QCOMPARE(respuestas.Mostrados(), QStringList());
    }

    void deshacer_data() {
        // the trousers' price changed since by another terminal, the prices after Deshacer
        const auto caso = Pruebas::Tabla<bool, QStringList>();
        caso("undone", false, {"1=20", "2=30"});
        caso("refused after a later change", true, {"1=22", "2=50"});
    }
    void deshacer() {
        // A bulk change from the register shows in the history with its rows; Deshacer puts
        // the old prices back and is itself an operation, listed above the change it undid;
        // when a price of it was changed since, it writes nothing and names that product.
        const auto [cambiadoDespues, despues] = Pruebas::Fila<bool, QStringList>();
        TiendaPrueba t;
        Tienda(t);
        t.Registro();
        RespuestasMensajes respuestas;
        CambiarTodo(1, "10");
        if (cambiadoDespues)
            t.Ejecutar("update detalle_precio set precio = 50 where identificador = 1 and "
                       "producto = 2");
        QVERIFY(DesdeRegistro<DlgHistorial>(1, Historial, [&](DlgHistorial &d) {
            auto *filas = Hijo<QTableWidget>(d, "tblFilas");
            QCOMPARE(Hijo<QTableWidget>(d, "tblOperaciones")->item(0, 3)->text(), "2");
            QCOMPARE(filas->rowCount(), 2);
            QCOMPARE(filas->item(0, 3)->text() + "→" + filas->item(0, 4)->text(), "20,00→22,00");
            QTest::keyClicks(Hijo<QLineEdit>(d, "txtFiltro"), "pant");
            QCOMPARE(filas->rowCount(), 1);
            QCOMPARE(filas->item(0, 0)->text(), "Pantalón");
            Pulsar(d, "btnDeshacer");
            QCOMPARE(d.Operaciones().size(), cambiadoDespues ? 1 : 2);
            QCOMPARE(d.Operaciones().at(0).deshace.has_value(), !cambiadoDespues);
            QCOMPARE(d.HuboCambios(), !cambiadoDespues);
        }));
        QCOMPARE(Precios(t, 1), despues);
        // The change's answer and the undo's, which names what changed since.
        QCOMPARE(respuestas.Mostrados().size(), 2);
        QCOMPARE(respuestas.Mostrados().at(1).contains("Pantalón"), cambiadoDespues);
        QVERIFY(!respuestas.Mostrados().at(1).contains("Camisa"));
    }

    void sinHistorial() {
        // The history's tables can't be made (an object already holds one of their names, as
        // an account that may not create tables would leave it): both menus disable their
        // history item, the first write says so once, and a change, a copy and a product
        // taken out are written all the same.
        TiendaPrueba t;
        t.Ejecutar("create view historial_precio as select 1 as x");
        Tienda(t);
        t.Registro();
        QCOMPARE(Habilitados(ClicDerecho(*frmListas().grid_precios, FilaRegistro(1))),
                 QStringList({Copiar, Cambiar}) + EntradaYSalida);
        CerrarMenus();
        RespuestasMensajes respuestas;
        CambiarTodo(1, "10");
        QCOMPARE(Precios(t, 1), QStringList({"1=22", "2=33"}));
        QStringList enEditor;
        QVERIFY(ConEditor(
            [&] {
                QVERIFY(DesdeRegistro<DlgCopiarTarifa>(1, Copiar, [&](DlgCopiarTarifa &d) {
                    Hijo<QLineEdit>(d, "txtNombre")->setText("Verano");
                    Pulsar(d, "btnCopiar");
                }));
            },
            [&](FrmTarifas &e) {
                enEditor = Habilitados(ClicDerecho(*e.grid_Pseleccionados, 1));
                CerrarMenus();
                e.grid_Pseleccionados->vista()->setFocus();
                QTest::keyClick(e.grid_Pseleccionados->vista(), Qt::Key_Delete);
            }));
        QCOMPARE(enEditor, QStringList({Cambiar, "Quitar de la tarifa"}) + EntradaYSalida);
        QCOMPARE(Precios(t, 3), QStringList{"2=33"});
        const QStringList dichos = respuestas.Mostrados();
        QCOMPARE(respuestas.DentroDeUnidad(), 0);
        QCOMPARE(dichos.filter("no guarda el historial").size(), 1);
        QVERIFY2(dichos.first().contains("no guarda el historial"), qPrintable(dichos.join('|')));
        // The change's answer, then the question of the product taken out.
        QCOMPARE(dichos.size(), 3);
    }
};

TARIFAS_PRUEBAS(TstMenuListas)
#include "tst_menulistas.moc"
