// The schema's indexes on a database made by an older program: an index kept under the
// schema's name but defined otherwise is made again at start-up, with its rows untouched, and
// the searches then read it; one defined as the schema does, in whatever spelling, is left
// alone; a database held by another program leaves the index as it was and start-up goes on.
#include "apoyo/basedatosprueba.h"
#include "apoyo/ejecucion.h"
#include "platform/datos/aperturasqlite.h"
#include "platform/datos/errorbd.h"
#include "suite/datos/esquema.h"
#include "suite/datos/svcconexion.h"

#include <QSqlError>
#include <QSqlQuery>
#include <algorithm>
#include <memory>

using namespace ADODB;

namespace {

const QString Extra = QStringLiteral("ix_codigosextra_codigo_extra");
const QString Cliente = QStringLiteral("ix_productos_codigocliente");

/// What the database plans for `sentencia` with `valor` bound, one line a step. A server is
/// told to read no table whole where an index serves, and plans with the value written in.
QString Plan(ADODB::Connection &c, QString sentencia, const QString &valor) {
    QSqlQuery q(c.Base());
    if (BaseDatosPrueba::EnPostgreSQL()) {
        sentencia.replace(QLatin1Char('?'), QLatin1Char('\'') + valor + QLatin1Char('\''));
        if (!q.exec(QStringLiteral("set enable_seqscan = off")) ||
            !q.exec(QStringLiteral("explain ") + sentencia))
            return q.lastError().text();
    } else {
        q.prepare(QStringLiteral("explain query plan ") + sentencia);
        q.addBindValue(valor);
        if (!q.exec())
            return q.lastError().text();
    }
    QString plan;
    while (q.next())
        plan += q.value(BaseDatosPrueba::EnPostgreSQL() ? 0 : 3).toString() + QLatin1Char('\n');
    return plan;
}

/// Whether `plan` looks `indice` up, rather than reading a whole table or a whole index:
/// SQLite's SEARCH, a server's index condition.
bool Busca(const QString &plan, const QString &indice) {
    if (BaseDatosPrueba::EnPostgreSQL())
        return plan.contains(indice) && plan.contains(QLatin1String("Index Cond"));
    const QStringList pasos = plan.split(QLatin1Char('\n'));
    return std::any_of(pasos.begin(), pasos.end(), [&](const QString &paso) {
        return paso.startsWith(QLatin1String("SEARCH")) && paso.contains(indice);
    });
}

/// The code search's two questions, each as the editor asks it.
QString PlanExtra(ADODB::Connection &c) {
    return Plan(c,
                QStringLiteral("select codigo from productos_codigosextra where ") +
                    c.dialecto().ParecidoSinMayusculas(QStringLiteral("codigo_extra")),
                QStringLiteral("ab1%"));
}
QString PlanCliente(ADODB::Connection &c) {
    return Plan(c, QStringLiteral("select codigo from productos where codigocliente = ?"),
                QStringLiteral("C7"));
}

} // namespace

class TstEsquema : public QObject {
    Q_OBJECT
    std::unique_ptr<BaseDatosPrueba> db;

    /// The index `nombre` on `tabla` made anew on `columnas`, as an older program made it.
    void Hacer(const QString &nombre, const QString &tabla, const QString &columnas) {
        db->Ejecutar(QStringLiteral("drop index ") + nombre);
        db->Ejecutar(QStringLiteral("create index %1 on %2 (%3)").arg(nombre, tabla, columnas));
    }
    /// How the database keeps index `nombre`'s definition.
    QString Definicion(const QString &nombre) {
        return db->Valor(db->Conexion().dialecto().DefinicionIndice(), {nombre}).toString();
    }
    int Filas(const char *tabla) {
        return db->Valor(QStringLiteral("select count(*) from ") + QLatin1String(tabla)).toInt();
    }

  private slots:
    void init() {
        db = std::make_unique<BaseDatosPrueba>();
        db->Ejecutar(QStringLiteral("insert into productos (codigo, codigocliente, nombre, borrar) "
                                    "values (1, 'C7', 'Camisa', 0), (2, 'c8', 'Falda', 0)"));
        db->Ejecutar(QStringLiteral("insert into productos_codigosextra values (1, 'AB12'), "
                                    "(2, 'ab13'), (2, 'XY')"));
    }
    void cleanup() {
        FijarEsperaBloqueoSQLite(EsperaBloqueoSQLite);
        db.reset();
    }

    void rehacer_data() {
        auto caso = Pruebas::Tabla<QString, QString, QString, QStringList>();
        // index, its columns as an older program made them on SQLite and on a server, and
        // what start-up makes again. Spellings of the schema's own definition are kept.
        caso("códigos extra sobre la columna", Extra, "codigo_extra", "codigo_extra", {Extra});
        caso("código de tienda sin mayúsculas", Cliente, "codigocliente collate nocase",
             "lower(codigocliente)", {Cliente});
        caso("códigos extra sin mayúsculas, en otra letra", Extra,
             "  CODIGO_EXTRA   COLLATE NOCASE ", "LOWER( codigo_extra )  TEXT_PATTERN_OPS", {});
        caso("código de tienda entre comillas", Cliente, "\"codigocliente\"", "\"codigocliente\"",
             {});
    }
    void rehacer() {
        const auto [indice, sqlite, servidor, rehechos] =
            Pruebas::Fila<QString, QString, QString, QStringList>();
        const bool extra = indice == Extra;
        Hacer(indice,
              extra ? QStringLiteral("productos_codigosextra") : QStringLiteral("productos"),
              BaseDatosPrueba::EnPostgreSQL() ? servidor : sqlite);
        const QString antes = extra ? PlanExtra(db->Conexion()) : PlanCliente(db->Conexion());
        const QString definicion = Definicion(indice);
        if (!rehechos.isEmpty())
            QVERIFY2(!Busca(antes, indice), qPrintable(antes));

        // Start-up, on a connection of its own as the program's.
        ADODB::Connection programa;
        SvcConexion().AbrirConexion(db->Cadena(), programa);
        const QString tras = extra ? PlanExtra(programa) : PlanCliente(programa);
        QVERIFY2(Busca(tras, indice), qPrintable(tras));
        // Made again only when it had to be: an index as the schema makes it is left alone.
        QCOMPARE(Definicion(indice) != definicion, !rehechos.isEmpty());
        QCOMPARE(Filas("productos"), 2);
        QCOMPARE(Filas("productos_codigosextra"), 3);
        // The search finds what it found, capitals or not.
        QCOMPARE(db->Valor(QStringLiteral("select count(*) from productos_codigosextra where ") +
                               db->Conexion().dialecto().ParecidoSinMayusculas(
                                   QStringLiteral("codigo_extra")),
                           {db->Conexion().dialecto().PatronParecido(QStringLiteral("AB1%"))})
                     .toInt(),
                 2);
        // Made again once: the next start finds every index as the schema makes it.
        QCOMPARE(RehacerIndicesCambiados(programa, TablasSuite()), QStringList());
        QCOMPARE(RehacerIndicesCambiados(db->Conexion(), TablasSuite()), QStringList());
    }

    void rehacerLosDosALaVez() {
        Hacer(Extra, QStringLiteral("productos_codigosextra"), QStringLiteral("codigo_extra"));
        Hacer(Cliente, QStringLiteral("productos"),
              BaseDatosPrueba::EnPostgreSQL() ? QStringLiteral("lower(codigocliente)")
                                              : QStringLiteral("codigocliente collate nocase"));
        QStringList rehechos = RehacerIndicesCambiados(db->Conexion(), TablasSuite());
        rehechos.sort();
        QCOMPARE(rehechos, (QStringList{Extra, Cliente}));
        QVERIFY(Busca(PlanExtra(db->Conexion()), Extra));
        QVERIFY(Busca(PlanCliente(db->Conexion()), Cliente));
    }

    void otroProgramaTieneLaBase() {
        SOLO_SQLITE("the lock of an SQLite file held by another program");
        Hacer(Extra, QStringLiteral("productos_codigosextra"), QStringLiteral("codigo_extra"));
        ADODB::Connection otro;
        otro.Open(db->Cadena());
        QSqlQuery bloqueo(otro.Base());
        QVERIFY(bloqueo.exec(QStringLiteral("begin immediate")));
        FijarEsperaBloqueoSQLite(200);
        QVERIFY_THROWS_EXCEPTION(ErrorBD, RehacerIndicesCambiados(db->Conexion(), TablasSuite()));
        // Start-up says so and goes on; the index is the old one, and the search still works.
        RevisarIndices(db->Conexion(), TablasSuite());
        QVERIFY(!Busca(PlanExtra(db->Conexion()), Extra));
        QCOMPARE(db->Valor(QStringLiteral("select count(*) from productos_codigosextra where "
                                          "codigo_extra like 'ab%'"))
                     .toInt(),
                 2);
        QVERIFY(bloqueo.exec(QStringLiteral("rollback")));
        // Once the other program lets go, the next start makes it again.
        QCOMPARE(RehacerIndicesCambiados(db->Conexion(), TablasSuite()), QStringList{Extra});
        QVERIFY(Busca(PlanExtra(db->Conexion()), Extra));
    }
};

TARIFAS_PRUEBAS_SIN_VENTANAS(TstEsquema)
#include "tst_esquema.moc"
