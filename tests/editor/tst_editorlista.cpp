// The editor's writes to the open list as a whole: its validity period (when the two buttons
// show, what Accept stores and Cancel puts back) and its deletion; and what a write does when
// another terminal has deleted the list, or is deleting it, or prices the same product at once.
#include "apoyo/bloqueo.h"
#include "apoyo/ejecucion.h"
#include "apoyo/respuestas.h"
#include "apoyo/tiendaprueba.h"
#include "platform/datos/regional.h"
#include "platform/datos/transaccion.h"

#include <QSqlError>
#include <QSqlQuery>
#include <future>
#include <thread>

using namespace ADODB;
using namespace Pantalla;
using namespace Sistema;

namespace {

const QDate Desde(2026, 1, 1), Hasta(2026, 12, 31);

QDate Fecha(const QString &iso) {
    return QDate::fromString(iso, Qt::ISODate);
}

/// The stored period as "desde hasta" in ISO form.
QString Guardado(TiendaPrueba &t) {
    return t
        .Valor("select cast(preciovalidodesde as varchar(40)) || ' ' || "
               "cast(preciovalidohasta as varchar(40)) from cabecera_precio")
        .toString();
}

bool Visibles(const FrmTarifas &e) {
    // The two are always shown and hidden together.
    if (e.cmdAceptarFecha->Visible() != e.cmdCancelarFecha->Visible())
        QTest::qFail("Accept and Cancel differ in visibility", __FILE__, __LINE__);
    return e.cmdAceptarFecha->Visible();
}

/// List 1 with two prices and two relations that apply it, a relation of another kind that
/// carries the same number, and list 2 with its own price and relation.
void Tienda(TiendaPrueba &t, const QString &nombre = QStringLiteral("General")) {
    t.Lista(1, nombre);
    t.Lista(2, QStringLiteral("Otra"));
    t.Ejecutar("insert into productos values (1, 'C1', 'Camisa', 20, 'S', 0), "
               "(2, 'C2', 'Pantalón', 30, 'S', 0)");
    t.Ejecutar("insert into detalle_precio values (1, 1, 18, null), (1, 2, 27, null), "
               "(2, 1, 19, null)");
    t.Ejecutar("insert into relaciones_fijas values ('TarifaAplicada', 1, 'CAJA1'), "
               "('TarifaAplicada', 1, 'CAJA2'), ('Otra', 1, 'x'), ('TarifaAplicada', 2, 'CAJA1')");
}

/// Runs `sentencias` on a connection of its own, in a thread of its own, as one unit of
/// another terminal: `listo` is set once they have run. With a `vigia`, the unit is committed
/// only once the program's write waits for it (its failure to wait is the `error`);
/// without, at once. `error` gets the text of a failure.
void OtroPuesto(const QString &cadena, QStringList sentencias, std::promise<void> &listo,
                VigiaBloqueo *vigia, QString &error) {
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
            if (vigia && !vigia->Esperar(otra, std::chrono::seconds(30)))
                error = QStringLiteral("the program's write never waited for this unit");
            unidad.Commit();
        }
        otra.Close();
    } catch (const ErrorBD &e) {
        error = e.Texto();
        listo.set_value();
    }
}

} // namespace

class TstEditorLista : public QObject {
    Q_OBJECT

  private slots:
    void periodo_data() {
        // pasos: "desde=ISO", "hasta=ISO", "aceptar", "cancelar"; controles: what the date controls
        // show at the end; guardado: empty: nothing was stored
        const auto caso = Pruebas::Tabla<QString, bool, QString, QString>();
        const QString inicial = "2026-01-01 2026-12-31";
        caso("abierto: ambos visibles", "", true, inicial, "");
        caso("aceptar recien abierto guarda lo que se ve", "aceptar", false, inicial, inicial);
        caso("cancelar recien abierto no guarda", "cancelar", false, inicial, "");
        caso("volver a la guardada no oculta", "cancelar desde=2026-02-01 desde=2026-01-01", true,
             inicial, "");
        caso("cambiar solo hasta guarda las dos", "cancelar hasta=2027-06-30 aceptar", false,
             "2026-01-01 2027-06-30", "2026-01-01 2027-06-30");
        caso("cancelar devuelve las dos", "desde=2026-02-01 hasta=2027-01-31 cancelar", false,
             inicial, "");
        caso("cancelar tras aceptar devuelve lo aceptado",
             "desde=2026-02-01 aceptar desde=2026-03-01 cancelar", false, "2026-02-01 2026-12-31",
             "2026-02-01 2026-12-31");
        caso("periodo invertido se guarda tal cual", "hasta=2025-01-01 aceptar", false,
             "2026-01-01 2025-01-01", "2026-01-01 2025-01-01");
        caso("los extremos del control", "desde=1601-01-01 hasta=9999-12-31 aceptar", false,
             "1601-01-01 9999-12-31", "1601-01-01 9999-12-31");
    }
    void periodo() {
        const auto [pasos, visibles, controles, guardado] =
            Pruebas::Fila<QString, bool, QString, QString>();
        TiendaPrueba tienda;
        tienda.Lista(1, QStringLiteral("General"), Desde, Hasta);
        RespuestasMensajes cajas;
        QVERIFY(tienda.AbrirEditor(1, [&](FrmTarifas &e) {
            QVERIFY(Visibles(e)); // shown when the editor opens
            // Written behind the editor's back: still there afterwards, nothing was stored.
            tienda.Ejecutar("update cabecera_precio set preciovalidodesde = '2000-01-01', "
                            "preciovalidohasta = '2000-01-02'");
            for (const QString &paso : pasos.split(' ', Qt::SkipEmptyParts)) {
                if (paso.contains('=')) {
                    (paso.startsWith("desde") ? e.desde : e.hasta)->setValue(Fecha(paso.mid(6)));
                    continue;
                }
                CommandButton *b = paso == "aceptar" ? e.cmdAceptarFecha : e.cmdCancelarFecha;
                QVERIFY2(b->Visible(), qPrintable(paso));
                QTest::mouseClick(b->widget(), Qt::LeftButton);
            }
            QCOMPARE(Visibles(e), visibles);
            QCOMPARE(e.desde->Value().toString(Qt::ISODate) + ' ' +
                         e.hasta->Value().toString(Qt::ISODate),
                     controles);
        }));
        QCOMPARE(cajas.Mostrados(), QStringList());
        const QString stored =
            guardado.isEmpty() ? QStringLiteral("2000-01-01 2000-01-02") : guardado;
        QCOMPARE(Guardado(tienda), stored);
        // The register lists the period as stored once the editor has closed.
        QCOMPARE(
            Fila(*frmListas().grid_precios, 1).mid(1, 2),
            (QStringList{FechaATexto(Fecha(stored.left(10))), FechaATexto(Fecha(stored.mid(11)))}));
    }

    void codigoFraccionario() {
        // The editor's list code "2.5" is no list 2: the write finds no list and stores nothing.
        TiendaPrueba tienda;
        tienda.Lista(2, QStringLiteral("General"), Desde, Hasta);
        RespuestasMensajes cajas;
        FrmTarifas &e = tienda.Abierto(2);
        e.lblCodigo->setCaption(QStringLiteral("2.5"));
        e.desde->setValue(QDate(2026, 2, 1));
        QTest::mouseClick(e.cmdAceptarFecha->widget(), Qt::LeftButton);
        QCOMPARE(cajas.Mostrados().size(), 1);
        QVERIFY(cajas.Mostrados().first().contains("ya no existe"));
        QCOMPARE(Guardado(tienda), QStringLiteral("2026-01-01 2026-12-31"));
    }

    void eliminar_data() {
        const auto caso = Pruebas::Tabla<QString, bool, int>();
        caso("No lo deja todo", "General", false, 1);
        caso("Si, con precios y relaciones", "General", true, 1);
        caso("Si, lista vacia", "Vacia", true, 3);
        caso("nombre con apostrofo y comillas", QString::fromUtf8("L'Hiver \"50%\" 🧥"), true, 1);
    }
    void eliminar() {
        const auto [nombre, si, lista] = Pruebas::Fila<QString, bool, int>();
        TiendaPrueba tienda;
        Tienda(tienda, lista == 1 ? nombre : QStringLiteral("General"));
        if (lista == 3)
            tienda.Lista(3, nombre);
        const QStringList antes = tienda.Volcado(), despues = tienda.Volcado(lista);
        RespuestasMensajes cajas;
        cajas.Responder(si);
        bool abiertoTrasNo = false;
        QVERIFY(tienda.AbrirEditor(lista, [&](FrmTarifas &e) {
            QTest::mouseClick(e.cmdEliminar->widget(), Qt::LeftButton);
            abiertoTrasNo = e.Loaded();
        }));
        QCOMPARE(cajas.Mostrados(), QStringList{"¿Desea eliminar la tarifa " + nombre + "?"});
        QCOMPARE(cajas.Titulos(), QStringList{QStringLiteral("Eliminar Tarifa")});
        QCOMPARE(abiertoTrasNo, !si);
        QCOMPARE(tienda.Volcado(), si ? despues : antes);
        QCOMPARE(FilaRegistro(lista) > 0, !si);
        QVERIFY(FilaRegistro(2) > 0);
    }

    void eliminarTodoONada() {
        // A refusal part-way (here the relations' delete) leaves the list whole, and the
        // operator reads the database's own text.
        TiendaPrueba tienda;
        Tienda(tienda);
        tienda.Rechazar("before delete on relaciones_fijas", "relaciones protegidas");
        const QStringList antes = tienda.Volcado();
        RespuestasMensajes cajas;
        bool sigueAbierto = false;
        QVERIFY(tienda.AbrirEditor(1, [&](FrmTarifas &e) {
            QTest::mouseClick(e.cmdEliminar->widget(), Qt::LeftButton);
            sigueAbierto = e.Loaded();
        }));
        QVERIFY(sigueAbierto && !Form::Terminando());
        QCOMPARE(cajas.Mostrados().size(), 2); // the question, then the error report
        QVERIFY2(cajas.Mostrados().at(1).contains("relaciones protegidas"),
                 qPrintable(cajas.Mostrados().at(1)));
        QCOMPARE(tienda.Volcado(), antes);
        QVERIFY(FilaRegistro(1) > 0);
    }

    void eliminarLoQueQueda_data() {
        // What another program of the suite left of the list when it deleted it: nothing, or
        // its prices and the relations that apply it.
        const auto caso = Pruebas::Tabla<QStringList>();
        caso("todo borrado", {"delete from cabecera_precio where identificador = 1",
                              "delete from detalle_precio where identificador = 1",
                              "delete from relaciones_fijas where indice = 'TarifaAplicada' "
                              "and daton = 1"});
        caso("solo la cabecera", {"delete from cabecera_precio where identificador = 1"});
        caso("cabecera y precios", {"delete from cabecera_precio where identificador = 1",
                                    "delete from detalle_precio where identificador = 1"});
    }
    void eliminarLoQueQueda() {
        // Deleting a list that is already gone deletes what is left of it, in the same unit,
        // and says so in words for a delete; the other lists keep all that is theirs.
        const auto [sentencias] = Pruebas::Fila<QStringList>();
        TiendaPrueba tienda;
        Tienda(tienda);
        const QStringList esperado = tienda.Volcado(1);
        RespuestasMensajes cajas;
        QVERIFY(tienda.AbrirEditor(1, [&](FrmTarifas &e) {
            for (const QString &sql : sentencias)
                tienda.Ejecutar(sql);
            QTest::mouseClick(e.cmdEliminar->widget(), Qt::LeftButton);
        }));
        QCOMPARE(cajas.Mostrados(),
                 (QStringList{"¿Desea eliminar la tarifa General?",
                              "La tarifa \"General\" ya no existe: se ha eliminado desde otro "
                              "puesto. No queda nada de ella: se ha borrado también lo que "
                              "quedaba (sus precios y las relaciones que la aplicaban)."}));
        QCOMPARE(tienda.Volcado(), esperado);
        QCOMPARE(FilaRegistro(1), -1);
    }

    // Another terminal deletes the open list, before this one writes (committed) or while it
    // writes (its unit still open: this write waits for it). Nothing is written for a list
    // that is gone, the operator is told, and the editor closes. Or it prices the same product
    // (holding the list's header first, as this program does), not yet committed when this
    // one saves: this save waits, finds the other's price, asks (after its unit) whether to
    // replace it, and on Yes replaces it: one row, this later save's.
    void otroPuesto_data() {
        const auto caso = Pruebas::Tabla<QString, bool>();
        for (const char *accion : {"periodo", "eliminar", "precio"}) {
            const QString nombre = QLatin1String(accion);
            caso(qPrintable(QStringLiteral("%1, borrada antes").arg(nombre)), nombre, false);
            caso(qPrintable(QStringLiteral("%1, borrandose").arg(nombre)), nombre, true);
        }
        caso("precio del mismo producto", "mismo producto", true);
    }
    void otroPuesto() {
        const auto [accion, enCurso] = Pruebas::Fila<QString, bool>();
        const bool borrada = accion != "mismo producto";
        TiendaPrueba tienda;
        Tienda(tienda);
        const QStringList esperado = tienda.Volcado(1);
        QStringList sentencias = {
            "delete from detalle_precio where identificador = 1 and producto = 1",
            "insert into detalle_precio (identificador, producto, precio) values (1, 1, 99)"};
        if (BaseDatosPrueba::EnPostgreSQL())
            sentencias.prepend(
                "select identificador from cabecera_precio where identificador = 1 for update");
        if (borrada)
            sentencias = {
                "delete from cabecera_precio where identificador = 1",
                "delete from detalle_precio where identificador = 1",
                "delete from relaciones_fijas where indice = 'TarifaAplicada' and daton = 1"};
        RespuestasMensajes cajas;
        QString errorOtro;
        std::thread otro;
        bool abierto = false;
        std::unique_ptr<VigiaBloqueo> vigia;
        QVERIFY(tienda.AbrirEditor(1, [&](FrmTarifas &e) {
            if (enCurso)
                vigia = std::make_unique<VigiaBloqueo>(*SesionSuite.Conexion);
            std::promise<void> listo;
            otro = std::thread(OtroPuesto, tienda.db().Cadena(), sentencias, std::ref(listo),
                               vigia.get(), std::ref(errorOtro));
            listo.get_future().wait();
            if (!enCurso)
                otro.join();
            if (accion == "periodo") {
                e.desde->setValue(QDate(2026, 2, 1));
                QTest::mouseClick(e.cmdAceptarFecha->widget(), Qt::LeftButton);
            } else if (accion == "eliminar") {
                QTest::mouseClick(e.cmdEliminar->widget(), Qt::LeftButton);
            } else {
                GuardarPrecio(e, "1", "12,5");
            }
            abierto = e.Loaded();
        }));
        if (otro.joinable())
            otro.join();
        vigia.reset();
        QCOMPARE(errorOtro, QString());
        QCOMPARE(abierto, !borrada);
        if (!borrada) {
            QCOMPARE(cajas.Mostrados().size(), 1);
            QVERIFY2(cajas.Mostrados().at(0).contains("y ahora es 99.\n\n¿Guardar su precio, "
                                                      "12,5, en lugar de 99?"),
                     qPrintable(cajas.Mostrados().at(0)));
            const QString sql = "select %1 from detalle_precio where identificador = 1 and "
                                "producto = 1";
            QCOMPARE(tienda.Valor(sql.arg("count(*)")).toInt(), 1);
            QCOMPARE(tienda.Valor(sql.arg("precio")).toDouble(), 12.5);
            return;
        }
        QCOMPARE(cajas.Mostrados().size(), accion == "eliminar" ? 2 : 1);
        // Told after the unit ended (a box inside it is recorded with a mark, and counted).
        QCOMPARE(cajas.DentroDeUnidad(), 0);
        QCOMPARE(cajas.Mostrados().last(),
                 QStringLiteral("La tarifa \"General\" ya no existe: se ha eliminado desde otro "
                                "puesto. ") +
                     (accion == "eliminar"
                          ? QStringLiteral("No queda nada de ella: se ha borrado también lo que "
                                           "quedaba (sus precios y las relaciones que la "
                                           "aplicaban).")
                          : QStringLiteral("No se ha guardado nada.")));
        // Nothing of list 1 is left or written again (no orphan price); list 2 is untouched.
        QCOMPARE(tienda.Volcado(), esperado);
        QCOMPARE(FilaRegistro(1), -1);
    }
};

TARIFAS_PRUEBAS(TstEditorLista)
#include "tst_editorlista.moc"
