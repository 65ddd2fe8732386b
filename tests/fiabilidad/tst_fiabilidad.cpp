// The program's writes (a price saved, a period accepted, a list deleted) against hostile data,
// and Nulls, on the database of the run. No case may end the program or show the error report.
#include "apoyo/ejecucion.h"
#include "apoyo/tiendaprueba.h"
#include "editor/frmtarifas.h"
#include "platform/ui/mensajes.h"
#include "register/frmlistas.h"
#include "session/principal.h"
#include "session/sesionsuite.h"
#include "suite/datos/svcopciones.h"

#include <QStandardPaths>
#include <QtTest>

namespace {

QString Largo() {
    QString t;
    for (int i = 0; i < 2000; ++i)
        t += QChar(u"aé'|%_\\\"ñ"[i % 9]);
    return t;
}

void TextosHostiles() {
    QTest::addColumn<QString>("texto");
    QTest::addColumn<QString>("tipoNegocio");
    const QList<std::pair<const char *, QString>> textos = {
        {"apostrofos", QStringLiteral("L'Hiver d'été''")},
        {"comillas", QStringLiteral("\"Rebajas\" de `verano`")},
        {"barras invertidas", QStringLiteral("C:\\tarifas\\n\\'\\")},
        {"comodines", QStringLiteral("50% _dto_ %_%")},
        {"barra vertical", QStringLiteral("a|b|")},
        {"emoji", QStringLiteral("Camiseta 🧥👕🏳️‍🌈")},
        {"derecha a izquierda", QStringLiteral("قائمة الأسعار ‏שלום")},
        {"sentencia", QStringLiteral("x'; drop table detalle_precio; --")},
        {"2000 caracteres", Largo()},
    };
    for (const QString &modo : {QString(), TallaColor})
        for (const auto &[nombre, texto] : textos)
            QTest::addRow("%s, %s", nombre, modo.isEmpty() ? "llano" : "talla y color")
                << texto << modo;
}

} // namespace

class TstFiabilidad : public QObject {
    Q_OBJECT

  private slots:
    void initTestCase() {
        QStandardPaths::setTestModeEnabled(true);
        QLocale::setDefault(QLocale(QLocale::Spanish, QLocale::Spain));
    }

    // A hostile text as the list's name, the product's name and shop code and the variant's
    // code; the period at the control's two ends. Save a price, accept the period, delete. Only
    // a variant code holding "|" is refused (the record writer can't carry it), with a message
    // and nothing changed; anything else is stored and reads back intact.
    void textos_data() { TextosHostiles(); }
    void textos() {
        QFETCH(QString, texto);
        QFETCH(QString, tipoNegocio);
        const bool refusado = !tipoNegocio.isEmpty() && texto.contains(QLatin1Char('|'));
        TiendaPrueba tienda(tipoNegocio);
        const QDate primero(1601, 1, 1), ultimo(9999, 12, 31);
        tienda.Talla(1, texto);
        tienda.Color(1, texto);
        tienda.Producto(1, texto, texto, 20);
        tienda.Variante(1, texto, 1, 1, texto, 21);
        tienda.Lista(1, texto, primero, ultimo);
        tienda.Lista(2, QStringLiteral("Otra"));
        tienda.Precio(2, 1, 7, texto);
        RespuestasMensajes cajas;
        const QStringList antes = tienda.Volcado();
        QCOMPARE(tienda.Registro().grid_precios->TextMatrix(FilaRegistro(1), 0), texto);

        QVERIFY(tienda.AbrirEditor(1, [&](FrmTarifas &e) {
            QCOMPARE(e.Label5->Caption(), texto);
            QVERIFY(GuardarPrecio(e, "1", "12,5", texto));
            QVERIFY(e.Loaded());
            QCOMPARE(cajas.Mostrados().size(), refusado ? 1 : 0);
            // The row shows the product as the catalogue does, with the price as typed.
            const QStringList esperada =
                tipoNegocio.isEmpty()
                    ? QStringList{texto, texto, "1", "12,5", ""}
                    : QStringList{texto, texto, "1", texto, texto, texto, "12,5", ""};
            const QList<int> filas = FilasCon(*e.grid_Pseleccionados, 2, "1");
            QCOMPARE(filas.size(), refusado ? 0 : 1);
            if (!refusado)
                QCOMPARE(Fila(*e.grid_Pseleccionados, filas.first()), esperada);
            QTest::mouseClick(e.cmdAceptarFecha->widget(), Qt::LeftButton);
        }));
        QVERIFY(!Form::Terminando());
        if (refusado) {
            // Nothing changed: the period, accepted as it stood, wrote the same two dates.
            QCOMPARE(tienda.Volcado(), antes);
        } else {
            const QString sql = "select %1 from detalle_precio where identificador = 1";
            QCOMPARE(tienda.Valor(sql.arg("count(*)")).toInt(), 1);
            QCOMPARE(tienda.Valor(sql.arg("precio")).toDouble(), 12.5);
            if (!tipoNegocio.isEmpty())
                QCOMPARE(tienda.Valor(sql.arg("codproductotextil")).toString(), texto);
        }
        const QString sql = "select %1 from cabecera_precio where identificador = 1";
        QCOMPARE(tienda.Valor(sql.arg("preciovalidodesde")).toDate(), primero);
        QCOMPARE(tienda.Valor(sql.arg("preciovalidohasta")).toDate(), ultimo);
        QCOMPARE(tienda.Valor(sql.arg("descripcion")).toString(), texto);

        QVERIFY(tienda.AbrirEditor(
            1, [&](FrmTarifas &e) { QTest::mouseClick(e.cmdEliminar->widget(), Qt::LeftButton); }));
        QCOMPARE(cajas.Mostrados().last(),
                 QStringLiteral("¿Desea eliminar la tarifa ") + texto + "?");
        QCOMPARE(FilaRegistro(1), -1);
        // List 2 and its price, with the same hostile variant code, are untouched.
        QStringList otra;
        for (const QString &fila : antes)
            if (!fila.startsWith(QLatin1String("cabecera_precio|1|")) &&
                !fila.startsWith(QLatin1String("detalle_precio|1|")))
                otra << fila;
        QCOMPARE(tienda.Volcado(), otra);
    }

    // A Null in a column the screens read: the list opens, a price is saved, the period is
    // accepted and the list deleted, with no message at all.
    void nulos_data() {
        QTest::addColumn<QString>("sentencia");
        QTest::addColumn<QString>("tipoNegocio");
        const QList<std::pair<const char *, const char *>> nulos = {
            {"nombre de la lista", "update cabecera_precio set descripcion = null"},
            {"fechas de la lista",
             "update cabecera_precio set preciovalidodesde = null, preciovalidohasta = null, "
             "fechaalta = null"},
            {"nombre del producto", "update productos set nombre = null"},
            {"codigo del producto", "update productos set codigocliente = null"},
            {"precio del producto", "update productos set precio = null"},
            {"seccion del producto", "update productos set seccion = null"},
            {"precio guardado", "update detalle_precio set precio = null"},
            {"variante guardada", "update detalle_precio set codproductotextil = null"},
            {"variante del catalogo", "update productostextil set codigohijo = null, codcliente = "
                                      "null, precio = null, talla = null, color = null"},
            {"tipo de negocio y decimales",
             "update opciones set tiponegocio = null, numdecimales = null"},
        };
        for (const QString &modo : {QString(), TallaColor})
            for (const auto &[nombre, sql] : nulos)
                QTest::addRow("%s, %s", nombre, modo.isEmpty() ? "llano" : "talla y color")
                    << QString::fromLatin1(sql) << modo;
    }
    void nulos() {
        QFETCH(QString, sentencia);
        QFETCH(QString, tipoNegocio);
        TiendaPrueba tienda(tipoNegocio);
        tienda.Talla(1, QStringLiteral("M"));
        tienda.Color(1, QStringLiteral("Rojo"));
        tienda.Producto(1, "C1", "Camisa", 20);
        tienda.Producto(2, "C2", "Falda", 30);
        tienda.Variante(2, QStringLiteral("2M"), 1, 1, QStringLiteral("C2M"), 31);
        tienda.Lista(1, QStringLiteral("General"));
        tienda.Precio(1, 1, 18, QStringLiteral("-1"));
        tienda.Precio(1, 2, 28, QStringLiteral("2M"));
        tienda.Ejecutar(sentencia);
        SesionSuite.TipoNegocio = Principal::svcOpciones().LeerTipoNegocio(*SesionSuite.Conexion);
        RespuestasMensajes cajas;
        QVERIFY(tienda.AbrirEditor(1, [&](FrmTarifas &e) {
            QVERIFY(GuardarPrecio(e, "1", "12,5", "-1"));
            QVERIFY(e.Loaded());
            QTest::mouseClick(e.cmdAceptarFecha->widget(), Qt::LeftButton);
            QVERIFY(!e.cmdAceptarFecha->Visible());
        }));
        QVERIFY(!Form::Terminando());
        QCOMPARE(cajas.Mostrados(), QStringList());
        // One row holds the new price (a row stored without a variant is another row in the
        // size-and-colour mode, and stays).
        QCOMPARE(tienda
                     .Valor("select count(*) from detalle_precio where producto = 1 and precio = "
                            "12.5")
                     .toInt(),
                 1);
        // The period as the controls showed it: a Null date became today's.
        QVERIFY(tienda.Valor("select preciovalidodesde from cabecera_precio").toDate().isValid());
        QVERIFY(tienda.AbrirEditor(
            1, [&](FrmTarifas &e) { QTest::mouseClick(e.cmdEliminar->widget(), Qt::LeftButton); }));
        QCOMPARE(cajas.Mostrados().size(), 1); // the question, and nothing else
        QCOMPARE(tienda.Volcado(), QStringList());
    }
};

TARIFAS_PRUEBAS(TstFiabilidad)
#include "tst_fiabilidad.moc"
