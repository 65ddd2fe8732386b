// The program's writes (a price saved, a period accepted, a list deleted) against hostile data,
// on the database of the run. For each case: the write succeeds and what it wrote reads back
// intact, or it is refused with a message and the price list tables are exactly as before.
// No case may end the program or show the error report.
#include "apoyo/ejecucion.h"
#include "apoyo/tiendaprueba.h"
#include "editor/frmtarifas.h"
#include "platform/ui/mensajes.h"
#include "register/frmlistas.h"
#include "session/principal.h"
#include "session/sesionsuite.h"
#include "suite/datos/svcopciones.h"

#include <QSqlQuery>
#include <QSqlRecord>
#include <QStandardPaths>
#include <QtTest>

namespace {

const QString TallaColor = QStringLiteral("TALLACOLOR");

/// Every row of the price list tables, as text, sorted: equal dumps mean nothing changed.
QStringList Volcado(TiendaPrueba &t) {
    QStringList filas;
    for (const char *tabla : {"cabecera_precio", "detalle_precio", "relaciones_fijas"}) {
        QSqlQuery q(t.db().Conexion().Base());
        if (!q.exec(QStringLiteral("select * from %1").arg(QLatin1String(tabla))))
            qWarning("Could not dump %s", tabla);
        while (q.next()) {
            QStringList campos{QLatin1String(tabla)};
            for (int c = 0; c < q.record().count(); ++c)
                campos << (q.value(c).isNull() ? QStringLiteral("<nulo>") : q.value(c).toString());
            filas << campos.join(QLatin1Char('|'));
        }
    }
    filas.sort();
    return filas;
}

/// The operator opens catalogue row `fila` in the price panel, types `precio` and accepts.
void GuardarPrecio(FrmTarifas &e, int fila, const QString &precio) {
    const bool textil = ModoTallaColor();
    const Grid &g = textil ? *e.grid_productos_textil : *e.grid_productos;
    if (textil)
        e.CargarDatosProd(g.TextMatrix(fila, 2), g.TextMatrix(fila, 0), g.TextMatrix(fila, 1),
                          g.TextMatrix(fila, 6), g.TextMatrix(fila, 3), g.TextMatrix(fila, 4),
                          g.TextMatrix(fila, 5));
    else
        e.CargarDatosProd(g.TextMatrix(fila, 2), g.TextMatrix(fila, 0), g.TextMatrix(fila, 1),
                          g.TextMatrix(fila, 3), {}, {}, {});
    e.txt_NuevoPrecio->setText(precio);
    QTest::mouseClick(e.cmdAceptar->widget(), Qt::LeftButton);
}

/// The catalogue row of product `codigo` (variant `hijo` in the size-and-colour mode).
int FilaCatalogo(FrmTarifas &e, const QString &codigo, const QString &hijo = {}) {
    const bool textil = ModoTallaColor();
    const Grid &g = textil ? *e.grid_productos_textil : *e.grid_productos;
    for (int f = 1; f < g.Rows(); ++f)
        if (g.TextMatrix(f, 2) == codigo && (!textil || g.TextMatrix(f, 3) == hijo))
            return f;
    return -1;
}

int FilaRegistro(int lista) {
    const Grid &g = *frmListas().grid_precios;
    for (int f = 1; f < g.Rows(); ++f)
        if (g.TextMatrix(f, 3) == QString::number(lista))
            return f;
    return -1;
}

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
    // code; the period at the control's two ends. Save a price, accept the period, delete.
    void textos_data() { TextosHostiles(); }
    void textos() {
        QFETCH(QString, texto);
        QFETCH(QString, tipoNegocio);
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
        const QStringList antes = Volcado(tienda);
        QCOMPARE(tienda.Registro().grid_precios->TextMatrix(FilaRegistro(1), 0), texto);

        bool guardado = false;
        QVERIFY(tienda.AbrirEditor(1, [&](FrmTarifas &e) {
            QCOMPARE(e.Label5->Caption(), texto);
            const int fila = FilaCatalogo(e, QStringLiteral("1"), texto);
            QVERIFY(fila > 0);
            GuardarPrecio(e, fila, QStringLiteral("12,5"));
            QVERIFY(e.Loaded());
            guardado = cajas.Mostrados().isEmpty();
            if (guardado) {
                // The row shows the product as the catalogue does, with the price as typed.
                const Grid &g = *e.grid_Pseleccionados;
                int fila = -1;
                for (int f = 1; f < g.Rows(); ++f)
                    if (g.TextMatrix(f, 2) == QLatin1String("1"))
                        fila = f;
                QVERIFY(fila > 0);
                QCOMPARE(g.TextMatrix(fila, 0), texto);
                QCOMPARE(g.TextMatrix(fila, 1), texto);
                if (ModoTallaColor())
                    QCOMPARE(g.TextMatrix(fila, 3), texto);
                QCOMPARE(g.TextMatrix(fila, ModoTallaColor() ? 6 : 3), QStringLiteral("12,5"));
            }
            QTest::mouseClick(e.cmdAceptarFecha->widget(), Qt::LeftButton);
        }));
        QVERIFY(!Form::Terminando());
        if (guardado) {
            QSqlQuery q(tienda.db().Conexion().Base());
            QVERIFY(q.exec(QStringLiteral("select precio, codproductotextil from detalle_precio "
                                          "where identificador = 1 and producto = 1")));
            QVERIFY(q.next());
            QCOMPARE(q.value(0).toDouble(), 12.5);
            if (ModoTallaColor())
                QCOMPARE(q.value(1).toString(), texto);
            QVERIFY(!q.next());
        } else {
            // Refused, with a message of its own: nothing changed (the period, accepted as it
            // stood, wrote the same two dates).
            QCOMPARE(cajas.Mostrados().size(), 1);
            QVERIFY2(!cajas.Mostrados().first().isEmpty(), "an empty message");
            QCOMPARE(Volcado(tienda), antes);
        }
        QCOMPARE(tienda.db()
                     .Valor(QStringLiteral("select preciovalidodesde from cabecera_precio "
                                           "where identificador = 1"))
                     .toDate(),
                 primero);
        QCOMPARE(tienda.db()
                     .Valor(QStringLiteral("select preciovalidohasta from cabecera_precio "
                                           "where identificador = 1"))
                     .toDate(),
                 ultimo);
        QCOMPARE(tienda.db()
                     .Valor(QStringLiteral("select descripcion from cabecera_precio where "
                                           "identificador = 1"))
                     .toString(),
                 texto);

        const int mensajes = cajas.Mostrados().size();
        QVERIFY(tienda.AbrirEditor(
            1, [&](FrmTarifas &e) { QTest::mouseClick(e.cmdEliminar->widget(), Qt::LeftButton); }));
        QCOMPARE(cajas.Mostrados().size(), mensajes + 1);
        QCOMPARE(cajas.Mostrados().last(),
                 QStringLiteral("¿Desea eliminar la tarifa ") + texto + "?");
        QCOMPARE(FilaRegistro(1), -1);
        // List 2 and its price, with the same hostile variant code, are untouched.
        QStringList otra;
        for (const QString &fila : antes)
            if (!fila.startsWith(QLatin1String("cabecera_precio|1|")) &&
                !fila.startsWith(QLatin1String("detalle_precio|1|")))
                otra << fila;
        QCOMPARE(Volcado(tienda), otra);
    }

    // A hostile text as a new list's name, typed in the register: stored exactly and listed
    // (the editor opens on it), or refused with a message and nothing stored.
    void altas_data() { TextosHostiles(); }
    void altas() {
        QFETCH(QString, texto);
        QFETCH(QString, tipoNegocio);
        TiendaPrueba tienda(tipoNegocio);
        tienda.Lista(1, QStringLiteral("General"));
        RespuestasMensajes cajas;
        const QStringList antes = Volcado(tienda);
        FrmListas &r = tienda.Registro();
        QTest::mouseClick(r.cmdNuevo->widget(), Qt::LeftButton);
        r.txtNomLista->setText(texto);
        QString titulo;
        QTimer sondeo;
        sondeo.setInterval(5);
        QObject::connect(&sondeo, &QTimer::timeout, [&] {
            FrmTarifas &e = frmTarifas();
            if (!(e.Loaded() && e.ventana()->isVisible()))
                return;
            sondeo.stop();
            titulo = e.Label5->Caption();
            QTest::mouseClick(e.cmdSalir->widget(), Qt::LeftButton);
        });
        sondeo.start();
        QTest::mouseClick(r.cmdAceptar->widget(), Qt::LeftButton);
        sondeo.stop();
        QVERIFY(!Form::Terminando());
        if (cajas.Mostrados().isEmpty()) {
            QCOMPARE(titulo, texto);
            QCOMPARE(tienda.db()
                         .Valor(QStringLiteral("select descripcion from cabecera_precio where "
                                               "identificador = 2"))
                         .toString(),
                     texto);
            QVERIFY(FilaRegistro(2) > 0);
            QCOMPARE(r.grid_precios->TextMatrix(FilaRegistro(2), 0), texto);
        } else {
            QCOMPARE(cajas.Mostrados().size(), 1);
            QVERIFY(titulo.isEmpty());
            QCOMPARE(Volcado(tienda), antes);
            QCOMPARE(FilaRegistro(2), -1);
        }
    }

    // Prices as typed: stored as the number typed, or refused with a message and nothing
    // changed (the old price still there).
    void precios_data() {
        QTest::addColumn<QString>("tecleado");
        QTest::addColumn<bool>("vale");
        QTest::addColumn<double>("guardado");
        QTest::newRow("coma") << "12,5" << true << 12.5;
        QTest::newRow("punto") << "12.5" << true << 12.5;
        QTest::newRow("cero") << "0" << true << 0.0;
        QTest::newRow("solo decimales") << ",05" << true << 0.05;
        QTest::newRow("negativo") << "-3" << true << -3.0;
        QTest::newRow("15 cifras") << "999999999999999" << true << 999999999999999.0;
        QTest::newRow("15 cifras con decimales") << "1234567,89012345" << true << 1234567.89012345;
        QTest::newRow("16 cifras") << "9999999999999999" << false << 0.0;
        QTest::newRow("muy grande") << "99999999999999999999999999999999" << false << 0.0;
        QTest::newRow("exponente") << "1e308" << false << 0.0;
        QTest::newRow("infinito") << "inf" << false << 0.0;
        QTest::newRow("separador solo") << "," << false << 0.0;
        QTest::newRow("dos separadores") << "1.234,5" << false << 0.0;
        QTest::newRow("menos solo") << "-" << false << 0.0;
        QTest::newRow("barra vertical") << "12|precio=1" << false << 0.0;
        QTest::newRow("apostrofo") << "12'5" << false << 0.0;
    }
    void precios() {
        QFETCH(QString, tecleado);
        QFETCH(bool, vale);
        QFETCH(double, guardado);
        TiendaPrueba tienda;
        tienda.Producto(1, "C1", "Camisa", 20);
        tienda.Lista(1, QStringLiteral("General"));
        tienda.Precio(1, 1, 18);
        RespuestasMensajes cajas;
        const QStringList antes = Volcado(tienda);
        QVERIFY(tienda.AbrirEditor(1, [&](FrmTarifas &e) {
            GuardarPrecio(e, FilaCatalogo(e, QStringLiteral("1")), tecleado);
            QVERIFY(e.Loaded());
        }));
        QVERIFY(!Form::Terminando());
        if (vale) {
            QCOMPARE(cajas.Mostrados(), QStringList());
            QCOMPARE(
                tienda.db().Valor(QStringLiteral("select count(*) from detalle_precio")).toInt(),
                1);
            QCOMPARE(
                tienda.db().Valor(QStringLiteral("select precio from detalle_precio")).toDouble(),
                guardado);
        } else {
            QCOMPARE(cajas.Mostrados().size(), 1);
            QCOMPARE(Volcado(tienda), antes);
        }
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
            const int fila = FilaCatalogo(e, QStringLiteral("1"), QStringLiteral("-1"));
            QVERIFY(fila > 0);
            GuardarPrecio(e, fila, QStringLiteral("12,5"));
            QVERIFY(e.Loaded());
            QTest::mouseClick(e.cmdAceptarFecha->widget(), Qt::LeftButton);
            QVERIFY(!e.cmdAceptarFecha->Visible());
        }));
        QVERIFY(!Form::Terminando());
        QCOMPARE(cajas.Mostrados(), QStringList());
        // One row holds the new price (a row stored without a variant is another row in the
        // size-and-colour mode, and stays).
        QCOMPARE(tienda.db()
                     .Valor(QStringLiteral("select count(*) from detalle_precio where producto = 1 "
                                           "and precio = 12.5"))
                     .toInt(),
                 1);
        // The period as the controls showed it: a Null date became today's.
        QVERIFY(tienda.db()
                    .Valor(QStringLiteral("select preciovalidodesde from cabecera_precio"))
                    .toDate()
                    .isValid());
        QVERIFY(tienda.AbrirEditor(
            1, [&](FrmTarifas &e) { QTest::mouseClick(e.cmdEliminar->widget(), Qt::LeftButton); }));
        QCOMPARE(cajas.Mostrados().size(), 1); // the question, and nothing else
        QCOMPARE(Volcado(tienda), QStringList());
    }
};

TARIFAS_PRUEBAS(TstFiabilidad)
#include "tst_fiabilidad.moc"
