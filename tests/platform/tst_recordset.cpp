// Reading queries: the whole result at once, fields by name whatever their case, the
// database's Null, and the types each database gives a date, a price or a Boolean.
#include "apoyo/ejecucion.h"
#include "apoyo/errores.h"
#include "platform/datos/conexion.h"
#include "platform/datos/dialecto.h"
#include "platform/datos/errorbd.h"
#include "platform/datos/recordset.h"

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>
#include <functional>
#include <memory>

namespace {

} // namespace

class TstRecordset : public QObject {
    Q_OBJECT
    std::unique_ptr<QTemporaryDir> dir;
    std::unique_ptr<ADODB::Connection> conexion;

    void Ejecutar(const QString &sql, const QVariantList &valores = {}) {
        QSqlQuery q(conexion->Base());
        QVERIFY2(q.prepare(sql), qPrintable(q.lastError().text() + QStringLiteral(" in ") + sql));
        for (const QVariant &v : valores)
            q.addBindValue(v);
        QVERIFY2(q.exec(), qPrintable(q.lastError().text() + QStringLiteral(" in ") + sql));
    }

    /// A one-column table `t` of the declared type, holding one row with `crudo` as stored.
    void TablaDeUnValor(const QString &tipo, const QVariant &crudo) {
        Ejecutar(QStringLiteral("create table t (v %1)").arg(tipo));
        Ejecutar(QStringLiteral("insert into t (v) values (?)"), {crudo});
    }

  private slots:
    void initTestCase() { QStandardPaths::setTestModeEnabled(true); }
    void init() {
        dir = std::make_unique<QTemporaryDir>();
        QVERIFY(dir->isValid());
        conexion = std::make_unique<ADODB::Connection>();
        conexion->Open(QStringLiteral("sqlite:") + dir->filePath(QStringLiteral("prueba.sqlite")));
        Ejecutar(QStringLiteral(
            "create table tallas (codigo integer primary key, descripcioncorta text)"));
        Ejecutar(QStringLiteral(
            "create table productostextil (codigopadre integer, codigohijo text, talla integer,"
            " codcliente text, precio numeric)"));
        Ejecutar(QStringLiteral("insert into tallas values (1, 'XS'), (2, 'XL')"));
        Ejecutar(
            QStringLiteral("insert into productostextil values (7, '0201', 1, 'V7-0201', 9.95),"
                           " (7, '0202', 2, null, null)"));
    }
    void cleanup() {
        conexion.reset();
        dir.reset();
        QLocale::setDefault(QLocale::c());
    }

    // --- Fields by name -------------------------------------------------------------------

    void camposSinDistinguirMayusculas_data() {
        QTest::addColumn<QString>("nombre");
        QTest::addColumn<QString>("esperado");
        // The query names four aliases that differ only by case and by one letter.
        QTest::newRow("DESCTALL finds descTall") << "DESCTALL"
                                                 << "XS";
        QTest::newRow("desctalla finds descTalla") << "desctalla"
                                                   << "talla XS";
        QTest::newRow("NOMCOL finds nomCol") << "NOMCOL"
                                             << "0201";
        QTest::newRow("codclip finds codcliP") << "codclip"
                                               << "V7-0201";
        QTest::newRow("exact case") << "descTall"
                                    << "XS";
        QTest::newRow("plain column in capitals") << "CODIGOPADRE"
                                                  << "7";
    }
    void camposSinDistinguirMayusculas() {
        QFETCH(QString, nombre);
        QFETCH(QString, esperado);
        ADODB::Recordset rs;
        rs.Open(QStringLiteral("Select p.codigopadre, t.descripcioncorta as descTall, 'talla ' || "
                               "t.descripcioncorta"
                               " as descTalla, p.codigohijo as nomCol, p.codcliente as codcliP"
                               " from productostextil p inner join tallas t on p.talla = t.codigo"
                               " where p.codigohijo = '0201'"),
                *conexion);
        QCOMPARE(rs.RecordCount(), 1);
        QCOMPARE(rs.Fields(nombre).Texto(), esperado);
    }

    void campoDesconocido_data() {
        QTest::addColumn<QString>("nombre");
        QTest::newRow("no such column") << "precioventa";
        QTest::newRow("prefix of a column") << "descTal";
        QTest::newRow("column and more") << "descTallas";
        QTest::newRow("empty name") << "";
    }
    void campoDesconocido() {
        QFETCH(QString, nombre);
        ADODB::Recordset rs;
        rs.Open(QStringLiteral("select descripcioncorta as descTall from tallas"), *conexion);
        const QString error = ErrorDe([&] { rs.Fields(nombre); });
        QVERIFY2(!error.isNull(), "an unknown field must raise ErrorBD");
        QVERIFY2(error.contains(QStringLiteral("\"%1\"").arg(nombre)), qPrintable(error));
        QVERIFY2(error.contains(QStringLiteral("descTall")),
                 qPrintable(error)); // says what there is
    }

    void campoPorIndice_data() {
        QTest::addColumn<int>("indice");
        QTest::addColumn<bool>("existe");
        QTest::newRow("first") << 0 << true;
        QTest::newRow("last") << 1 << true;
        QTest::newRow("negative") << -1 << false;
        QTest::newRow("past the last") << 2 << false;
    }
    void campoPorIndice() {
        QFETCH(int, indice);
        QFETCH(bool, existe);
        ADODB::Recordset rs;
        rs.Open(QStringLiteral("select codigo, descripcioncorta from tallas order by codigo"),
                *conexion);
        QCOMPARE(rs.ColumnCount(), 2);
        const QString error = ErrorDe([&] { rs.Fields(indice); });
        QCOMPARE(error.isNull(), existe);
        if (existe)
            QCOMPARE(rs.Fields(indice).Texto(),
                     indice == 0 ? QStringLiteral("1") : QStringLiteral("XS"));
    }

    // --- Null ---------------------------------------------------------------------------

    void nulos_data() {
        QTest::addColumn<QString>("tipo");
        for (const char *tipo :
             {"integer", "smallint", "text", "date", "numeric", "real", "boolean", ""})
            QTest::newRow(*tipo ? tipo : "no declared type") << QString::fromLatin1(tipo);
    }
    void nulos() {
        QFETCH(QString, tipo);
        TablaDeUnValor(tipo, QVariant());
        ADODB::Recordset rs;
        rs.Open(QStringLiteral("select v from t"), *conexion);
        QCOMPARE(rs.RecordCount(), 1);
        const ADODB::Field campo = rs.Fields(QStringLiteral("V"));
        QVERIFY(campo.EsNulo());
        QVERIFY(campo.Value().isNull());
        QVERIFY(!campo.Value().isValid()); // one Null, whatever type the driver gave it
        QCOMPARE(campo.Texto(), QString());
        const QString error = ErrorDe([&] { campo.Entero(); });
        QVERIFY2(error.contains(QStringLiteral("nulo")), qPrintable(error));
    }

    void maximoDeTablaVacia() {
        // An empty price list register: max() gives one row, and it is Null, not 0.
        Ejecutar(
            QStringLiteral("create table cabecera_precio (identificador integer primary key)"));
        ADODB::Recordset rs;
        rs.Open(QStringLiteral("select max(identificador) as maximo from cabecera_precio"),
                *conexion, ADODB::adOpenStatic, ADODB::adLockOptimistic, ADODB::adCmdText);
        QCOMPARE(rs.RecordCount(), 1);
        QVERIFY(rs.Fields(QStringLiteral("MAXIMO")).EsNulo());
        QCOMPARE(rs.Fields(QStringLiteral("maximo")).Texto(), QString());
        Ejecutar(QStringLiteral("insert into cabecera_precio values (4), (9)"));
        rs.Open(QStringLiteral("select max(identificador) as maximo from cabecera_precio"),
                *conexion);
        QCOMPARE(rs.Fields(QStringLiteral("maximo")).Entero(), 9);
    }

    void textoVacioNoEsNulo() {
        TablaDeUnValor(QStringLiteral("text"), QStringLiteral(""));
        ADODB::Recordset rs;
        rs.Open(QStringLiteral("select v from t"), *conexion);
        QVERIFY(!rs.Fields(QStringLiteral("v")).EsNulo());
        QCOMPARE(rs.Fields(QStringLiteral("v")).Texto(), QString());
    }

    // --- Types by declared type (SQLite) ------------------------------------------------------

    void tiposDeclarados_data() {
        QTest::addColumn<QString>("tipo");
        QTest::addColumn<QVariant>("crudo");
        QTest::addColumn<QVariant>("esperado");
        QTest::addColumn<QString>("textoES");
        QTest::addColumn<QString>("textoUS");
        QTest::newRow("date as ISO text")
            << "date" << QVariant("2026-01-31") << QVariant(QDate(2026, 1, 31)) << "31/1/2026"
            << "1/31/2026";
        QTest::newRow("date in capitals")
            << "DATE" << QVariant("1601-01-01") << QVariant(QDate(1601, 1, 1)) << "1/1/1601"
            << "1/1/1601";
        QTest::newRow("date stored with a time") << "date" << QVariant("9999-12-31 00:00:00")
                                                 << QVariant(QDate(9999, 12, 31)) << "31/12/9999"
                                                 << "12/31/9999";
        QTest::newRow("date that isn't one stays text")
            << "date" << QVariant("mañana") << QVariant("mañana") << "mañana"
            << "mañana";
        QTest::newRow("numeric with decimals")
            << "numeric" << QVariant("12.5") << QVariant(12.5) << "12,5"
            << "12.5";
        QTest::newRow("numeric whole") << "numeric" << QVariant(3) << QVariant(3.0) << "3"
                                       << "3";
        QTest::newRow("numeric negative")
            << "numeric" << QVariant(-0.75) << QVariant(-0.75) << "-0,75"
            << "-0.75";
        QTest::newRow("decimal(10,2)")
            << "decimal(10,2)" << QVariant("19.95") << QVariant(19.95) << "19,95"
            << "19.95";
        QTest::newRow("numeric empty text stays empty")
            << "numeric" << QVariant("") << QVariant("") << ""
            << "";
        QTest::newRow("boolean 1") << "boolean" << QVariant(1) << QVariant(true) << "Verdadero"
                                   << "Verdadero";
        QTest::newRow("boolean 0") << "boolean" << QVariant(0) << QVariant(false) << "Falso"
                                   << "Falso";
        QTest::newRow("boolean stored as text")
            << "BOOLEAN" << QVariant("S") << QVariant(true) << "Verdadero"
            << "Verdadero";
        QTest::newRow("integer") << "integer" << QVariant(42) << QVariant(qlonglong(42)) << "42"
                                 << "42";
        QTest::newRow("smallint") << "smallint" << QVariant(-7) << QVariant(qlonglong(-7)) << "-7"
                                  << "-7";
        QTest::newRow("integer beyond 32 bits") << "integer" << QVariant(qlonglong(5000000000))
                                                << QVariant(qlonglong(5000000000)) << "5000000000"
                                                << "5000000000";
        QTest::newRow("real") << "real" << QVariant(1024.5) << QVariant(1024.5) << "1024,5"
                              << "1024.5";
        QTest::newRow("text with digits keeps its zeros")
            << "text" << QVariant("0201") << QVariant("0201") << "0201"
            << "0201";
        QTest::newRow("text with non-ASCII")
            << "text" << QVariant("Niño 5 €") << QVariant("Niño 5 €") << "Niño 5 €"
            << "Niño 5 €";
    }
    void tiposDeclarados() {
        QFETCH(QString, tipo);
        QFETCH(QVariant, crudo);
        QFETCH(QVariant, esperado);
        QFETCH(QString, textoES);
        QFETCH(QString, textoUS);
        TablaDeUnValor(tipo, crudo);
        ADODB::Recordset rs;
        rs.Open(QStringLiteral("select v as valor from t"), *conexion);
        const QVariant valor = rs.Fields(QStringLiteral("Valor")).Value();
        QCOMPARE(valor.metaType(), esperado.metaType());
        QCOMPARE(valor, esperado);
        QLocale::setDefault(QLocale(QLocale::Spanish, QLocale::Spain));
        QCOMPARE(rs.Fields(QStringLiteral("valor")).Texto(), textoES);
        QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
        QCOMPARE(rs.Fields(QStringLiteral("valor")).Texto(), textoUS);
    }

    // --- Whole numbers --------------------------------------------------------------------

    void entero_data() {
        QTest::addColumn<QString>("tipo");
        QTest::addColumn<QVariant>("crudo");
        QTest::addColumn<bool>("vale");
        QTest::addColumn<int>("esperado");
        QTest::addColumn<QString>("motivo");
        QTest::newRow("integer") << "integer" << QVariant(42) << true << 42 << "";
        QTest::newRow("lowest 32-bit")
            << "integer" << QVariant(qlonglong(-2147483648LL)) << true << int(-2147483648LL) << "";
        QTest::newRow("highest 32-bit")
            << "integer" << QVariant(qlonglong(2147483647)) << true << 2147483647 << "";
        QTest::newRow("beyond 32 bits")
            << "integer" << QVariant(qlonglong(2147483648LL)) << false << 0 << "32 bits";
        QTest::newRow("below 32 bits")
            << "integer" << QVariant(qlonglong(-2147483649LL)) << false << 0 << "32 bits";
        QTest::newRow("whole decimal") << "numeric" << QVariant(3.0) << true << 3 << "";
        QTest::newRow("decimal with a fraction")
            << "numeric" << QVariant(3.5) << false << 0 << "no es un número entero";
        QTest::newRow("digits in a text") << "text" << QVariant("0012") << true << 12 << "";
        QTest::newRow("letters in a text")
            << "text" << QVariant("12a") << false << 0 << "no es un número entero";
        QTest::newRow("huge digits in a text")
            << "text" << QVariant("99999999999999999999") << false << 0 << "32 bits";
        QTest::newRow("empty text")
            << "text" << QVariant("") << false << 0 << "no es un número entero";
        QTest::newRow("Boolean") << "boolean" << QVariant(1) << true << 1 << "";
    }
    void entero() {
        QFETCH(QString, tipo);
        QFETCH(QVariant, crudo);
        QFETCH(bool, vale);
        QFETCH(int, esperado);
        QFETCH(QString, motivo);
        TablaDeUnValor(tipo, crudo);
        ADODB::Recordset rs;
        rs.Open(QStringLiteral("select v from t"), *conexion);
        qint32 leido = 0;
        const QString error = ErrorDe([&] { leido = rs.Fields(QStringLiteral("v")).Entero(); });
        QCOMPARE(error.isNull(), vale);
        if (vale)
            QCOMPARE(leido, esperado);
        else
            QVERIFY2(error.contains(motivo) && error.contains(QStringLiteral("\"v\"")),
                     qPrintable(error));
    }

    // --- Row count and moving ----------------------------------------------------------------

    void cuentaDeFilas_data() {
        QTest::addColumn<int>("filas");
        QTest::newRow("none") << 0;
        QTest::newRow("one") << 1;
        QTest::newRow("three") << 3;
        QTest::newRow("a thousand") << 1000;
    }
    void cuentaDeFilas() {
        QFETCH(int, filas);
        Ejecutar(QStringLiteral("create table n (i integer, nombre text)"));
        QSqlDatabase base = conexion->Base();
        QVERIFY(base.transaction());
        for (int i = 1; i <= filas; ++i)
            Ejecutar(QStringLiteral("insert into n values (?, ?)"),
                     {i, QStringLiteral("fila %1").arg(i)});
        QVERIFY(base.commit());
        ADODB::Recordset rs;
        rs.Open(QStringLiteral("select i, nombre from n order by i"), *conexion);
        // Exact before the first row is read: the listings size their grids from it.
        QCOMPARE(rs.RecordCount(), filas);
        QCOMPARE(rs.Eof(), filas == 0);
        int leidas = 0;
        for (; !rs.Eof(); rs.MoveNext()) {
            ++leidas;
            QCOMPARE(rs.Fields(QStringLiteral("I")).Entero(), leidas);
            QCOMPARE(rs.Fields(QStringLiteral("nombre")).Texto(),
                     QStringLiteral("fila %1").arg(leidas));
        }
        QCOMPARE(leidas, filas);
        QCOMPARE(rs.RecordCount(), filas);
        QVERIFY(!ErrorDe([&] { rs.MoveNext(); }).isNull()); // past the end
        QVERIFY(
            !ErrorDe([&] { rs.Fields(QStringLiteral("i")).Value(); }).isNull()); // no current row
        if (filas > 0) {
            rs.MoveFirst();
            QCOMPARE(rs.Fields(QStringLiteral("i")).Entero(), 1);
        }
        rs.Close();
        QCOMPARE(rs.RecordCount(), 0);
        QVERIFY(!ErrorDe([&] { rs.Fields(QStringLiteral("i")); }).isNull()); // closed
    }

    void muchasFilas() {
        // A large result is read whole and right: 20,000 rows of 10 columns, summed.
        Ejecutar(QStringLiteral(
            "create table grande (a integer, b text, c numeric, d date, e real, f text,"
            " g integer, h boolean, i text, j numeric)"));
        QSqlDatabase base = conexion->Base();
        QVERIFY(base.transaction());
        QSqlQuery q(base);
        QVERIFY(q.prepare(QStringLiteral("insert into grande values (?,?,?,?,?,?,?,?,?,?)")));
        constexpr int filas = 20000;
        for (int i = 0; i < filas; ++i) {
            const QVariantList valores = {i,
                                          QStringLiteral("nombre %1").arg(i),
                                          QStringLiteral("%1.25").arg(i % 100),
                                          QDate(2026, 1, 1).addDays(i % 365),
                                          i * 0.5,
                                          QStringLiteral("x"),
                                          i * 2,
                                          i % 2,
                                          QStringLiteral("y"),
                                          QVariant()};
            for (int c = 0; c < valores.size(); ++c)
                q.bindValue(c, valores[c]);
            QVERIFY2(q.exec(), qPrintable(q.lastError().text()));
        }
        QVERIFY(base.commit());
        ADODB::Recordset rs;
        rs.Open(QStringLiteral("select * from grande order by a"), *conexion);
        QCOMPARE(rs.RecordCount(), filas);
        QCOMPARE(rs.ColumnCount(), 10);
        qlonglong sumaA = 0, sumaG = 0, verdaderos = 0, nulos = 0;
        double sumaC = 0;
        QDate ultima;
        for (; !rs.Eof(); rs.MoveNext()) {
            sumaA += rs.Fields(0).Entero();
            sumaC += rs.Fields(QStringLiteral("C")).Value().toDouble();
            sumaG += rs.Fields(QStringLiteral("g")).Entero();
            verdaderos += rs.Fields(QStringLiteral("h")).Value().toBool() ? 1 : 0;
            nulos += rs.Fields(QStringLiteral("J")).EsNulo() ? 1 : 0;
            ultima = rs.Fields(QStringLiteral("d")).Value().toDate();
        }
        double esperadoC = 0;
        for (int i = 0; i < filas; ++i)
            esperadoC += (i % 100) + 0.25;
        QCOMPARE(sumaA, qlonglong(filas) * (filas - 1) / 2);
        QCOMPARE(sumaG, qlonglong(filas) * (filas - 1));
        QCOMPARE(sumaC, esperadoC);
        QCOMPARE(verdaderos, qlonglong(filas / 2));
        QCOMPARE(nulos, qlonglong(filas));
        QCOMPARE(ultima, QDate(2026, 1, 1).addDays((filas - 1) % 365));
    }

    // --- Failures -------------------------------------------------------------------------

    void sentenciaFallida_data() {
        QTest::addColumn<QString>("sentencia");
        QTest::addColumn<QString>("textoSQLite");
        QTest::newRow("no such table") << "select * from tarifas_que_no_existen"
                                       << "no such table";
        QTest::newRow("no such column") << "select precioventa from tallas"
                                        << "no such column";
        QTest::newRow("syntax") << "selec codigo from tallas"
                                << "syntax error";
        QTest::newRow("an apostrophe left open")
            << "select * from tallas where descripcioncorta = 'O'Brien'"
            << "syntax error";
        QTest::newRow("two statements") << "select * from tallas; delete from tallas"
                                        << "multiple statements";
        QTest::newRow("a placeholder without its value")
            << "select * from tallas where codigo = ?" << "valores por enlazar";
        QTest::newRow("nothing to run") << " ; " << "vacía";
    }
    void sentenciaFallida() {
        QFETCH(QString, sentencia);
        QFETCH(QString, textoSQLite);
        ADODB::Recordset rs;
        const QString error = ErrorDe([&] { rs.Open(sentencia, *conexion); });
        QVERIFY2(!error.isNull(), "a failed statement must raise ErrorBD");
        QVERIFY2(error.contains(textoSQLite), qPrintable(error));
        QVERIFY2(error.contains(sentencia), qPrintable(error));
        QCOMPARE(rs.RecordCount(), 0);
        // Nothing ran: the sizes are all there.
        rs.Open(QStringLiteral("select count(*) as n from tallas"), *conexion);
        QCOMPARE(rs.Fields(QStringLiteral("n")).Entero(), 2);
    }

    void conexionCerrada() {
        ADODB::Connection cerrada;
        ADODB::Recordset rs;
        const QString error = ErrorDe([&] { rs.Open(QStringLiteral("select 1"), cerrada); });
        QVERIFY2(error.contains(QStringLiteral("no está abierta")), qPrintable(error));
    }

    // --- Bound values ---------------------------------------------------------------------

    void valoresEnlazados_data() {
        QTest::addColumn<QString>("buscado");
        QTest::addColumn<int>("filas");
        QTest::newRow("plain") << "XS" << 1;
        QTest::newRow("apostrophe") << "O'Brien" << 1;
        QTest::newRow("an attempt at SQL") << "x' or '1'='1" << 0;
        QTest::newRow("percent is only a character") << "%" << 0;
        QTest::newRow("non-ASCII") << "Niño €" << 1;
    }
    void valoresEnlazados() {
        QFETCH(QString, buscado);
        QFETCH(int, filas);
        Ejecutar(QStringLiteral("insert into tallas values (3, ?), (4, ?)"),
                 {QStringLiteral("O'Brien"), QStringLiteral("Niño €")});
        ADODB::Recordset rs;
        rs.Open(QStringLiteral(
                    "select codigo, descripcioncorta from tallas where descripcioncorta = ?"),
                {buscado}, *conexion);
        QCOMPARE(rs.RecordCount(), filas);
        if (filas > 0)
            QCOMPARE(rs.Fields(QStringLiteral("DescripcionCorta")).Texto(), buscado);
        rs.Open(QStringLiteral("select count(*) as n from tallas"), *conexion);
        QCOMPARE(rs.Fields(QStringLiteral("n")).Entero(), 4);
    }

    // --- Dialects ---------------------------------------------------------------------------

    void dialectoPorControlador_data() {
        QTest::addColumn<QString>("controlador");
        QTest::addColumn<QString>("nombre");
        QTest::newRow("SQLite") << "QSQLITE"
                                << "SQLite";
        QTest::newRow("PostgreSQL") << "QPSQL"
                                    << "PostgreSQL";
        QTest::newRow("ODBC") << "QODBC"
                              << "ODBC";
    }
    void dialectoPorControlador() {
        QFETCH(QString, controlador);
        QFETCH(QString, nombre);
        {
            const QSqlDatabase base =
                QSqlDatabase::addDatabase(controlador, QStringLiteral("dialecto"));
            QCOMPARE(Dialecto::Para(base)->Nombre(), nombre);
        }
        QSqlDatabase::removeDatabase(QStringLiteral("dialecto"));
        QCOMPARE(conexion->dialecto().Nombre(), QStringLiteral("SQLite"));
    }

    void tiposSQL_data() {
        QTest::addColumn<QString>("controlador");
        QTest::addColumn<int>("tipo");
        QTest::addColumn<QString>("esperado");
        using T = TipoColumna;
        const QList<std::pair<T, QStringList>> tabla = {
            {T::Entero, {"integer", "integer", "integer"}},
            {T::EnteroCorto, {"smallint", "smallint", "smallint"}},
            {T::Texto, {"text", "text", "varchar(255)"}},
            {T::Fecha, {"date", "date", "date"}},
            {T::Decimal, {"numeric", "numeric", "decimal(18,4)"}},
            {T::Real, {"real", "double precision", "double precision"}},
            {T::Booleano, {"boolean", "boolean", "smallint"}},
        };
        const QStringList controladores = {"QSQLITE", "QPSQL", "QODBC"};
        for (const auto &[tipo, nombres] : tabla)
            for (int d = 0; d < controladores.size(); ++d)
                QTest::addRow("%s %s", qPrintable(controladores[d]),
                              qPrintable(nombres[0] + "/" + nombres[d]))
                    << controladores[d] << int(tipo) << nombres[d];
    }
    void tiposSQL() {
        QFETCH(QString, controlador);
        QFETCH(int, tipo);
        QFETCH(QString, esperado);
        {
            const QSqlDatabase base =
                QSqlDatabase::addDatabase(controlador, QStringLiteral("dialecto"));
            QCOMPARE(Dialecto::Para(base)->TipoSQL(TipoColumna(tipo)), esperado);
        }
        QSqlDatabase::removeDatabase(QStringLiteral("dialecto"));
    }

    void normalizarPorDialecto_data() {
        QTest::addColumn<QString>("controlador");
        QTest::addColumn<QVariant>("valor");
        QTest::addColumn<QString>("tipo");
        QTest::addColumn<QVariant>("esperado");
        // The PostgreSQL driver gives a Null max(integer) as a typed value whose text is "0".
        QTest::newRow("PostgreSQL typed Null")
            << "QPSQL" << QVariant(QMetaType::fromType<int>()) << "int" << QVariant();
        QTest::newRow("PostgreSQL numeric as text")
            << "QPSQL" << QVariant("12.50") << "double" << QVariant(12.5);
        QTest::newRow("PostgreSQL numeric as double")
            << "QPSQL" << QVariant(12.5) << "double" << QVariant(12.5);
        QTest::newRow("PostgreSQL date")
            << "QPSQL" << QVariant(QDate(2026, 3, 1)) << "QDate" << QVariant(QDate(2026, 3, 1));
        QTest::newRow("PostgreSQL date as text")
            << "QPSQL" << QVariant("2026-03-01") << "QDate" << QVariant(QDate(2026, 3, 1));
        QTest::newRow("PostgreSQL int4")
            << "QPSQL" << QVariant(int(7)) << "int" << QVariant(qlonglong(7));
        QTest::newRow("PostgreSQL text")
            << "QPSQL" << QVariant("0201") << "QString" << QVariant("0201");
        QTest::newRow("ODBC typed Null")
            << "QODBC" << QVariant(QMetaType::fromType<QString>()) << "QString" << QVariant();
        QTest::newRow("ODBC short")
            << "QODBC" << QVariant::fromValue(short(-3)) << "short" << QVariant(qlonglong(-3));
        QTest::newRow("ODBC date")
            << "QODBC" << QVariant(QDate(1601, 1, 1)) << "QDate" << QVariant(QDate(1601, 1, 1));
        QTest::newRow("SQLite typed Null")
            << "QSQLITE" << QVariant(QMetaType::fromType<QString>()) << "date" << QVariant();
        QTest::newRow("SQLite undeclared integer")
            << "QSQLITE" << QVariant(qlonglong(5)) << "" << QVariant(qlonglong(5));
    }
    void normalizarPorDialecto() {
        QFETCH(QString, controlador);
        QFETCH(QVariant, valor);
        QFETCH(QString, tipo);
        QFETCH(QVariant, esperado);
        {
            const QSqlDatabase base =
                QSqlDatabase::addDatabase(controlador, QStringLiteral("dialecto"));
            const QVariant normal = Dialecto::Para(base)->Normalizar(valor, tipo);
            QCOMPARE(normal.isValid(), esperado.isValid());
            QCOMPARE(normal.metaType(), esperado.metaType());
            QCOMPARE(normal, esperado);
        }
        QSqlDatabase::removeDatabase(QStringLiteral("dialecto"));
    }
};

TARIFAS_PRUEBAS_SIN_VENTANAS(TstRecordset)
#include "tst_recordset.moc"
