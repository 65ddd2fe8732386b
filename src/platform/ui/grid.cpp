#include "grid.h"

#include "modelogrid.h"
#include "twips.h"

#include <QApplication>
#include <QEvent>
#include <QHeaderView>
#include <QMouseEvent>
#include <QPainter>
#include <QProxyStyle>
#include <QScrollBar>
#include <QStyleFactory>
#include <QStyledItemDelegate>
#include <QTableView>

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace Pantalla {

namespace {

/// The view of a grid: a table view whose mouse handling follows the grid's rules (only the
/// left button picks a row, a press outside the cells is ignored) and which tells the grid
/// about presses and double clicks on the cells and on the title row.
class VistaGrid : public QTableView {
    Q_OBJECT
  public:
    VistaGrid() { horizontalHeader()->viewport()->installEventFilter(this); }

    /// Lays out now what a reset left for later, so the scroll range fits the rows.
    void ponerAlDia() { executeDelayedItemsLayout(); }

    /// True while the view picks a current cell of its own accord, which isn't a choice of
    /// the operator's and so mustn't move Row.
    bool eligiendoSola = false;

  signals:
    /// A left press or double click on the cells; an invalid index below the last row.
    void pulsada(const QModelIndex &indice);
    void dobleClic(const QModelIndex &indice);
    void tituloPulsado();
    void tituloDobleClic();
    void fuenteCambiada();

  protected:
    void mousePressEvent(QMouseEvent *e) override {
        if (e->button() != Qt::LeftButton) {
            e->accept();
            return;
        }
        // A click reaches the view from the event loop, where pending changes are published
        // anyway; publishing here too keeps indexAt true to the storage in every order.
        static_cast<ModeloGrid *>(model())->actualizar();
        const QModelIndex indice = indexAt(e->position().toPoint());
        if (!indice.isValid()) {
            // Below the rows: the grid is clicked all the same, and no row is chosen.
            e->accept();
            if (!hasFocus() && focusPolicy() != Qt::NoFocus)
                setFocus(Qt::MouseFocusReason);
            emit pulsada(indice);
            return;
        }
        QTableView::mousePressEvent(e);
        emit pulsada(indice);
    }

    void mouseDoubleClickEvent(QMouseEvent *e) override {
        // Not handed to QTableView: it would open an editor, or take a double click on
        // another cell for a press.
        e->accept();
        if (e->button() != Qt::LeftButton)
            return;
        static_cast<ModeloGrid *>(model())->actualizar();
        emit dobleClic(indexAt(e->position().toPoint()));
    }

    void changeEvent(QEvent *e) override {
        QTableView::changeEvent(e);
        if (e->type() == QEvent::FontChange)
            emit fuenteCambiada();
    }

    // HighLight 2 shows the selection only with the focus: paint again when it comes and goes.
    void focusInEvent(QFocusEvent *e) override {
        // Given the focus with no current cell, the view makes the first one current; the
        // grid has no current row until a click or a key chooses one.
        const bool habia = currentIndex().isValid();
        eligiendoSola = true;
        QTableView::focusInEvent(e);
        eligiendoSola = false;
        if (!habia && currentIndex().isValid())
            selectionModel()->clearCurrentIndex();
        viewport()->update();
    }
    void focusOutEvent(QFocusEvent *e) override {
        QTableView::focusOutEvent(e);
        viewport()->update();
    }

    bool eventFilter(QObject *objeto, QEvent *e) override {
        if (objeto == horizontalHeader()->viewport()) {
            if (e->type() == QEvent::MouseButtonPress &&
                static_cast<QMouseEvent *>(e)->button() == Qt::LeftButton)
                emit tituloPulsado();
            else if (e->type() == QEvent::MouseButtonDblClick &&
                     static_cast<QMouseEvent *>(e)->button() == Qt::LeftButton)
                emit tituloDobleClic();
        }
        return QTableView::eventFilter(objeto, e);
    }
};

/// Paints a cell as the grid control did: its background, its text clipped to the cell with
/// the column's alignment, and the selection as HighLight says (0 never, 1 always, 2 only
/// while the grid has the focus). Simpler than the style's item painting, which lays out
/// each text for wrapping and eliding that a grid never does: a repaint of a full grid costs
/// a fraction of it.
class DelegadoGrid : public QStyledItemDelegate {
  public:
    DelegadoGrid(QAbstractItemView *suVista, int comoResaltar)
        : QStyledItemDelegate(suVista), vista(suVista), resaltado(comoResaltar) {}

    void paint(QPainter *p, const QStyleOptionViewItem &opcion,
               const QModelIndex &indice) const override {
        const QPalette::ColorGroup grupo =
            !(opcion.state & QStyle::State_Enabled) ? QPalette::Disabled
            : (opcion.state & QStyle::State_Active) ? QPalette::Active
                                                    : QPalette::Inactive;
        const bool marcada = (opcion.state & QStyle::State_Selected) &&
                             (resaltado == 1 || (resaltado == 2 && vista->hasFocus()));
        if (marcada) {
            p->fillRect(opcion.rect, opcion.palette.brush(grupo, QPalette::Highlight));
        } else {
            const QVariant fondo = indice.data(Qt::BackgroundRole);
            if (fondo.isValid())
                p->fillRect(opcion.rect, qvariant_cast<QColor>(fondo));
        }
        const QString texto = indice.data(Qt::DisplayRole).toString();
        if (!texto.isEmpty()) {
            p->setPen(
                opcion.palette.color(grupo, marcada ? QPalette::HighlightedText : QPalette::Text));
            p->setFont(opcion.font);
            const int alineacion = indice.data(Qt::TextAlignmentRole).toInt();
            p->drawText(opcion.rect.adjusted(MargenTexto, 0, -MargenTexto, 0),
                        alineacion | Qt::TextSingleLine, texto);
        }
        if (opcion.state & QStyle::State_HasFocus) {
            QStyleOptionFocusRect foco;
            foco.QStyleOption::operator=(opcion);
            foco.backgroundColor =
                opcion.palette.color(grupo, marcada ? QPalette::Highlight : QPalette::Base);
            vista->style()->drawPrimitive(QStyle::PE_FrameFocusRect, &foco, p, vista);
        }
    }

  private:
    static constexpr int MargenTexto = 2; ///< pixels between a cell's border and its text

    QAbstractItemView *vista;
    int resaltado;
};

/// The application's style, but for the colour of the lines between cells (GridColor).
class EstiloGrid : public QProxyStyle {
  public:
    EstiloGrid(const QColor &colorLineas, QObject *dueno)
        : QProxyStyle(QStyleFactory::create(QApplication::style()->name())), lineas(colorLineas) {
        setParent(dueno); // a widget doesn't own the style it is given
    }

    int styleHint(StyleHint consejo, const QStyleOption *opcion, const QWidget *widget,
                  QStyleHintReturn *retorno) const override {
        if (consejo == SH_Table_GridLineColor && lineas.isValid())
            return int(lineas.rgba());
        return QProxyStyle::styleHint(consejo, opcion, widget, retorno);
    }

  private:
    QColor lineas;
};

VistaGrid *ComoVista(QTableView *tabla) {
    return static_cast<VistaGrid *>(tabla);
}

int APixelesMinimo1(double twips) {
    return std::max(1, APixeles(twips));
}

} // namespace

Grid::Grid(const QString &nombre, Control *padre, Form *pantalla, const DisenoGrid &diseno)
    : Control(nombre, padre, pantalla), aspecto(diseno), filaActual(diseno.rows > 1 ? 1 : 0),
      filasMinimas(diseno.rows) {
    if (diseno.fixedRows != 1 || diseno.fixedCols != 0)
        throw std::invalid_argument(
            QStringLiteral("%1: la rejilla admite una fila de títulos y ninguna columna fija "
                           "(FixedRows %2, FixedCols %3)")
                .arg(nombre)
                .arg(diseno.fixedRows)
                .arg(diseno.fixedCols)
                .toStdString());
    if (diseno.rows < 1 || diseno.cols < 1)
        throw std::invalid_argument(QStringLiteral("%1: diseño con Rows %2 y Cols %3; ambos "
                                                   "han de ser 1 o más")
                                        .arg(nombre)
                                        .arg(diseno.rows)
                                        .arg(diseno.cols)
                                        .toStdString());

    almacen = new ModeloGrid(diseno.rows, diseno.cols, this);
    auto *vista = new VistaGrid;
    tabla = vista;
    vista->setModel(almacen);
    vista->setItemDelegate(new DelegadoGrid(vista, diseno.highLight));

    // MSFlexGrid look and manners: no row header, titles that don't sort or select, no
    // editing, Tab leaves the grid, one row per scroll step, texts clipped as they are.
    QHeaderView *vh = vista->verticalHeader();
    vh->hide();
    vh->setMinimumSectionSize(1);
    vh->setSectionResizeMode(QHeaderView::Fixed);
    QHeaderView *hh = vista->horizontalHeader();
    hh->setMinimumSectionSize(1);
    hh->setSectionsClickable(false);
    hh->setHighlightSections(false);
    hh->setSectionResizeMode(QHeaderView::Fixed);
    hh->setStretchLastSection(false);
    hh->setDefaultSectionSize(APixeles(AnchoColumnaPorOmision));
    vista->setEditTriggers(QAbstractItemView::NoEditTriggers);
    vista->setTabKeyNavigation(false);
    vista->setCornerButtonEnabled(false);
    vista->setWordWrap(false);
    vista->setTextElideMode(Qt::ElideNone);
    vista->setVerticalScrollMode(QAbstractItemView::ScrollPerItem);
    vista->setDragEnabled(false);
    if (diseno.selectionMode == 1) {
        vista->setSelectionBehavior(QAbstractItemView::SelectRows);
        vista->setSelectionMode(QAbstractItemView::SingleSelection);
    } else {
        vista->setSelectionBehavior(QAbstractItemView::SelectItems);
        vista->setSelectionMode(QAbstractItemView::ContiguousSelection);
    }
    const bool horizontal = diseno.scrollBars == 1 || diseno.scrollBars == 3;
    const bool vertical = diseno.scrollBars == 2 || diseno.scrollBars == 3;
    vista->setHorizontalScrollBarPolicy(horizontal ? Qt::ScrollBarAsNeeded
                                                   : Qt::ScrollBarAlwaysOff);
    vista->setVerticalScrollBarPolicy(vertical ? Qt::ScrollBarAsNeeded : Qt::ScrollBarAlwaysOff);
    vista->setShowGrid(true);
    vista->setStyle(new EstiloGrid(AColor(diseno.gridColor), vista));

    ponerWidget(vista);
    aplicarPaleta();
    Control::setForeColor(diseno.foreColor);
    almacen->setFondo(diseno.backColor == SinColor ? QColor() : AColor(diseno.backColor));
    almacen->setFondoFijo(diseno.backColorFixed == SinColor ? QColor()
                                                            : AColor(diseno.backColorFixed));
    almacen->setTextoFijo(diseno.foreColorFixed == SinColor ? QColor()
                                                            : AColor(diseno.foreColorFixed));

    // The view's rows are the shown ones only: the grid row a press falls on is read through
    // the published map, so a filtered grid opens the row the operator sees.
    connect(vista, &VistaGrid::pulsada, this, [this](const QModelIndex &indice) {
        if (indice.isValid()) {
            filaActual = filaRaton = almacen->filaDeGrid(indice.row());
            colActual = indice.column();
            mostrarActual(false);
        } else {
            filaRaton = -1;
        }
        emit Click();
    });
    connect(vista, &VistaGrid::dobleClic, this, [this](const QModelIndex &indice) {
        if (!indice.isValid()) {
            filaRaton = -1;
            emit DblClick();
            return;
        }
        const int fila = filaRaton = almacen->filaDeGrid(indice.row());
        if (fila != filaActual) {
            filaActual = fila;
            colActual = indice.column();
            mostrarActual(false);
        }
        emit DblClick();
    });
    connect(vista, &VistaGrid::tituloPulsado, this, [this] {
        filaRaton = 0;
        emit Click();
    });
    connect(vista, &VistaGrid::tituloDobleClic, this, [this] {
        filaRaton = 0;
        emit DblClick();
    });
    connect(vista, &VistaGrid::fuenteCambiada, this, &Grid::trasCambioDeFuente);
    connect(vista->selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this](const QModelIndex &actual) {
                // Keys and drags move the view's current index; Row follows it. A reset
                // leaves no current index, and Row stays where it was.
                if (sincronizando || !actual.isValid() || ComoVista(tabla)->eligiendoSola)
                    return;
                filaActual = almacen->filaDeGrid(actual.row());
                colActual = actual.column();
            });
    // Connected after the view's own handling of the reset, so the view is ready here.
    connect(almacen, &QAbstractItemModel::modelAboutToBeReset, this, &Grid::antesDePublicar);
    connect(almacen, &QAbstractItemModel::modelReset, this, &Grid::trasPublicar);

    trasCambioDeFuente();
    for (int c = 0; c < almacen->columnas(); ++c)
        aplicarColumna(c);
}

Grid::~Grid() {
    // The view outlives this part of the object (the control base deletes it): nothing it
    // does on its way out may reach the grid.
    if (tabla) {
        disconnect(tabla, nullptr, this, nullptr);
        disconnect(tabla->selectionModel(), nullptr, this, nullptr);
    }
    disconnect(almacen, nullptr, this, nullptr);
}

// ---- checks ----

void Grid::fueraDeRango(const QString &que) const {
    throw std::out_of_range(
        QStringLiteral("%1.%2: subíndice fuera del intervalo (Rows %3, Cols %4)")
            .arg(objectName(), que)
            .arg(almacen->filas())
            .arg(almacen->columnas())
            .toStdString());
}

void Grid::fueraDeRango(const char *miembro, int indice) const {
    fueraDeRango(QStringLiteral("%1(%2)").arg(QLatin1String(miembro)).arg(indice));
}

void Grid::fueraDeRango(const char *miembro, int fila, int columna) const {
    fueraDeRango(QStringLiteral("%1(%2, %3)").arg(QLatin1String(miembro)).arg(fila).arg(columna));
}

// The checks stand in the way of every cell read and every RowHeight of the name search's
// walk: kept small enough to inline, with the message built elsewhere.
inline void Grid::comprobarFila(const char *miembro, int fila) const {
    if (unsigned(fila) >= unsigned(almacen->filas())) [[unlikely]]
        fueraDeRango(miembro, fila);
}

inline void Grid::comprobarColumna(const char *miembro, int columna) const {
    if (unsigned(columna) >= unsigned(almacen->columnas())) [[unlikely]]
        fueraDeRango(miembro, columna);
}

inline void Grid::comprobarCelda(const char *miembro, int fila, int columna) const {
    const bool dentro = unsigned(fila) < unsigned(almacen->filas()) &&
                        unsigned(columna) < unsigned(almacen->columnas());
    if (!dentro) [[unlikely]]
        fueraDeRango(miembro, fila, columna);
}

// ---- size and texts ----

int Grid::Rows() const {
    return almacen->filas();
}

void Grid::setRows(int n) {
    if (n < 1)
        fueraDeRango(
            QStringLiteral("Rows = %1 (la fila de títulos queda siempre: Rows 1 o más)").arg(n));
    almacen->setFilas(n);
    // A grid filled from its title row starts at its first data row, as the grid control
    // did: a handler that reads Row never reads the titles of a filled grid.
    filaActual = filaActual == 0 ? std::min(1, n - 1) : std::min(filaActual, n - 1);
    filasMinimas = std::min(filasMinimas, n);
}

int Grid::Cols() const {
    return almacen->columnas();
}

void Grid::setCols(int n) {
    if (n < 1)
        fueraDeRango(QStringLiteral("Cols = %1 (una columna o más)").arg(n));
    almacen->setColumnas(n);
    colActual = std::min(colActual, n - 1);
}

int Grid::FixedRows() const {
    return 1;
}

QString Grid::TextMatrix(int fila, int columna) const {
    comprobarCelda("TextMatrix", fila, columna);
    return almacen->texto(fila, columna);
}

bool Grid::TextoIgual(int fila, int columna, QStringView texto) const {
    comprobarCelda("TextMatrix", fila, columna);
    const VistaTexto v = almacen->vista(fila, columna);
    if (v.largo != texto.size())
        return false;
    return v.utf16 ? QStringView(reinterpret_cast<const QChar *>(v.datos), v.largo) == texto
                   : texto.compare(QLatin1StringView(v.datos, v.largo)) == 0;
}

void Grid::setTextMatrix(int fila, int columna, const QString &texto) {
    comprobarCelda("TextMatrix", fila, columna);
    almacen->setTexto(fila, columna, texto);
}

void Grid::setTextMatrix(int fila, int columna, QString &&texto) {
    comprobarCelda("TextMatrix", fila, columna);
    almacen->setTexto(fila, columna, texto);
}

void Grid::setTextMatrix(int fila, int columna, QLatin1StringView texto) {
    comprobarCelda("TextMatrix", fila, columna);
    almacen->setTexto(fila, columna, texto);
}

void Grid::Clear() {
    almacen->setFilas(1);
    almacen->setFilas(2);
    filaActual = 1;
    filasMinimas = 1;
}

// ---- current row and scrolling ----

int Grid::Row() const {
    return filaActual;
}

void Grid::setRow(int fila) {
    comprobarFila("Row", fila);
    filaActual = fila;
    almacen->actualizar();
    mostrarActual(true);
}

int Grid::Col() const {
    return colActual;
}

void Grid::setCol(int columna) {
    comprobarColumna("Col", columna);
    colActual = columna;
    almacen->actualizar();
    mostrarActual(false);
}

int Grid::TopRow() const {
    almacen->actualizar();
    return filaSuperior();
}

void Grid::setTopRow(int fila) {
    if (fila < 1 || fila >= almacen->filas())
        fueraDeRango(QStringLiteral("TopRow = %1").arg(fila));
    almacen->actualizar();
    if (!tabla || almacen->rowCount() == 0)
        return;
    int filaModelo = almacen->primeraDesde(fila);
    if (filaModelo < 0)
        filaModelo = almacen->rowCount() - 1;
    ComoVista(tabla)->ponerAlDia();
    tabla->verticalScrollBar()->setValue(filaModelo);
}

int Grid::filaSuperior() const {
    if (!tabla || almacen->rowCount() == 0)
        return 0;
    const int filaModelo = tabla->rowAt(0);
    return filaModelo < 0 ? 0 : almacen->filaDeGrid(filaModelo);
}

void Grid::mostrarActual(bool desplazar) {
    if (!tabla)
        return;
    QItemSelectionModel *seleccion = tabla->selectionModel();
    const int filaModelo = filaActual > 0 ? almacen->filaDeModelo(filaActual) : -1;
    const bool antes = std::exchange(sincronizando, true);
    if (filaModelo < 0 || almacen->columnCount() == 0) {
        seleccion->clear();
    } else {
        const int columna = std::clamp(colActual, 0, almacen->columnCount() - 1);
        QItemSelectionModel::SelectionFlags modo = QItemSelectionModel::ClearAndSelect;
        if (aspecto.selectionMode == 1)
            modo |= QItemSelectionModel::Rows;
        // The view would scroll to its new current row; only setRow asks for that.
        const bool desplazaSola = tabla->hasAutoScroll();
        tabla->setAutoScroll(false);
        seleccion->setCurrentIndex(almacen->index(filaModelo, columna), modo);
        tabla->setAutoScroll(desplazaSola);
        if (desplazar) {
            // scrollTo ignores a hidden column: aim at a shown one of the same row.
            int mostrada = columna;
            for (int c = 0; c < almacen->columnCount() && tabla->isColumnHidden(mostrada); ++c)
                if (!tabla->isColumnHidden(c))
                    mostrada = c;
            ComoVista(tabla)->ponerAlDia();
            tabla->scrollTo(almacen->index(filaModelo, mostrada));
        }
    }
    sincronizando = antes;
}

// ---- publication ----

void Grid::antesDePublicar() {
    // Rows that went away since the last publication took the top row with them, as far as
    // they went: a grid emptied and filled again shows its first row.
    superiorPrevio = std::min(filaSuperior(), filasMinimas - 1);
}

void Grid::trasPublicar() {
    filasMinimas = almacen->filas();
    if (!tabla)
        return;
    const bool antes = std::exchange(sincronizando, true);
    for (int c = 0; c < almacen->columnCount(); ++c)
        aplicarColumna(c);
    aplicarAlturas();
    // The grid row that was at the top stays there, or the first shown one after it; with
    // none before, the view starts at its first row.
    ComoVista(tabla)->ponerAlDia();
    QScrollBar *barra = tabla->verticalScrollBar();
    if (superiorPrevio <= 0 || almacen->rowCount() == 0) {
        barra->setValue(0);
    } else {
        const int filaModelo = almacen->primeraDesde(superiorPrevio);
        barra->setValue(filaModelo >= 0 ? filaModelo : barra->maximum());
    }
    mostrarActual(false);
    sincronizando = antes;
}

void Grid::Refresh() {
    almacen->actualizar();
    if (tabla && tabla->isVisible()) {
        tabla->viewport()->repaint();
        tabla->horizontalHeader()->viewport()->repaint();
    }
}

// ---- heights and widths ----

double Grid::RowHeight(int fila) const {
    comprobarFila("RowHeight", fila);
    return almacen->altura(fila);
}

void Grid::setRowHeight(int fila, double twips) {
    comprobarFila("RowHeight", fila);
    if (fila == 0) {
        almacen->setAlturaTitulo(twips);
        aplicarTitulo();
        return;
    }
    almacen->setAltura(fila, twips);
}

void Grid::MostrarFilasQueEmpiezan(int columna, const QString &prefijo, double twips) {
    comprobarColumna("MostrarFilasQueEmpiezan", columna);
    almacen->mostrarEmpiezan(columna, prefijo, twips);
}

void Grid::PrepararFiltro(int columna) {
    comprobarColumna("PrepararFiltro", columna);
    almacen->prepararOrden(columna);
}

double Grid::ColWidth(int columna) const {
    comprobarColumna("ColWidth", columna);
    return almacen->ancho(columna);
}

void Grid::setColWidth(int columna, double twips) {
    comprobarColumna("ColWidth", columna);
    almacen->setAncho(columna, twips < 0 ? AnchoColumnaPorOmision : twips);
    // A column the view doesn't have yet gets its width when the new columns are published.
    if (columna < almacen->columnCount())
        aplicarColumna(columna);
}

AlineacionColumna Grid::ColAlignment(int columna) const {
    comprobarColumna("ColAlignment", columna);
    return almacen->alineacion(columna);
}

void Grid::setColAlignment(int columna, AlineacionColumna a) {
    comprobarColumna("ColAlignment", columna);
    almacen->setAlineacion(columna, a);
}

void Grid::aplicarColumna(int columna) {
    if (!tabla)
        return;
    const double ancho = almacen->ancho(columna);
    if (ancho == 0) {
        tabla->setColumnHidden(columna, true);
        return;
    }
    tabla->setColumnHidden(columna, false);
    tabla->setColumnWidth(columna, APixelesMinimo1(ancho));
}

void Grid::aplicarAlturas() {
    if (!tabla)
        return;
    QHeaderView *vh = tabla->verticalHeader();
    const int porOmision = APixelesMinimo1(almacen->alturaPorOmision());
    if (vh->defaultSectionSize() != porOmision)
        vh->setDefaultSectionSize(porOmision);
    // View rows shift at each publication: undo the sizes given last time, then size the
    // rows that have a height of their own where they now stand.
    for (int seccion : seccionesPropias)
        if (seccion < vh->count() && vh->sectionSize(seccion) != porOmision)
            vh->resizeSection(seccion, porOmision);
    seccionesPropias.clear();
    const QHash<int, double> &propias = almacen->alturasPropias();
    for (auto it = propias.cbegin(); it != propias.cend(); ++it) {
        const int filaModelo = almacen->filaDeModelo(it.key());
        if (filaModelo < 0)
            continue;
        vh->resizeSection(filaModelo, APixelesMinimo1(it.value()));
        seccionesPropias.push_back(filaModelo);
    }
}

void Grid::aplicarTitulo() {
    if (!tabla)
        return;
    const double alto = almacen->alturaTitulo();
    QHeaderView *hh = tabla->horizontalHeader();
    hh->setVisible(alto > 0);
    if (alto > 0)
        hh->setFixedHeight(APixelesMinimo1(alto));
}

void Grid::trasCambioDeFuente() {
    if (!tabla)
        return;
    // Rows as tall as the font's line, with a little air, as the grid control drew them.
    const QFontMetrics medidas(tabla->font());
    almacen->setAlturaPorOmision(ATwips(medidas.height() + 3));
    aplicarAlturas();
    aplicarTitulo();
}

// ---- colours ----

void Grid::aplicarPaleta() {
    if (!tabla)
        return;
    QPalette p = tabla->palette();
    for (auto grupo : {QPalette::Active, QPalette::Inactive}) {
        if (aspecto.backColorSel != SinColor)
            p.setColor(grupo, QPalette::Highlight, AColor(aspecto.backColorSel));
        if (aspecto.foreColorSel != SinColor)
            p.setColor(grupo, QPalette::HighlightedText, AColor(aspecto.foreColorSel));
    }
    if (aspecto.backColorBkg != SinColor) {
        // What lies beyond the last row and column; the cells paint BackColor themselves.
        for (auto grupo : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
            p.setColor(grupo, QPalette::Base, AColor(aspecto.backColorBkg));
            p.setColor(grupo, QPalette::Window, AColor(aspecto.backColorBkg));
        }
    }
    tabla->setPalette(p);
}

ColorOLE Grid::BackColor() const {
    return aspecto.backColor;
}

void Grid::setBackColor(ColorOLE c) {
    aspecto.backColor = c;
    almacen->setFondo(c == SinColor ? QColor() : AColor(c));
}

ColorOLE Grid::BackColorFixed() const {
    return aspecto.backColorFixed;
}

void Grid::setBackColorFixed(ColorOLE c) {
    aspecto.backColorFixed = c;
    almacen->setFondoFijo(c == SinColor ? QColor() : AColor(c));
}

ColorOLE Grid::BackColorSel() const {
    return aspecto.backColorSel;
}

void Grid::setBackColorSel(ColorOLE c) {
    aspecto.backColorSel = c;
    aplicarPaleta();
}

ColorOLE Grid::ForeColorSel() const {
    return aspecto.foreColorSel;
}

void Grid::setForeColorSel(ColorOLE c) {
    aspecto.foreColorSel = c;
    aplicarPaleta();
}

// ---- the rest ----

QTableView *Grid::vista() const {
    almacen->actualizar();
    return tabla;
}

ModeloGrid *Grid::modelo() const {
    almacen->actualizar();
    return almacen;
}

} // namespace Pantalla

#include "grid.moc"
