#pragma once

// The shop every editor and register test starts from. It lives whole in this header, so that
// a test folder needs no library of its own to use it.
#include "apoyo/basedatosprueba.h"
#include "editor/columnas.h"
#include "editor/frmtarifas.h"
#include "platform/ui/modelogrid.h"
#include "register/columnaslistas.h"
#include "register/frmlistas.h"
#include "session/principal.h"
#include "session/sesionsuite.h"
#include "session/vida.h"
#include "suite/datos/svcopciones.h"

#include <QApplication>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QTableView>
#include <algorithm>
#include <functional>
#include <memory>

/// The business type of the size-and-colour shops.
inline const QString TallaColor = QStringLiteral("TALLACOLOR");

inline QStringList Fila(const Pantalla::Grid &g, int fila) {
    QStringList t;
    for (int c = 0; c < g.Cols(); ++c)
        t << g.TextMatrix(fila, c);
    return t;
}

/// The data rows of `g` whose column `columna` holds `valor`.
inline QList<int> FilasCon(const Pantalla::Grid &g, int columna, const QString &valor) {
    QList<int> filas;
    for (int f = 1; f < g.Rows(); ++f)
        if (g.TextMatrix(f, columna) == valor)
            filas << f;
    return filas;
}

/// The register's row of list `lista`, -1 when it is not listed.
inline int FilaRegistro(int lista) {
    const QList<int> filas =
        FilasCon(*frmListas().grid_precios, ColListas::Codigo, QString::number(lista));
    return filas.isEmpty() ? -1 : filas.first();
}

enum class Salida { cmdSalir, CierreVentana };

/// Runs `accion`; when the editor shows meanwhile, runs `mientras` in it and leaves it as
/// `salida` says. True when the editor showed and unloaded itself on the way out. The editor
/// is looked for without blocking: the check may run inside a pass over pending events of the
/// load itself, before the modal show.
inline bool ConEditor(const std::function<void()> &accion,
                      const std::function<void(FrmTarifas &)> &mientras = {},
                      Salida salida = Salida::cmdSalir) {
    bool visto = false, salioSolo = true;
    QTimer sondeo;
    sondeo.setInterval(5);
    QObject::connect(&sondeo, &QTimer::timeout, [&] {
        FrmTarifas &editor = frmTarifas();
        if (!(editor.Loaded() && editor.ventana()->isVisible()))
            return;
        sondeo.stop();
        visto = true;
        if (mientras)
            mientras(editor); // a failed check returns from here; the editor is left all the same
        if (!editor.Loaded())
            return;
        if (salida == Salida::CierreVentana)
            editor.ventana()->close();
        else
            QTest::mouseClick(editor.cmdSalir->widget(), Qt::LeftButton);
        if (editor.Loaded()) {
            qWarning("The editor did not unload itself");
            salioSolo = false;
            editor.Unload();
        }
    });
    sondeo.start();
    accion();
    return visto && salioSolo;
}

/// Double-clicks with the mouse the register's row of list `lista`, with ConEditor.
inline bool DobleClic(int lista, const std::function<void(FrmTarifas &)> &mientras = {},
                      Salida salida = Salida::cmdSalir) {
    QTableView *v = frmListas().grid_precios->vista();
    const QPoint centro = v->visualRect(v->model()->index(FilaRegistro(lista) - 1, 0)).center();
    return ConEditor(
        [&] {
            QTest::mouseClick(v->viewport(), Qt::LeftButton, {}, centro);
            QTest::mouseDClick(v->viewport(), Qt::LeftButton, {}, centro);
        },
        mientras, salida);
}

/// Clicks with the mouse the catalogue's row that shows product `codigo` (and variant `hijo`).
inline bool ClicProducto(FrmTarifas &e, const QString &codigo, const QString &hijo = {}) {
    Pantalla::Grid &g = ModoTallaColor() ? *e.grid_productos_textil : *e.grid_productos;
    QTableView *v = g.vista();
    for (int r = 0; r < v->model()->rowCount(); ++r) {
        const int fila = g.modelo()->filaDeGrid(r);
        if (g.TextMatrix(fila, ColTallaColor::Codigo) == codigo &&
            (hijo.isEmpty() || g.TextMatrix(fila, ColTallaColor::CodigoHijo) == hijo)) {
            QTest::mouseClick(v->viewport(), Qt::LeftButton, {},
                              v->visualRect(v->model()->index(r, 1)).center());
            return true;
        }
    }
    return false;
}

/// Types `texto` into the box and presses Enter.
inline void Teclear(Pantalla::TextBox *caja, const QString &texto) {
    QTest::keyClicks(caja->widget(), texto);
    QTest::keyClick(caja->widget(), Qt::Key_Return);
}

/// The operator picks the catalogue row of product `codigo` (variant `hijo` in the
/// size-and-colour mode), types `precio` and accepts. False when the row is not there.
inline bool GuardarPrecio(FrmTarifas &e, const QString &codigo, const QString &precio,
                          const QString &hijo = {}) {
    const bool textil = ModoTallaColor();
    const Pantalla::Grid &g = textil ? *e.grid_productos_textil : *e.grid_productos;
    const QList<int> filas = FilasCon(g, ColTallaColor::Codigo, codigo);
    for (const int f : filas) {
        if (textil && g.TextMatrix(f, ColTallaColor::CodigoHijo) != hijo)
            continue;
        const auto celda = [&](int c) { return g.TextMatrix(f, c); };
        namespace C = ColTallaColor;
        if (textil)
            e.CargarDatosProd(celda(C::Codigo), celda(C::CodigoTienda), celda(C::Nombre),
                              celda(C::Precio), celda(C::CodigoHijo), celda(C::Talla),
                              celda(C::Color));
        else
            e.CargarDatosProd(celda(ColLlano::Codigo), celda(ColLlano::CodigoTienda),
                              celda(ColLlano::Nombre), celda(ColLlano::Precio), {}, {}, {});
        e.txt_NuevoPrecio->setText(precio);
        QTest::mouseClick(e.cmdAceptar->widget(), Qt::LeftButton);
        return true;
    }
    return false;
}

/// A shop for one test: a fresh suite database as the session's connection, the session as
/// start-up would leave it (design size, look 0, the given business type), helpers that store
/// its rows, and the ways into the editor. The destructor ends the run (screens, services and
/// session) as the program's end does. Setup failures raise ErrorBD.
class TiendaPrueba {
  public:
    explicit TiendaPrueba(const QString &tipoNegocio = {}) {
        Principal::ReiniciarSesion();
        base = std::make_unique<BaseDatosPrueba>();
        SesionSuite.Conexion = std::make_unique<ADODB::Connection>();
        SesionSuite.Conexion->Open(base->Cadena());
        Ejecutar("insert into opciones (numdecimales, estiloaspecto, tiponegocio) values (2, 0, ?)",
                 {tipoNegocio});
        SesionSuite.TipoNegocio = tipoNegocio;
        SesionSuite.NumDecimales = 2;
        SesionSuite.AnchoDiseno = AnchoDisenoTwips;
        SesionSuite.AltoDiseno = AltoDisenoTwips;
        SesionSuite.AnchoPantalla = SesionSuite.AnchoDiseno;
        SesionSuite.AltoPantalla = SesionSuite.AltoDiseno;
    }
    ~TiendaPrueba() {
        frmTarifas().Unload();
        frmListas().Unload();
        // The unloaded screens' widgets go at the next pass of the event loop.
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    TiendaPrueba(const TiendaPrueba &) = delete;
    TiendaPrueba &operator=(const TiendaPrueba &) = delete;

    BaseDatosPrueba &db() { return *base; }
    void Ejecutar(const QString &sql, const QVariantList &valores = {}) {
        base->Ejecutar(sql, valores);
    }
    QVariant Valor(const QString &sql, const QVariantList &valores = {}) {
        return base->Valor(sql, valores);
    }
    /// A row of `tabla` with a value for each of its columns, in order; a QVariant() is Null.
    void Insertar(const QString &tabla, const QVariantList &valores) {
        const QStringList marcas(valores.size(), QStringLiteral("?"));
        Ejecutar("insert into " + tabla + " values (" + marcas.join(',') + ")", valores);
    }

    void Producto(qint64 codigo, const QVariant &codigocliente, const QVariant &nombre,
                  const QVariant &precio, const QVariant &seccion = "S", int borrar = 0) {
        Insertar("productos", {codigo, codigocliente, nombre, precio, seccion, borrar});
    }
    void Variante(const QVariant &padre, const QVariant &hijo, const QVariant &talla,
                  const QVariant &color, const QVariant &codcliente = {},
                  const QVariant &precio = {}) {
        Insertar("productostextil", {padre, hijo, talla, color, codcliente, precio});
    }
    void Talla(int codigo, const QString &nombre) { Insertar("tallas", {codigo, nombre}); }
    void Color(int codigo, const QString &nombre) { Insertar("colorestextil", {codigo, nombre}); }
    void Lista(int codigo, const QString &nombre, QDate desde = QDate(2026, 1, 1),
               QDate hasta = QDate(2026, 12, 31)) {
        const QString d = desde.toString(Qt::ISODate), h = hasta.toString(Qt::ISODate);
        Insertar("cabecera_precio", {codigo, nombre, d, d, h});
    }
    void Precio(int lista, const QVariant &producto, const QVariant &precio,
                const QVariant &codproductotextil = {}) {
        Insertar("detalle_precio", {lista, producto, precio, codproductotextil});
    }

    /// Makes the database refuse `suceso` ("before delete on relaciones_fijas") with `texto`,
    /// for the rows that meet `condicion` (on new.*).
    void Rechazar(const QString &suceso, const QString &texto, const QString &condicion = "true") {
        if (!BaseDatosPrueba::EnPostgreSQL())
            return Ejecutar("create trigger rechazo " + suceso + " when " + condicion +
                            " begin select raise(abort, '" + texto + "'); end");
        Ejecutar("create function rechazar() returns trigger language plpgsql as $$ begin if " +
                 condicion + " then raise exception '" + texto +
                 "'; end if; return coalesce(new, old); end $$");
        Ejecutar("create trigger rechazo " + suceso + " for each row execute function rechazar()");
    }

    /// Every row of the price list tables as text, sorted: equal dumps mean nothing changed.
    /// Without list `sinLista`: its header, its prices and the relations that apply it.
    QStringList Volcado(int sinLista = 0) {
        const QString n = QString::number(sinLista) + '|';
        const QStringList fuera{"cabecera_precio|" + n, "detalle_precio|" + n,
                                "relaciones_fijas|TarifaAplicada|" + n};
        QStringList filas;
        for (const char *tabla : {"cabecera_precio", "detalle_precio", "relaciones_fijas"}) {
            QSqlQuery q(base->Conexion().Base());
            if (!q.exec(QStringLiteral("select * from ") + tabla))
                QTest::qFail(qPrintable(QStringLiteral("Could not dump ") + tabla), __FILE__,
                             __LINE__);
            while (q.next()) {
                QStringList campos{QLatin1String(tabla)};
                for (int c = 0; c < q.record().count(); ++c)
                    campos << (q.isNull(c) ? QStringLiteral("<nulo>") : q.value(c).toString());
                const QString fila = campos.join('|');
                if (std::none_of(fuera.begin(), fuera.end(),
                                 [&](auto &f) { return fila.startsWith(f); }))
                    filas << fila;
            }
        }
        filas.sort();
        return filas;
    }

    /// The register (the program's own, or another terminal's), loaded, shown and active.
    FrmListas &Registro(FrmListas &registro = frmListas()) {
        registro.Load();
        if (!registro.ventana()->isVisible()) {
            registro.ventana()->show();
            if (!QTest::qWaitForWindowExposed(registro.ventana()))
                QTest::qFail("The register's window was not exposed", __FILE__, __LINE__);
        }
        QApplication::setActiveWindow(registro.ventana());
        return registro;
    }
    /// Opens the editor from the shown register by a double click on list `lista`, runs
    /// `mientras` in it and leaves it: DobleClic.
    bool AbrirEditor(int lista, const std::function<void(FrmTarifas &)> &mientras,
                     Salida salida = Salida::cmdSalir) {
        Registro();
        return DobleClic(lista, mientras, salida);
    }
    /// Loads the editor on list `lista` as the hand-over's first touch does, without
    /// showing it: the register (loaded, not shown) holds the code in its lblCodigo.
    FrmTarifas &CargarEditor(int lista) {
        frmListas().Load();
        frmListas().lblCodigo->setCaption(QString::number(lista));
        frmTarifas().Load();
        return frmTarifas();
    }
    /// The editor on list `lista` as the register leaves it: loaded, holding the code, shown,
    /// with the catalogue slid into place.
    FrmTarifas &Abierto(int lista = 1) {
        FrmTarifas &e = CargarEditor(lista);
        e.lblCodigo->setCaption(QString::number(lista));
        e.ventana()->show();
        if (!QTest::qWaitForWindowExposed(e.ventana()))
            QTest::qFail("The editor was not exposed", __FILE__, __LINE__);
        if (!QTest::qWaitFor([&] { return !e.tmrRegresaLista->Enabled(); }, 5000))
            QTest::qFail("The catalogue never slid into place", __FILE__, __LINE__);
        return e;
    }

  private:
    std::unique_ptr<BaseDatosPrueba> base;
    Principal::Vida vida; ///< the screens, services and session of this shop's run: they end
                          ///< before the database goes (a server drops no database in use)
};
