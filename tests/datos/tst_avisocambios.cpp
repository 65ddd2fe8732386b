// Two terminals on one database: the watcher of one hears what the other commits, and only
// that. What a unit rolls back, a unit that only read, and this terminal's own writes say
// nothing; a unit open on the watched connection holds the news until it ends.
#include "apoyo/basedatosprueba.h"
#include "apoyo/ejecucion.h"
#include "platform/datos/avisocambios.h"
#include "platform/datos/recordset.h"
#include "platform/datos/transaccion.h"
#include "suite/datos/svcregistros.h"

#include <QSignalSpy>

using namespace ADODB;

namespace {

/// Long enough for a watcher to hear a change (it looks twice a second), for the rows where
/// it must hear none.
constexpr int silencio = 1500;

const QString cabecera = QStringLiteral("cabecera_precio");

} // namespace

class TstAvisoCambios : public QObject {
    Q_OBJECT

  private slots:
    void avisa_data() {
        // Who writes (the other terminal or the watched one), how, and whether it is heard.
        const auto caso = Pruebas::Tabla<bool, QString, bool>();
        caso("otro puesto, una unidad que guarda", true, "guardar", true);
        caso("otro puesto, una escritura suelta", true, "suelta", true);
        caso("otro puesto, una unidad deshecha", true, "deshacer", false);
        caso("otro puesto, una unidad que solo lee", true, "leer", false);
        caso("este puesto, una unidad que guarda", false, "guardar", false);
        caso("este puesto, una escritura suelta", false, "suelta", false);
    }
    void avisa() {
        const auto [otro, como, oido] = Pruebas::Fila<bool, QString, bool>();
        BaseDatosPrueba db;
        ADODB::Connection vigilada;
        vigilada.Open(db.Cadena());
        ADODB::VigiaCambios vigia(vigilada);
        QSignalSpy cambios(&vigia, &ADODB::VigiaCambios::Cambio);
        ADODB::Connection &escribe = otro ? db.Conexion() : vigilada;
        SvcRegistros registros;
        const auto insertar = [&] {
            registros.InsertarRegistro(escribe, cabecera, "identificador=1|descripcion=Nueva|", {},
                                       false, {});
        };
        if (como == "suelta") {
            insertar();
        } else {
            ADODB::Transaccion unidad(escribe);
            if (como == "leer") {
                ADODB::Recordset rs;
                rs.Open("select count(*) from cabecera_precio", escribe);
            } else {
                insertar();
            }
            if (como != "deshacer")
                unidad.Commit();
        }
        // Heard once: a change is not announced again at the next look.
        if (oido)
            QTRY_COMPARE(cambios.count(), 1);
        QVERIFY(!cambios.wait(silencio));
        QCOMPARE(cambios.count(), int(oido));
        // The rows written are what the unit left: the watcher itself writes nothing.
        QCOMPARE(db.Valor("select count(*) from cabecera_precio").toInt(),
                 como == "leer" || como == "deshacer" ? 0 : 1);
    }

    void huella_data() {
        // Where the database tells nothing (behind ODBC), a fingerprint of the register and of
        // the list in hand: what changes what a screen shows is heard, what doesn't is not.
        // List 1 holds product 1 at 11 and product 2 at 8; list 2 holds product 1 at 5. Each
        // step of the one unit: table#fields#where (no fields: a delete).
        const auto caso = Pruebas::Tabla<bool, QStringList, bool>();
        const QString precio1 = "detalle_precio#precio=22|#identificador=1 and producto=1";
        caso("un precio de la lista", true, {precio1}, true);
        caso("dos precios intercambiados", true,
             {"detalle_precio#precio=8|#identificador=1 and producto=1",
              "detalle_precio#precio=11|#identificador=1 and producto=2"},
             true);
        caso("un precio de otra lista", true, {"detalle_precio#precio=6|#identificador=2"}, false);
        caso("otro periodo", true,
             {"cabecera_precio#preciovalidohasta=31/12/2027|#identificador=1"}, true);
        caso("otro nombre", true, {"cabecera_precio#descripcion=Verano|#identificador=2"}, true);
        caso("la lista borrada", true,
             {"detalle_precio##identificador=1", "cabecera_precio##identificador=1"}, true);
        caso("este puesto, un precio de la lista", false, {precio1}, false);
    }
    void huella() {
        const auto [otro, pasos, oido] = Pruebas::Fila<bool, QStringList, bool>();
        BaseDatosPrueba db;
        db.Ejecutar("insert into cabecera_precio (identificador, descripcion) values (1, 'A'), "
                    "(2, 'B')");
        db.Ejecutar("insert into detalle_precio (identificador, producto, precio) values "
                    "(1, 1, 11), (1, 2, 8), (2, 1, 5)");
        ADODB::Connection vigilada;
        vigilada.Open(db.Cadena());
        ADODB::VigiaCambios vigia(vigilada, nullptr, ADODB::VigiaCambios::Modo::Huella);
        vigia.VigilarLista(1);
        QSignalSpy cambios(&vigia, &ADODB::VigiaCambios::Cambio);
        // The first read after VigilarLista is the starting point.
        QTest::qWait(ADODB::VigiaCambios::intervaloHuella + 200);
        ADODB::Connection &escribe = otro ? db.Conexion() : vigilada;
        SvcRegistros r;
        ADODB::Transaccion unidad(escribe);
        for (const QString &paso : pasos) {
            const QStringList p = paso.split('#');
            if (p[1].isEmpty())
                r.BorrarRegistro(escribe, p[0], {}, false, p[2]);
            else
                r.ModificarRegistro(escribe, p[0], p[1], {}, false, p[2], 0, {}, {}, {});
        }
        unidad.Commit();
        if (oido)
            QTRY_COMPARE(cambios.count(), 1);
        QVERIFY(!cambios.wait(2 * ADODB::VigiaCambios::intervaloHuella + 200));
        QCOMPARE(cambios.count(), int(oido));
    }

    void unidadAbiertaEspera() {
        // Heard while a unit is open on the watched connection, the change is said after the
        // unit ends, never in the middle of it. On SQLite the open unit holds the file's write
        // lock, so no other terminal can commit meanwhile: only a server shows it.
        SOLO_POSTGRESQL("an SQLite unit keeps every other terminal from committing");
        BaseDatosPrueba db;
        ADODB::Connection vigilada;
        vigilada.Open(db.Cadena());
        ADODB::VigiaCambios vigia(vigilada);
        QSignalSpy cambios(&vigia, &ADODB::VigiaCambios::Cambio);
        SvcRegistros registros;
        {
            ADODB::Transaccion unidad(vigilada);
            registros.InsertarRegistro(db.Conexion(), cabecera, "identificador=1|descripcion=A|",
                                       {}, false, {});
            QVERIFY(!cambios.wait(silencio));
        }
        QTRY_COMPARE(cambios.count(), 1);
    }

    void reconexion() {
        // A connection lost and opened again may have missed news: it counts as a change, and
        // the watcher listens on the new connection.
        SOLO_POSTGRESQL("only a server's connection can be cut from elsewhere");
        BaseDatosPrueba db;
        ADODB::Connection vigilada;
        vigilada.Open(db.Cadena());
        ADODB::VigiaCambios vigia(vigilada);
        QSignalSpy cambios(&vigia, &ADODB::VigiaCambios::Cambio);
        db.Valor("select pg_terminate_backend(pid) from pg_stat_activity where datname = "
                 "current_database() and pid <> pg_backend_pid()");
        try {
            ADODB::Recordset rs;
            rs.Open("select 1", vigilada); // meets the cut, and says so
        } catch (const ErrorBD &) {
        }
        vigilada.Base(); // the next use opens it again
        QTRY_COMPARE(cambios.count(), 1);
        SvcRegistros().InsertarRegistro(db.Conexion(), cabecera, "identificador=1|descripcion=A|",
                                        {}, false, {});
        QTRY_COMPARE(cambios.count(), 2);
    }
};

TARIFAS_PRUEBAS(TstAvisoCambios)
#include "tst_avisocambios.moc"
