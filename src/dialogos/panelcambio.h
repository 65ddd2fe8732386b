#pragma once

#include "motor/cambioprecios.h"
#include "motor/contexto.h"

#include <QString>
#include <QWidget>
#include <optional>

class QComboBox;
class QLineEdit;
class QRadioButton;

/// The part of a dialog that gathers a bulk change: the base price, the rows, the percentage
/// and amount, the rounding step and the ending. Reads the catalogue's sections once, when
/// made. It writes nothing; Leer turns what the operator typed into a request, or says why it
/// can't. Its controls carry object names (cmbBase, optTodas, optSeccion, cmbSeccion,
/// optNombre, txtNombre, optCatalogo, txtPorcentaje, txtSuma, cmbPaso, cmbTerminacion).
class PanelCambio : public QWidget {
    Q_OBJECT
  public:
    PanelCambio(const ContextoMotor &contexto, QWidget *padre = nullptr);

    /// The request for list `lista`; on a slip, empty, with `mensaje` the sentence for the
    /// operator and the focus put on the control to mend.
    std::optional<PeticionCambio> Leer(qint32 lista, QString &mensaje) const;

  signals:
    /// Anything the operator changed: a preview already shown no longer holds.
    void Cambiado();

  private:
    void ajustarAlcances();
    int decimales;
    QComboBox *cmbBase, *cmbSeccion, *cmbPaso, *cmbTerminacion;
    QRadioButton *optTodas, *optSeccion, *optNombre, *optCatalogo;
    QLineEdit *txtNombre, *txtPorcentaje, *txtSuma;
};
