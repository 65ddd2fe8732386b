#include "tiendaprueba.h"

#include "editor/frmtarifas.h"
#include "register/frmlistas.h"
#include "session/principal.h"
#include "session/sesionsuite.h"

#include "platform/ui/modelogrid.h"

#include <QSqlQuery>
#include <QSqlRecord>
#include <QTableView>
#include <QTest>
#include <QTimer>

namespace {

constexpr double AnchoDiseno = 15360;
constexpr double AltoDiseno = 11085;

QString Iso(QDate d) {
    return d.toString(Qt::ISODate);
}

} // namespace

TiendaPrueba::TiendaPrueba(const QString &tipoNegocio) {
    Principal::ReiniciarSesion();
    base = std::make_unique<BaseDatosPrueba>();
    SesionSuite.Conexion = std::make_unique<ADODB::Connection>();
    SesionSuite.Conexion->Open(base->Cadena());
    Ejecutar(QStringLiteral("insert into opciones (numdecimales, estiloaspecto, tiponegocio) "
                            "values (2, 0, ?)"),
             {tipoNegocio});
    SesionSuite.TipoNegocio = tipoNegocio;
    SesionSuite.NumDecimales = 2;
    SesionSuite.AnchoDiseno = AnchoDiseno;
    SesionSuite.AltoDiseno = AltoDiseno;
    Escala(1);
}

TiendaPrueba::~TiendaPrueba() {
    frmTarifas().Unload();
    frmListas().Unload();
    // The unloaded screens' widgets go at the next pass of the event loop.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void TiendaPrueba::Ejecutar(const QString &sql, const QVariantList &valores) {
    base->Ejecutar(sql, valores);
}

void TiendaPrueba::Escala(double factor, double factorAlto) {
    SesionSuite.AnchoPantalla = AnchoDiseno * factor;
    SesionSuite.AltoPantalla = AltoDiseno * (factorAlto > 0 ? factorAlto : factor);
}

void TiendaPrueba::Producto(qint64 codigo, const QVariant &codigocliente, const QVariant &nombre,
                            const QVariant &precio, const QVariant &seccion, int borrar) {
    Ejecutar(
        QStringLiteral("insert into productos (codigo, codigocliente, nombre, precio, seccion, "
                       "borrar) values (?, ?, ?, ?, ?, ?)"),
        {codigo, codigocliente, nombre, precio, seccion, borrar});
}

void TiendaPrueba::Variante(qint64 padre, const QVariant &hijo, const QVariant &talla,
                            const QVariant &color, const QVariant &codcliente,
                            const QVariant &precio) {
    Ejecutar(QStringLiteral("insert into productostextil (codigopadre, codigohijo, talla, color, "
                            "codcliente, precio) values (?, ?, ?, ?, ?, ?)"),
             {padre, hijo, talla, color, codcliente, precio});
}

void TiendaPrueba::Talla(int codigo, const QString &descripcion) {
    Ejecutar(QStringLiteral("insert into tallas (codigo, descripcioncorta) values (?, ?)"),
             {codigo, descripcion});
}

void TiendaPrueba::Color(int codigo, const QString &nombre) {
    Ejecutar(QStringLiteral("insert into colorestextil (codigo, nombre) values (?, ?)"),
             {codigo, nombre});
}

void TiendaPrueba::Lista(int identificador, const QString &nombre, QDate desde, QDate hasta) {
    Ejecutar(QStringLiteral("insert into cabecera_precio (identificador, descripcion, fechaalta, "
                            "preciovalidodesde, preciovalidohasta) values (?, ?, ?, ?, ?)"),
             {identificador, nombre, Iso(desde), Iso(desde), Iso(hasta)});
}

void TiendaPrueba::Precio(int lista, qint64 producto, const QVariant &precio,
                          const QVariant &codproductotextil) {
    Ejecutar(QStringLiteral("insert into detalle_precio (identificador, producto, precio, "
                            "codproductotextil) values (?, ?, ?, ?)"),
             {lista, producto, precio, codproductotextil});
}

FrmListas &TiendaPrueba::Registro() {
    FrmListas &registro = frmListas();
    registro.Load();
    if (!registro.ventana()->isVisible()) {
        registro.ventana()->show();
        if (!QTest::qWaitForWindowExposed(registro.ventana()))
            qWarning("The register's window was not exposed");
    }
    return registro;
}

bool TiendaPrueba::AbrirEditor(int lista, const std::function<void(FrmTarifas &)> &mientras,
                               Salida salida) {
    Grid &grid = *Registro().grid_precios;
    const int fila = FilaRegistro(lista);
    if (fila < 0) {
        qWarning("List %d is not in the register's grid", lista);
        return false;
    }
    QTableView *vista = grid.vista();
    const QPoint centro = vista->visualRect(vista->model()->index(fila - 1, 0)).center();
    return ConEditor(
        [&] {
            QTest::mouseClick(vista->viewport(), Qt::LeftButton, {}, centro);
            QTest::mouseDClick(vista->viewport(), Qt::LeftButton, {}, centro);
        },
        mientras, salida);
}

FrmTarifas &TiendaPrueba::CargarEditor(int lista) {
    FrmListas &registro = frmListas();
    registro.Load();
    registro.lblCodigo->setCaption(QString::number(lista));
    FrmTarifas &editor = frmTarifas();
    editor.Load();
    return editor;
}

FrmTarifas &TiendaPrueba::Abierto(int lista) {
    FrmTarifas &e = CargarEditor(lista);
    e.lblCodigo->setCaption(QString::number(lista)); // as the register hands it over
    e.ventana()->show();
    if (!QTest::qWaitForWindowExposed(e.ventana()))
        qWarning("The editor was not exposed");
    if (!QTest::qWaitFor([&] { return !e.tmrRegresaLista->Enabled(); }, 5000))
        qWarning("The catalogue never slid into place");
    return e;
}

QVariant TiendaPrueba::Valor(const QString &sql, const QVariantList &valores) {
    return base->Valor(sql, valores);
}

void TiendaPrueba::Rechazar(const QString &suceso, const QString &texto, const QString &condicion) {
    const QString cond = condicion.isEmpty() ? QStringLiteral("true") : condicion;
    if (BaseDatosPrueba::EnPostgreSQL()) {
        Ejecutar(QStringLiteral("create function rechazar() returns trigger language plpgsql as "
                                "$$ begin if %1 then raise exception '%2'; end if; if tg_op = "
                                "'DELETE' then return old; end if; return new; end $$")
                     .arg(cond, texto));
        Ejecutar(QStringLiteral("create trigger rechazo %1 for each row execute function "
                                "rechazar()")
                     .arg(suceso));
    } else {
        Ejecutar(QStringLiteral("create trigger rechazo %1 when %2 begin select raise(abort, "
                                "'%3'); end")
                     .arg(suceso, cond, texto));
    }
}

QStringList TiendaPrueba::Volcado() {
    QStringList filas;
    for (const char *tabla : {"cabecera_precio", "detalle_precio", "relaciones_fijas"}) {
        QSqlQuery q(base->Conexion().Base());
        if (!q.exec(QStringLiteral("select * from %1").arg(QLatin1String(tabla))))
            qWarning("Could not dump %s", tabla);
        while (q.next()) {
            QStringList campos{QLatin1String(tabla)};
            for (int c = 0; c < q.record().count(); ++c)
                campos << (q.value(c).isNull() ? QStringLiteral("<nulo>") : q.value(c).toString());
            filas << campos.join(QLatin1Char('|'));
        }
    }
    filas.sort();
    return filas;
}

bool ConEditor(const std::function<void()> &accion,
               const std::function<void(FrmTarifas &)> &mientras, TiendaPrueba::Salida salida) {
    // The editor is looked for without blocking: the check may run inside a pass over pending
    // events of the load itself, before the modal show.
    bool visto = false;
    bool salioSolo = true;
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
        if (salida == TiendaPrueba::Salida::CierreVentana)
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

QStringList Fila(const Grid &g, int fila) {
    QStringList t;
    for (int c = 0; c < g.Cols(); ++c)
        t << g.TextMatrix(fila, c);
    return t;
}

QList<int> FilasCon(const Grid &g, int columna, const QString &valor) {
    QList<int> filas;
    for (int f = 1; f < g.Rows(); ++f)
        if (g.TextMatrix(f, columna) == valor)
            filas << f;
    return filas;
}

int FilaRegistro(int lista) {
    const QList<int> filas = FilasCon(*frmListas().grid_precios, 3, QString::number(lista));
    return filas.isEmpty() ? -1 : filas.first();
}

bool ClicProducto(FrmTarifas &e, const QString &codigo, const QString &hijo) {
    Grid &g = ModoTallaColor() ? *e.grid_productos_textil : *e.grid_productos;
    QTableView *v = g.vista();
    for (int r = 0; r < v->model()->rowCount(); ++r) {
        const int fila = g.modelo()->filaDeGrid(r);
        if (g.TextMatrix(fila, 2) == codigo && (hijo.isEmpty() || g.TextMatrix(fila, 3) == hijo)) {
            QTest::mouseClick(v->viewport(), Qt::LeftButton, {},
                              v->visualRect(v->model()->index(r, 1)).center());
            return true;
        }
    }
    return false;
}

void Teclear(FrmTarifas &e, const QString &texto) {
    QTest::keyClicks(e.txt_NuevoPrecio->widget(), texto);
    QTest::keyClick(e.txt_NuevoPrecio->widget(), Qt::Key_Return);
}

bool GuardarPrecio(FrmTarifas &e, const QString &codigo, const QString &precio,
                   const QString &hijo) {
    const bool textil = ModoTallaColor();
    const Grid &g = textil ? *e.grid_productos_textil : *e.grid_productos;
    int fila = -1;
    for (int f = 1; f < g.Rows() && fila < 0; ++f)
        if (g.TextMatrix(f, 2) == codigo && (!textil || g.TextMatrix(f, 3) == hijo))
            fila = f;
    if (fila < 0)
        return false;
    if (textil)
        e.CargarDatosProd(g.TextMatrix(fila, 2), g.TextMatrix(fila, 0), g.TextMatrix(fila, 1),
                          g.TextMatrix(fila, 6), g.TextMatrix(fila, 3), g.TextMatrix(fila, 4),
                          g.TextMatrix(fila, 5));
    else
        e.CargarDatosProd(g.TextMatrix(fila, 2), g.TextMatrix(fila, 0), g.TextMatrix(fila, 1),
                          g.TextMatrix(fila, 3), {}, {}, {});
    e.txt_NuevoPrecio->setText(precio);
    QTest::mouseClick(e.cmdAceptar->widget(), Qt::LeftButton);
    return true;
}
