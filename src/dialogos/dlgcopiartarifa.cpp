// The dialog of a list's copy.
#include "dlgcopiartarifa.h"

#include "panelcambio.h"
#include "piezas.h"
#include "vistaprevia.h"

#include "motor/datoslista.h"
#include "platform/datos/sistema.h"
#include "platform/ui/form.h"

#include <QCheckBox>
#include <QDateEdit>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Pantalla;
using namespace Sistema;

namespace {

QDateEdit *Fecha(const QDate &dia, const char *nombre) {
    auto *d = new QDateEdit(dia);
    d->setObjectName(QLatin1String(nombre));
    d->setCalendarPopup(true);
    d->setDisplayFormat(QLocale().dateFormat(QLocale::ShortFormat));
    return d;
}

} // namespace

DlgCopiarTarifa::DlgCopiarTarifa(const ContextoMotor &c, qint32 o, const QString &nombre,
                                 QWidget *padre)
    : QDialog(padre), contexto(c), origen(o) {
    setWindowTitle(QStringLiteral("Copiar la tarifa «%1»").arg(nombre));
    txtNombre = new QLineEdit(QStringLiteral("Copia de ") + nombre);
    txtNombre->setObjectName(QStringLiteral("txtNombre"));
    // The period a new list starts with.
    dtDesde = Fecha(Hoy(), "dtDesde");
    dtHasta = Fecha(Hoy().addDays(30), "dtHasta");
    chkCambio = new QCheckBox(QStringLiteral("Cambiar los precios de la copia"));
    chkCambio->setObjectName(QStringLiteral("chkCambio"));
    panel = new PanelCambio(contexto);
    panel->setEnabled(false);
    vista = new VistaPrevia(contexto.numDecimales);
    lblMensaje = EtiquetaMensaje();
    btnVistaPrevia = Boton(QStringLiteral("&Vista previa"), "btnVistaPrevia");
    btnCopiar = Boton(QStringLiteral("&Copiar"), "btnCopiar");
    btnCancelar = Boton(QStringLiteral("Cancelar"), "btnCancelar");
    btnCopiar->setDefault(true);
    btnVistaPrevia->setEnabled(false);

    auto *datos = new QFormLayout;
    datos->addRow(QStringLiteral("Nombre de la copia:"), txtNombre);
    datos->addRow(QStringLiteral("Fec. Desde:"), dtDesde);
    datos->addRow(QStringLiteral("Fec. Hasta:"), dtHasta);
    auto *botones = new QHBoxLayout;
    botones->addWidget(btnVistaPrevia);
    botones->addStretch();
    botones->addWidget(btnCopiar);
    botones->addWidget(btnCancelar);
    auto *caja = new QVBoxLayout(this);
    caja->addLayout(datos);
    caja->addWidget(chkCambio);
    caja->addWidget(panel);
    caja->addWidget(lblMensaje);
    caja->addWidget(vista, 1);
    caja->addLayout(botones);
    Dimensionar(*this, 640, 700);

    connect(chkCambio, &QCheckBox::toggled, this, [this](bool si) {
        panel->setEnabled(si);
        btnVistaPrevia->setEnabled(si);
        vista->Limpiar();
    });
    connect(panel, &PanelCambio::Cambiado, this, [this] { vista->Limpiar(); });
    connect(btnVistaPrevia, &QPushButton::clicked, this,
            [this] { Form::Atender([this] { vistaPrevia(); }); });
    connect(btnCopiar, &QPushButton::clicked, this,
            [this] { Form::Atender([this] { copiar(); }); });
    connect(btnCancelar, &QPushButton::clicked, this, &QDialog::reject);
}

QString DlgCopiarTarifa::Nombre() const {
    return txtNombre->text();
}
QDate DlgCopiarTarifa::Desde() const {
    return dtDesde->date();
}
QDate DlgCopiarTarifa::Hasta() const {
    return dtHasta->date();
}

std::optional<PeticionCopia> DlgCopiarTarifa::leer() {
    lblMensaje->clear();
    PeticionCopia peticion;
    peticion.origen = origen;
    peticion.nombre = txtNombre->text();
    peticion.desde = dtDesde->date();
    peticion.hasta = dtHasta->date();
    // The new list's own checks and sentences.
    if (const auto fallo = ComprobarDatosLista(peticion.nombre, peticion.desde, peticion.hasta)) {
        lblMensaje->setText(fallo->mensaje);
        (fallo->campo == FalloDatosLista::Nombre ? static_cast<QWidget *>(txtNombre) : dtDesde)
            ->setFocus();
        return std::nullopt;
    }
    if (chkCambio->isChecked()) {
        QString mensaje;
        peticion.cambio = panel->Leer(origen, mensaje);
        if (!peticion.cambio) {
            lblMensaje->setText(mensaje);
            return std::nullopt;
        }
    }
    return peticion;
}

void DlgCopiarTarifa::vistaPrevia() {
    vista->Limpiar();
    const std::optional<PeticionCopia> peticion = leer();
    if (!peticion || !peticion->cambio)
        return;
    // The copy takes the list's rows as they are: the change on them is the change on it.
    const VistaPreviaCambio previa = PrevisualizarCambio(contexto, *peticion->cambio);
    if (!previa.listaExiste) {
        lblMensaje->setText(QStringLiteral("La tarifa ya no existe: se ha eliminado desde otro "
                                           "puesto."));
        return;
    }
    vista->Mostrar(previa);
}

void DlgCopiarTarifa::copiar() {
    const std::optional<PeticionCopia> peticion = leer();
    if (!peticion)
        return;
    resultado = CopiarLista(contexto, *peticion);
    accept();
}
