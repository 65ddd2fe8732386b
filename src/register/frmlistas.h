#pragma once

#include "platform/ui/dtpicker.h"
#include "platform/ui/form.h"
#include "platform/ui/grid.h"
#include "platform/ui/visorayuda.h"

class MenuGrid;

#include <QDate>
#include <QString>

/// What the register keeps while it lives, besides its hidden label lblCodigo (the code of
/// the price list in hand, which the editor reads from this screen).
struct EstadoListas {
    QString colorConFoco;       ///< focus colour of the look, decimal text of a 32-bit colour
    QString colorSinFoco;       ///< txtNomLista's own back colour at load, the same way
    QString rutaAyuda;          ///< the help page last asked for
    bool ayudaSubiendo = false; ///< the help panel's way: true up, false down
    /// The code cmdNuevo gave the list being created. lblCodigo holds it too, but a double
    /// click on the grid while the panel is open overwrites the label with that row's code.
    QString codigoAlta;
};

/// frmListas, the register of price lists: the first screen the operator sees. A double
/// click on a row opens the editor on that list; the grid is listed again when the editor
/// closes.
class FrmListas : public Pantalla::Form {
    Q_OBJECT
  public:
    FrmListas();

    void inicializarGridPrecios();
    void cargarGridPrecios();
    /// The grid listed again after another terminal's change (a list new, renamed, with
    /// another period, or deleted), with the same list selected when it is still there.
    void SeguirCambios();
    /// The grid brought up to date after the editor that had list `codigo` open closed.
    /// `version` is VersionDatos() from before the editor opened. The editor writes only its
    /// own list's header (its period; its deletion), so when no other connection has written
    /// to the database meanwhile, that list's row alone is read again. The grid is listed
    /// whole when another one has, when the database can't say (any but SQLite), when the list
    /// has no row here or is gone. Either way the first row is current and the grid at its
    /// top, as after a listing.
    void ReleerLista(const QString &codigo, qint64 version);
    /// SQLite's count of the commits other connections made to the file (PRAGMA
    /// data_version); -1 on any other database, or when it can't be read.
    qint64 VersionDatos();
    /// Opens the editor on the list whose code is in lblCodigo, and returns when it closes.
    /// A null date (a list stored without one) hands over an empty label and today's date.
    void VerDetalles(const QString &Nom, const QDate &fdesde, const QDate &fhasta);
    void ColocarAyuda();

    // The new-list panel. GuardarLista gives true when the list was stored; CompruebaDatos
    // tells the operator why it refuses, and puts the focus on the box to mend.
    bool GuardarLista();
    bool CompruebaDatos();
    /// Stores the new list under lblCodigo's code, or, when another terminal has taken that
    /// code since cmdNuevo, under the next free one, which lblCodigo then holds. Raises ErrorBD
    /// with the database's text when it can't store; nothing is left half-written.
    void GuardarBD();
    /// The highest code in cabecera_precio plus one (1 for an empty table or Null codes).
    qint32 DarNuevoCod();
    void LimpiarAlta();
    void ModoAlta();
    void ModoNavegacion();

    EstadoListas estado;

    // The context menu of grid_precios (menulistas.cpp), the one place that builds it: each
    // item with its shortcut, acting on the list of the grid's current row.
    MenuGrid *menuPrecios = nullptr;
    /// A copy of the current row's list, listed here and then opened in the editor as a new
    /// list is.
    void mnuCopiarTarifa_Click();
    /// A bulk change of the current row's list.
    void mnuCambiarPrecios_Click();
    /// The price history of the current row's list, and its undo.
    void mnuHistorial_Click();
    /// The current row's list to a CSV or XLSX file, from one, and on paper
    /// (intercambiolistas.cpp).
    void mnuExportar_Click();
    void mnuImportar_Click();
    void mnuImprimir_Click();

    // The controls the screen's code works with, bound at each load.
    Pantalla::Frame *frCabecera = nullptr, *frHijo = nullptr, *frAltaLista = nullptr,
                    *Frame1 = nullptr, *fr_SeparacionH1 = nullptr;
    Pantalla::Grid *grid_precios = nullptr;
    Pantalla::Label *lblCodigo = nullptr;
    Pantalla::TextBox *txtNomLista = nullptr;
    Pantalla::DTPicker *desde = nullptr, *hasta = nullptr;
    Pantalla::CommandButton *cmdSalir = nullptr, *Command1 = nullptr, *cmdNuevo = nullptr,
                            *cmd_Ayuda = nullptr, *cmdAceptar = nullptr, *cmdCancelar = nullptr;
    Pantalla::Timer *tmrAyuda = nullptr;
    Pantalla::VisorAyuda *Open1 = nullptr;

  protected:
    void Form_Load() override;

  private:
    void enlazarControles();
    void crearMenuPrecios();
    /// The code of the list on grid row `fila`; 0 for a row that holds none.
    qint32 ListaDeFila(int fila) const;
    void grid_precios_DblClick();
    void cmdSalir_Click();
    void Command1_Click();
    void txtNomLista_GotFocus();
    void txtNomLista_LostFocus();
    void cmdNuevo_Click();
    void cmdAceptar_Click();
    void cmdCancelar_Click();
    void cmd_Ayuda_Click();
    void tmrAyuda_Timer();
    void Open1_Aviso();
    /// One try at storing the list under `codigo`: true when stored, false when the insert
    /// was refused and the code turned out to be taken. Any other failure is raised.
    bool InsertarCabecera(const QString &codigo);
};

/// The program's one register screen, made at its first use and owned by Principal::Vida.
FrmListas &frmListas();
