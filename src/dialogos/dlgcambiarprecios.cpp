// The dialog of a bulk change of one list.
#include "dlgcambiarprecios.h"

#include "panelcambio.h"
#include "piezas.h"
#include "vistaprevia.h"

#include "platform/ui/form.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Pantalla;

DlgCambiarPrecios::DlgCambiarPrecios(const ContextoMotor &c, qint32 l, const QString &nombre,
                                     QWidget *padre)
    : QDialog(padre), contexto(c), lista(l) {
    setWindowTitle(QStringLiteral("Cambiar precios de la tarifa «%1»").arg(nombre));
    panel = new PanelCambio(contexto);
    vista = new VistaPrevia(contexto.numDecimales);
    lblMensaje = EtiquetaMensaje();
    btnVistaPrevia = Boton(QStringLiteral("&Vista previa"), "btnVistaPrevia");
    btnAplicar = Boton(QStringLiteral("&Aplicar"), "btnAplicar");
    btnCancelar = Boton(QStringLiteral("Cancelar"), "btnCancelar");
    btnVistaPrevia->setDefault(true);
    btnAplicar->setEnabled(false);

    auto *botones = new QHBoxLayout;
    botones->addWidget(btnVistaPrevia);
    botones->addStretch();
    botones->addWidget(btnAplicar);
    botones->addWidget(btnCancelar);
    auto *caja = new QVBoxLayout(this);
    caja->addWidget(panel);
    caja->addWidget(lblMensaje);
    caja->addWidget(vista, 1);
    caja->addLayout(botones);
    Dimensionar(*this, 640, 600);
    panel->setFocus();

    connect(panel, &PanelCambio::Cambiado, this, [this] {
        btnAplicar->setEnabled(false);
        vista->Limpiar();
        lblMensaje->clear();
    });
    // Each button's work goes through the screens' error boundary: a refusal of the database
    // is reported, and the dialog stays with nothing written.
    connect(btnVistaPrevia, &QPushButton::clicked, this,
            [this] { Form::Atender([this] { vistaPrevia(); }); });
    connect(btnAplicar, &QPushButton::clicked, this,
            [this] { Form::Atender([this] { aplicar(); }); });
    connect(btnCancelar, &QPushButton::clicked, this, &QDialog::reject);
}

std::optional<PeticionCambio> DlgCambiarPrecios::leer() {
    QString mensaje;
    std::optional<PeticionCambio> peticion = panel->Leer(lista, mensaje);
    lblMensaje->setText(mensaje);
    return peticion;
}

void DlgCambiarPrecios::vistaPrevia() {
    btnAplicar->setEnabled(false);
    vista->Limpiar();
    const std::optional<PeticionCambio> peticion = leer();
    if (!peticion)
        return;
    const VistaPreviaCambio previa = PrevisualizarCambio(contexto, *peticion);
    if (!previa.listaExiste) {
        lblMensaje->setText(QStringLiteral("La tarifa ya no existe: se ha eliminado desde otro "
                                           "puesto."));
        return;
    }
    vista->Mostrar(previa);
    if (previa.cambian == 0)
        lblMensaje->setText(QStringLiteral("Con este cambio no cambia ningún precio."));
    btnAplicar->setEnabled(previa.cambian > 0);
}

void DlgCambiarPrecios::aplicar() {
    const std::optional<PeticionCambio> peticion = leer();
    if (!peticion)
        return;
    resultado = AplicarCambio(contexto, *peticion);
    accept();
}
