// The dialog of a list's price history and its undo.
#include "dlghistorial.h"

#include "piezas.h"

#include "platform/ui/form.h"
#include "platform/ui/mensajes.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

using namespace Pantalla;

DlgHistorial::DlgHistorial(const ContextoMotor &c, qint32 l, const QString &nombre, QWidget *padre)
    : QDialog(padre), contexto(c), lista(l) {
    setWindowTitle(QStringLiteral("Historial de precios de la tarifa «%1»").arg(nombre));
    tblOperaciones =
        Tabla("tblOperaciones",
              {QStringLiteral("Fecha"), QStringLiteral("Terminal"), QStringLiteral("Operación"),
               QStringLiteral("Precios"), QStringLiteral("Descripción")});
    tblFilas = Tabla("tblFilas",
                     {QStringLiteral("Producto"), QStringLiteral("Talla"), QStringLiteral("Color"),
                      QStringLiteral("Antes"), QStringLiteral("Después")});
    txtFiltro = new QLineEdit;
    txtFiltro->setObjectName(QStringLiteral("txtFiltro"));
    txtFiltro->setPlaceholderText(QStringLiteral("nombre o código del producto"));
    btnDeshacer = Boton(QStringLiteral("&Deshacer"), "btnDeshacer");
    btnCerrar = Boton(QStringLiteral("Cerrar"), "btnCerrar");

    auto *filtro = new QHBoxLayout;
    filtro->addWidget(new QLabel(QStringLiteral("Productos:")));
    filtro->addWidget(txtFiltro, 1);
    auto *botones = new QHBoxLayout;
    botones->addWidget(btnDeshacer);
    botones->addStretch();
    botones->addWidget(btnCerrar);
    auto *caja = new QVBoxLayout(this);
    caja->addWidget(tblOperaciones, 1);
    caja->addLayout(filtro);
    caja->addWidget(tblFilas, 1);
    caja->addLayout(botones);
    resize(720, 600);

    connect(tblOperaciones, &QTableWidget::itemSelectionChanged, this,
            [this] { Form::Atender([this] { leerFilas(); }); });
    connect(txtFiltro, &QLineEdit::textChanged, this,
            [this] { Form::Atender([this] { leerFilas(); }); });
    connect(btnDeshacer, &QPushButton::clicked, this,
            [this] { Form::Atender([this] { deshacer(); }); });
    connect(btnCerrar, &QPushButton::clicked, this, &QDialog::accept);
    leerOperaciones();
}

void DlgHistorial::leerOperaciones() {
    operaciones = OperacionesDeLista(contexto, lista);
    const QSignalBlocker quieto(tblOperaciones);
    tblOperaciones->setRowCount(0);
    const QLocale regional;
    for (const OperacionHistorial &o : std::as_const(operaciones))
        Fila(tblOperaciones, {regional.toString(o.momento, QLocale::ShortFormat), o.terminal,
                              NombreTipo(o.tipo), QString::number(o.filas), o.descripcion});
    tblOperaciones->resizeColumnsToContents();
    if (!operaciones.isEmpty())
        tblOperaciones->selectRow(0);
    leerFilas();
}

void DlgHistorial::leerFilas() {
    tblFilas->setRowCount(0);
    const int elegida = tblOperaciones->currentRow();
    btnDeshacer->setEnabled(elegida >= 0 && elegida < operaciones.size());
    if (!btnDeshacer->isEnabled())
        return;
    for (const FilaHistorial &f :
         FilasDeOperacion(contexto, operaciones.at(elegida).numero, txtFiltro->text().trimmed()))
        Fila(tblFilas, {f.nombre.isEmpty() ? QString::number(f.producto) : f.nombre, f.talla,
                        f.color, TextoPrecio(f.anterior, contexto.numDecimales),
                        TextoPrecio(f.nuevo, contexto.numDecimales)});
    tblFilas->resizeColumnsToContents();
}

void DlgHistorial::deshacer() {
    const int elegida = tblOperaciones->currentRow();
    if (elegida < 0 || elegida >= operaciones.size())
        return;
    const ResultadoDeshacer r = DeshacerOperacion(contexto, lista, operaciones.at(elegida).numero);
    // The engine's unit is over: the answer may wait on the operator now.
    if (r.estado == ResultadoDeshacer::Deshecha)
        huboCambios = true;
    MsgBoxInformacion(r.mensaje);
    leerOperaciones();
}
