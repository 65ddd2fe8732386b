// The validity period in the editor: when its two buttons show, what Accept stores and
// Cancel puts back, the dates' text in every regional setting, and lists whose stored dates
// the date control can't show.
#include "apoyo/ejecucion.h"
#include "apoyo/tiendaprueba.h"
#include "editor/frmtarifas.h"
#include "platform/datos/regional.h"
#include "platform/datos/sistema.h"
#include "platform/ui/mensajes.h"
#include "register/frmlistas.h"

#include <QStandardPaths>
#include <QtTest>

namespace {

const QDate Desde(2026, 1, 1), Hasta(2026, 12, 31);
// Written behind the editor's back once it is open: still there afterwards means that
// nothing was stored.
const QDate CentinelaDesde(2000, 1, 1), CentinelaHasta(2000, 1, 2);

QDate Guardada(TiendaPrueba &t, const char *columna) {
    return t.Valor(QStringLiteral("select %1 from cabecera_precio").arg(QLatin1String(columna)))
        .toDate();
}

/// What the date column holds, as the database writes it as text.
QString GuardadaComoTexto(TiendaPrueba &t, const char *columna) {
    return t
        .Valor(QStringLiteral("select cast(%1 as varchar(40)) from cabecera_precio")
                   .arg(QLatin1String(columna)))
        .toString();
}

void Centinela(TiendaPrueba &t) {
    t.Ejecutar(QStringLiteral("update cabecera_precio set preciovalidodesde = ?, "
                              "preciovalidohasta = ? where identificador = 1"),
               {CentinelaDesde.toString(Qt::ISODate), CentinelaHasta.toString(Qt::ISODate)});
}

bool Visibles(const FrmTarifas &e) {
    // The two are always shown and hidden together.
    if (e.cmdAceptarFecha->Visible() != e.cmdCancelarFecha->Visible())
        qWarning("Accept and Cancel differ in visibility");
    return e.cmdAceptarFecha->Visible() && e.cmdCancelarFecha->Visible();
}

/// One of the operator's steps: "desde=2026-02-01" and "hasta=…" change a control, "aceptar"
/// and "cancelar" click a button (which must be shown to be clicked).
void Paso(FrmTarifas &e, const QString &paso) {
    if (paso.startsWith(QLatin1String("desde=")) || paso.startsWith(QLatin1String("hasta="))) {
        DTPicker *control = paso.startsWith(QLatin1String("desde")) ? e.desde : e.hasta;
        control->setValue(QDate::fromString(paso.mid(6), Qt::ISODate));
        return;
    }
    CommandButton *boton =
        paso == QLatin1String("aceptar") ? e.cmdAceptarFecha : e.cmdCancelarFecha;
    QVERIFY2(boton->Visible(), qPrintable(paso));
    QTest::mouseClick(boton->widget(), Qt::LeftButton);
}

} // namespace

class TstEditorPeriodo : public QObject {
    Q_OBJECT

  private slots:
    void initTestCase() {
        QStandardPaths::setTestModeEnabled(true);
        QLocale::setDefault(QLocale(QLocale::Spanish, QLocale::Spain));
    }
    void cleanup() { QLocale::setDefault(QLocale(QLocale::Spanish, QLocale::Spain)); }

    void estados_data() {
        QTest::addColumn<QStringList>("pasos");
        QTest::addColumn<bool>("visibles");
        QTest::addColumn<QDate>("enDesde"); // what the controls show at the end
        QTest::addColumn<QDate>("enHasta");
        QTest::addColumn<QDate>("guardadaDesde"); // the sentinel: nothing was stored
        QTest::addColumn<QDate>("guardadaHasta");
        const QDate c1 = CentinelaDesde, c2 = CentinelaHasta;
        const QDate feb(2026, 2, 1), mar(2026, 3, 1);
        QTest::newRow("abierto: ambos visibles")
            << QStringList{} << true << Desde << Hasta << c1 << c2;
        QTest::newRow("aceptar recien abierto guarda lo que se ve")
            << QStringList{"aceptar"} << false << Desde << Hasta << Desde << Hasta;
        QTest::newRow("cancelar recien abierto no guarda")
            << QStringList{"cancelar"} << false << Desde << Hasta << c1 << c2;
        QTest::newRow("la misma fecha no es un cambio")
            << QStringList{"cancelar", "desde=2026-01-01"} << false << Desde << Hasta << c1 << c2;
        QTest::newRow("cambio tras cancelar muestra")
            << QStringList{"cancelar", "desde=2026-02-01"} << true << feb << Hasta << c1 << c2;
        QTest::newRow("volver a la guardada no oculta")
            << QStringList{"cancelar", "desde=2026-02-01", "desde=2026-01-01"} << true << Desde
            << Hasta << c1 << c2;
        QTest::newRow("cambiar solo hasta guarda las dos")
            << QStringList{"cancelar", "hasta=2027-06-30", "aceptar"} << false << Desde
            << QDate(2027, 6, 30) << Desde << QDate(2027, 6, 30);
        QTest::newRow("volver a la anterior tras aceptar es un cambio")
            << QStringList{"desde=2026-02-01", "aceptar", "desde=2026-01-01"} << true << Desde
            << Hasta << feb << Hasta;
        QTest::newRow("cancelar devuelve las dos")
            << QStringList{"desde=2026-02-01", "hasta=2027-01-31", "cancelar"} << false << Desde
            << Hasta << c1 << c2;
        QTest::newRow("cancelar tras aceptar devuelve lo aceptado")
            << QStringList{"desde=2026-02-01", "aceptar", "desde=2026-03-01", "cancelar"} << false
            << feb << Hasta << feb << Hasta;
        QTest::newRow("aceptar dos veces")
            << QStringList{"desde=2026-02-01", "aceptar", "desde=2026-03-01", "aceptar"} << false
            << mar << Hasta << mar << Hasta;
        QTest::newRow("periodo invertido se guarda tal cual")
            << QStringList{"hasta=2025-01-01", "aceptar"} << false << Desde << QDate(2025, 1, 1)
            << Desde << QDate(2025, 1, 1);
        QTest::newRow("los extremos del control")
            << QStringList{"desde=1601-01-01", "hasta=9999-12-31", "aceptar"} << false
            << QDate(1601, 1, 1) << QDate(9999, 12, 31) << QDate(1601, 1, 1) << QDate(9999, 12, 31);
    }
    void estados() {
        QFETCH(QStringList, pasos);
        QFETCH(bool, visibles);
        QFETCH(QDate, enDesde);
        QFETCH(QDate, enHasta);
        QFETCH(QDate, guardadaDesde);
        QFETCH(QDate, guardadaHasta);
        TiendaPrueba tienda;
        tienda.Lista(1, QStringLiteral("General"), Desde, Hasta);
        RespuestasMensajes cajas;
        QVERIFY(tienda.AbrirEditor(1, [&](FrmTarifas &e) {
            QVERIFY(Visibles(e)); // shown when the editor opens
            Centinela(tienda);
            for (const QString &paso : pasos) {
                Paso(e, paso);
                if (QTest::currentTestFailed())
                    return;
            }
            QCOMPARE(Visibles(e), visibles);
            QCOMPARE(e.desde->Value(), enDesde);
            QCOMPARE(e.hasta->Value(), enHasta);
        }));
        QCOMPARE(cajas.Mostrados(), QStringList());
        QCOMPARE(Guardada(tienda, "preciovalidodesde"), guardadaDesde);
        QCOMPARE(Guardada(tienda, "preciovalidohasta"), guardadaHasta);
        // The register lists the period as stored once the editor has closed.
        const Grid &g = *frmListas().grid_precios;
        QCOMPARE(g.TextMatrix(1, 1), FechaATexto(guardadaDesde));
        QCOMPARE(g.TextMatrix(1, 2), FechaATexto(guardadaHasta));
    }

    // The dates go to the record writer as regional text: whatever the locale, they come
    // back as the same day, in the database and in the next opening.
    void idaYVuelta_data() {
        QTest::addColumn<QString>("idioma");
        QTest::addColumn<QDate>("fecha");
        // Spain and the US write a two-digit year in their own short format.
        QTest::newRow("es_ES 1601") << "es_ES" << QDate(1601, 1, 1);
        QTest::newRow("es_ES 2001") << "es_ES" << QDate(2001, 2, 3);
        QTest::newRow("en_US 1950") << "en_US" << QDate(1950, 6, 15);
        QTest::newRow("de_DE 9999") << "de_DE" << QDate(9999, 12, 31);
        QTest::newRow("ja_JP 2049") << "ja_JP" << QDate(2049, 12, 31);
    }
    void idaYVuelta() {
        QFETCH(QString, idioma);
        QFETCH(QDate, fecha);
        QLocale::setDefault(QLocale(idioma));
        TiendaPrueba tienda;
        tienda.Lista(1, QStringLiteral("General"), Desde, Hasta);
        QVERIFY(tienda.AbrirEditor(1, [&](FrmTarifas &e) {
            e.hasta->setValue(fecha);
            QTest::mouseClick(e.cmdAceptarFecha->widget(), Qt::LeftButton);
            QCOMPARE(e.lblHasta->Caption(), FechaATexto(fecha));
        }));
        QCOMPARE(Guardada(tienda, "preciovalidohasta"), fecha);
        QCOMPARE(Guardada(tienda, "preciovalidodesde"), Desde);
        QVERIFY(tienda.AbrirEditor(1, [&](FrmTarifas &e) {
            QCOMPARE(e.hasta->Value(), fecha);
            QCOMPARE(e.desde->Value(), Desde);
        }));
    }

    // A stored date the control can't show: the program goes on, the register shows what is
    // stored, the editor shows a day it can and writes nothing until a period is accepted.
    void fechaGuardadaRara_data() {
        QTest::addColumn<QVariant>("almacenada"); // for preciovalidodesde; Null when invalid
        QTest::addColumn<bool>("soloSQLite");
        QTest::addColumn<QString>("enRegistro");
        QTest::addColumn<QString>("etiqueta");
        QTest::addColumn<QDate>("enControl"); // invalid: today
        const QDate primero = DTPicker::MinDate();
        QTest::newRow("nula") << QVariant() << false << ""
                              << "" << QDate();
        QTest::newRow("texto que no es fecha") << QVariant("mañana") << true << "mañana"
                                               << "" << QDate();
        QTest::newRow("antes de 1601") << QVariant("1600-12-31") << false << "31/12/1600"
                                       << "1/1/1601" << primero;
        QTest::newRow("año 0026 por error") << QVariant("0026-05-01") << false << "1/5/0026"
                                            << "1/1/1601" << primero;
    }
    void fechaGuardadaRara() {
        QFETCH(QVariant, almacenada);
        QFETCH(bool, soloSQLite);
        QFETCH(QString, enRegistro);
        QFETCH(QString, etiqueta);
        QFETCH(QDate, enControl);
        if (soloSQLite)
            SOLO_SQLITE("a date column of the server takes no other text");
        TiendaPrueba tienda;
        tienda.Lista(1, QStringLiteral("General"), Desde, Hasta);
        tienda.Ejecutar(
            QStringLiteral(
                "update cabecera_precio set preciovalidodesde = ? where identificador = 1"),
            {almacenada});
        const QString antes = GuardadaComoTexto(tienda, "preciovalidodesde");
        const QDate mostrada = enControl.isValid() ? enControl : Hoy();
        RespuestasMensajes cajas;
        QCOMPARE(tienda.Registro().grid_precios->TextMatrix(1, 1), enRegistro);
        QVERIFY(tienda.AbrirEditor(1, [&](FrmTarifas &e) {
            QCOMPARE(e.lblDesde->Caption(), etiqueta);
            QCOMPARE(e.desde->Value(), mostrada);
            QVERIFY(Visibles(e));
            QTest::mouseClick(e.cmdCancelarFecha->widget(), Qt::LeftButton);
            QVERIFY(!Visibles(e));
            QCOMPARE(e.desde->Value(), mostrada);
            // The operator changes the other date and cancels: the date control keeps a day.
            e.hasta->setValue(QDate(2027, 1, 1));
            QVERIFY(Visibles(e));
            QTest::mouseClick(e.cmdCancelarFecha->widget(), Qt::LeftButton);
            QVERIFY(!Visibles(e));
            QCOMPARE(e.hasta->Value(), Hasta);
            QCOMPARE(e.desde->Value(), mostrada);
        }));
        QVERIFY(!Form::Terminando());
        QCOMPARE(cajas.Mostrados(), QStringList());
        QCOMPARE(GuardadaComoTexto(tienda, "preciovalidodesde"), antes);
        // Accept stores the two dates that the controls show.
        QVERIFY(tienda.AbrirEditor(1, [&](FrmTarifas &e) {
            QTest::mouseClick(e.cmdAceptarFecha->widget(), Qt::LeftButton);
        }));
        QCOMPARE(Guardada(tienda, "preciovalidodesde"), mostrada);
        QCOMPARE(Guardada(tienda, "preciovalidohasta"), Hasta);
        QCOMPARE(cajas.Mostrados(), QStringList());
    }

    // A refusal of the database leaves the stored period, and the labels, as they were.
    void rechazo() {
        TiendaPrueba tienda;
        tienda.Lista(1, QStringLiteral("General"), Desde, Hasta);
        tienda.Rechazar("before update on cabecera_precio", "periodo bloqueado");
        RespuestasMensajes cajas;
        QVERIFY(tienda.AbrirEditor(1, [&](FrmTarifas &e) {
            e.desde->setValue(QDate(2026, 2, 1));
            QTest::mouseClick(e.cmdAceptarFecha->widget(), Qt::LeftButton);
            QCOMPARE(e.lblDesde->Caption(), FechaATexto(Desde));
            QVERIFY(Visibles(e)); // the change is still there to accept or cancel
        }));
        QCOMPARE(cajas.Mostrados().size(), 1);
        QVERIFY2(cajas.Mostrados().first().contains(QLatin1String("periodo bloqueado")),
                 qPrintable(cajas.Mostrados().first()));
        QCOMPARE(Guardada(tienda, "preciovalidodesde"), Desde);
        QVERIFY(!Form::Terminando());
    }
};

TARIFAS_PRUEBAS(TstEditorPeriodo)
#include "tst_editorperiodo.moc"
