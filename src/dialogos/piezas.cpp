// The small pieces of the dialogs.
#include "piezas.h"

#include <QLabel>
#include <QPushButton>

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
