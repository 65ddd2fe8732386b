// What differs between the databases: the statements' rewording, and the rows that the
// reworded statements give, which must be the same on every database the suite runs on.
#include "apoyo/basedatosprueba.h"
#include "apoyo/ejecucion.h"
#include "platform/datos/recordset.h"

#include <QSqlDatabase>
#include <memory>

using namespace ADODB;

namespace {

/// The dialect of a driver, from a database that is never opened.
std::unique_ptr<Dialecto> DialectoDe(const char *driver) {
    const QString nombre = QStringLiteral("dialecto_") + QLatin1String(driver);
    std::unique_ptr<Dialecto> d;
    {
        const QSqlDatabase base = QSqlDatabase::addDatabase(QLatin1String(driver), nombre);
        d = Dialecto::Para(base);
    }
    QSqlDatabase::removeDatabase(nombre);
    return d;
}

} // namespace

class TstDialecto : public QObject {
    Q_OBJECT
    std::unique_ptr<BaseDatosPrueba> db;

  private slots:
    void initTestCase() {
        db = std::make_unique<BaseDatosPrueba>();
        const QString producto = QStringLiteral(
            "insert into productos (codigo, codigocliente, nombre, precio, seccion, borrar) "
            "values (?, ?, ?, ?, 'S', ?)");
        // A price goes in as the exact text a record writer binds.
        db->Ejecutar(producto, {1, "C1", "Camisa", "12.50", 0});
        db->Ejecutar(producto, {2, "c\\2", QVariant(), "7", 0});
        db->Ejecutar(producto, {3, QVariant(), "abrigo", "0.10", 1});
        db->Ejecutar(producto, {5, "C5", "CAMISETA", "1234567890123.45", 0});
        db->Ejecutar(QStringLiteral("insert into productos_codigosextra values (?, ?)"),
                     {3, "EAN3"});
        db->Ejecutar(QStringLiteral("insert into configuracionregional (segundoimpuesto, nombre) "
                                    "values (?, ?)"),
                     {true, "España"});
        db->Ejecutar(QStringLiteral("insert into cabecera_precio values (?, ?, ?, ?, ?)"),
                     {1, "General", "2026-01-31", "2026-01-31", "2026-12-31"});
    }
    void cleanupTestCase() { db.reset(); }

    void adaptar_data() {
        // Without a PostgreSQL text, the same as SQLite's.
        const auto fila = Pruebas::Tabla<QString, QString, QString>();
        const auto caso = [&](const char *n, const char *s, const char *l, const char *p = "") {
            fila(n, QString::fromUtf8(s), QString::fromUtf8(l), QString::fromUtf8(*p ? p : l));
        };
        caso("literals and comments are left alone",
             "select 'a <> null like \"X\" order by' from t where x<>null -- c like d\n",
             "select 'a <> null like \"X\" order by' from t where x is not null -- c like d\n");
        caso("!= null as <> null", "select a from t where x != null and y!=null",
             "select a from t where x is not null and y is not null");
        caso("like with an expression",
             "select a from t where (b not like '%' || ? || '%') order by a",
             "select a from t where (b not like '%' || ? || '%') order by a",
             "select a from t where (b not ilike '%' || ? || '%' escape '') order by a "
             "nulls first");
        caso("an or ends the pattern", "select a from t where b like 'x%' or c = 1",
             "select a from t where b like 'x%' or c = 1",
             "select a from t where b ilike 'x%' escape '' or c = 1");
        caso("like with its own escape", "select a from t where b like 'x!%' escape '!'",
             "select a from t where b like 'x!%' escape '!'",
             "select a from t where b ilike 'x!%' escape '!'");
        caso("order by",
             "select a from (select a from t order by a desc) s order by f(a, b) asc, "
             "b nulls last, c limit 5",
             "select a from (select a from t order by a desc) s order by f(a, b) asc, "
             "b nulls last, c limit 5",
             "select a from (select a from t order by a desc nulls last) s order by "
             "f(a, b) asc nulls first, b nulls last, c nulls first limit 5");
    }
    void adaptar() {
        const auto [sentencia, sqlite, postgresql] = Pruebas::Fila<QString, QString, QString>();
        QCOMPARE(DialectoDe("QSQLITE")->Adaptar(sentencia), sqlite);
        QCOMPARE(DialectoDe("QPSQL")->Adaptar(sentencia), postgresql);
    }

    /// Each statement's rows, as the program reads them: the named field's text of every
    /// row, "<nulo>" for Null, joined by ";".
    void mismasFilas_data() {
        const auto caso = Pruebas::Tabla<QString, QString, QString>();
        caso("a price as the shop writes it", "select precio from productos order by codigo",
             "precio", "12,5;7;0,1;1234567890123,45");
        caso("like ignores case",
             "select codigo from productos where nombre like 'cam%' order by codigo", "codigo",
             "1;5");
        caso("a backslash in a pattern is a character",
             "select codigo from productos where codigocliente like 'C\\2'", "codigo", "2");
        caso("equals tells case", "select codigo from productos where nombre = 'camisa'", "codigo",
             "");
        caso("different from null",
             "select codigo from productos where codigocliente <> null order by codigo", "codigo",
             "1;2;5");
        caso("null first in an ascending order", "select nombre from productos order by nombre asc",
             "nombre", "<nulo>;CAMISETA;Camisa;abrigo");
        caso("null last in a descending order", "select nombre from productos order by nombre desc",
             "nombre", "abrigo;Camisa;CAMISETA;<nulo>");
        caso("quoted names in any case",
             "select \"Nombre\" as \"nomCol\" from \"Productos\" where \"CODIGO\" = 1", "NOMCOL",
             "Camisa");
        caso("an alias in any case",
             "select tallas.DescripcionCorta as descTall, PRODUCTOS.nombre as nomCol from "
             "productos left join tallas on productos.codigo = tallas.codigo where "
             "productos.codigo = 1",
             "DESCTALL", "<nulo>");
        caso("the greatest of nothing is null", "select max(daton) as num from relaciones_fijas",
             "num", "<nulo>");
        caso("a Boolean", "Select segundoImpuesto,nombreimpuesto1 from configuracionRegional",
             "SegundoImpuesto", "Verdadero");
        caso("a date", "select preciovalidodesde from cabecera_precio", "preciovalidodesde",
             "31/1/2026");
        caso("the search by code",
             "SELECT distinct(Productos.Codigo) as codigoInt   FROM Productos LEFT JOIN "
             "Productos_CodigosExtra ON Productos.Codigo = Productos_CodigosExtra.Codigo   "
             "WHERE (((Productos_CodigosExtra.Codigo_Extra) like 'ean3')) or codigocliente = "
             "'ean3' and borrar = 0",
             "codigoint", "3");
    }
    void mismasFilas() {
        const auto [sentencia, campo, filas] = Pruebas::Fila<QString, QString, QString>();
        ADODB::Recordset rs;
        rs.Open(sentencia, db->Conexion());
        QStringList leidas;
        for (; !rs.Eof(); rs.MoveNext()) {
            const ADODB::Field f = rs.Fields(campo);
            leidas << (f.EsNulo() ? QStringLiteral("<nulo>") : f.Texto());
        }
        QCOMPARE(leidas.join(QLatin1Char(';')), filas);
    }
};

TARIFAS_PRUEBAS_SIN_VENTANAS(TstDialecto)
#include "tst_dialecto.moc"
