// The small pieces of the dialogs.
#include "piezas.h"

#include <QDialog>
#include <QHeaderView>
#include <QLabel>
#include <QLayout>
#include <QPushButton>
#include <QTableWidget>
#include <algorithm>

QPushButton *Boton(const QString &texto, const char *nombre) {
    auto *b = new QPushButton(texto);
    b->setObjectName(QLatin1String(nombre));
    b->setAutoDefault(false);
    return b;
}

QLabel *EtiquetaMensaje() {
    auto *l = new QLabel;
    l->setObjectName(QStringLiteral("lblMensaje"));
    l->setWordWrap(true);
    l->setStyleSheet(QStringLiteral("color: #a00000"));
    return l;
}

QString TextoPrecio(const std::optional<Importe> &precio, int decimales) {
    return precio ? precio->Texto(decimales) : QStringLiteral("—");
}

QTableWidget *Tabla(const char *nombre, const QStringList &titulos) {
    auto *t = new QTableWidget(0, int(titulos.size()));
    t->setObjectName(QLatin1String(nombre));
    t->setHorizontalHeaderLabels(titulos);
    t->verticalHeader()->hide();
    t->setEditTriggers(QAbstractItemView::NoEditTriggers);
    t->setSelectionBehavior(QAbstractItemView::SelectRows);
    t->setSelectionMode(QAbstractItemView::SingleSelection);
    t->horizontalHeader()->setStretchLastSection(true);
    return t;
}

void Fila(QTableWidget *t, const QStringList &celdas) {
    const int fila = t->rowCount();
    t->insertRow(fila);
    for (int c = 0; c < celdas.size(); ++c)
        t->setItem(fila, c, new QTableWidgetItem(celdas.at(c)));
}

void Dimensionar(QDialog &dialogo, int ancho, int alto) {
    const int minimo = dialogo.layout()->totalMinimumHeightForWidth(ancho);
    dialogo.setMinimumHeight(minimo);
    dialogo.resize(ancho, std::max(alto, minimo));
}
