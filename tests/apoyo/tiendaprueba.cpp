#include "tiendaprueba.h"

#include "editor/frmtarifas.h"
#include "register/frmlistas.h"
#include "session/principal.h"
#include "session/sesionsuite.h"

#include <QHeaderView>
#include <QElapsedTimer>
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

void TiendaPrueba::Catalogo(int cuantos) {
    Ejecutar(
        QStringLiteral("with recursive n(i) as (select 1 union all select i + 1 from n where "
                       "i < ?) insert into productos (codigo, codigocliente, nombre, precio, "
                       "seccion, borrar) select i, 'C' || i, 'Producto ' || "
                       "substr(cast(1000000 + i as text), 2), i + 0.5, 'S', 0 from n"),
        {cuantos});
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
    FrmListas &registro = Registro();
    Grid &grid = *registro.grid_precios;
    int fila = 0;
    for (int f = 1; f < grid.Rows() && fila == 0; ++f)
        if (grid.TextMatrix(f, 3) == QString::number(lista))
            fila = f;
    if (fila == 0) {
        qWarning("List %d is not in the register's grid", lista);
        return false;
    }

    // The editor is looked for without blocking: the check may run inside a pass over pending
    // events of the load itself, before the modal show.
    bool visto = false;
    bool salioSolo = true;
    QTimer sondeo;
    QElapsedTimer reloj;
    reloj.start();
    sondeo.setInterval(5);
    QObject::connect(&sondeo, &QTimer::timeout, [&] {
        FrmTarifas &editor = frmTarifas();
        const bool mostrado = editor.Loaded() && editor.ventana()->isVisible();
        if (!mostrado && reloj.elapsed() < 60000)
            return;
        sondeo.stop();
        if (mostrado) {
            visto = true;
            mientras(editor); // a failed check returns from here; the editor is left all the same
        }
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

    QTableView *vista = grid.vista();
    const QRect celda = vista->visualRect(vista->model()->index(fila - 1, 0));
    QTest::mouseClick(vista->viewport(), Qt::LeftButton, {}, celda.center());
    QTest::mouseDClick(vista->viewport(), Qt::LeftButton, {}, celda.center());
    sondeo.stop();
    return visto && salioSolo;
}

FrmTarifas &TiendaPrueba::CargarEditor(int lista) {
    FrmListas &registro = frmListas();
    registro.Load();
    registro.lblCodigo->setCaption(QString::number(lista));
    FrmTarifas &editor = frmTarifas();
    editor.Load();
    return editor;
}
