#pragma once

#include "motor/contexto.h"
#include "motor/historial.h"

#include <QDialog>
#include <QList>

class QLabel;
class QLineEdit;
class QPushButton;
class QTableWidget;

/// "Historial de precios" of one list: its operations newest first (when, terminal, kind, how
/// many rows, what), and the rows of the one selected (product, size, colour, old -> new),
/// filtered by the product's name or code. Deshacer undoes the selected operation whole, or
/// nothing when a row of it changed since; its answer is shown once the engine's unit is
/// over, and the list is read again. Controls: tblOperaciones, tblFilas, txtFiltro,
/// btnDeshacer, btnCerrar.
class DlgHistorial : public QDialog {
    Q_OBJECT
  public:
    DlgHistorial(const ContextoMotor &contexto, qint32 lista, const QString &nombre,
                 QWidget *padre = nullptr);

    /// True once an undo has changed the list's prices: the screen shows them again.
    bool HuboCambios() const { return huboCambios; }
    /// The operations shown, in their order.
    const QList<OperacionHistorial> &Operaciones() const { return operaciones; }

  private:
    void leerOperaciones();
    void leerFilas();
    void deshacer();

    ContextoMotor contexto;
    qint32 lista;
    QList<OperacionHistorial> operaciones;
    QTableWidget *tblOperaciones, *tblFilas;
    QLineEdit *txtFiltro;
    QPushButton *btnDeshacer, *btnCerrar;
    bool huboCambios = false;
};
