// The preview of a bulk change.
#include "vistaprevia.h"

#include "piezas.h"

#include <QHeaderView>
#include <QLabel>
#include <QTableWidget>
#include <QVBoxLayout>

VistaPrevia::VistaPrevia(int d, QWidget *padre) : QWidget(padre), decimales(d) {
    lblResumen = new QLabel;
    lblResumen->setObjectName(QStringLiteral("lblResumen"));
    lblResumen->setWordWrap(true);
    tblCambian = Tabla("tblCambian", {QStringLiteral("Producto"), QStringLiteral("Talla"),
                                      QStringLiteral("Color"), QStringLiteral("Antes"),
                                      QStringLiteral("Después")});
    tblRechazadas =
        Tabla("tblRechazadas", {QStringLiteral("Producto"), QStringLiteral("Talla"),
                                QStringLiteral("Color"), QStringLiteral("Por qué no cambia")});
    auto *caja = new QVBoxLayout(this);
    caja->setContentsMargins(0, 0, 0, 0);
    caja->addWidget(lblResumen);
    caja->addWidget(tblCambian, 2);
    caja->addWidget(new QLabel(QStringLiteral("Precios que no se pueden cambiar:")));
    caja->addWidget(tblRechazadas, 1);
    Limpiar();
}

void VistaPrevia::Limpiar() {
    lblResumen->setText(QStringLiteral("Pulse «Vista previa» para ver qué precios cambian."));
    tblCambian->setRowCount(0);
    tblRechazadas->setRowCount(0);
}

void VistaPrevia::Mostrar(const VistaPreviaCambio &vista) {
    Limpiar();
    lblResumen->setText(
        QStringLiteral("Cambian %1 precios; quedan igual %2; no se pueden cambiar %3.")
            .arg(vista.cambian)
            .arg(vista.iguales)
            .arg(vista.rechazadas.size()) +
        (vista.cambian > int(vista.primeras.size())
             ? QStringLiteral(" Se muestran los %1 primeros.").arg(vista.primeras.size())
             : QString()));
    for (const FilaCambio &f : vista.primeras)
        Fila(tblCambian, {f.nombre, f.talla, f.color, TextoPrecio(f.anterior, decimales),
                          TextoPrecio(f.nuevo, decimales)});
    for (const FilaCambio &f : vista.rechazadas)
        Fila(tblRechazadas, {f.nombre, f.talla, f.color, f.motivo});
    tblCambian->resizeColumnsToContents();
    tblRechazadas->resizeColumnsToContents();
}
