// Deleting the open price list, and what the editor's writes do when another terminal has
// deleted the list (or is deleting it) while this editor has it open.
#include "apoyo/ejecucion.h"
#include "apoyo/tiendaprueba.h"
#include "editor/frmtarifas.h"
#include "platform/datos/transaccion.h"
#include "platform/ui/mensajes.h"

#include <QSqlError>
#include <QSqlQuery>
#include <QStandardPaths>
#include <QtTest>

#include <future>
#include <thread>

namespace {

int Cuenta(TiendaPrueba &t, const QString &sql) {
    return t.Valor(sql).toInt();
}

/// What the database holds of the shop's lists, as counts a delete must change or keep.
struct Contenido {
    int cabecera1, precios1, aplicada1, otraIndice1, aplicada2, precios2;
    bool operator==(const Contenido &) const = default;
};

Contenido Leer(TiendaPrueba &t) {
    return {
        Cuenta(t, "select count(*) from cabecera_precio where identificador = 1"),
        Cuenta(t, "select count(*) from detalle_precio where identificador = 1"),
        Cuenta(t, "select count(*) from relaciones_fijas where indice = 'TarifaAplicada' and "
                  "daton = 1"),
        Cuenta(t, "select count(*) from relaciones_fijas where indice = 'Otra' and daton = 1"),
        Cuenta(t, "select count(*) from relaciones_fijas where indice = 'TarifaAplicada' and "
                  "daton = 2"),
        Cuenta(t, "select count(*) from detalle_precio where identificador = 2"),
    };
}

/// List 1 with two prices and two relations that apply it, a relation of another kind that
/// carries the same number, and list 2 with its own price and relation.
void Tienda(TiendaPrueba &t, const QString &nombre = QStringLiteral("General")) {
    t.Producto(1, "C1", "Camisa", 20);
    t.Producto(2, "C2", "Pantalón", 30);
    t.Lista(1, nombre);
    t.Lista(2, QStringLiteral("Otra"));
    t.Precio(1, 1, 18);
    t.Precio(1, 2, 27);
    t.Precio(2, 1, 19);
    for (const auto &[indice, daton, dato1] :
         {std::tuple{"TarifaAplicada", 1, "CAJA1"}, std::tuple{"TarifaAplicada", 1, "CAJA2"},
          std::tuple{"Otra", 1, "x"}, std::tuple{"TarifaAplicada", 2, "CAJA1"}})
        t.Ejecutar(QStringLiteral("insert into relaciones_fijas (indice, daton, dato1) values "
                                  "(?, ?, ?)"),
                   {QString::fromLatin1(indice), daton, QString::fromLatin1(dato1)});
}

/// Runs `sentencias` on a connection of its own, in a thread of its own, as one unit of
/// another terminal: `listo` is set once they have run, and the unit is committed `espera`
/// later, so that meanwhile it is in progress. `error` gets the text of a failure.
void OtroPuesto(const QString &cadena, QStringList sentencias, std::promise<void> &listo,
                std::chrono::milliseconds espera, QString &error) {
    try {
        ADODB::Connection otra;
        otra.Open(cadena);
        {
            ADODB::Transaccion unidad(otra);
            for (const QString &sql : sentencias) {
                QSqlQuery q(otra.Base());
                if (!q.exec(sql))
                    throw ErrorBD(q.lastError().text());
            }
            listo.set_value();
            std::this_thread::sleep_for(espera);
            unidad.Commit();
        }
        otra.Close();
    } catch (const ErrorBD &e) {
        error = e.Texto();
        listo.set_value();
    }
}

/// Another terminal deletes list 1 as this program does.
const QStringList BorradoDeLista1 = {
    QStringLiteral("delete from cabecera_precio where identificador = 1"),
    QStringLiteral("delete from detalle_precio where identificador = 1"),
    QStringLiteral("delete from relaciones_fijas where indice = 'TarifaAplicada' and daton = 1")};

} // namespace

class TstEditorEliminar : public QObject {
    Q_OBJECT

  private slots:
    void initTestCase() {
        QStandardPaths::setTestModeEnabled(true);
        QLocale::setDefault(QLocale(QLocale::Spanish, QLocale::Spain));
    }

    void eliminar_data() {
        QTest::addColumn<QString>("nombre");
        QTest::addColumn<bool>("si");
        QTest::addColumn<int>("lista");
        QTest::newRow("No lo deja todo") << "General" << false << 1;
        QTest::newRow("Si, con precios y relaciones") << "General" << true << 1;
        QTest::newRow("Si, lista vacia") << "Vacia" << true << 3;
        QTest::newRow("nombre con apostrofo y comillas")
            << QString::fromUtf8("L'Hiver \"50%\" 🧥") << true << 1;
    }
    void eliminar() {
        QFETCH(QString, nombre);
        QFETCH(bool, si);
        QFETCH(int, lista);
        TiendaPrueba tienda;
        Tienda(tienda, lista == 1 ? nombre : QStringLiteral("General"));
        if (lista == 3)
            tienda.Lista(3, nombre);
        const Contenido antes = Leer(tienda);
        RespuestasMensajes cajas;
        cajas.Responder(si);
        bool abiertoTrasNo = false;
        QVERIFY(tienda.AbrirEditor(lista, [&](FrmTarifas &e) {
            QTest::mouseClick(e.cmdEliminar->widget(), Qt::LeftButton);
            abiertoTrasNo = e.Loaded();
        }));
        QCOMPARE(cajas.Mostrados(),
                 QStringList{QStringLiteral("¿Desea eliminar la tarifa ") + nombre + "?"});
        QCOMPARE(cajas.Titulos(), QStringList{QStringLiteral("Eliminar Tarifa")});
        QCOMPARE(abiertoTrasNo, !si);
        QCOMPARE(Cuenta(tienda, QStringLiteral("select count(*) from cabecera_precio where "
                                               "identificador = %1")
                                    .arg(lista)),
                 si ? 0 : 1);
        Contenido esperado = antes;
        if (si && lista == 1)
            esperado.cabecera1 = esperado.precios1 = esperado.aplicada1 = 0;
        QCOMPARE(Leer(tienda), esperado);
        QCOMPARE(FilaRegistro(lista) > 0, !si);
        QVERIFY(FilaRegistro(2) > 0);
    }

    // A refusal part-way (here the relations' delete) leaves the list whole, and the operator
    // reads the database's own text.
    void todoONada() {
        TiendaPrueba tienda;
        Tienda(tienda);
        tienda.Rechazar("before delete on relaciones_fijas", "relaciones protegidas");
        const Contenido antes = Leer(tienda);
        RespuestasMensajes cajas;
        bool sigueAbierto = false;
        QVERIFY(tienda.AbrirEditor(1, [&](FrmTarifas &e) {
            QTest::mouseClick(e.cmdEliminar->widget(), Qt::LeftButton);
            sigueAbierto = e.Loaded();
        }));
        QVERIFY(sigueAbierto);
        QVERIFY(!Form::Terminando());
        QCOMPARE(cajas.Mostrados().size(), 2); // the question, then the error report
        QVERIFY2(cajas.Mostrados().at(1).contains(QLatin1String("relaciones protegidas")),
                 qPrintable(cajas.Mostrados().at(1)));
        QCOMPARE(Leer(tienda), antes);
        QVERIFY(FilaRegistro(1) > 0);
    }

    // Another terminal deletes the open list, before this one writes (committed) or while it
    // writes (its unit still open: this write waits for it). Nothing is written for a list
    // that is gone, the operator is told, and the editor closes.
    void listaBorradaEnOtroPuesto_data() {
        QTest::addColumn<QString>("accion");
        QTest::addColumn<bool>("enCurso");
        for (const char *accion : {"periodo", "eliminar", "precio"}) {
            QTest::addRow("%s, borrada antes", accion) << QString::fromLatin1(accion) << false;
            QTest::addRow("%s, borrandose", accion) << QString::fromLatin1(accion) << true;
        }
    }
    void listaBorradaEnOtroPuesto() {
        QFETCH(QString, accion);
        QFETCH(bool, enCurso);
        TiendaPrueba tienda;
        Tienda(tienda);
        RespuestasMensajes cajas;
        QString errorOtro;
        std::thread otro;
        bool cerrado = false;
        QVERIFY(tienda.AbrirEditor(1, [&](FrmTarifas &e) {
            std::promise<void> listo;
            otro = std::thread(OtroPuesto, tienda.db().Cadena(), BorradoDeLista1, std::ref(listo),
                               std::chrono::milliseconds(enCurso ? 700 : 0), std::ref(errorOtro));
            listo.get_future().wait();
            if (!enCurso)
                otro.join();
            if (accion == QLatin1String("periodo")) {
                e.desde->setValue(QDate(2026, 2, 1));
                QTest::mouseClick(e.cmdAceptarFecha->widget(), Qt::LeftButton);
            } else if (accion == QLatin1String("eliminar")) {
                QTest::mouseClick(e.cmdEliminar->widget(), Qt::LeftButton);
            } else {
                GuardarPrecio(e, "1", "12,5");
            }
            cerrado = !e.Loaded();
        }));
        if (otro.joinable())
            otro.join();
        QCOMPARE(errorOtro, QString());
        QVERIFY(cerrado);
        const QStringList mostrados = cajas.Mostrados();
        QCOMPARE(mostrados.size(), accion == QLatin1String("eliminar") ? 2 : 1);
        QVERIFY2(mostrados.last().contains(QLatin1String("ya no existe")),
                 qPrintable(mostrados.last()));
        // Nothing of list 1 is left or written again (no orphan price); list 2 is untouched.
        const Contenido ahora = Leer(tienda);
        QCOMPARE(ahora, (Contenido{0, 0, 0, 1, 1, 1}));
        QCOMPARE(FilaRegistro(1), -1);
        QVERIFY(FilaRegistro(2) > 0);
    }

    // Two terminals price the same product of one list at once: the other terminal has
    // deleted the old price and inserted its own, not yet committed, when this one saves.
    // This save waits for it, then replaces its price: one row, this (the later) save's.
    void mismoProductoDosPuestos() {
        TiendaPrueba tienda;
        Tienda(tienda);
        const bool servidor = BaseDatosPrueba::EnPostgreSQL();
        QStringList guardadoOtro = {
            QStringLiteral("delete from detalle_precio where identificador = 1 and producto = 1"),
            QStringLiteral("insert into detalle_precio (identificador, producto, precio) values "
                           "(1, 1, 99)")};
        // It saves as this program does: holding the list's header first.
        if (servidor)
            guardadoOtro.prepend(QStringLiteral(
                "select identificador from cabecera_precio where identificador = 1 for update"));
        RespuestasMensajes cajas;
        QString errorOtro;
        std::thread otro;
        QVERIFY(tienda.AbrirEditor(1, [&](FrmTarifas &e) {
            std::promise<void> listo;
            otro = std::thread(OtroPuesto, tienda.db().Cadena(), guardadoOtro, std::ref(listo),
                               std::chrono::milliseconds(700), std::ref(errorOtro));
            listo.get_future().wait();
            GuardarPrecio(e, "1", "12,5");
            QVERIFY(e.Loaded());
        }));
        otro.join();
        QCOMPARE(errorOtro, QString());
        QCOMPARE(cajas.Mostrados(), QStringList());
        QCOMPARE(Cuenta(tienda, QStringLiteral("select count(*) from detalle_precio where "
                                               "identificador = 1 and producto = 1")),
                 1);
        QCOMPARE(tienda
                     .Valor("select precio from detalle_precio where identificador = 1 and "
                            "producto = 1")
                     .toDouble(),
                 12.5);
    }
};

TARIFAS_PRUEBAS(TstEditorEliminar)
#include "tst_editoreliminar.moc"
