#pragma once

#include "motor/contexto.h"
#include "motor/copialista.h"

#include <QDate>
#include <QDialog>
#include <optional>

class PanelCambio;
class VistaPrevia;
class QCheckBox;
class QDateEdit;
class QLabel;
class QLineEdit;
class QPushButton;

/// "Copiar tarifa": a new list with every price of list `origen`, under a name and a period
/// checked as a new list's are, and optionally a bulk change applied to the copy on the way
/// (its preview is that of the change on the prices the copy takes). A slip is said in the
/// dialog (lblMensaje), which stays, and nothing is written. Once copied the dialog closes
/// (accepted) and Resultado holds the engine's answer. Controls: txtNombre, dtDesde, dtHasta,
/// chkCambio, btnVistaPrevia, btnCopiar, btnCancelar.
class DlgCopiarTarifa : public QDialog {
    Q_OBJECT
  public:
    DlgCopiarTarifa(const ContextoMotor &contexto, qint32 origen, const QString &nombre,
                    QWidget *padre = nullptr);

    const std::optional<ResultadoCopia> &Resultado() const { return resultado; }
    /// The name and period the copy was stored with.
    QString Nombre() const;
    QDate Desde() const;
    QDate Hasta() const;

  private:
    void vistaPrevia();
    void copiar();
    /// The copy asked for; on a slip, empty with its sentence in lblMensaje.
    std::optional<PeticionCopia> leer();

    ContextoMotor contexto;
    qint32 origen;
    QLineEdit *txtNombre;
    QDateEdit *dtDesde, *dtHasta;
    QCheckBox *chkCambio;
    PanelCambio *panel;
    VistaPrevia *vista;
    QLabel *lblMensaje;
    QPushButton *btnVistaPrevia, *btnCopiar, *btnCancelar;
    std::optional<ResultadoCopia> resultado;
};
