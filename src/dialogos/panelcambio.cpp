// The bulk change's controls and their reading.
#include "panelcambio.h"

#include "motor/redondeo.h"

#include <QButtonGroup>
#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>

namespace {

/// The steps offered besides the shop's own, with their decimals: a shop keeps only those it
/// can store.
struct PasoOfrecido {
    const char *texto;
    int decimales;
};
constexpr PasoOfrecido PasosOfrecidos[] = {{"0,05", 2}, {"0,10", 2}, {"0,50", 2}, {"1", 0}};
constexpr const char *Terminaciones[] = {",95", ",99", ",90"};
const QString SinTerminacion = QStringLiteral("Ninguna");

template <class T> T *Nombrado(T *w, const char *nombre) {
    w->setObjectName(QLatin1String(nombre));
    return w;
}

} // namespace

PanelCambio::PanelCambio(const ContextoMotor &contexto, QWidget *padre)
    : QWidget(padre), decimales(contexto.numDecimales) {
    cmbBase = Nombrado(new QComboBox, "cmbBase");
    cmbBase->addItems({QStringLiteral("El precio de la tarifa"),
                       QStringLiteral("El precio del artículo en el catálogo")});

    optTodas =
        Nombrado(new QRadioButton(QStringLiteral("Todos los precios de la tarifa")), "optTodas");
    optSeccion =
        Nombrado(new QRadioButton(QStringLiteral("Los productos de la sección")), "optSeccion");
    optNombre =
        Nombrado(new QRadioButton(QStringLiteral("Los nombres que empiezan por")), "optNombre");
    optCatalogo = Nombrado(
        new QRadioButton(QStringLiteral("Todos los artículos del catálogo (los que la tarifa no "
                                        "tiene se añaden)")),
        "optCatalogo");
    optTodas->setChecked(true);
    auto *grupo = new QButtonGroup(this);
    for (QRadioButton *o : {optTodas, optSeccion, optNombre, optCatalogo})
        grupo->addButton(o);
    cmbSeccion = Nombrado(new QComboBox, "cmbSeccion");
    cmbSeccion->addItems(SeccionesCatalogo(contexto));
    txtNombre = Nombrado(new QLineEdit, "txtNombre");

    txtPorcentaje = Nombrado(new QLineEdit, "txtPorcentaje");
    txtPorcentaje->setPlaceholderText(QStringLiteral("-12,5 rebaja; 3 sube"));
    txtSuma = Nombrado(new QLineEdit, "txtSuma");
    txtSuma->setPlaceholderText(QStringLiteral("0"));
    cmbPaso = Nombrado(new QComboBox, "cmbPaso");
    cmbPaso->setEditable(true);
    cmbPaso->addItem(PasoPorDefecto(decimales).Texto(decimales));
    for (const PasoOfrecido &p : PasosOfrecidos)
        if (p.decimales <= decimales && cmbPaso->findText(QLatin1String(p.texto)) < 0)
            cmbPaso->addItem(QLatin1String(p.texto));
    cmbTerminacion = Nombrado(new QComboBox, "cmbTerminacion");
    cmbTerminacion->setEditable(true);
    cmbTerminacion->addItem(SinTerminacion);
    if (decimales >= 2)
        for (const char *t : Terminaciones)
            cmbTerminacion->addItem(QLatin1String(t));

    // One grid: the labels, then the choices of rows with their fields beside them. (Inside a
    // box of their own the choices were squeezed into each other on some screens.)
    auto *formulario = new QGridLayout(this);
    int n = 0;
    const auto fila = [formulario, &n](const QString &rotulo, QWidget *campo) {
        auto *etiqueta = new QLabel(rotulo);
        etiqueta->setBuddy(campo);
        formulario->addWidget(etiqueta, n, 0);
        formulario->addWidget(campo, n++, 1, 1, 2);
    };
    fila(QStringLiteral("&Precio de partida:"), cmbBase);
    fila(QStringLiteral("Precios que cambian:"), optTodas);
    formulario->addWidget(optSeccion, n, 1);
    formulario->addWidget(cmbSeccion, n++, 2);
    formulario->addWidget(optNombre, n, 1);
    formulario->addWidget(txtNombre, n++, 2);
    formulario->addWidget(optCatalogo, n++, 1, 1, 2);
    fila(QStringLiteral("P&orcentaje (%):"), txtPorcentaje);
    fila(QStringLiteral("&Importe que se suma:"), txtSuma);
    fila(QStringLiteral("&Redondear a múltiplos de:"), cmbPaso);
    fila(QStringLiteral("&Terminación de los decimales:"), cmbTerminacion);
    formulario->setColumnStretch(2, 1);

    const auto cambiado = [this] {
        ajustarAlcances();
        emit Cambiado();
    };
    connect(cmbBase, &QComboBox::currentIndexChanged, this, cambiado);
    connect(grupo, &QButtonGroup::buttonToggled, this, cambiado);
    connect(cmbSeccion, &QComboBox::currentIndexChanged, this, cambiado);
    for (QLineEdit *caja : {txtNombre, txtPorcentaje, txtSuma})
        connect(caja, &QLineEdit::textChanged, this, cambiado);
    for (QComboBox *c : {cmbPaso, cmbTerminacion})
        connect(c, &QComboBox::currentTextChanged, this, cambiado);
    ajustarAlcances();
    // The operator comes for the change itself: the percentage takes the keys first.
    setFocusProxy(txtPorcentaje);
}

void PanelCambio::ajustarAlcances() {
    // The whole catalogue only makes sense from the catalogue's prices; a section needs one.
    const bool desdeCatalogo = cmbBase->currentIndex() == 1;
    optCatalogo->setEnabled(desdeCatalogo);
    if (!desdeCatalogo && optCatalogo->isChecked())
        optTodas->setChecked(true);
    optSeccion->setEnabled(cmbSeccion->count() > 0);
    cmbSeccion->setEnabled(optSeccion->isChecked());
    txtNombre->setEnabled(optNombre->isChecked());
}

std::optional<PeticionCambio> PanelCambio::Leer(qint32 lista, QString &mensaje) const {
    PeticionCambio peticion;
    peticion.lista = lista;
    peticion.base = cmbBase->currentIndex() == 1 ? PeticionCambio::Base::Catalogo
                                                 : PeticionCambio::Base::Tarifa;
    if (optSeccion->isChecked()) {
        peticion.alcance = PeticionCambio::Alcance::Seccion;
        peticion.seccion = cmbSeccion->currentText();
    } else if (optNombre->isChecked()) {
        peticion.alcance = PeticionCambio::Alcance::NombreEmpieza;
        peticion.prefijo = txtNombre->text();
    } else if (optCatalogo->isChecked()) {
        peticion.alcance = PeticionCambio::Alcance::Catalogo;
    }
    TextosRegla textos;
    textos.porcentaje = txtPorcentaje->text().trimmed();
    textos.suma = txtSuma->text().trimmed();
    textos.paso = cmbPaso->currentText().trimmed();
    const QString terminacion = cmbTerminacion->currentText().trimmed();
    textos.terminacion =
        terminacion.compare(SinTerminacion, Qt::CaseInsensitive) == 0 ? QString() : terminacion;
    if (const std::optional<FalloRegla> fallo = LeerRegla(textos, decimales, peticion.regla)) {
        mensaje = fallo->mensaje;
        QWidget *mal = fallo->campo == FalloRegla::Porcentaje
                           ? static_cast<QWidget *>(txtPorcentaje)
                       : fallo->campo == FalloRegla::Suma ? static_cast<QWidget *>(txtSuma)
                       : fallo->campo == FalloRegla::Paso ? static_cast<QWidget *>(cmbPaso)
                                                          : cmbTerminacion;
        mal->setFocus();
        return std::nullopt;
    }
    mensaje = ComprobarPeticion(peticion);
    if (!mensaje.isEmpty()) {
        (peticion.alcance == PeticionCambio::Alcance::NombreEmpieza
             ? static_cast<QWidget *>(txtNombre)
             : static_cast<QWidget *>(cmbBase))
            ->setFocus();
        return std::nullopt;
    }
    return peticion;
}
