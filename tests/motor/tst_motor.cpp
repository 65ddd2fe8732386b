// The engine's operations on the database of the run: a bulk change (preview and apply), a
// copy, a product taken out, the history and its undo, a database without history, and two
// terminals at once.
#include "apoyo/basedatosprueba.h"
#include "apoyo/ejecucion.h"
#include "motor/aritmetica.h"
#include "motor/cambioprecios.h"
#include "motor/copialista.h"
#include "motor/historial.h"
#include "motor/quitarproducto.h"
#include "motor/sqlmotor.h"
#include "platform/datos/transaccion.h"

#include <QSqlQuery>
#include <thread>

using namespace ADODB;

namespace {

/// A small shop on a fresh database: products of two sections, one gone from the catalogue,
/// and list 1 with prices of four of them (one without a price).
struct Tienda {
    BaseDatosPrueba db;
    ContextoMotor contexto;

    explicit Tienda(bool textil = false) {
        contexto.conexion = &db.Conexion();
        contexto.terminal = QStringLiteral("CAJA1");
        contexto.empleado = 3;
        contexto.numDecimales = 2;
        contexto.tallaColor = textil;
        Producto(1, "Abrigo largo", "20", "ABRIGOS");
        Producto(2, "Abrigo corto", "90", "ABRIGOS");
        Producto(3, "Camisa", "12", "CAMISAS");
        Producto(4, "Bufanda retirada", "5", "CAMISAS", 1);
        Producto(5, "Calcetín", "0.10", "CAMISAS");
        Producto(6, "Corbata", "7", "CAMISAS");
        Lista(1, "Invierno");
        Precio(1, 1, "19.95");
        Precio(1, 2, "100");
        Precio(1, 3, QVariant());
        Precio(1, 5, "0.10");
    }
    void Producto(int codigo, const char *nombre, const char *precio, const char *seccion,
                  int borrar = 0) {
        db.Ejecutar("insert into productos (codigo, codigocliente, nombre, precio, seccion, "
                    "borrar) values (?, ?, ?, ?, ?, ?)",
                    {codigo, QString::number(codigo * 100), QString::fromUtf8(nombre),
                     QString::fromLatin1(precio), QString::fromLatin1(seccion), borrar});
    }
    void Variante(int padre, const QString &hijo, int talla, int color, const QVariant &precio) {
        db.Ejecutar("insert into productostextil (codigopadre, codigohijo, talla, color, "
                    "codcliente, precio) values (?, ?, ?, ?, ?, ?)",
                    {padre, hijo, talla, color, hijo, precio});
    }
    void Lista(int codigo, const QString &nombre) {
        db.Ejecutar("insert into cabecera_precio (identificador, descripcion, fechaalta, "
                    "preciovalidodesde, preciovalidohasta) values (?, ?, ?, ?, ?)",
                    {codigo, nombre, QDate(2026, 1, 1), QDate(2026, 1, 1), QDate(2026, 12, 31)});
    }
    void Precio(int lista, int producto, const QVariant &precio, const QVariant &variante = {}) {
        db.Ejecutar("insert into detalle_precio (identificador, producto, precio, "
                    "codproductotextil) values (?, ?, ?, ?)",
                    {lista, producto, precio,
                     variante.isValid() ? variante : QVariant(QMetaType::fromType<QString>())});
    }
    /// The list's rows as "product[/variant]=price" ("-" for none), in order.
    QString Precios(int lista) {
        QSqlQuery q(db.Conexion().Base());
        q.prepare("select producto, coalesce(codproductotextil, ''), cast(precio as text) from "
                  "detalle_precio where identificador = ? order by producto, 2");
        q.addBindValue(lista);
        if (!q.exec())
            qFatal("%s", qPrintable(q.lastError().text()));
        QStringList filas;
        while (q.next()) {
            const QString variante = q.value(1).toString();
            const std::optional<Importe> precio =
                q.value(2).isNull() ? std::nullopt
                                    : Aritmetica::LeerGuardado(q.value(2).toString());
            filas << q.value(0).toString() + (variante.isEmpty() ? QString() : "/" + variante) +
                         "=" + (precio ? precio->TextoSQL() : QStringLiteral("-"));
        }
        return filas.join(';');
    }
    qlonglong Cuenta(const QString &sql, const QVariantList &valores = {}) {
        return db.Valor(sql, valores).toLongLong();
    }
};

ReglaCambio Regla(const QString &porcentaje, const QString &suma = {}, const QString &paso = {},
                  const QString &terminacion = {}) {
    ReglaCambio regla;
    if (LeerRegla({porcentaje, suma, paso, terminacion}, 2, regla))
        qFatal("A rule of the test's own table was refused");
    return regla;
}

const QString Inicial = QStringLiteral("1=19.95;2=100;3=-;5=0.1");

} // namespace

class TstMotor : public QObject {
    Q_OBJECT

  private slots:
    void filasPorLotes() {
        // More rows than a batch holds, and texts that a statement's or a JSON text's quoting
        // must carry whole: every value comes back as it went, Nulls as Nulls.
        Tienda t;
        SQLMotor::TemporalVacia(t.db.Conexion(), QStringLiteral("prueba_lotes"),
                                QStringLiteral("n integer, texto text, importe numeric"));
        const QStringList raros = {QStringLiteral("comilla \" doble"),
                                   QStringLiteral("apóstrofo 'x'"),
                                   QStringLiteral("barra \\ invertida"),
                                   QStringLiteral("dos\nlíneas\ty tab"),
                                   QStringLiteral("€ ñ 漢字"),
                                   QString(""),
                                   QString(QChar(1)) + QStringLiteral("control")};
        const int n = 901; // two whole batches of 400 and what is left
        std::vector<QVariant> valores;
        QStringList esperado;
        for (int i = 0; i < n; ++i) {
            const QString texto = raros[i % raros.size()] + QString::number(i);
            const bool nulo = i % 10 == 3;
            valores.push_back(i);
            valores.push_back(nulo ? SQLMotor::TextoNulo() : QVariant(texto));
            valores.push_back(i % 7 == 0 ? SQLMotor::TextoNulo()
                                         : QVariant(Importe::DeUnidades(i, 2).TextoSQL()));
            esperado << QString::number(i) + QLatin1Char('|') +
                            (nulo ? QStringLiteral("<nulo>") : texto) + QLatin1Char('|') +
                            (i % 7 == 0 ? QStringLiteral("<nulo>")
                                        : Importe::DeUnidades(i, 2).TextoSQL());
        }
        SQLMotor::InsertarPorLotes(
            t.db.Conexion(), QStringLiteral("prueba_lotes"),
            {QStringLiteral("n"), QStringLiteral("texto"), QStringLiteral("importe")}, valores);
        QSqlQuery q(t.db.Conexion().Base());
        QVERIFY(q.exec("select n, texto, cast(importe as text) from prueba_lotes order by n"));
        QStringList leido;
        while (q.next())
            leido << q.value(0).toString() + QLatin1Char('|') +
                         (q.value(1).isNull() ? QStringLiteral("<nulo>") : q.value(1).toString()) +
                         QLatin1Char('|') +
                         (q.value(2).isNull()
                              ? QStringLiteral("<nulo>")
                              : Aritmetica::LeerGuardado(q.value(2).toString())->TextoSQL());
        QCOMPARE(leido.size(), esperado.size());
        for (int i = 0; i < n; ++i)
            QCOMPARE(leido[i], esperado[i]);
    }

    void cambio_data() {
        // base, scope, section or prefix, rule; the list's rows after, and the preview's
        // counts: changed, same, refused
        using B = PeticionCambio::Base;
        using A = PeticionCambio::Alcance;
        const auto caso = Pruebas::Tabla<B, A, QString, QStringList, QString, int, int, int>();
        caso("todos + 10 %", B::Tarifa, A::Todos, "", {"10"}, "1=21.95;2=110;3=-;5=0.11", 3, 0, 1);
        caso("sección, -20 % y ,95", B::Tarifa, A::Seccion, "ABRIGOS", {"-20", "", "", ",95"},
             "1=16.95;2=80.95;3=-;5=0.1", 2, 0, 0);
        caso("nombres que empiezan, sin distinguir mayúsculas", B::Tarifa, A::NombreEmpieza, "abr",
             {"", "0,20"}, "1=20.15;2=100.2;3=-;5=0.1", 2, 0, 0);
        caso("precio del catálogo", B::Catalogo, A::Todos, "", {"0"}, "1=20;2=90;3=12;5=0.1", 3, 1,
             0);
        caso("todo el catálogo a mitad de precio", B::Catalogo, A::Catalogo, "", {"-50"},
             "1=10;2=45;3=6;5=0.05;6=3.5", 5, 0, 0);
        caso("nada cambia", B::Tarifa, A::Todos, "", {"0"}, Inicial, 0, 3, 1);
        caso("0 o menos se deja", B::Tarifa, A::Todos, "", {"", "-50"}, "1=19.95;2=50;3=-;5=0.1", 1,
             0, 3);
        caso("a 1 euro", B::Tarifa, A::Todos, "", {"", "", "1"}, "1=20;2=100;3=-;5=0.1", 1, 1, 2);
    }
    void filas_de_un_mismo_precio_data() {
        // two rows of one price that changes (100) and two of one refused (0,10 - 50): every
        // row counts, in the preview and in the apply
        const auto caso = Pruebas::Tabla<QStringList, int, int>();
        caso("+10 %", {"10"}, 5, 1);
        caso("-50", {"", "-50"}, 2, 4);
    }
    void filas_de_un_mismo_precio() {
        const auto [textos, cambian, rechazadas] = Pruebas::Fila<QStringList, int, int>();
        Tienda t;
        t.Precio(1, 4, "100");
        t.Precio(1, 6, "0.10");
        PeticionCambio p;
        p.lista = 1;
        p.regla = Regla(textos.value(0), textos.value(1));
        const VistaPreviaCambio vista = PrevisualizarCambio(t.contexto, p);
        QCOMPARE(vista.cambian, cambian);
        QCOMPARE(vista.rechazadas.size(), rechazadas);
        const ResultadoCambio r = AplicarCambio(t.contexto, p);
        QCOMPARE(r.cambiadas, cambian);
        QCOMPARE(r.rechazadas, rechazadas);
        QCOMPARE(FilasDeOperacion(t.contexto, r.operacion).size(), cambian);
    }

    void cambio() {
        const auto [base, alcance, filtro, textos, despues, cambian, iguales, rechazadas] =
            Pruebas::Fila<PeticionCambio::Base, PeticionCambio::Alcance, QString, QStringList,
                          QString, int, int, int>();
        Tienda t;
        PeticionCambio p;
        p.lista = 1;
        p.base = base;
        p.alcance = alcance;
        p.seccion = p.prefijo = filtro;
        p.regla = Regla(textos.value(0), textos.value(1), textos.value(2), textos.value(3));

        const VistaPreviaCambio vista = PrevisualizarCambio(t.contexto, p, 2);
        QCOMPARE(t.Precios(1), Inicial); // the preview writes nothing
        QCOMPARE(vista.cambian, cambian);
        QCOMPARE(vista.iguales, iguales);
        QCOMPARE(vista.rechazadas.size(), rechazadas);
        QCOMPARE(vista.primeras.size(), std::min(2, cambian));
        for (const FilaCambio &f : vista.rechazadas)
            QVERIFY2(!f.motivo.isEmpty() && !f.nuevo, qPrintable(f.nombre));
        // The first rows come by name: "Abrigo corto" before "Abrigo largo".
        if (vista.primeras.size() == 2)
            QVERIFY(QString::localeAwareCompare(vista.primeras[0].nombre,
                                                vista.primeras[1].nombre) <= 0);

        const ResultadoCambio r = AplicarCambio(t.contexto, p);
        QVERIFY(r.listaExiste);
        QCOMPARE(t.Precios(1), despues);
        QCOMPARE(r.cambiadas, cambian);
        QCOMPARE(r.rechazadas, rechazadas);

        // One operation with a row for each change; none when nothing changed.
        const QList<OperacionHistorial> ops = OperacionesDeLista(t.contexto, 1);
        QCOMPARE(ops.size(), cambian > 0 ? 1 : 0);
        if (cambian == 0)
            return;
        QCOMPARE(ops[0].numero, r.operacion);
        QCOMPARE(ops[0].tipo, CodigoTipo(TipoOperacion::Cambio));
        QCOMPARE(ops[0].terminal, "CAJA1");
        QCOMPARE(ops[0].empleado, std::optional<qint32>(3));
        QCOMPARE(ops[0].filas, cambian);
        QCOMPARE(FilasDeOperacion(t.contexto, r.operacion).size(), cambian);

        // Undone, the list is as it was, and the undo is an operation of its own.
        const ResultadoDeshacer d = DeshacerOperacion(t.contexto, 1, r.operacion);
        QCOMPARE(d.estado, ResultadoDeshacer::Deshecha);
        QCOMPARE(t.Precios(1), Inicial);
        const QList<OperacionHistorial> despuesDeshacer = OperacionesDeLista(t.contexto, 1);
        QCOMPARE(despuesDeshacer.size(), 2);
        QCOMPARE(despuesDeshacer[0].deshace, std::optional<qint64>(r.operacion));
        // Undoing it twice is refused: the undo itself changed its rows since.
        QCOMPARE(DeshacerOperacion(t.contexto, 1, r.operacion).estado,
                 ResultadoDeshacer::CambiadaDespues);
        QCOMPARE(t.Precios(1), Inicial);
    }

    void textil() {
        // In the size-and-colour mode a variant's standard price is its own, else its
        // product's; the catalogue scope reaches every variant of a live product.
        Tienda t(true);
        t.db.Ejecutar("insert into tallas (codigo, descripcioncorta) values (1, 'M'), (2, 'L')");
        t.db.Ejecutar("insert into colorestextil (codigo, nombre) values (1, 'Azul')");
        t.Variante(1, "1-M", 1, 1, "30");
        t.Variante(1, "1-L", 2, 1, QVariant());
        t.Variante(4, "4-M", 1, 1, "9");
        t.Precio(2, 1, "25", "1-M");
        t.Lista(2, "Textil");
        PeticionCambio p;
        p.lista = 2;
        p.base = PeticionCambio::Base::Catalogo;
        p.alcance = PeticionCambio::Alcance::Catalogo;
        p.regla = Regla("10");
        const VistaPreviaCambio vista = PrevisualizarCambio(t.contexto, p);
        QCOMPARE(vista.cambian, 2);
        QCOMPARE(vista.primeras[0].talla, "L");
        QCOMPARE(vista.primeras[0].color, "Azul");
        AplicarCambio(t.contexto, p);
        QCOMPARE(t.Precios(2), "1/1-L=22;1/1-M=33");
        // Taken out and undone, a variant comes back with its price and its variant.
        const ResultadoQuitar q = QuitarProducto(t.contexto, 2, 1, "1-L");
        QCOMPARE(q.estado, ResultadoQuitar::Quitado);
        QCOMPARE(t.Precios(2), "1/1-M=33");
        QCOMPARE(DeshacerOperacion(t.contexto, 2, q.operacion).estado, ResultadoDeshacer::Deshecha);
        QCOMPARE(t.Precios(2), "1/1-L=22;1/1-M=33");
    }

    void deshacerRechazado_data() {
        const auto caso = Pruebas::Tabla<QString>();
        caso("otro cambio después", "cambio");
        caso("un precio guardado después", "precio");
        caso("el mismo precio guardado otra vez después", "mismo precio");
        caso("un precio escrito sin historial", "sin historial");
        caso("el producto quitado después", "quitar");
    }
    void deshacerRechazado() {
        // A later write of one of the operation's rows refuses the whole undo, naming the
        // product, and nothing is written.
        const auto [despues] = Pruebas::Fila<QString>();
        Tienda t;
        PeticionCambio p;
        p.lista = 1;
        p.regla = Regla("10");
        const qint64 op = AplicarCambio(t.contexto, p).operacion;
        if (despues == "cambio") {
            p.alcance = PeticionCambio::Alcance::NombreEmpieza;
            p.prefijo = "Abrigo l";
            AplicarCambio(t.contexto, p);
        } else if (despues == "precio") {
            ADODB::Transaccion unidad(t.db.Conexion());
            RegistrarPrecio(t.contexto, 1, 1, QString(), "30");
            t.db.Ejecutar("update detalle_precio set precio = 30 where producto = 1");
            unidad.Commit();
        } else if (despues == "mismo precio") {
            // What is stored is what the operation left: only the history tells.
            ADODB::Transaccion unidad(t.db.Conexion());
            RegistrarPrecio(t.contexto, 1, 1, QString(), "21,95");
            unidad.Commit();
        } else if (despues == "sin historial") {
            t.db.Ejecutar("update detalle_precio set precio = 30 where producto = 1");
        } else {
            QCOMPARE(QuitarProducto(t.contexto, 1, 1, QString()).estado, ResultadoQuitar::Quitado);
        }
        const QString antes = t.Precios(1);
        const qlonglong operaciones = t.Cuenta("select count(*) from historial_operacion");
        const ResultadoDeshacer d = DeshacerOperacion(t.contexto, 1, op);
        QCOMPARE(d.estado, ResultadoDeshacer::CambiadaDespues);
        QCOMPARE(d.productos, QStringList{"Abrigo largo"});
        QVERIFY2(d.mensaje.contains("Abrigo largo"), qPrintable(d.mensaje));
        QCOMPARE(t.Precios(1), antes);
        QCOMPARE(t.Cuenta("select count(*) from historial_operacion"), operaciones);
    }

    void registrarPrecio() {
        // The editor's save: the old price (none for a new row) and the new one, in its unit.
        Tienda t;
        {
            ADODB::Transaccion unidad(t.db.Conexion());
            RegistrarPrecio(t.contexto, 1, 1, QString(), "24,5");
            RegistrarPrecio(t.contexto, 1, 6, QString(), "8");
            RegistrarPrecio(t.contexto, 1, 2, QString(), "no es un precio");
            unidad.Commit();
        }
        const QList<OperacionHistorial> ops = OperacionesDeLista(t.contexto, 1);
        QCOMPARE(ops.size(), 2);
        const QList<FilaHistorial> corbata = FilasDeOperacion(t.contexto, ops[0].numero);
        QCOMPARE(corbata.size(), 1);
        QVERIFY(!corbata[0].anterior);
        QCOMPARE(corbata[0].nuevo, Importe::Leer(u"8"));
        const QList<FilaHistorial> abrigo = FilasDeOperacion(t.contexto, ops[1].numero, "LARGO");
        QCOMPARE(abrigo.size(), 1);
        QCOMPARE(abrigo[0].anterior, Importe::Leer(u"19,95"));
        QCOMPARE(abrigo[0].nuevo, Importe::Leer(u"24,5"));
        QVERIFY(FilasDeOperacion(t.contexto, ops[1].numero, "camisa").isEmpty());
        // A rolled-back save leaves no history either.
        {
            ADODB::Transaccion unidad(t.db.Conexion());
            RegistrarPrecio(t.contexto, 1, 3, QString(), "1");
        }
        QCOMPARE(OperacionesDeLista(t.contexto, 1).size(), 2);
        // A deleted list's rows are recorded as removed.
        {
            ADODB::Transaccion unidad(t.db.Conexion());
            RegistrarBorradoLista(t.contexto, 1, "Invierno");
            unidad.Commit();
        }
        const QList<OperacionHistorial> todas = OperacionesDeLista(t.contexto, 1);
        QCOMPARE(todas[0].tipo, CodigoTipo(TipoOperacion::BorrarLista));
        QCOMPARE(todas[0].filas, 4);
    }

    void historialHechoEnUnidadDeshecha() {
        // The history's tables made by a save whose unit is then rolled back go with it; the
        // next save makes them again and keeps its row.
        Tienda t;
        {
            ADODB::Transaccion unidad(t.db.Conexion());
            RegistrarPrecio(t.contexto, 1, 1, QString(), "30");
        }
        {
            ADODB::Transaccion unidad(t.db.Conexion());
            RegistrarPrecio(t.contexto, 1, 1, QString(), "31");
            unidad.Commit();
        }
        const QList<OperacionHistorial> ops = OperacionesDeLista(t.contexto, 1);
        QCOMPARE(ops.size(), 1);
        QCOMPARE(FilasDeOperacion(t.contexto, ops[0].numero).value(0).nuevo, Importe::Leer(u"31"));
    }

    void copia_data() {
        // the change on the way (empty: none); the copy's rows
        const auto caso = Pruebas::Tabla<QString, QString>();
        caso("tal cual", "", "1=19.95;2=100;3=-;5=0.1");
        caso("con + 3 %", "3", "1=20.55;2=103;3=-;5=0.1");
    }
    void copia() {
        const auto [porcentaje, filas] = Pruebas::Fila<QString, QString>();
        Tienda t;
        t.Lista(7, "Otra");
        PeticionCopia c;
        c.origen = 1;
        c.nombre = "Invierno 2027";
        c.desde = QDate(2027, 1, 1);
        c.hasta = QDate(2027, 3, 31);
        if (!porcentaje.isEmpty()) {
            PeticionCambio cambio;
            cambio.regla = Regla(porcentaje);
            c.cambio = cambio;
        }
        const ResultadoCopia r = CopiarLista(t.contexto, c);
        QVERIFY(r.origenExiste);
        QCOMPARE(r.nueva, 8); // the next after the highest
        QCOMPARE(r.filas, 4);
        QCOMPARE(t.Precios(8), filas);
        QCOMPARE(t.Precios(1), Inicial);
        QCOMPARE(t.db.Valor("select descripcion from cabecera_precio where identificador = 8")
                     .toString(),
                 "Invierno 2027");
        const QList<OperacionHistorial> ops = OperacionesDeLista(t.contexto, 8);
        QCOMPARE(ops.size(), 1);
        QCOMPARE(ops[0].filas, 4);
        // Undone, the copy keeps its header and loses its rows.
        QCOMPARE(DeshacerOperacion(t.contexto, 8, r.operacion).estado, ResultadoDeshacer::Deshecha);
        QCOMPARE(t.Precios(8), "");
    }

    void copiaRechazada_data() {
        const auto caso = Pruebas::Tabla<QString, QDate, QString>();
        caso("sin nombre", "", QDate(2027, 1, 1),
             "Tiene que indicar un nombre para la nueva tarifa");
        caso("con barra", "a|b", QDate(2027, 1, 1),
             "El nombre de la tarifa no puede llevar el carácter |");
        caso("periodo al revés", "Nueva", QDate(2028, 1, 1),
             "Compruebe el periodo de validez de la tarifa");
    }
    void copiaRechazada() {
        // The new list's own checks and words; nothing written.
        const auto [nombre, desde, mensaje] = Pruebas::Fila<QString, QDate, QString>();
        Tienda t;
        const PeticionCopia c{1, nombre, desde, QDate(2027, 12, 31), std::nullopt};
        try {
            CopiarLista(t.contexto, c);
            QFAIL("The copy was not refused");
        } catch (const ErrorBD &e) {
            QCOMPARE(e.Texto(), mensaje);
        }
        QCOMPARE(t.Cuenta("select count(*) from cabecera_precio"), 1);
        QCOMPARE(t.Cuenta("select count(*) from detalle_precio"), 4);
    }

    void listaBorradaEnOtroPuesto() {
        // Another terminal deleted the list: each operation writes nothing and says so.
        Tienda t;
        ADODB::Connection otro;
        otro.Open(t.db.Cadena());
        QSqlQuery(otro.Base()).exec("delete from cabecera_precio where identificador = 1");
        PeticionCambio p;
        p.lista = 1;
        p.regla = Regla("10");
        QVERIFY(!PrevisualizarCambio(t.contexto, p).listaExiste);
        const ResultadoCambio r = AplicarCambio(t.contexto, p);
        QVERIFY(!r.listaExiste);
        QVERIFY(r.mensaje.contains("se ha eliminado desde otro puesto"));
        QVERIFY(!CopiarLista(t.contexto, {1, "Copia", QDate(2027, 1, 1), QDate(2027, 2, 1), {}})
                     .origenExiste);
        QCOMPARE(QuitarProducto(t.contexto, 1, 1, QString()).estado, ResultadoQuitar::ListaBorrada);
        QCOMPARE(t.Precios(1), Inicial);
        QCOMPARE(t.Cuenta("select count(*) from cabecera_precio"), 0);
        QCOMPARE(t.Cuenta("select count(*) from historial_operacion"), 0);
    }

    void quitar() {
        Tienda t;
        const ResultadoQuitar q = QuitarProducto(t.contexto, 1, 2, QString());
        QCOMPARE(q.estado, ResultadoQuitar::Quitado);
        QCOMPARE(t.Precios(1), "1=19.95;3=-;5=0.1");
        QCOMPARE(t.Cuenta("select count(*) from productos"), 6); // the catalogue is untouched
        QCOMPARE(QuitarProducto(t.contexto, 1, 2, QString()).estado, ResultadoQuitar::NoEstaba);
        const QList<FilaHistorial> filas = FilasDeOperacion(t.contexto, q.operacion);
        QCOMPARE(filas.size(), 1);
        QCOMPARE(filas[0].nombre, "Abrigo corto");
        QCOMPARE(filas[0].anterior, Importe::Leer(u"100"));
        QVERIFY(!filas[0].nuevo);
        QCOMPARE(DeshacerOperacion(t.contexto, 1, q.operacion).estado, ResultadoDeshacer::Deshecha);
        QCOMPARE(t.Precios(1), Inicial);
        // An operation of another list is not this list's.
        t.Lista(2, "Otra");
        QCOMPARE(DeshacerOperacion(t.contexto, 2, q.operacion).estado, ResultadoDeshacer::NoExiste);
    }

    void sinHistorial() {
        // A database where the history's tables can't be made (here an object already holds
        // one of their names) still changes prices; it says so once; the history is empty.
        Tienda t;
        t.db.Ejecutar("create view historial_precio as select 1 as x");
        PeticionCambio p;
        p.lista = 1;
        p.regla = Regla("10");
        const ResultadoCambio r = AplicarCambio(t.contexto, p);
        QCOMPARE(t.Precios(1), "1=21.95;2=110;3=-;5=0.11");
        QCOMPARE(r.operacion, 0);
        QVERIFY(!HistorialDisponible(t.db.Conexion()));
        QVERIFY(TomarAvisoHistorial(t.db.Conexion()).contains("no guarda el historial"));
        QVERIFY(TomarAvisoHistorial(t.db.Conexion()).isEmpty());
        QVERIFY(OperacionesDeLista(t.contexto, 1).isEmpty());
        QCOMPARE(DeshacerOperacion(t.contexto, 1, 1).estado, ResultadoDeshacer::SinHistorial);
        QCOMPARE(QuitarProducto(t.contexto, 1, 1, QString()).estado, ResultadoQuitar::Quitado);
        // A database that has them says nothing.
        Tienda otra;
        AplicarCambio(otra.contexto, p);
        QVERIFY(TomarAvisoHistorial(otra.db.Conexion()).isEmpty());
    }

    void dosTerminales() {
        // Two bulk changes of one list at once: the second waits for the first's unit and
        // then works on its result, so both apply whole (19,95 -> 21,95 -> 24,15).
        Tienda t;
        PeticionCambio p;
        p.lista = 1;
        p.regla = Regla("10");
        HistorialDisponible(t.db.Conexion());
        ResultadoCambio segundo;
        QString fallo;
        std::atomic<bool> terminado = false;
        std::thread otro;
        {
            ADODB::Transaccion unidad(t.db.Conexion());
            AplicarCambio(t.contexto, p);
            otro = std::thread([&, cadena = t.db.Cadena(), p] {
                try {
                    ADODB::Connection conexion;
                    conexion.Open(cadena);
                    ContextoMotor contexto = t.contexto;
                    contexto.conexion = &conexion;
                    contexto.terminal = "CAJA2";
                    segundo = AplicarCambio(contexto, p);
                } catch (const ErrorBD &e) {
                    fallo = e.Texto();
                }
                terminado = true;
            });
            QTest::qWait(400);
            QVERIFY2(!terminado, qPrintable(fallo)); // it waits for this unit
            unidad.Commit();
        }
        otro.join();
        QVERIFY2(fallo.isEmpty(), qPrintable(fallo));
        QCOMPARE(segundo.cambiadas, 3);
        QCOMPARE(t.Precios(1), "1=24.15;2=121;3=-;5=0.12");
        const QList<OperacionHistorial> ops = OperacionesDeLista(t.contexto, 1);
        QCOMPARE(ops.size(), 2);
        QCOMPARE(ops[0].terminal, "CAJA2");
        // The first can't be undone any more: the second changed its rows.
        QCOMPARE(DeshacerOperacion(t.contexto, 1, ops[1].numero).estado,
                 ResultadoDeshacer::CambiadaDespues);
        QCOMPARE(DeshacerOperacion(t.contexto, 1, ops[0].numero).estado,
                 ResultadoDeshacer::Deshecha);
        QCOMPARE(t.Precios(1), "1=21.95;2=110;3=-;5=0.11");
    }
};

TARIFAS_PRUEBAS(TstMotor)
#include "tst_motor.moc"
