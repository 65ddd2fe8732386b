// The program's writes (a price saved, a period accepted, a list deleted) against hostile data
// and Nulls, on the database of the run. No case may end the program or show the error report.
#include "apoyo/ejecucion.h"
#include "apoyo/respuestas.h"
#include "apoyo/tiendaprueba.h"
#include "suite/datos/svcopciones.h"

using namespace Pantalla;

class TstFiabilidad : public QObject {
    Q_OBJECT

  private slots:
    void textos_data() {
        const auto caso = Pruebas::Tabla<QString, QString>();
        QString largo;
        for (int i = 0; i < 2000; ++i)
            largo += QChar(u"aé'|%_\\\"ñ"[i % 9]);
        const QList<std::pair<const char *, QString>> textos = {
            {"apostrofos", "L'Hiver d'été''"},
            {"comillas", "\"Rebajas\" de `verano`"},
            {"barras invertidas", "C:\\tarifas\\n\\'\\"},
            {"comodines", "50% _dto_ %_%"},
            {"barra vertical", "a|b|"},
            {"emoji", "Camiseta 🧥👕🏳️‍🌈"},
            {"derecha a izquierda", "قائمة الأسعار ‏שלום"},
            {"sentencia", "x'; drop table detalle_precio; --"},
            {"2000 caracteres", largo},
        };
        for (const QString &modo : {QString(), TallaColor})
            for (const auto &[nombre, texto] : textos)
                caso(qPrintable(QStringLiteral("%1, %2").arg(
                         QLatin1String(nombre), modo.isEmpty() ? QStringLiteral("llano")
                                                               : QStringLiteral("talla y color"))),
                     texto, modo);
    }
    void textos() {
        // A hostile text as the list's name, the product's name and shop code and the
        // variant's code; the period at the control's two ends. Save a price, accept the
        // period, delete. Only a variant code holding "|" is refused (the record writer can't
        // carry it), by name and with nothing changed; anything else reads back intact.
        const auto [texto, tipoNegocio] = Pruebas::Fila<QString, QString>();
        const bool textil = !tipoNegocio.isEmpty();
        const bool refusado = textil && texto.contains('|');
        TiendaPrueba tienda(tipoNegocio);
        tienda.Talla(1, texto);
        tienda.Color(1, texto);
        tienda.Producto(1, texto, texto, 20);
        tienda.Variante(1, texto, 1, 1, texto, 21);
        tienda.Lista(1, texto, QDate(1601, 1, 1), QDate(9999, 12, 31));
        tienda.Lista(2, QStringLiteral("Otra"));
        tienda.Precio(2, 1, 7, texto);
        if (textil) // another variant's price in the list, which the save leaves alone
            tienda.Precio(1, 1, 3, QStringLiteral("hermana"));
        RespuestasMensajes cajas;
        const QStringList antes = tienda.Volcado(), sinLista1 = tienda.Volcado(1);
        QCOMPARE(tienda.Registro().grid_precios->TextMatrix(FilaRegistro(1), ColListas::Nombre),
                 texto);

        const auto guardar = [&](FrmTarifas &e) {
            QCOMPARE(e.Label5->Caption(), texto);
            QVERIFY(GuardarPrecio(e, "1", "12,5", texto));
            QVERIFY(e.Loaded());
            const QString motivo = "La talla y color de código \"" + texto +
                                   "\" no se puede guardar en una tarifa: su código lleva el "
                                   "carácter \"|\". Corrija el código en el catálogo.";
            QCOMPARE(cajas.Mostrados(), refusado ? QStringList{motivo} : QStringList());
            // The row shows the product as the catalogue does, with the price as typed.
            QList<int> filas = FilasCon(*e.grid_Pseleccionados, ColLlano::Codigo, "1");
            filas.removeIf([&](int f) {
                return textil &&
                       e.grid_Pseleccionados->TextMatrix(f, ColTallaColor::CodigoHijo) != texto;
            });
            QCOMPARE(filas.size(), refusado ? 0 : 1);
            const QStringList esperada =
                textil ? QStringList{texto, texto, "1", texto, texto, texto, "12,5", ""}
                       : QStringList{texto, texto, "1", "12,5", ""};
            if (!refusado)
                QCOMPARE(Fila(*e.grid_Pseleccionados, filas.first()), esperada);
            QTest::mouseClick(e.cmdAceptarFecha->widget(), Qt::LeftButton);
        };
        QVERIFY(tienda.AbrirEditor(1, guardar));
        QVERIFY(!Form::Terminando());
        // The period, accepted as it stood, wrote the same two dates.
        QStringList esperado = antes;
        if (!refusado)
            esperado << QStringList{"detalle_precio", "1", "1", "12.5", textil ? texto : "<nulo>"}
                            .join('|');
        esperado.sort();
        QCOMPARE(tienda.Volcado(), esperado);

        QVERIFY(tienda.AbrirEditor(
            1, [&](FrmTarifas &e) { QTest::mouseClick(e.cmdEliminar->widget(), Qt::LeftButton); }));
        QCOMPARE(cajas.Mostrados().last(), "¿Desea eliminar la tarifa " + texto + "?");
        QCOMPARE(FilaRegistro(1), -1);
        // List 2 and its price, with the same hostile variant code, are untouched.
        QCOMPARE(tienda.Volcado(), sinLista1);
    }

    void nulos_data() {
        const auto caso = Pruebas::Tabla<QString, QString>();
        const QList<std::pair<const char *, const char *>> nulos = {
            {"nombre de la lista", "update cabecera_precio set descripcion = null"},
            {"fechas de la lista", "update cabecera_precio set preciovalidodesde = null, "
                                   "preciovalidohasta = null, fechaalta = null"},
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
                caso(qPrintable(QStringLiteral("%1, %2").arg(
                         QLatin1String(nombre), modo.isEmpty() ? QStringLiteral("llano")
                                                               : QStringLiteral("talla y color"))),
                     QString::fromUtf8(sql), modo);
    }
    void nulos() {
        // A Null in a column the screens read: the list opens, a price is saved, the period is
        // accepted and the list deleted, with no message but the question.
        const auto [sentencia, tipoNegocio] = Pruebas::Fila<QString, QString>();
        TiendaPrueba tienda(tipoNegocio);
        tienda.Talla(1, QStringLiteral("M"));
        tienda.Color(1, QStringLiteral("Rojo"));
        tienda.Ejecutar("insert into productos values (1, 'C1', 'Camisa', 20, 'S', 0), "
                        "(2, 'C2', 'Falda', 30, 'S', 0)");
        tienda.Variante(2, "2M", 1, 1, "C2M", 31);
        tienda.Lista(1, QStringLiteral("General"));
        tienda.Ejecutar("insert into detalle_precio values (1, 1, 18, '-1'), (1, 2, 28, '2M')");
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
        // size-and-colour mode, and stays); the period as the controls showed it: a Null date
        // became today's.
        QCOMPARE(tienda.Valor("select count(*) from detalle_precio where precio = 12.5").toInt(),
                 1);
        QVERIFY(tienda.Valor("select preciovalidodesde from cabecera_precio").toDate().isValid());
        QVERIFY(tienda.AbrirEditor(
            1, [&](FrmTarifas &e) { QTest::mouseClick(e.cmdEliminar->widget(), Qt::LeftButton); }));
        QCOMPARE(cajas.Mostrados().size(), 1);
        QCOMPARE(tienda.Volcado(), QStringList());
    }
};

TARIFAS_PRUEBAS(TstFiabilidad)
#include "tst_fiabilidad.moc"
