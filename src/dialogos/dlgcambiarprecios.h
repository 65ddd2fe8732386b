#pragma once

#include "motor/cambioprecios.h"
#include "motor/contexto.h"

#include <QDialog>
#include <optional>

class PanelCambio;
class VistaPrevia;
class QLabel;
class QPushButton;

/// "Cambiar precios": a bulk change of one list. The operator sets the change, asks for its
/// preview, and Aplicar writes it in one unit of work. Aplicar is enabled only while the
/// preview shown is that of the change as it now stands. A slip in the input is said in the
/// dialog (lblMensaje), which stays, and nothing is written. Once applied, the dialog closes
/// (accepted) and Resultado holds what the engine came to: the caller tells the operator, with
/// the engine's unit already over. Buttons: btnVistaPrevia, btnAplicar, btnCancelar.
class DlgCambiarPrecios : public QDialog {
    Q_OBJECT
  public:
    DlgCambiarPrecios(const ContextoMotor &contexto, qint32 lista, const QString &nombre,
                      QWidget *padre = nullptr);

    const std::optional<ResultadoCambio> &Resultado() const { return resultado; }

  private:
    void vistaPrevia();
    void aplicar();
    /// The input read; on a slip, empty with its sentence in lblMensaje.
    std::optional<PeticionCambio> leer();

    ContextoMotor contexto;
    qint32 lista;
    PanelCambio *panel;
    VistaPrevia *vista;
    QLabel *lblMensaje;
    QPushButton *btnVistaPrevia, *btnAplicar, *btnCancelar;
    std::optional<ResultadoCambio> resultado;
};
