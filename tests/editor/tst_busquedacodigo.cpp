// The code search's statement as the database plans it: each of its branches reads an index
// made by the schema (a shop code, an extra code matched without case), for every kind of
// code the operator types, on the run's database.
#include "apoyo/basedatosprueba.h"
#include "apoyo/ejecucion.h"
#include "editor/busquedacodigo.h"

#include <QSqlError>
#include <QSqlQuery>

using namespace ADODB;

namespace {

/// The plan of `sentencia` with `valores`, one line a step. A server plans with the values
/// written in, as it plans each search; it is told to read no table whole where an index
/// serves, so a plan with a whole table means no index could serve.
QString Plan(BaseDatosPrueba &db, QString sentencia, const QVariantList &valores) {
    QSqlQuery q(db.Conexion().Base());
    const bool servidor = BaseDatosPrueba::EnPostgreSQL();
    if (servidor) {
        for (const QVariant &v : valores) {
            QString literal = v.toString();
            literal.replace(QLatin1Char('\''), QStringLiteral("''"));
            sentencia.replace(sentencia.indexOf(QLatin1Char('?')), 1,
                              QLatin1Char('\'') + literal + QLatin1Char('\''));
        }
        if (!q.exec(QStringLiteral("set enable_seqscan = off")) ||
            !q.exec(QStringLiteral("explain ") + sentencia))
            return q.lastError().text();
    } else {
        q.prepare(QStringLiteral("explain query plan ") + sentencia);
        for (const QVariant &v : valores)
            q.addBindValue(v);
        if (!q.exec())
            return q.lastError().text();
    }
    QString plan;
    while (q.next())
        plan += q.value(servidor ? 0 : 3).toString() + QLatin1Char('\n');
    return plan;
}

} // namespace

class TstBusquedaCodigo : public QObject {
    Q_OBJECT
    std::unique_ptr<BaseDatosPrueba> db;

  private slots:
    void initTestCase() {
        db = std::make_unique<BaseDatosPrueba>();
        // A few rows: the plan must come from the indexes, not from the table's size.
        db->Ejecutar(QStringLiteral("insert into productos values (1, 'C1', 'a', 1, 'S', 0), "
                                    "(2, 'C2', 'b', 1, 'S', 0)"));
        db->Ejecutar(QStringLiteral("insert into productos_codigosextra values (1, 'EAN1'), "
                                    "(2, 'ean2')"));
    }
    void cleanupTestCase() { db.reset(); }

    void indices_data() {
        const auto caso = Pruebas::Tabla<QString>();
        caso("código entero", "C1");
        caso("en minúsculas", "ean1");
        caso("comodín al final", "EAN%");
        caso("un carácter cualquiera al final", "EAN_");
        caso("barra invertida", "A\\B");
        caso("apóstrofo", "X'1");
        caso("cifras solas", "8412345678905");
    }
    void indices() {
        const auto [codigo] = Pruebas::Fila<QString>();
        const Dialecto &dialecto = db->Conexion().dialecto();
        const BusquedaCodigo b = SentenciaBusquedaCodigo(dialecto, codigo);
        const QString plan = Plan(*db, dialecto.Adaptar(b.sentencia), b.valores);
        QVERIFY2(plan.contains(QLatin1String("ix_productos_codigocliente")), qPrintable(plan));
        QVERIFY2(plan.contains(QLatin1String("ix_codigosextra_codigo_extra")), qPrintable(plan));
    }
};

TARIFAS_PRUEBAS(TstBusquedaCodigo)
#include "tst_busquedacodigo.moc"
