// Reading queries: a whole number read from a field, the database's Null, and the types each
// database gives a date, a price or a Boolean.
#include "apoyo/ejecucion.h"
#include "apoyo/errores.h"
#include "platform/datos/conexion.h"
#include "platform/datos/errorbd.h"
#include "platform/datos/recordset.h"

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <memory>

using namespace ADODB;

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

    // What a column of each declared type gives back (SQLite keeps values loosely; the
    // recordset gives the declared type), and its text in Spain and in the United States.
    void tipos_data() {
        // textos: Spain|United States
        const auto caso = Pruebas::Tabla<QString, QVariant, QVariant, QString>();
        caso("date as ISO text", "date", "2026-01-31", QDate(2026, 1, 31), "31/1/2026|1/31/2026");
        caso("date in capitals", "DATE", "1601-01-01", QDate(1601, 1, 1), "1/1/1601|1/1/1601");
        caso("date with a time", "date", "9999-12-31 00:00:00", QDate(9999, 12, 31),
             "31/12/9999|12/31/9999");
        caso("date that isn't one stays text", "date", "mañana", "mañana", "mañana|mañana");
        caso("day that doesn't exist stays text", "date", "2026-02-30", "2026-02-30",
             "2026-02-30|2026-02-30");
        caso("date with an ISO time", "date", "2026-12-31T08:30", QDate(2026, 12, 31),
             "31/12/2026|12/31/2026");
        caso("numeric", "numeric", "12.5", 12.5, "12,5|12.5");
        caso("decimal(10,2)", "decimal(10,2)", "-19.95", -19.95, "-19,95|-19.95");
        caso("numeric empty text stays empty", "numeric", "", "", "|");
        caso("boolean stored as text", "BOOLEAN", "N", false, "Falso|Falso");
        caso("integer beyond 32 bits", "integer", qlonglong(5000000000), qlonglong(5000000000),
             "5000000000|5000000000");
        caso("text keeps its zeros", "text", "0201", "0201", "0201|0201");
        caso("empty text is no Null", "text", "", "", "|");
        for (const char *tipo : {"integer", "text", "date", "numeric", "boolean", ""})
            caso(qPrintable(QStringLiteral("Null %1").arg(QLatin1String(tipo))),
                 QLatin1String(tipo), QVariant(), QVariant(), "|");
    }
    void tipos() {
        const auto [tipo, crudo, esperado, textos] =
            Pruebas::Fila<QString, QVariant, QVariant, QString>();
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
        // esperado: the number, or words of the refusal
        const auto caso = Pruebas::Tabla<QString, QVariant, QString>();
        caso("highest 32-bit", "integer", qlonglong(2147483647), "2147483647");
        caso("beyond 32 bits", "integer", qlonglong(2147483648LL), "32 bits");
        caso("decimal with a fraction", "numeric", 3.5, "no es un número entero");
        caso("digits in a text", "text", "0012", "12");
        caso("letters in a text", "text", "12a", "no es un número entero");
        caso("empty text", "text", "", "no es un número entero");
        caso("Null", "integer", QVariant(), "nulo");
    }
    void entero() {
        const auto [tipo, crudo, esperado] = Pruebas::Fila<QString, QVariant, QString>();
        ADODB::Recordset rs;
        const ADODB::Field campo = Valor(tipo, crudo, rs);
        QString leido;
        const QString error = ErrorDe([&] { leido = QString::number(campo.Entero()); });
        if (error.isNull())
            QCOMPARE(leido, esperado);
        else
            QVERIFY2(error.contains(esperado) && error.contains("\"valor\""), qPrintable(error));
    }

    // A statement that fails says why and what it was; nothing of it runs.
    void sentenciaFallida_data() {
        const auto caso = Pruebas::Tabla<QString, QString>();
        caso("no such table", "select * from tarifas_que_no_existen", "no such table");
        caso("syntax", "selec codigo from tallas", "syntax error");
        caso("two statements", "select * from tallas; delete from tallas", "multiple statements");
        caso("a placeholder without its value", "select * from tallas where codigo = ?",
             "valores por enlazar");
        caso("nothing to run", " ; ", "vacía");
    }
    void sentenciaFallida() {
        const auto [sentencia, motivo] = Pruebas::Fila<QString, QString>();
        ADODB::Recordset rs;
        const QString error = ErrorDe([&] { rs.Open(sentencia, *conexion); });
        QVERIFY2(error.contains(motivo) && error.contains(sentencia), qPrintable(error));
        QCOMPARE(rs.RecordCount(), 0);
        rs.Open(QStringLiteral("select count(*) as n from tallas"), *conexion);
        QCOMPARE(rs.Fields(QStringLiteral("n")).Entero(), 2);
        ADODB::Connection cerrada;
        QVERIFY(ErrorDe([&] { rs.Open(sentencia, cerrada); }).contains("no está abierta"));
    }

    // A result walked a row at a time: each row handed over in order with its values, the
    // count of rows read so far, nothing held after; a failure, of the statement or of the
    // one that reads the rows, ends the walk with its reason and leaves the recordset closed.
    void recorrer_data() {
        // pararEn: the row whose reading raises (0: none), by a throw of its own or, with
        // anidada, by asking the connection for another statement; error: the refusal's words
        const auto caso = Pruebas::Tabla<QString, int, bool, QStringList, QString>();
        const QString variantes = QStringLiteral(
            "select codigohijo, codcliente, descripcioncorta from productostextil join tallas on "
            "tallas.codigo = productostextil.talla order by codigohijo");
        caso("cada fila en orden, un Null vacío", variantes, 0, false,
             QStringList{"0201|V7-0201|XS", "0202||XL"}, QString());
        caso("ninguna fila", variantes + QStringLiteral(" limit 0"), 0, false, QStringList{},
             QString());
        caso("quien lee falla en la segunda", variantes, 2, false, QStringList{"0201|V7-0201|XS"},
             "parada en la fila 2");
        // A server would lose the rows still to come: refused on every database alike.
        caso("otra sentencia mientras lee", variantes, 1, true, QStringList{}, "una sola a la vez");
        caso("la sentencia falla", "select * from tarifas_que_no_existen", 0, false, QStringList{},
             "no such table");
    }
    void recorrer() {
        const auto [sentencia, pararEn, anidada, esperadas, motivo] =
            Pruebas::Fila<QString, int, bool, QStringList, QString>();
        ADODB::Recordset rs;
        QStringList leidas;
        const QString error = ErrorDe([&, pararEn = pararEn, anidada = anidada] {
            rs.Recorrer(sentencia, *conexion, [&] {
                QCOMPARE(rs.RecordCount(), leidas.size() + 1);
                if (rs.RecordCount() == pararEn && anidada)
                    ADODB::Recordset().Open(QStringLiteral("select 1"), *conexion);
                if (rs.RecordCount() == pararEn)
                    throw ErrorBD(QStringLiteral("parada en la fila %1").arg(pararEn));
                QStringList valores;
                for (int c = 0; c < rs.ColumnCount(); ++c) {
                    valores << rs.Fields(c).Texto();
                    // A text kept as UTF-8 is lent in place, the same text.
                    QByteArrayView bytes;
                    if (rs.Fields(c).TextoUtf8(bytes))
                        QCOMPARE(QString::fromUtf8(bytes), valores.last());
                }
                leidas << valores.join('|');
                // Only the row it stands on is held: going back to an earlier one finds none.
                if (rs.RecordCount() > 1) {
                    rs.MoveFirst();
                    QVERIFY(ErrorDe([&] { rs.Fields(0).Texto(); }).contains("No hay fila actual"));
                }
            });
        });
        QCOMPARE(leidas, esperadas);
        if (motivo.isEmpty())
            QVERIFY2(error.isNull(), qPrintable(error));
        else
            QVERIFY2(error.contains(motivo), qPrintable(error));
        QVERIFY(ErrorDe([&] { rs.Fields(0); }).contains("cerrado"));
        // The connection is free for the next statement.
        rs.Open(QStringLiteral("select count(*) as n from tallas"), *conexion);
        QCOMPARE(rs.Fields(QStringLiteral("n")).Entero(), 2);
    }
};

TARIFAS_PRUEBAS_SIN_VENTANAS(TstRecordset)
#include "tst_recordset.moc"
