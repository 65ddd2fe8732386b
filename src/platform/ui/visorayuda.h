#pragma once

#include "control.h"

class QTextBrowser;
class QPushButton;

namespace Pantalla {

/// The suite's help viewer: shows one HTML page in a panel. The page is set with RutaPagina
/// and shown by MostrarPagina. Its one event, Aviso, is raised when the operator presses the
/// panel's close button (PedidoCierre is then True) and when a link inside the page is
/// followed (PedidoCierre False).
class VisorAyuda : public Control {
    Q_OBJECT
  public:
    VisorAyuda(const QString &nombre, Control *contenedor, Form *form);

    QString RutaPagina;
    void MostrarPagina();
    bool PedidoCierre() const { return pedidoCierre; }

    /// Where the page at `ruta` is: the path itself (its backslashes read as separators), or,
    /// for a page beside the program that isn't there, the same page in the installed
    /// program's data folder (<prefix>/share/tarifas beside <prefix>/bin). `ruta`, made
    /// readable, when it is in neither place.
    static QString Ubicar(const QString &ruta);

  signals:
    void Aviso();

  private:
    QTextBrowser *pagina;
    QPushButton *cerrar;
    bool pedidoCierre = false;
};

} // namespace Pantalla
