// The import's dry run and the import: each refused line with its reason, the counts, the two
// modes, all or nothing, and the import as one operation of the history.
#include "apoyo/ejecucion.h"
#include "intercambio/importacion.h"
#include "intercambio/indicetextos.h"
#include "motor/historial.h"
#include "platform/datos/conexion.h"
#include "tiendaintercambio.h"

#include <QSqlQuery>

namespace {

QStringList Rechazos(const PlanImportacion &plan) {
    QStringList t;
    for (const LineaRechazada &r : plan.rechazadas)
        t << QString::number(r.linea) + QLatin1Char(':') + r.motivo;
    return t;
}

/// "added/changed/removed/equal".
QString Cuentas(const PlanImportacion &plan) {
    return QStringLiteral("%1/%2/%3/%4")
        .arg(plan.anadidos)
        .arg(plan.cambiados)
        .arg(plan.quitados)
        .arg(plan.iguales);
}

} // namespace

class TstImportacion : public QObject {
    Q_OBJECT

  private slots:
    void indiceDeTextos() {
        // The catalogue's codes as the import finds them: many, so the table grows several
        // times; texts that are prefixes of others, differ only in case, or are empty.
        IndiceTextos<int> indice;
        QCOMPARE(indice.Hallar(u"A1"), nullptr);
        const int n = 20000;
        for (int i = 0; i < n; ++i)
            QVERIFY(indice.Insertar(QStringLiteral("P%1").arg(i), i).second);
        QVERIFY(indice.Insertar(u"", -1).second);
        QVERIFY(indice.Insertar(u"p1", -2).second);
        const auto [primero, nuevo] = indice.Insertar(u"P1", 99);
        QVERIFY(!nuevo);
        QCOMPARE(*primero, 1); // the first value stays
        QCOMPARE(indice.size(), n + 2);
        for (int i = 0; i < n; ++i) {
            const int *valor = indice.Hallar(QStringLiteral("P%1").arg(i));
            QVERIFY2(valor && *valor == i, qPrintable(QString::number(i)));
        }
        QCOMPARE(*indice.Hallar(u""), -1);
        QCOMPARE(*indice.Hallar(u"p1"), -2);
        QCOMPARE(indice.Hallar(u"P"), nullptr);
        QCOMPARE(indice.Hallar(QStringLiteral("P%1").arg(n)), nullptr);
        QCOMPARE(indice.Hallar(u"P1 "), nullptr);
    }

    void lineas_data() {
        // size-and-colour shop, file, refused lines, counts (added/changed/removed/equal)
        const auto caso = Pruebas::Tabla<bool, QByteArray, QStringList, QString>();
        caso("código desconocido", false, "codigo;precio\nZZ;5\n", {"2:código «ZZ» desconocido"},
             "0/0/0/0");
        caso("producto borrado", false, "codigo;precio\nD4;5\n",
             {"2:el producto «D4» está borrado"}, "0/0/0/0");
        caso("borrado por su código extra", false, "codigo;precio\n8400000000044;5\n",
             {"2:el producto «8400000000044» está borrado"}, "0/0/0/0");
        caso("precio que no es un número", false, "codigo;precio\nA1;doce\n",
             {"2:el precio «doce» no es un número"}, "0/0/0/0");
        caso("precio con miles", false, "codigo;precio\nA1;1.234,5\n",
             {"2:el precio «1.234,5» no es un número"}, "0/0/0/0");
        caso("precio vacío", false, "codigo;precio\nA1;\n", {"2:el precio «» no es un número"},
             "0/0/0/0");
        caso("precio negativo", false, "codigo;precio\nA1;-3\n", {"2:el precio «-3» es negativo"},
             "0/0/0/0");
        caso("el mismo producto con dos precios", false, "codigo;precio\nA1;5\nB2;6\nA1;7\n",
             {"2:el mismo producto tiene otro precio en la línea 4",
              "4:el mismo producto tiene otro precio en la línea 2"},
             "0/1/0/0");
        caso("el mismo por su código extra", false, "codigo;precio\nB2;6\n8400000000022;7\n",
             {"2:el mismo producto tiene otro precio en la línea 3",
              "3:el mismo producto tiene otro precio en la línea 2"},
             "0/0/0/0");
        caso("el mismo producto y el mismo precio", false, "codigo;precio\nA1;5\nA1;5,00\n", {},
             "0/1/0/0");
        caso("variante en una tienda sin tallas", false, "codigo;variante;precio\nA1;V1;5\n",
             {"2:la variante «V1» no cabe en una tienda sin tallas ni colores"}, "0/0/0/0");
        caso("menos campos que la cabecera", false, "codigo;nombre;precio\nA1;5\nB2;x;45\n",
             {"2:la línea tiene 2 campos y la cabecera 3"}, "0/0/0/1");
        caso("sin código", false, "codigo;precio\n;5\n", {"2:la línea no tiene código"}, "0/0/0/0");
        caso("columnas en otro orden y otras de más", false,
             "precio;otra;CODIGO\n90;x;A1\n12,5;y;C3\n", {}, "1/0/0/1");
        caso("código extra sin mayúsculas", false, "codigo;precio\nxb-2;45\n", {}, "0/0/0/1");
        caso("punto decimal", false, "codigo,precio\nA1,90.00\n", {}, "0/0/0/1");
        caso("más decimales que la tienda", false, "codigo;precio\nA1;89,995\nC3;0,004\n", {},
             "1/0/0/1");
        caso("Windows-1252 y líneas en blanco", false,
             "codigo;nombre;precio\r\n\r\nA1;Abrig\xF3n;91\r\n", {}, "0/1/0/0");

        caso("el producto pone precio a cada talla", true, "codigo;precio\nA1;120\n", {},
             "0/2/0/0");
        caso("una talla por su código", true, "variante;precio\nA1-M-R;120\n", {}, "0/1/0/0");
        caso("talla y código del mismo producto", true, "codigo;variante;precio\nA1;A1-S-R;100\n",
             {}, "0/0/0/1");
        caso("producto sin tallas", true, "codigo;precio\nC3;35\nE5;20\n", {}, "1/1/0/0");
        caso("talla de otro producto", true, "codigo;variante;precio\nC3;A1-S-R;5\n",
             {"2:la variante «A1-S-R» no es del producto «C3»"}, "0/0/0/0");
        caso("talla desconocida", true, "variante;precio\nZZ;5\n", {"2:variante «ZZ» desconocida"},
             "0/0/0/0");
        caso("el producto y una de sus tallas con otro precio", true,
             "codigo;variante;precio\nA1;;120\n;A1-S-R;100\n",
             {"2:el mismo producto tiene otro precio en la línea 3",
              "3:el mismo producto tiene otro precio en la línea 2"},
             "0/0/0/0");
        caso("el producto y una de sus tallas con el mismo", true,
             "codigo;variante;precio\nA1;;120\n;A1-S-R;120\n", {}, "0/2/0/0");
    }
    void lineas() {
        const auto [tallaColor, fichero, rechazos, cuentas] =
            Pruebas::Fila<bool, QByteArray, QStringList, QString>();
        TiendaIntercambio t(tallaColor);
        const QStringList antes = t.Precios();
        const PlanImportacion plan =
            PlanearImportacion(t.contexto, 1, fichero, ModoImportacion::AnadirYActualizar);
        QCOMPARE(plan.error, QString());
        QCOMPARE(Rechazos(plan), rechazos);
        QCOMPARE(Cuentas(plan), cuentas);
        QCOMPARE(t.Precios(), antes); // a dry run writes nothing
    }

    void ficheros_malos_data() {
        const auto caso = Pruebas::Tabla<QByteArray, QString>();
        caso("vacío", "", "vacío");
        caso("solo la cabecera", "codigo;precio\r\n", "solo tiene la línea de cabecera");
        caso("sin precio", "codigo;nombre\nA1;x\n", "codigo o variante) y precio");
        caso("sin código", "nombre;precio\nx;1\n", "codigo o variante) y precio");
        caso("un zip", QByteArray("PK\x03\x04\x14\0\0\0\x08\0", 10), "no es de texto");
    }
    void ficheros_malos() {
        const auto [fichero, error] = Pruebas::Fila<QByteArray, QString>();
        TiendaIntercambio t(false);
        const QStringList antes = t.Precios();
        const ResultadoImportacion r =
            Importar(t.contexto, 1, fichero, ModoImportacion::AnadirYActualizar, true, "x");
        QCOMPARE(r.estado, ResultadoImportacion::FicheroMalo);
        QVERIFY2(r.mensaje.contains(error), qPrintable(r.mensaje));
        QCOMPARE(t.Precios(), antes);
    }

    void todo_o_nada_data() {
        // only the valid lines, the state, the list afterwards
        const auto caso = Pruebas::Tabla<bool, int, QStringList>();
        caso("con rechazos no se escribe nada", false, ResultadoImportacion::Rechazada,
             {"1/=90,00", "2/=45,00", "4/=9,00"});
        caso("o solo las válidas", true, ResultadoImportacion::Importada,
             {"1/=91,50", "2/=45,00", "3/=12,50", "4/=9,00"});
    }
    void todo_o_nada() {
        const auto [soloValidas, estado, despues] = Pruebas::Fila<bool, int, QStringList>();
        TiendaIntercambio t(false);
        const ResultadoImportacion r =
            Importar(t.contexto, 1, "codigo;precio\nA1;91,5\nZZ;1\nC3;12.5\nB2;-1\n",
                     ModoImportacion::AnadirYActualizar, soloValidas, "Importación de p.csv");
        QCOMPARE(int(r.estado), estado);
        QCOMPARE(Rechazos(r.plan).size(), 2);
        QCOMPARE(t.Precios(), despues);
    }

    void sustituir_data() {
        // size-and-colour shop, file, counts, the list afterwards
        const auto caso = Pruebas::Tabla<bool, QByteArray, QString, QStringList>();
        caso("quita lo que el fichero no nombra, no lo de un borrado", false,
             "codigo;precio\nA1;90\n", "0/0/1/1", {"1/=90,00", "4/=9,00"});
        caso("la línea rechazada guarda su producto", false, "codigo;precio\nA1;90\nB2;doce\n",
             "0/0/0/1", {"1/=90,00", "2/=45,00", "4/=9,00"});
        caso("tallas: el producto nombra todas las suyas", true, "codigo;precio\nA1;100\n",
             "0/0/1/2", {"1/01=100,00", "1/02=100,00"});
        caso("tallas: una talla sola", true, "variante;precio\nA1-S-R;100\nxx;1\n", "0/0/2/1",
             {"1/01=100,00"});
    }
    void sustituir() {
        const auto [tallaColor, fichero, cuentas, despues] =
            Pruebas::Fila<bool, QByteArray, QString, QStringList>();
        TiendaIntercambio t(tallaColor);
        const ResultadoImportacion r =
            Importar(t.contexto, 1, fichero, ModoImportacion::Sustituir, true, "sustituir");
        QCOMPARE(r.estado, ResultadoImportacion::Importada);
        QCOMPARE(Cuentas(r.plan), cuentas);
        QCOMPARE(t.Precios(), despues);
    }

    void una_operacion_que_se_deshace() {
        TiendaIntercambio t(true);
        const QStringList antes = t.Precios();
        const ResultadoImportacion r =
            Importar(t.contexto, 1, "codigo;variante;precio\nA1;;120\nC3;;35\nB2;;7\n",
                     ModoImportacion::AnadirYActualizar, false, "Importación de otoño.csv");
        QCOMPARE(r.estado, ResultadoImportacion::Importada);
        QCOMPARE(Cuentas(r.plan), QStringLiteral("1/3/0/0"));
        QCOMPARE(t.Precios(),
                 QStringList({"1/01=120,00", "1/02=120,00", "2/01=7,00", "3/-1=35,00"}));
        const QList<OperacionHistorial> ops = OperacionesDeLista(t.contexto, 1);
        QCOMPARE(ops.size(), 1);
        QCOMPARE(ops[0].numero, r.operacion);
        QCOMPARE(ops[0].tipo, CodigoTipo(TipoOperacion::Importacion));
        QCOMPARE(ops[0].filas, 4);
        QCOMPARE(ops[0].descripcion, QStringLiteral("Importación de otoño.csv"));
        const ResultadoDeshacer d = DeshacerOperacion(t.contexto, 1, r.operacion);
        QCOMPARE(d.estado, ResultadoDeshacer::Deshecha);
        QCOMPARE(t.Precios(), antes);
    }

    void entre_la_prueba_y_la_importacion_data() {
        // what the operator, or another terminal (its own connection), does after the dry run
        // of "A1;95, C3;12,5" (add and update); whether the dry run still holds; the list after
        // the import, which is always what the database then calls for
        const auto caso = Pruebas::Tabla<QString, bool, int, bool, QStringList>();
        const QStringList nada = {"1/=95,00", "2/=45,00", "3/=12,50", "4/=9,00"};
        const auto anadir = int(ModoImportacion::AnadirYActualizar);
        caso("nada", "", false, anadir, true, nada);
        caso("el precio que cambia, ya puesto",
             "update detalle_precio set precio = 95 where identificador = 1 and producto = 1",
             false, anadir, false, nada);
        caso("otro puesto pone el precio que cambia",
             "update detalle_precio set precio = 95 where identificador = 1 and producto = 1", true,
             anadir, false, nada);
        caso("una fila añadida a la lista", "insert into detalle_precio values (1, 5, 7, null)",
             false, anadir, false, {"1/=95,00", "2/=45,00", "3/=12,50", "4/=9,00", "5/=7,00"});
        caso("el producto borrado", "update productos set borrar = 1 where codigo = 3", false,
             anadir, false, {"1/=95,00", "2/=45,00", "4/=9,00"});
        caso("otro puesto borra el producto", "update productos set borrar = 1 where codigo = 3",
             true, anadir, false, {"1/=95,00", "2/=45,00", "4/=9,00"});
        caso("su código cambiado", "update productos set codigocliente = 'C9' where codigo = 3",
             false, anadir, false, {"1/=95,00", "2/=45,00", "4/=9,00"});
        caso("un código extra nuevo", "insert into productos_codigosextra values (5, 'E-5')", false,
             anadir, false, nada);
        caso("otro modo", "", false, int(ModoImportacion::Sustituir), false,
             {"1/=95,00", "3/=12,50", "4/=9,00"});
    }
    void entre_la_prueba_y_la_importacion() {
        const auto [sentencia, otroPuesto, modo, vigente, despues] =
            Pruebas::Fila<QString, bool, int, bool, QStringList>();
        TiendaIntercambio t(false);
        const QByteArray fichero = "codigo;precio\nA1;95\nC3;12,5\n";
        const PlanImportacion plan =
            PlanearImportacion(t.contexto, 1, fichero, ModoImportacion::AnadirYActualizar);
        if (otroPuesto) {
            ADODB::Connection otro;
            otro.Open(t.db.Cadena());
            QVERIFY(QSqlQuery(otro.Base()).exec(sentencia));
        } else if (!sentencia.isEmpty()) {
            t.db.Ejecutar(sentencia);
        }
        const QStringList antes = t.Precios();
        const auto enModo = ModoImportacion(modo);
        QCOMPARE(PlanVigente(t.contexto, 1, fichero, enModo, plan), vigente);
        QVERIFY(!PlanVigente(t.contexto, 1, fichero + "E5;3\n", enModo, plan));
        const ResultadoImportacion r = Importar(t.contexto, 1, fichero, enModo, true, "x", &plan);
        QCOMPARE(t.Precios(), despues);
        // The history holds exactly what was written: undone, the list is as before the import.
        QCOMPARE(DeshacerOperacion(t.contexto, 1, r.operacion).estado, ResultadoDeshacer::Deshecha);
        QCOMPARE(t.Precios(), antes);
    }

    void historial_sin_variantes_nulas() {
        // A plain product's row is named in the history with an empty variant, as every other
        // operation names it: a Null would match no later change of the row.
        TiendaIntercambio t(false);
        const ResultadoImportacion r = Importar(t.contexto, 1, "codigo;precio\nA1;95\nC3;12,5\n",
                                                ModoImportacion::AnadirYActualizar, false, "x");
        QCOMPARE(Cuentas(r.plan), QStringLiteral("1/1/0/0"));
        QCOMPARE(
            t.db.Valor("select count(*) from historial_precio where operacion = ?", {r.operacion})
                .toInt(),
            2);
        QCOMPARE(t.db.Valor("select count(*) from historial_precio where variante is null").toInt(),
                 0);
        QCOMPARE(t.db.Valor("select count(*) from detalle_precio where codproductotextil is not "
                            "null")
                     .toInt(),
                 0);
    }

    void sin_cambios_no_hay_operacion() {
        TiendaIntercambio t(false);
        const ResultadoImportacion r = Importar(t.contexto, 1, "codigo;precio\nA1;90\n",
                                                ModoImportacion::AnadirYActualizar, false, "x");
        QCOMPARE(r.estado, ResultadoImportacion::Importada);
        QCOMPARE(r.operacion, 0);
        QVERIFY(OperacionesDeLista(t.contexto, 1).isEmpty());
    }

    void lista_borrada() {
        TiendaIntercambio t(false);
        t.db.Ejecutar("delete from cabecera_precio where identificador = 1");
        const ResultadoImportacion r = Importar(t.contexto, 1, "codigo;precio\nC3;5\n",
                                                ModoImportacion::AnadirYActualizar, false, "x");
        QCOMPARE(r.estado, ResultadoImportacion::ListaBorrada);
        QCOMPARE(t.Precios(), QStringList({"1/=90,00", "2/=45,00", "4/=9,00"}));
    }
};

TARIFAS_PRUEBAS(TstImportacion)
#include "tst_importacion.moc"
