#pragma once

#include <QAbstractTableModel>
#include <QColor>
#include <QHash>
#include <QString>

#include "textosgrid.h"

#include <future>
#include <vector>

namespace Pantalla {

enum class AlineacionColumna;

/// The data rows of a column in the order of their texts, case folded, looking at the first
/// `corte` code points of each.
struct OrdenColumna {
    std::vector<int> filas;
    int corte = 1;
};

/// The width of a column that no format has sized yet, in twips.
constexpr double AnchoColumnaPorOmision = 960;

/// The storage of a grid and the table model that shows it. Everything is addressed in grid
/// coordinates (row 0 the title row, data rows from 1); the model shows the title row as its
/// horizontal header and, as its rows, only the data rows that aren't hidden, in grid order.
///
/// Writes go to the storage at once and the model publishes them in one batch: a change of
/// texts as one dataChanged, a change of rows, columns or hidden rows as one model reset
/// (the visible-row map is rebuilt then). The batch is published when control returns to the
/// event loop, or earlier by actualizar(). Until then the model keeps answering for what it
/// last published, and what it shows of a cell is always read from the storage.
///
/// The setters here check nothing: Grid, the facade, checks indexes and counts first.
class ModeloGrid : public QAbstractTableModel {
    Q_OBJECT
  public:
    explicit ModeloGrid(int filas, int columnas, QObject *padre = nullptr);
    ~ModeloGrid() override;

    int rowCount(const QModelIndex &padre = {}) const override;
    int columnCount(const QModelIndex &padre = {}) const override;
    QVariant data(const QModelIndex &indice, int rol = Qt::DisplayRole) const override;
    QVariant headerData(int seccion, Qt::Orientation orientacion,
                        int rol = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex &indice) const override;

    // ---- storage, in grid coordinates ----
    int filas() const { return nFilas; }
    int columnas() const { return nColumnas; }
    /// Keeps the texts of the rows that remain; new rows are empty and shown.
    void setFilas(int n);
    /// Keeps the texts, widths and alignments of the columns that remain; new columns are
    /// empty, left-aligned and AnchoColumnaPorOmision wide.
    void setColumnas(int n);
    QString texto(int fila, int columna) const { return textos.texto(size_t(fila), columna); }
    /// The text as it is kept, for a caller that only reads it: valid until the next write.
    VistaTexto vista(int fila, int columna) const { return textos.vista(size_t(fila), columna); }
    void setTexto(int fila, int columna, QStringView t);
    void setTexto(int fila, int columna, QLatin1StringView t);

    AlineacionColumna alineacion(int columna) const { return alineaciones[size_t(columna)]; }
    void setAlineacion(int columna, AlineacionColumna a);
    double ancho(int columna) const { return anchos[size_t(columna)]; }
    void setAncho(int columna, double twips) { anchos[size_t(columna)] = twips; }

    // ---- row heights, in twips ----
    bool oculta(int fila) const { return ocultas[size_t(fila)] != 0; }
    /// 0 for a hidden row, its own height for a row that has one, else the default height.
    double altura(int fila) const;
    /// 0 hides a data row; a negative height gives it back the default height.
    void setAltura(int fila, double twips);
    double alturaPorOmision() const { return alturaDefecto; }
    void setAlturaPorOmision(double twips);
    /// The data rows that have a height of their own (neither hidden nor the default).
    const QHash<int, double> &alturasPropias() const { return propias; }
    /// Shows exactly the data rows whose text in `columna` starts with `prefijo`, case ignored
    /// as QString::startsWith ignores it, and hides every other one, as a walk that sets
    /// each row's height would: a row that was hidden and now shows gets `altura` (<0: the
    /// default), a row that stays shown keeps its height. An empty prefix shows every row.
    /// The column's texts are kept sorted case-insensitively beside the storage (made at the
    /// first call, again after the column's texts or the rows change), so the matching rows
    /// are a range found by binary search, whatever their order in the grid.
    void mostrarEmpiezan(int columna, const QString &prefijo, double altura);
    /// Starts sorting `columna`'s texts for mostrarEmpiezan on another thread, on the texts as
    /// they are now (a copy that shares their buffer), so that the first filter finds them
    /// sorted, or waits only for what is left of the sort. A change of the column's texts or of
    /// the rows meanwhile drops the result.
    void prepararOrden(int columna);

    /// The title row's height: its own one, 0 when hidden, else the default.
    double alturaTitulo() const { return titulo < 0 ? alturaDefecto : titulo; }
    void setAlturaTitulo(double twips) { titulo = twips < 0 ? -1 : twips; }

    // ---- appearance of the cells; an invalid colour leaves it to the view's palette ----
    void setFondo(const QColor &c);
    void setFondoFijo(const QColor &c);
    void setTextoFijo(const QColor &c);

    // ---- the published map ----
    /// The grid row that model row `filaModelo` shows.
    int filaDeGrid(int filaModelo) const {
        return visibles.empty() ? filaModelo + 1 : visibles[size_t(filaModelo)];
    }
    /// The model row that shows grid row `fila`, or -1 when it isn't shown.
    int filaDeModelo(int fila) const;
    /// The model row of the first row shown at or after grid row `fila`, or -1.
    int primeraDesde(int fila) const;

    /// True while a change waits to be published.
    bool pendiente() const { return estructuraSucia || textosSucios || titulosSucios; }
    /// Publishes the changes now (one reset or one dataChanged); nothing when none wait.
    void actualizar();

  private:
    void programar();
    /// What a write of a cell leaves to do: the order of its column dropped, a publication.
    void escrito(int fila, int columna);
    void ordenarColumna(int columna);
    /// The first and one-past-last positions in `ordenadas` of the rows starting with `prefijo`.
    std::pair<size_t, size_t> rangoEmpiezan(QStringView prefijo) const;
    void cambioDeEstructura() {
        estructuraSucia = true;
        if (!programado)
            programar();
    }

    int nFilas = 0;
    int nColumnas = 0;
    TextosGrid textos; ///< nFilas x nColumnas
    std::vector<AlineacionColumna> alineaciones;
    std::vector<double> anchos;
    std::vector<char> ocultas; ///< one flag a grid row; row 0's is never set
    QHash<int, double> propias;
    /// The data rows, sorted by their text in column `columnaOrdenada` with case folded
    /// (-1: none kept; the texts or rows changed since).
    std::vector<int> ordenadas;
    int columnaOrdenada = -1;
    /// How many folded code points of each text the order looks at; a longer prefix is
    /// checked row by row within its range.
    int corte = 1;
    /// The sort under way on another thread, of column `columnaEnCurso` (-1: none, or its
    /// result is out of date).
    std::future<OrdenColumna> ordenEnCurso;
    int columnaEnCurso = -1;
    double alturaDefecto = 240;
    double titulo = -1;

    // What the model last published.
    /// Model row -> grid row, ascending, when some data row is hidden; empty when every one
    /// shows (row r shows grid row r + 1); {0} when none shows.
    std::vector<int> visibles;
    int nVisibles = 0; ///< the model's rows
    int columnasPublicadas = 0;

    bool estructuraSucia = false;
    bool textosSucios = false;
    bool titulosSucios = false;
    bool programado = false;
    bool publicando = false;

    QColor fondo, fondoFijo, textoFijo;
};

} // namespace Pantalla
