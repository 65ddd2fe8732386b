#pragma once

#include "motor/cambioprecios.h"

#include <QWidget>

class QLabel;
class QTableWidget;

/// What a bulk change would do, shown before anything is written: how many prices change and
/// how many stay, the first rows with old -> new, and every refused row with its reason. The
/// tables carry object names (tblCambian, tblRechazadas), the summary lblResumen.
class VistaPrevia : public QWidget {
    Q_OBJECT
  public:
    explicit VistaPrevia(int decimales, QWidget *padre = nullptr);
    void Mostrar(const VistaPreviaCambio &vista);
    /// Back to nothing shown, as when the input changed since the last preview.
    void Limpiar();

  private:
    int decimales;
    QLabel *lblResumen;
    QTableWidget *tblCambian, *tblRechazadas;
};
