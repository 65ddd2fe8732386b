// The suite's schema: creating what a database lacks, and finding tables and columns.
#include "apoyo/ejecucion.h"
#include "apoyo/errores.h"
#include "apoyo/basedatosprueba.h"
#include "platform/datos/conexion.h"
#include "platform/datos/errorbd.h"
#include "suite/datos/esquema.h"

#include <QSqlQuery>
#include <QSqlRecord>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>
#include <functional>
#include <memory>

namespace {

/// The declared type of every column of a table, "name type, name type", from SQLite itself
/// (which reports the standard type names in capitals).
QString Columnas(ADODB::Connection &c, const QString &tabla) {
    QSqlQuery q(c.Base());
    q.exec(QStringLiteral("select name, type, pk from pragma_table_info('%1') order by cid")
               .arg(tabla));
    QStringList columnas;
    while (q.next())
        columnas << q.value(0).toString() + QLatin1Char(' ') + q.value(1).toString().toLower() +
                        (q.value(2).toInt() ? QStringLiteral(" key") : QString());
    return columnas.join(QStringLiteral(", "));
}

QStringList Tablas(ADODB::Connection &c) {
    QStringList tablas = c.Base().tables(QSql::Tables);
    for (QString &t : tablas)
        t = t.toLower();
    tablas.sort();
    return tablas;
}

} // namespace

class TstEsquema : public QObject {
    Q_OBJECT
    std::unique_ptr<QTemporaryDir> dir;
    std::unique_ptr<ADODB::Connection> conexion;

    void Ejecutar(const QString &sql) {
        QSqlQuery q(conexion->Base());
        QVERIFY2(q.exec(sql), qPrintable(sql));
    }

  private slots:
    void initTestCase() { QStandardPaths::setTestModeEnabled(true); }
    void init() {
        dir = std::make_unique<QTemporaryDir>();
        QVERIFY(dir->isValid());
        conexion = std::make_unique<ADODB::Connection>();
        conexion->Open(QStringLiteral("sqlite:") + dir->filePath(QStringLiteral("esquema.sqlite")));
    }
    void cleanup() {
        conexion.reset();
        dir.reset();
    }

    void tablasCreadas_data() {
        QTest::addColumn<QString>("tabla");
        QTest::addColumn<QString>("columnas");
        QTest::newRow("cabecera_precio")
            << "cabecera_precio"
            << "identificador integer key, descripcion text, fechaalta date, "
               "preciovalidodesde date, preciovalidohasta date";
        QTest::newRow("detalle_precio")
            << "detalle_precio"
            << "identificador integer, producto integer, precio numeric, codproductotextil text";
        QTest::newRow("relaciones_fijas") << "relaciones_fijas"
                                          << "indice text, daton integer, dato1 text";
        QTest::newRow("productos")
            << "productos"
            << "codigo integer key, codigocliente text, nombre text, precio numeric, "
               "seccion text, borrar smallint";
        QTest::newRow("productostextil")
            << "productostextil"
            << "codigopadre integer, codigohijo text, talla integer, color integer, "
               "codcliente text, precio numeric";
        QTest::newRow("tallas") << "tallas"
                                << "codigo integer key, descripcioncorta text";
        QTest::newRow("colorestextil") << "colorestextil"
                                       << "codigo integer key, nombre text";
        QTest::newRow("productos_codigosextra") << "productos_codigosextra"
                                                << "codigo integer, codigo_extra text";
        QTest::newRow("opciones")
            << "opciones"
            << "numdecimales smallint, multitienda text, nombretienda text, tiponegocio text, "
               "estiloaspecto smallint, indicadoropciones smallint, anchopantalla real, "
               "altopantalla real, idioma text";
        QTest::newRow("opciones_terminal") << "opciones_terminal"
                                           << "identificador text, empleado integer";
        QTest::newRow("configuracionregional")
            << "configuracionregional"
            << "segundoimpuesto boolean, nombreimpuesto1 text, bandera text, nombre text";
        QTest::newRow("empleados") << "empleados"
                                   << "codigo integer key, nombre text, apellidos text";
        QTest::newRow("traducciones") << "traducciones"
                                      << "idioma text, formulario text, control text, texto text";
    }
    void tablasCreadas() {
        SOLO_SQLITE("Reads SQLite's own account of a file's schema");
        QFETCH(QString, tabla);
        QFETCH(QString, columnas);
        QVERIFY(CrearTablasQueFaltan(*conexion, TablasSuite()));
        QCOMPARE(Columnas(*conexion, tabla), columnas);
        QCOMPARE(Tablas(*conexion).size(), qsizetype(TablasSuite().size()));
    }

    void indices_data() {
        QTest::addColumn<QString>("tabla");
        QTest::addColumn<QString>("columnas");
        QTest::newRow("prices by list and product") << "detalle_precio"
                                                    << "identificador,producto";
        QTest::newRow("variants by product") << "productostextil"
                                             << "codigopadre";
        QTest::newRow("catalogue by name") << "productos"
                                           << "nombre";
    }
    void indices() {
        SOLO_SQLITE("Reads SQLite's own account of a file's schema");
        QFETCH(QString, tabla);
        QFETCH(QString, columnas);
        CrearTablasQueFaltan(*conexion, TablasSuite());
        QSqlQuery q(conexion->Base());
        QVERIFY(q.exec(
            QStringLiteral(
                "select il.name, (select group_concat(name, ',') from pragma_index_info(il.name))"
                " from pragma_index_list('%1') il where il.origin = 'c'")
                .arg(tabla)));
        QStringList encontrados;
        while (q.next())
            encontrados << q.value(1).toString();
        QVERIFY2(encontrados.contains(columnas), qPrintable(encontrados.join(QLatin1Char(' '))));
    }

    void tablaDelTerminal() {
        SOLO_SQLITE("Reads SQLite's own account of a file's schema");
        QVERIFY(CrearTablasQueFaltan(*conexion, TablasTerminal()));
        QCOMPARE(Tablas(*conexion), QStringList{QStringLiteral("listadostemporal")});
        QCOMPARE(Columnas(*conexion, QStringLiteral("listadostemporal")),
                 QStringLiteral("list1 text, list2 text"));
    }

    void tablasExistentesSeRespetan_data() {
        QTest::addColumn<QString>("existente");
        QTest::newRow("same case") << "productos";
        QTest::newRow("other case") << "Productos";
        QTest::newRow("capitals") << "CABECERA_PRECIO";
    }
    void tablasExistentesSeRespetan() {
        SOLO_SQLITE("Reads SQLite's own account of a file's schema");
        QFETCH(QString, existente);
        Ejecutar(QStringLiteral("create table %1 (codigo integer, propia text)").arg(existente));
        Ejecutar(QStringLiteral("insert into %1 values (1, 'dato')").arg(existente));
        QVERIFY(!CrearTablasQueFaltan(*conexion, TablasSuite())); // not all: one was there
        QCOMPARE(Tablas(*conexion).size(), qsizetype(TablasSuite().size()));
        QCOMPARE(Columnas(*conexion, existente), QStringLiteral("codigo integer, propia text"));
        QSqlQuery q(conexion->Base());
        QVERIFY(q.exec(QStringLiteral("select propia from %1").arg(existente)) && q.next());
        QCOMPARE(q.value(0).toString(), QStringLiteral("dato"));
        // A second pass finds nothing to do.
        QVERIFY(!CrearTablasQueFaltan(*conexion, TablasSuite()));
        QCOMPARE(Tablas(*conexion).size(), qsizetype(TablasSuite().size()));
    }

    void todoONada() {
        SOLO_SQLITE("Reads SQLite's own account of a file's schema");
        // A view stands where the last table should go: its creation fails, and the tables
        // made before it are undone, so the database is left as it was found.
        Ejecutar(QStringLiteral("create view traducciones as select 1 as idioma"));
        const QString error = ErrorDe([&] { CrearTablasQueFaltan(*conexion, TablasSuite()); });
        QVERIFY2(error.contains(QStringLiteral("traducciones")), qPrintable(error));
        QVERIFY2(error.contains(QStringLiteral("already exists")), qPrintable(error));
        QCOMPARE(Tablas(*conexion), QStringList());
    }

    void conBaseDePrueba() {
        // The tests' own fresh database has every table, empty.
        BaseDatosPrueba bd;
        QCOMPARE(Tablas(bd.Conexion()).size(), qsizetype(TablasSuite().size()));
        QCOMPARE(bd.Valor(QStringLiteral("select count(*) from productos")).toInt(), 0);
    }

    void buscar_data() {
        QTest::addColumn<QString>("tabla");
        QTest::addColumn<QString>("columna");
        QTest::addColumn<QString>("tablaHallada");
        QTest::addColumn<QString>("columnaHallada");
        QTest::addColumn<int>("tipo");
        using T = TipoColumna;
        QTest::newRow("exact") << "detalle_precio"
                               << "precio"
                               << "detalle_precio"
                               << "precio" << int(T::Decimal);
        QTest::newRow("mixed case column") << "detalle_precio"
                                           << "CodProductoTextil"
                                           << "detalle_precio"
                                           << "codproductotextil" << int(T::Texto);
        QTest::newRow("capitals") << "PRODUCTOS"
                                  << "BORRAR"
                                  << "productos"
                                  << "borrar" << int(T::EnteroCorto);
        QTest::newRow("datoN") << "relaciones_fijas"
                               << "datoN"
                               << "relaciones_fijas"
                               << "daton" << int(T::Entero);
        QTest::newRow("configuracionRegional") << "configuracionRegional"
                                               << "segundoImpuesto"
                                               << "configuracionregional"
                                               << "segundoimpuesto" << int(T::Booleano);
        QTest::newRow("Productos_CodigosExtra") << "Productos_CodigosExtra"
                                                << "Codigo_Extra"
                                                << "productos_codigosextra"
                                                << "codigo_extra" << int(T::Texto);
        QTest::newRow("a date") << "cabecera_precio"
                                << "fechaAlta"
                                << "cabecera_precio"
                                << "fechaalta" << int(T::Fecha);
        QTest::newRow("a real") << "opciones"
                                << "AnchoPantalla"
                                << "opciones"
                                << "anchopantalla" << int(T::Real);
        QTest::newRow("the terminal's table") << "ListadosTemporal"
                                              << "LIST2"
                                              << "listadostemporal"
                                              << "list2" << int(T::Texto);
        QTest::newRow("unknown column") << "productos"
                                        << "precioventa"
                                        << "productos"
                                        << "" << -1;
        QTest::newRow("column of another table") << "cabecera_precio"
                                                 << "producto"
                                                 << "cabecera_precio"
                                                 << "" << -1;
        QTest::newRow("unknown table") << "precios"
                                       << "precio"
                                       << ""
                                       << "" << -1;
        QTest::newRow("a prefix is no table") << "producto"
                                              << "codigo"
                                              << ""
                                              << "" << -1;
    }
    void buscar() {
        QFETCH(QString, tabla);
        QFETCH(QString, columna);
        QFETCH(QString, tablaHallada);
        QFETCH(QString, columnaHallada);
        QFETCH(int, tipo);
        const TablaEsquema *t = BuscarTabla(tabla);
        QCOMPARE(t ? QString::fromLatin1(t->nombre) : QString(), tablaHallada);
        if (!t)
            return;
        const ColumnaEsquema *c = BuscarColumna(*t, columna);
        QCOMPARE(c ? QString::fromLatin1(c->nombre) : QString(), columnaHallada);
        QCOMPARE(c ? int(c->tipo) : -1, tipo);
    }
};

TARIFAS_PRUEBAS_SIN_VENTANAS(TstEsquema)
#include "tst_esquema.moc"
