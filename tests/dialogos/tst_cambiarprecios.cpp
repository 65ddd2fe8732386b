// A bulk change through the editor's context menu: the dialog's preview, what Aplicar writes
// and what the list's grid then shows, and the slips the dialog refuses without writing.
#include "apoyo/ejecucion.h"
#include "apoyo/respuestas.h"
#include "apoyo/tiendaprueba.h"
#include "dialogos/dlgcambiarprecios.h"
#include "dialogos/menus.h"
#include "editor/columnas.h"
#include "motor/importe.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTableWidget>

using namespace Pantalla;

namespace {

const QString Cambiar = QStringLiteral("Cambiar precios…");

/// Four products in two sections; list 1 prices three of them, the scarf only in the
/// catalogue.
void Tienda(TiendaPrueba &t) {
    t.Lista(1, QStringLiteral("General"));
    t.Producto(1, "C1", "Camisa", "25", "S1");
    t.Producto(2, "P2", "Pantalón", "40", "S2");
    t.Producto(3, "G3", "Gorra", "8", "S1");
    t.Producto(4, "B4", "Bufanda", "12", "S2");
    t.Precio(1, 1, "19.95");
    t.Precio(1, 2, "30");
    t.Precio(1, 3, "0.10");
}

/// A price's text in one form, whatever form the database gives it back in ("21.950", 21.95).
QString Normal(const QString &texto) {
    const std::optional<Importe> i = Importe::Leer(texto);
    return i ? i->Reducido().TextoSQL() : QStringLiteral("?") + texto;
}

/// The list's prices as "product=price", by product.
QStringList Precios(TiendaPrueba &t) {
    QStringList filas;
    QSqlQuery q(t.db().Conexion().Base());
    if (!q.exec("select producto, cast(precio as varchar(40)) from detalle_precio where "
                "identificador = 1 order by producto"))
        qWarning("Could not read the prices");
    while (q.next())
        filas << q.value(0).toString() + '=' + Normal(q.value(1).toString());
    return filas;
}

/// What the editor's grid of the list's prices shows, the same way, by product.
QStringList EnGrid(FrmTarifas &e) {
    QMap<int, QString> filas;
    const Grid &g = *e.grid_Pseleccionados;
    for (int f = 1; f < g.Rows(); ++f)
        filas.insert(g.TextMatrix(f, ColLlano::Codigo).toInt(),
                     g.TextMatrix(f, ColLlano::Codigo) + '=' +
                         Normal(g.TextMatrix(f, ColLlano::Precio)));
    return filas.values();
}

/// Sets the dialog's rows: "todas", "seccion:X", "nombre:X" or "catalogo".
void Alcance(QWidget &d, const QString &alcance) {
    const QString valor = alcance.section(':', 1);
    if (alcance.startsWith("seccion")) {
        Hijo<QRadioButton>(d, "optSeccion")->click();
        Hijo<QComboBox>(d, "cmbSeccion")->setCurrentText(valor);
    } else if (alcance.startsWith("nombre")) {
        Hijo<QRadioButton>(d, "optNombre")->click();
        Hijo<QLineEdit>(d, "txtNombre")->setText(valor);
    } else if (alcance == "catalogo") {
        Hijo<QRadioButton>(d, "optCatalogo")->click();
    } else {
        Hijo<QRadioButton>(d, "optTodas")->click();
    }
}

/// Types the rule into the dialog; an empty step or ending keeps the dialog's default.
void Regla(QWidget &d, const QString &porcentaje, const QString &suma, const QString &paso = {},
           const QString &terminacion = {}) {
    QTest::keyClicks(Hijo<QLineEdit>(d, "txtPorcentaje"), porcentaje);
    QTest::keyClicks(Hijo<QLineEdit>(d, "txtSuma"), suma);
    if (!paso.isEmpty())
        Hijo<QComboBox>(d, "cmbPaso")->setEditText(paso);
    if (!terminacion.isEmpty())
        Hijo<QComboBox>(d, "cmbTerminacion")->setEditText(terminacion);
}

QString Mensaje(QWidget &d) {
    return Hijo<QLabel>(d, "lblMensaje")->text();
}

bool AplicarHabilitado(QWidget &d) {
    return Hijo<QPushButton>(d, "btnAplicar")->isEnabled();
}

/// Opens "Cambiar precios…" from the editor's menu on its first row, and runs `mientras`.
bool ConCambio(FrmTarifas &e, const std::function<void(DlgCambiarPrecios &)> &mientras) {
    return ConDialogo<DlgCambiarPrecios>(
        [&] {
            if (!Elegir(ClicDerecho(*e.grid_Pseleccionados, 1), Cambiar))
                qWarning("No item %s", qPrintable(Cambiar));
        },
        mientras);
}

} // namespace

class TstCambiarPrecios : public QObject {
    Q_OBJECT
  private slots:
    void aplicar_data() {
        const auto caso = Pruebas::Tabla<bool, QString, QStringList, QString, int, QStringList>();
        caso("+10 % to the shop's cent", false, "todas", {"10", ""},
             "Cambian 3 precios; quedan igual 0; no se pueden cambiar 0.", 3,
             {"1=21.95", "2=33", "3=0.11"});
        caso("an amount, exactly", false, "nombre:gor", {"", "0,20"},
             "Cambian 1 precios; quedan igual 0; no se pueden cambiar 0.", 1,
             {"1=19.95", "2=30", "3=0.3"});
        caso("one section, -20 %, ending ,95", false, "seccion:S1", {"-20", "", "", ",95"},
             "Cambian 2 precios; quedan igual 0; no se pueden cambiar 0.", 2,
             {"1=16.95", "2=30", "3=0.95"});
        caso("a result of 0 or less is refused", false, "todas", {"", "-1"},
             "Cambian 2 precios; quedan igual 0; no se pueden cambiar 1.", 2,
             {"1=18.95", "2=29", "3=0.1"});
        caso("steps of 0,50", false, "todas", {"3", "", "0,50"},
             "Cambian 2 precios; quedan igual 0; no se pueden cambiar 1.", 2,
             {"1=20.5", "2=31", "3=0.1"});
        caso("the catalogue's prices, whole catalogue", true, "catalogo", {"-20", ""},
             "Cambian 4 precios; quedan igual 0; no se pueden cambiar 0.", 4,
             {"1=20", "2=32", "3=6.4", "4=9.6"});
        caso("no change: nothing to apply", false, "todas", {"0", "0"},
             "Cambian 0 precios; quedan igual 3; no se pueden cambiar 0.", 0,
             {"1=19.95", "2=30", "3=0.1"});
    }
    void aplicar() {
        const auto [catalogo, alcance, regla, resumen, filasVistas, despues] =
            Pruebas::Fila<bool, QString, QStringList, QString, int, QStringList>();
        TiendaPrueba t;
        Tienda(t);
        FrmTarifas &e = t.Abierto(1);
        RespuestasMensajes respuestas;
        const bool visto = ConCambio(e, [&](DlgCambiarPrecios &d) {
            QVERIFY(!AplicarHabilitado(d)); // nothing is written before a preview
            if (catalogo)
                Hijo<QComboBox>(d, "cmbBase")->setCurrentIndex(1);
            Alcance(d, alcance);
            Regla(d, regla.value(0), regla.value(1), regla.value(2), regla.value(3));
            Pulsar(d, "btnVistaPrevia");
            QVERIFY2(Hijo<QLabel>(d, "lblResumen")->text().startsWith(resumen),
                     qPrintable(Hijo<QLabel>(d, "lblResumen")->text() + " / " + Mensaje(d)));
            QCOMPARE(Hijo<QTableWidget>(d, "tblCambian")->rowCount(), filasVistas);
            const auto *rechazadas = Hijo<QTableWidget>(d, "tblRechazadas");
            for (int f = 0; f < rechazadas->rowCount(); ++f)
                QVERIFY(rechazadas->item(f, 3)->text().contains("0 o menos"));
            // The preview wrote nothing.
            QCOMPARE(Precios(t), QStringList({"1=19.95", "2=30", "3=0.1"}));
            QCOMPARE(AplicarHabilitado(d), filasVistas > 0);
            Pulsar(d, "btnAplicar");
        });
        QVERIFY(visto);
        QCOMPARE(Precios(t), despues);
        QCOMPARE(EnGrid(e), despues);
        QCOMPARE(respuestas.Mostrados().size(), filasVistas > 0 ? 1 : 0);
    }

    void malaEntrada_data() {
        const auto caso = Pruebas::Tabla<QString, QStringList, QString>();
        caso("a percentage that is not a number", "todas", {"diez", ""}, "no es un número");
        caso("-100 %", "todas", {"-100", ""}, "-100 o menos");
        caso("an amount that is not a number", "todas", {"", "1,2,3"}, "no es un número");
        caso("a step of 0", "todas", {"5", "", "0"}, "mayor que 0");
        caso("a step finer than the shop", "todas", {"5", "", "0,001"}, "decimales");
        caso("an ending finer than the shop", "todas", {"5", "", "", ",955"}, "decimales");
        caso("names starting with nothing", "nombre:", {"5", ""}, "principio");
    }
    void malaEntrada() {
        const auto [alcance, regla, fragmento] = Pruebas::Fila<QString, QStringList, QString>();
        TiendaPrueba t;
        Tienda(t);
        FrmTarifas &e = t.Abierto(1);
        const QStringList antes = t.Volcado();
        RespuestasMensajes respuestas;
        QVERIFY(ConCambio(e, [&](DlgCambiarPrecios &d) {
            Alcance(d, alcance);
            Regla(d, regla.value(0), regla.value(1), regla.value(2), regla.value(3));
            Pulsar(d, "btnVistaPrevia");
            QVERIFY2(Mensaje(d).contains(fragmento), qPrintable(Mensaje(d)));
            QVERIFY(d.isVisible());
            QVERIFY(!AplicarHabilitado(d));
            QCOMPARE(Hijo<QTableWidget>(d, "tblCambian")->rowCount(), 0);
        }));
        QCOMPARE(t.Volcado(), antes);
        QCOMPARE(respuestas.Mostrados(), QStringList());
    }

    void previaCaducada() {
        // A preview holds only for the input it was made from: an edit after it takes Aplicar
        // away until the next one.
        TiendaPrueba t;
        Tienda(t);
        FrmTarifas &e = t.Abierto(1);
        RespuestasMensajes respuestas;
        QVERIFY(ConCambio(e, [&](DlgCambiarPrecios &d) {
            Regla(d, "10", "");
            Pulsar(d, "btnVistaPrevia");
            QVERIFY(AplicarHabilitado(d));
            QTest::keyClicks(Hijo<QLineEdit>(d, "txtPorcentaje"), "0");
            QVERIFY(!AplicarHabilitado(d));
            QCOMPARE(Hijo<QTableWidget>(d, "tblCambian")->rowCount(), 0);
            Pulsar(d, "btnVistaPrevia");
            QCOMPARE(Hijo<QTableWidget>(d, "tblCambian")->item(0, 4)->text(), "39,90"); // Camisa
            Pulsar(d, "btnAplicar");
        }));
        // +100 %: the percentage typed last.
        QCOMPARE(Precios(t), QStringList({"1=39.9", "2=60", "3=0.2"}));
    }

    void listaBorrada() {
        // Another terminal deletes the list while the dialog is open: Aplicar writes nothing,
        // says so, and the editor closes.
        TiendaPrueba t;
        Tienda(t);
        FrmTarifas &e = t.Abierto(1);
        RespuestasMensajes respuestas;
        QStringList antes;
        QVERIFY(ConCambio(e, [&](DlgCambiarPrecios &d) {
            Regla(d, "10", "");
            Pulsar(d, "btnVistaPrevia");
            t.Ejecutar("delete from cabecera_precio where identificador = 1");
            antes = t.Volcado();
            Pulsar(d, "btnAplicar");
        }));
        QCOMPARE(t.Volcado(), antes);
        QCOMPARE(respuestas.Mostrados().size(), 1);
        QVERIFY(respuestas.Mostrados().at(0).contains("ya no existe"));
        QVERIFY(!e.Loaded());
    }
};

TARIFAS_PRUEBAS(TstCambiarPrecios)
#include "tst_cambiarprecios.moc"
