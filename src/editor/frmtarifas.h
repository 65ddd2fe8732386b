#pragma once

#include "platform/ui/dtpicker.h"
#include "platform/ui/form.h"
#include "platform/ui/grid.h"

class MenuGrid;
struct Criterio;

#include <QHash>
#include <QString>
#include <optional>
#include <utility>

/// The editor's own state besides its hidden labels (lblCodigo, lblDesde, lblHasta,
/// lblCodProducto, lblCodCliente, lblCodProdTextil, lblTalla, lblColor, lblNomProd), which
/// are controls of the screen and start from their design texts at every load.
struct EstadoEditor {
    QString colorConFoco; ///< focus colour of the look, decimal text of a 32-bit colour
    QString colorSinFoco; ///< ct_buscar_c's back colour after the look, the same way
    /// The list's price of the product in the panel as the screen showed it when the panel
    /// opened; none when it had none. A save that finds another stored asks first.
    std::optional<QString> precioMostrado;
};

/// Whether two prices (as the grid shows them or as stored, "12,50" or "12.5") are the same
/// amount, or both none.
bool MismoPrecio(const std::optional<QString> &a, const std::optional<QString> &b);

/// frmTarifas, the price list editor, opened modally by the register on one list.
///
/// Two business modes, tested afresh at every use (ModoTallaColor): the plain one lists the
/// catalogue in grid_productos, the size-and-colour one lists a row per variant in
/// grid_productos_textil, inside frResultado laid over grid_productos. grid_Pseleccionados
/// shows the prices the open list holds, with the catalogue's columns.
///
/// Column layouts (row 0 titles, data from row 1), the same in the catalogue and the list:
///   plain:           0 Codigo, 1 Producto, 2 codigo, 3 precio, 4 seccion
///   size-and-colour: 0 Codigo, 1 Producto, 2 codigo, 3 codigo_hijo, 4 Talla, 5 Color,
///                    6 precio, 7 seccion
///
/// Values go into the grids in their default text form. A field the listings test for Null
/// (a variant's code, shop code, price, size and colour; a list row's variant code) follows
/// its rule; every other field is expected to hold a value, and a Null one shows as "" (the
/// row is listed all the same). Row counters are 32-bit: a catalogue of any size lists whole.
/// A failed query raises ErrorBD, which nothing here catches: the error report shows it. A
/// load that fails takes the half-built screen away (Unload) before the error goes on.
class FrmTarifas : public Pantalla::Form {
    Q_OBJECT
  public:
    FrmTarifas();

    EstadoEditor estado;

    // The controls the screen's code works with, bound at each load.
    Pantalla::Frame *frPadre = nullptr, *frHijo = nullptr, *frResultado = nullptr,
                    *frCambio = nullptr, *Frame2 = nullptr;
    Pantalla::Grid *grid_productos = nullptr, *grid_productos_textil = nullptr,
                   *grid_Pseleccionados = nullptr;
    Pantalla::TextBox *ct_buscar_c = nullptr, *ct_buscar_n = nullptr, *txt_NuevoPrecio = nullptr;
    Pantalla::Label *lblCodigo = nullptr, *lblDesde = nullptr, *lblHasta = nullptr,
                    *lblCodProducto = nullptr, *lblCodCliente = nullptr,
                    *lblCodProdTextil = nullptr, *lblTalla = nullptr, *lblColor = nullptr,
                    *lblNomProd = nullptr, *Label5 = nullptr;
    Pantalla::DTPicker *desde = nullptr, *hasta = nullptr;
    Pantalla::Timer *tmrRegresaLista = nullptr;
    Pantalla::CommandButton *cmdSalir = nullptr, *Command1 = nullptr;

    /// Titles and format of grid_productos and grid_Pseleccionados, plain mode.
    void inicializarGrid_Productos();
    /// Titles and format of grid_productos_textil and grid_Pseleccionados, size-and-colour.
    void inicializarGrid_Productos_Textil();

    /// The live catalogue in name order, one row per product, into grid_productos.
    void ListarProductos();
    /// The live catalogue as sellable units, one row per variant and per product without
    /// variants ("-1" in column 3), into grid_productos_textil, in the database's order.
    void ListarProductos_Textil();
    /// The open list's prices of live products, in name order, into grid_Pseleccionados.
    void ListarProductosLista();
    /// Every price of the open list, in the database's order, with the size and colour of
    /// the stored variant, into grid_Pseleccionados.
    void ListarProductosLista_textil();
    /// The size text of variant `codHijo` of product `codProd`; `color` and `codCliente`
    /// get its colour and its own shop code. A variant that isn't found, or whose size or
    /// colour no longer exists, gives three empty texts. `codProd` is a product code as
    /// decimal text (any other text finds nothing); `codHijo` may hold any text.
    QString obtenerTallaYColor(const QString &codProd, const QString &codHijo, QString &color,
                               QString &codCliente);

    /// The code of the open list: lblCodigo of the register, which holds it before the
    /// editor loads. "" when the register isn't loaded or its label holds no whole number
    /// (no list bears such a code): then the list shows no price, and no statement is run
    /// with it.
    static QString CodigoListaAbierta();

    /// For a write of the editor, inside its unit of work (ADODB::Transaccion): true when the
    /// open list (lblCodigo) still exists, and then it stays locked against other terminals'
    /// writes until the unit ends. False when another terminal has deleted it (or the label
    /// holds no list's code): the caller writes nothing, ends the unit, then calls
    /// ListaYaNoExiste. It never shows anything itself.
    bool ListaSigueViva();
    /// After a write's unit has ended and found the list gone: tells the operator so, with
    /// `queSeHizo` ("No se ha guardado nada."), and closes the editor so that the register
    /// lists what remains.
    void ListaYaNoExiste(const QString &queSeHizo);

    // Price entry, saving and search
    // The price panel frCambio lies over grid_Pseleccionados; the screen is in the list view
    // (Label3 and Frame1 shown, the panel hidden) or in the entry view (the other way round).
    Pantalla::Frame *Frame1 = nullptr;
    Pantalla::Label *Label3 = nullptr;
    Pantalla::TextBox *txt_precio = nullptr;
    Pantalla::CommandButton *cmdAceptar = nullptr, *cmdCancelar = nullptr;
    /// A click on a row of the plain catalogue opens that product in the panel. A click on
    /// the title row, below the rows, or on a row without a product code opens nothing.
    void grid_productos_Click();
    /// The same on the size-and-colour catalogue, with the variant of the row.
    void grid_productos_textil_Click();
    /// Fills the state labels and the panel with one product (or variant), empties the new
    /// price, shows the entry view and puts the focus in txt_NuevoPrecio.
    void CargarDatosProd(const QString &codProd, const QString &codCli, const QString &nombre,
                         const QString &precio, const QString &cod_prodTextil, const QString &talla,
                         const QString &color);
    /// Opens product `cod` (an internal code as decimal text) from the database; a code that
    /// productos doesn't hold changes nothing. The variant labels keep their values.
    void CargarProductoXcodigo(const QString &cod);
    void txt_NuevoPrecio_KeyPress(int &KeyAscii);
    /// Saves the typed price (a blank one saves nothing) and goes back to the list view,
    /// emptying both search boxes. A price the record writer can't read is refused with a
    /// message before anything is written, and the panel stays open to mend it.
    void cmdAceptar_Click();
    /// Back to the list view, saving nothing; the search boxes keep their text.
    void cmdCancelar_Click();

    /// The save of the panel's price, plain and size-and-colour. true when the panel may close
    /// (saved, or nothing to save); false when the price was refused and the panel stays, or
    /// the editor closed because the list is gone.
    bool GuardarProducto();
    bool GuardarProducto_textil();
    /// The delete of the old price and the insert of the new one, as one unit of work. false,
    /// writing nothing, when the price is refused (told to the operator) or the list is gone.
    /// A refusal of the database raises ErrorBD with the old price still stored.
    bool GuardarBDProd();
    bool GuardarBDProd_textil();
    /// The saved price into grid_Pseleccionados: its row overwritten, or one row appended.
    void AñadirGridProd();
    void AñadirGridProd_textil();
    /// The first row of grid_Pseleccionados (1..Rows-1) whose column 2 is "" or codProd;
    /// Rows + 1 when none is.
    int ObtenerFila(const QString &codProd);
    /// The same, and column 3 must equal codHijo as well.
    int ObtenerFila_textil(const QString &codProd, const QString &codHijo);

    /// The internal code of the product whose shop code (a live product) or one of whose
    /// extra codes (a like pattern: the database's wildcards work) is `cod`; -1 for none.
    /// The text is bound: any character is just itself in the shop code.
    qint64 iBuscarCodInternoItem(const QString &cod);
    /// Enter in ct_buscar_c: opens the product of that code, or selects the text to type over.
    void ct_buscar_c_KeyPress(int &KeyAscii);
    /// Size-and-colour mode: an emptied code box shows again the rows a code search left out.
    void ct_buscar_c_Change();
    void ct_buscar_n_Change();
    /// Filters the mode's catalogue grid by the start of the name (column 1), case ignored.
    void Buscar(const QString &texto);
    void BusquedaItemsxNombre_Grid(const QString &valor, Pantalla::Grid &grid);
    /// Shows every row of the mode's catalogue grid again.
    void AnularBusqueda();
    void DeshacerBusquedaItemsxNombre_Grid(Pantalla::Grid &grid);
    /// The size-and-colour code search: a variant's own shop code opens that variant; the
    /// code of a product without variants opens it with "-1"; the code of a product with
    /// variants leaves only its rows in the catalogue for the operator to pick one. false
    /// when no product has that code.
    bool BuscarCodigo_textil(const QString &cod);
    /// The catalogue grid of the current mode.
    Pantalla::Grid &GridCatalogo();
    // end of price entry, saving and search

    // What other terminals do to the list in hand (otrospuestos.cpp)
    /// Starts watching the database for what other terminals change (SeguirCambios follows
    /// it); the watcher goes with the window.
    void SeguirOtrosPuestos();
    /// Brings the screen up to what the database holds now, after another terminal's change:
    /// the list's name, its stored period (and the date controls, unless the operator is
    /// changing them) and its prices. When the list has been deleted, the editor closes and
    /// the operator is told. Raised by the screen's VigiaCambios; runs no unit of work.
    void SeguirCambios();
    /// grid_Pseleccionados listed again from the database, from its design rows, at the same
    /// top row when it still has it.
    void ListarPreciosDeNuevo();
    /// Keeps, in estado, the price grid_Pseleccionados shows for the product (and variant) of
    /// the panel's labels.
    void RecordarPrecioMostrado();
    /// Inside a save's unit: the price stored in the list for the row of `criterio` (the
    /// delete's criterion of the save), as text; none when there is no such row.
    std::optional<QString> PrecioGuardado(const Criterio &criterio);
    /// After a save found `guardado` where the screen showed another price, and with its unit
    /// ended: asks whether to save the typed price over it, naming both. Whatever the answer,
    /// the stored price becomes the one shown; on No the list's prices are read again.
    bool ConfirmarPrecioAjeno(const std::optional<QString> &guardado);

    // Validity period and deletion
    Pantalla::CommandButton *cmdAceptarFecha = nullptr, *cmdCancelarFecha = nullptr,
                            *cmdEliminar = nullptr;
    /// Stores the period that desde and hasta show in the open list's header, both dates
    /// whichever changed, and makes it the stored one (lblDesde, lblHasta). No check of the
    /// dates: a period may end before it starts. Writes nothing, and closes the editor, when
    /// another terminal has deleted the list. A refusal of the database raises ErrorBD, with
    /// nothing written and the labels as they were.
    void cambiarFecha();
    /// Puts the stored period back in desde and hasta. A label that holds no date (a list
    /// stored without one) leaves its control on the date it shows.
    void regresarFechas();

    // The context menu of grid_Pseleccionados (menuseleccionados.cpp), the one place that
    // builds it: each item with its shortcut, acting on the grid's current row.
    MenuGrid *menuSeleccionados = nullptr;
    /// The list's prices again as the database now holds them, in either mode, with the
    /// current row kept where it was (or on the last row).
    void RelistarSeleccionados();
    /// Takes the current row's product (its size and colour) out of the open list, after a
    /// question that names it. The catalogue is untouched.
    void mnuQuitar_Click();
    /// A bulk change of the open list; its prices are listed again after it.
    void mnuCambiarPrecios_Click();
    /// The open list's price history, and its undo.
    void mnuHistorial_Click();
    /// The open list to a CSV or XLSX file, from one (its prices listed again after), and on
    /// paper (intercambioseleccionados.cpp).
    void mnuExportar_Click();
    void mnuImportar_Click();
    void mnuImprimir_Click();

  private:
    void crearMenuSeleccionados();
    void desde_Change();
    void hasta_Change();
    void cmdAceptarFecha_Click();
    void cmdCancelarFecha_Click();
    void cmdEliminar_Click();
    /// Shows or hides the two period buttons, always together.
    void botonesFecha(bool visibles);
    // end of validity period and deletion

  protected:
    void Form_Load() override;

  private:
    void enlazarControles();
    void tmrRegresaLista_Timer();
    void cmdSalir_Click();
    void Command1_Click();
    void ct_buscar_c_GotFocus();
    void ct_buscar_c_LostFocus();
    void ct_buscar_n_GotFocus();
    void ct_buscar_n_LostFocus();
    void txt_NuevoPrecio_GotFocus();
    void txt_NuevoPrecio_LostFocus();

    /// What obtenerTallaYColor answers for one variant.
    struct TallaYColor {
        QString talla, color, codCliente;
    };
    /// While ListarProductosLista_textil runs: the list being listed, and the sizes and
    /// colours of the variants of its products, read with one query at the first row
    /// (nothing changes the database in between) instead of one query per row.
    struct VariantesDeLista {
        QString lista;
        QHash<std::pair<qint64, QString>, TallaYColor> porCodigo;
    };
    std::optional<VariantesDeLista> variantesDeLista;
    bool siguiendoCambios = false; ///< SeguirCambios is running (its message box is up)
    void leerVariantesDeLista(VariantesDeLista &variantes);
};

/// The program's one editor screen, made at its first use and owned by Principal::Vida.
FrmTarifas &frmTarifas();
