// The suite's grid service: reading formats, filling grids from a query.
#include "apoyo/ejecucion.h"
#include "apoyo/basedatosprueba.h"
#include "platform/datos/cadenaconexion.h"
#include "platform/datos/errorbd.h"
#include "platform/ui/grid.h"
#include "suite/datos/esquema.h"
#include "suite/ui/svcgrid.h"

#include <QSqlQuery>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>

using Alineaciones = QList<AlineacionColumna>;
Q_DECLARE_METATYPE(AlineacionColumna)

class TstSvcGrid : public QObject {
    Q_OBJECT
    std::unique_ptr<BaseDatosPrueba> db;
    std::unique_ptr<Grid> grid;

    void insertar(const QString &sql) { db->Ejecutar(sql); }

private slots:
    void initTestCase() { QStandardPaths::setTestModeEnabled(true); }
    void init() {
        db = std::make_unique<BaseDatosPrueba>();
        grid = std::make_unique<Grid>(QStringLiteral("grid"), nullptr, nullptr, DisenoGrid{.rows = 2, .cols = 4});
    }
    void cleanup() {
        grid.reset();
        db.reset();
        QLocale::setDefault(QLocale::c());
    }

    void formatos_data() {
        QTest::addColumn<QString>("idioma");
        QTest::addColumn<QString>("titulos");
        QTest::addColumn<QString>("formato");
        QTest::addColumn<QList<double>>("anchos");
        QTest::addColumn<Alineaciones>("alineaciones");
        using A = AlineacionColumna;
        QTest::newRow("precios a escala 1")
            << "es_ES" << "Nombre;Desde;Hasta;Cod" << "5000/Izquierda;1500/centrado;1500/centrado;0/derecha"
            << QList<double>{5000, 1500, 1500, 0} << Alineaciones{A::Izquierda, A::Centrado, A::Centrado, A::Derecha};
        QTest::newRow("fraccion con coma")
            << "es_ES" << "Codigo;Producto" << "1237,5/centrado;4125/Izquierda"
            << QList<double>{1237.5, 4125} << Alineaciones{A::Centrado, A::Izquierda};
        QTest::newRow("fraccion con punto")
            << "en_US" << "Codigo;Producto" << "937.5/centrado;3125/Izquierda"
            << QList<double>{937.5, 3125} << Alineaciones{A::Centrado, A::Izquierda};
        QTest::newRow("ocho columnas")
            << "es_ES" << "Codigo;Producto;codigo;codigo_hijo;Talla;Color;precio;seccion"
            << "1000/centrado;2500/Izquierda;0/derecha;0/derecha;700/centrado;1500/centrado;1500/centrado;0/derecha"
            << QList<double>{1000, 2500, 0, 0, 700, 1500, 1500, 0}
            << Alineaciones{A::Centrado, A::Izquierda, A::Derecha, A::Derecha, A::Centrado, A::Centrado, A::Centrado, A::Derecha};
    }
    void formatos() {
        QFETCH(QString, idioma);
        QFETCH(QString, titulos);
        QFETCH(QString, formato);
        QFETCH(QList<double>, anchos);
        QFETCH(Alineaciones, alineaciones);
        QLocale::setDefault(QLocale(idioma));
        grid->setTextMatrix(1, 0, QStringLiteral("dato"));
        SvcGrid().FormatearGrid(*grid, titulos, formato, 0);
        const QStringList t = titulos.split(';');
        QCOMPARE(grid->Cols(), t.size());
        QCOMPARE(grid->Rows(), 2); // the data rows are not the format's business
        QCOMPARE(grid->TextMatrix(1, 0), QStringLiteral("dato"));
        for (int c = 0; c < t.size(); ++c) {
            QCOMPARE(grid->TextMatrix(0, c), t[c]);
            QCOMPARE(grid->ColWidth(c), anchos[c]);
            QCOMPARE(grid->ColAlignment(c), alineaciones[c]);
        }
    }

    void formatosErroneos_data() {
        QTest::addColumn<QString>("titulos");
        QTest::addColumn<QString>("formato");
        QTest::newRow("falta una entrada") << "A;B;C" << "10/centrado;10/centrado";
        QTest::newRow("sobra el separador final") << "A;B" << "10/centrado;10/centrado;";
        QTest::newRow("palabra en otra caja") << "A;B" << "10/Centrado;10/centrado";
        QTest::newRow("ancho con letras") << "A;B" << "10x/centrado;10/centrado";
        QTest::newRow("sin barra") << "A;B" << "10centrado;10/centrado";
        QTest::newRow("ancho negativo") << "A;B" << "-10/centrado;10/centrado";
    }
    void formatosErroneos() {
        QFETCH(QString, titulos);
        QFETCH(QString, formato);
        QLocale::setDefault(QLocale(QStringLiteral("es_ES")));
        SvcGrid().FormatearGrid(*grid, QStringLiteral("X;Y;Z;W"), QStringLiteral("1/centrado;2/centrado;3/centrado;4/centrado"), 0);
        QVERIFY_THROWS_EXCEPTION(std::invalid_argument, SvcGrid().FormatearGrid(*grid, titulos, formato, 0));
        // A refused format leaves the grid as it was.
        QCOMPARE(grid->Cols(), 4);
        QCOMPARE(grid->TextMatrix(0, 2), QStringLiteral("Z"));
        QCOMPARE(grid->ColWidth(3), 4.0);
    }

    void carga() {
        QLocale::setDefault(QLocale(QStringLiteral("es_ES")));
        SvcGrid().FormatearGrid(*grid, QStringLiteral("Nombre;Desde;Hasta;Cod"),
                                QStringLiteral("5000/Izquierda;1500/centrado;1500/centrado;0/derecha"), 0);
        insertar(QStringLiteral("insert into cabecera_precio values (3, 'Año nuevo', '2026-12-01', '1601-01-01', '9999-12-31')"));
        insertar(QStringLiteral("insert into cabecera_precio values (41, null, null, '2026-02-28', '2026-02-28')"));
        const QString consulta = QStringLiteral("Select descripcion,preciovalidodesde,preciovalidohasta,identificador from cabecera_precio");
        // A fill after a larger one leaves none of its rows behind.
        grid->setRows(10);
        grid->setTextMatrix(9, 0, QStringLiteral("resto"));
        SvcGrid().CargarGrid(db->Conexion(), consulta, *grid, 0, 0);
        QCOMPARE(grid->Rows(), 3);
        QCOMPARE(grid->TextMatrix(0, 0), QStringLiteral("Nombre"));
        QCOMPARE(grid->TextMatrix(1, 0), QStringLiteral("Año nuevo"));
        QCOMPARE(grid->TextMatrix(1, 1), QStringLiteral("1/1/1601"));
        QCOMPARE(grid->TextMatrix(1, 2), QStringLiteral("31/12/9999"));
        QCOMPARE(grid->TextMatrix(1, 3), QStringLiteral("3"));
        QCOMPARE(grid->TextMatrix(2, 0), QString());
        QCOMPARE(grid->TextMatrix(2, 3), QStringLiteral("41"));
        QCOMPARE(grid->ColWidth(0), 5000.0);

        insertar(QStringLiteral("delete from cabecera_precio"));
        SvcGrid().CargarGrid(db->Conexion(), consulta, *grid, 0, 0);
        QCOMPARE(grid->Rows(), 1);
        QCOMPARE(grid->TextMatrix(0, 3), QStringLiteral("Cod"));
    }

    void consultaErronea() {
        QVERIFY_THROWS_EXCEPTION(ErrorBD, SvcGrid().CargarGrid(db->Conexion(), QStringLiteral("Select x from nada"), *grid, 0, 0));
    }
};

TARIFAS_PRUEBAS(TstSvcGrid)
#include "tst_svcgrid.moc"
