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
#include <QTemporaryDir>
#include <memory>

class TstRecordset : public QObject {
    Q_OBJECT
    std::unique_ptr<QTemporaryDir> dir;
    std::unique_ptr<ADODB::Connection> conexion;

    void Ejecutar(const QString &sql, const QVariantList &valores = {}) {
        QSqlQuery q(conexion->Base());
        QVERIFY2(q.prepare(sql), qPrintable(q.lastError().text() + " in " + sql));
        for (const QVariant &v : valores)
            q.addBindValue(v);
        QVERIFY2(q.exec(), qPrintable(q.lastError().text() + " in " + sql));
    }

    /// The field `v` of a one-row table whose column has the declared `tipo` and holds `crudo`.
    ADODB::Field Valor(const QString &tipo, const QVariant &crudo, ADODB::Recordset &rs) {
        Ejecutar(QStringLiteral("create table t (v %1)").arg(tipo));
        Ejecutar(QStringLiteral("insert into t (v) values (?)"), {crudo});
        rs.Open(QStringLiteral("select v as valor from t"), *conexion);
        return rs.Fields(QStringLiteral("Valor"));
    }

  private slots:
    void init() {
        dir = std::make_unique<QTemporaryDir>();
        QVERIFY(dir->isValid());
        conexion = std::make_unique<ADODB::Connection>();
        conexion->Open("sqlite:" + dir->filePath(QStringLiteral("prueba.sqlite")));
        Ejecutar("create table tallas (codigo integer primary key, descripcioncorta text)");
        Ejecutar("create table productostextil (codigopadre integer, codigohijo text, "
                 "talla integer, codcliente text)");
        Ejecutar("insert into tallas values (1, 'XS'), (2, 'XL')");
        Ejecutar("insert into productostextil values (7, '0201', 1, 'V7-0201'), "
                 "(7, '0202', 2, null)");
    }
    void cleanup() {
        conexion.reset();
        dir.reset();
    }

    // A field by name whatever its case, among aliases that differ by case and by one letter;
    // a name that is not there (empty: "no such field") says which there are.
    void campos_data() {
        QTest::addColumn<QString>("nombre");
        QTest::addColumn<QString>("esperado");
        auto caso = [](const char *n, const char *e) { QTest::newRow(n) << n << e; };
        caso("DESCTALL", "XS");
        caso("NOMCOL", "0201");
        caso("codclip", "V7-0201");
        caso("descTal", "");
        caso("descTallas", "");
        caso("", "");
    }
    void campos() {
        QFETCH(QString, nombre);
        QFETCH(QString, esperado);
        ADODB::Recordset rs;
        rs.Open(
            "Select p.codigopadre, t.descripcioncorta as descTall, 'talla ' || "
            "t.descripcioncorta as descTalla, p.codigohijo as nomCol, p.codcliente as "
            "codcliP from productostextil p inner join tallas t on p.talla = t.codigo order by 4",
            *conexion);
        QString texto;
        const QString error = ErrorDe([&] { texto = rs.Fields(nombre).Texto(); });
        QCOMPARE(texto, esperado);
        if (esperado.isEmpty())
            QVERIFY2(error.contains('"' + nombre + '"') && error.contains("descTall"),
                     qPrintable(error));
        QCOMPARE(ErrorDe([&] { rs.Fields(4); }).isNull(), true);
        QCOMPARE(ErrorDe([&] { rs.Fields(5); }).isNull(), false);
        QCOMPARE(ErrorDe([&] { rs.Fields(-1); }).isNull(), false);
    }

    // What a column of each declared type gives back (SQLite keeps values loosely; the
    // recordset gives the declared type), and its text in Spain and in the United States.
    void tipos_data() {
        QTest::addColumn<QString>("tipo");
        QTest::addColumn<QVariant>("crudo");
        QTest::addColumn<QVariant>("esperado");
        QTest::addColumn<QString>("textos"); // Spain|United States
        auto caso = [](const char *n, const char *tipo, const QVariant &crudo,
                       const QVariant &esperado, const char *textos) {
            QTest::newRow(n) << tipo << crudo << esperado << textos;
        };
        caso("date as ISO text", "date", "2026-01-31", QDate(2026, 1, 31), "31/1/2026|1/31/2026");
        caso("date in capitals", "DATE", "1601-01-01", QDate(1601, 1, 1), "1/1/1601|1/1/1601");
        caso("date with a time", "date", "9999-12-31 00:00:00", QDate(9999, 12, 31),
             "31/12/9999|12/31/9999");
        caso("date that isn't one stays text", "date", "mañana", "mañana", "mañana|mañana");
        caso("numeric", "numeric", "12.5", 12.5, "12,5|12.5");
        caso("decimal(10,2)", "decimal(10,2)", "-19.95", -19.95, "-19,95|-19.95");
        caso("numeric empty text stays empty", "numeric", "", "", "|");
        caso("boolean stored as text", "BOOLEAN", "N", false, "Falso|Falso");
        caso("integer beyond 32 bits", "integer", qlonglong(5000000000), qlonglong(5000000000),
             "5000000000|5000000000");
        caso("text keeps its zeros", "text", "0201", "0201", "0201|0201");
        caso("empty text is no Null", "text", "", "", "|");
        for (const char *tipo : {"integer", "text", "date", "numeric", "boolean", ""})
            caso(qPrintable(QStringLiteral("Null %1").arg(tipo)), tipo, QVariant(), QVariant(),
                 "|");
    }
    void tipos() {
        QFETCH(QString, tipo);
        QFETCH(QVariant, crudo);
        QFETCH(QVariant, esperado);
        QFETCH(QString, textos);
        ADODB::Recordset rs;
        const ADODB::Field campo = Valor(tipo, crudo, rs);
        QCOMPARE(campo.Value().metaType(), esperado.metaType());
        QCOMPARE(campo.Value(), esperado);
        QCOMPARE(campo.EsNulo(), !crudo.isValid()); // one Null, whatever type the driver gave it
        QLocale::setDefault(QLocale(QLocale::Spanish, QLocale::Spain));
        const QString es = campo.Texto();
        QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
        QCOMPARE(es + '|' + campo.Texto(), textos);
    }

    // A whole number read from a field: what fits in 32 bits, or the reason it doesn't.
    void entero_data() {
        QTest::addColumn<QString>("tipo");
        QTest::addColumn<QVariant>("crudo");
        QTest::addColumn<QString>("esperado"); // the number, or words of the refusal
        auto caso = [](const char *n, const char *tipo, const QVariant &crudo, const char *e) {
            QTest::newRow(n) << tipo << crudo << e;
        };
        caso("highest 32-bit", "integer", qlonglong(2147483647), "2147483647");
        caso("beyond 32 bits", "integer", qlonglong(2147483648LL), "32 bits");
        caso("decimal with a fraction", "numeric", 3.5, "no es un número entero");
        caso("digits in a text", "text", "0012", "12");
        caso("letters in a text", "text", "12a", "no es un número entero");
        caso("empty text", "text", "", "no es un número entero");
        caso("Null", "integer", QVariant(), "nulo");
    }
    void entero() {
        QFETCH(QString, tipo);
        QFETCH(QVariant, crudo);
        QFETCH(QString, esperado);
        ADODB::Recordset rs;
        const ADODB::Field campo = Valor(tipo, crudo, rs);
        QString leido;
        const QString error = ErrorDe([&] { leido = QString::number(campo.Entero()); });
        if (error.isNull())
            QCOMPARE(leido, esperado);
        else
            QVERIFY2(error.contains(esperado) && error.contains("\"valor\""), qPrintable(error));
    }

    void cuentaDeFilas_data() {
        QTest::addColumn<int>("filas");
        QTest::newRow("none") << 0;
        QTest::newRow("one") << 1;
        QTest::newRow("three") << 3;
    }
    void cuentaDeFilas() {
        QFETCH(int, filas);
        Ejecutar("delete from tallas");
        for (int i = 1; i <= filas; ++i)
            Ejecutar("insert into tallas values (?, ?)", {i, QStringLiteral("fila %1").arg(i)});
        ADODB::Recordset rs;
        rs.Open(QStringLiteral("select codigo, descripcioncorta from tallas order by codigo"),
                *conexion);
        // Exact before the first row is read: the listings size their grids from it.
        QCOMPARE(rs.RecordCount(), filas);
        QCOMPARE(rs.Eof(), filas == 0);
        int leidas = 0;
        for (; !rs.Eof(); rs.MoveNext())
            QCOMPARE(rs.Fields(QStringLiteral("DescripcionCorta")).Texto(),
                     QStringLiteral("fila %1").arg(++leidas));
        QCOMPARE(leidas, filas);
        QVERIFY(!ErrorDe([&] { rs.MoveNext(); }).isNull());        // past the end
        QVERIFY(!ErrorDe([&] { rs.Fields(0).Value(); }).isNull()); // no current row
        if (filas > 0) {
            rs.MoveFirst();
            QCOMPARE(rs.Fields(QStringLiteral("codigo")).Entero(), 1);
        }
        rs.Close();
        QCOMPARE(rs.RecordCount(), 0);
        QVERIFY(!ErrorDe([&] { rs.Fields(0); }).isNull()); // closed
    }

    // A statement that fails says why and what it was; nothing of it runs.
    void sentenciaFallida_data() {
        QTest::addColumn<QString>("sentencia");
        QTest::addColumn<QString>("motivo");
        auto caso = [](const char *n, const char *s, const char *m) { QTest::newRow(n) << s << m; };
        caso("no such table", "select * from tarifas_que_no_existen", "no such table");
        caso("syntax", "selec codigo from tallas", "syntax error");
        caso("two statements", "select * from tallas; delete from tallas", "multiple statements");
        caso("a placeholder without its value", "select * from tallas where codigo = ?",
             "valores por enlazar");
        caso("nothing to run", " ; ", "vacía");
    }
    void sentenciaFallida() {
        QFETCH(QString, sentencia);
        QFETCH(QString, motivo);
        ADODB::Recordset rs;
        const QString error = ErrorDe([&] { rs.Open(sentencia, *conexion); });
        QVERIFY2(error.contains(motivo) && error.contains(sentencia), qPrintable(error));
        QCOMPARE(rs.RecordCount(), 0);
        rs.Open(QStringLiteral("select count(*) as n from tallas"), *conexion);
        QCOMPARE(rs.Fields(QStringLiteral("n")).Entero(), 2);
        ADODB::Connection cerrada;
        QVERIFY(ErrorDe([&] { rs.Open(sentencia, cerrada); }).contains("no está abierta"));
    }

    void valoresEnlazados() {
        // A bound value is only a value: apostrophes, SQL and wildcards are characters.
        Ejecutar("insert into tallas values (3, ?), (4, ?)", {"O'Brien", "Niño %"});
        const QString sql = "select codigo from tallas where descripcioncorta = ?";
        for (const auto &[buscado, codigo] :
             {std::pair{"O'Brien", "3"}, {"Niño %", "4"}, {"x' or '1'='1", ""}, {"%", ""}}) {
            ADODB::Recordset rs;
            rs.Open(sql, {QString::fromUtf8(buscado)}, *conexion);
            QCOMPARE(rs.Eof() ? QString() : rs.Fields(0).Texto(), QString::fromUtf8(codigo));
        }
    }
};

TARIFAS_PRUEBAS_SIN_VENTANAS(TstRecordset)
#include "tst_recordset.moc"
