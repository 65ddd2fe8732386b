#include "modelogrid.h"

#include "grid.h"

#include <algorithm>
#include <utility>

namespace {

Qt::Alignment AAlineacion(AlineacionColumna a) {
    switch (a) {
    case AlineacionColumna::Centrado:
        return Qt::AlignHCenter | Qt::AlignVCenter;
    case AlineacionColumna::Derecha:
        return Qt::AlignRight | Qt::AlignVCenter;
    case AlineacionColumna::Izquierda:
        break;
    }
    return Qt::AlignLeft | Qt::AlignVCenter;
}

} // namespace

ModeloGrid::ModeloGrid(int filas, int columnas, QObject *padre)
    : QAbstractTableModel(padre), nFilas(filas), nColumnas(columnas),
      textos(size_t(filas) * size_t(columnas)),
      alineaciones(size_t(columnas), AlineacionColumna::Izquierda),
      anchos(size_t(columnas), AnchoColumnaPorOmision), ocultas(size_t(filas), 0),
      columnasPublicadas(columnas) {
    // Nothing is hidden yet: every data row is shown from the start.
    visibles.reserve(size_t(filas));
    for (int f = 1; f < filas; ++f)
        visibles.push_back(f);
}

ModeloGrid::~ModeloGrid() = default;

int ModeloGrid::rowCount(const QModelIndex &padre) const {
    return padre.isValid() ? 0 : int(visibles.size());
}

int ModeloGrid::columnCount(const QModelIndex &padre) const {
    return padre.isValid() ? 0 : columnasPublicadas;
}

QVariant ModeloGrid::data(const QModelIndex &indice, int rol) const {
    if (!indice.isValid() || indice.row() >= int(visibles.size()) ||
        indice.column() >= columnasPublicadas)
        return {};
    const int fila = visibles[size_t(indice.row())];
    const int columna = indice.column();
    // The storage may have shrunk since the last publication; the reset is on its way.
    if (fila >= nFilas || columna >= nColumnas)
        return {};
    switch (rol) {
    case Qt::DisplayRole:
        return texto(fila, columna);
    case Qt::TextAlignmentRole:
        return int(AAlineacion(alineaciones[size_t(columna)]));
    case Qt::BackgroundRole:
        return fondo.isValid() ? QVariant(fondo) : QVariant();
    default:
        return {};
    }
}

QVariant ModeloGrid::headerData(int seccion, Qt::Orientation orientacion, int rol) const {
    if (orientacion == Qt::Vertical) {
        if (seccion < 0 || seccion >= int(visibles.size()) || rol != Qt::DisplayRole)
            return {};
        return visibles[size_t(seccion)];
    }
    if (seccion < 0 || seccion >= columnasPublicadas || seccion >= nColumnas)
        return {};
    switch (rol) {
    case Qt::DisplayRole:
        return texto(0, seccion);
    case Qt::TextAlignmentRole:
        return int(AAlineacion(alineaciones[size_t(seccion)]));
    case Qt::BackgroundRole:
        return fondoFijo.isValid() ? QVariant(fondoFijo) : QVariant();
    case Qt::ForegroundRole:
        return textoFijo.isValid() ? QVariant(textoFijo) : QVariant();
    default:
        return {};
    }
}

Qt::ItemFlags ModeloGrid::flags(const QModelIndex &indice) const {
    if (!indice.isValid())
        return Qt::NoItemFlags;
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
}

void ModeloGrid::setFilas(int n) {
    if (n == nFilas)
        return;
    textos.resize(size_t(n) * size_t(nColumnas));
    ocultas.resize(size_t(n), 0);
    if (n < nFilas && !propias.isEmpty())
        propias.removeIf([n](QHash<int, double>::iterator it) { return it.key() >= n; });
    nFilas = n;
    cambioDeEstructura();
}

void ModeloGrid::setColumnas(int n) {
    if (n == nColumnas)
        return;
    std::vector<QString> nuevos(size_t(nFilas) * size_t(n));
    const size_t comunes = size_t(std::min(n, nColumnas));
    for (size_t f = 0; f < size_t(nFilas); ++f)
        for (size_t c = 0; c < comunes; ++c)
            nuevos[f * size_t(n) + c] = std::move(textos[f * size_t(nColumnas) + c]);
    textos = std::move(nuevos);
    alineaciones.resize(size_t(n), AlineacionColumna::Izquierda);
    anchos.resize(size_t(n), AnchoColumnaPorOmision);
    nColumnas = n;
    cambioDeEstructura();
}

void ModeloGrid::setTexto(int fila, int columna, QString &&t) {
    textos[size_t(fila) * size_t(nColumnas) + size_t(columna)] = std::move(t);
    if (fila == 0)
        titulosSucios = true;
    else
        textosSucios = true;
    if (!programado)
        programar();
}

void ModeloGrid::setAlineacion(int columna, AlineacionColumna a) {
    alineaciones[size_t(columna)] = a;
    textosSucios = titulosSucios = true;
    programar();
}

double ModeloGrid::altura(int fila) const {
    if (fila == 0)
        return alturaTitulo();
    if (ocultas[size_t(fila)])
        return 0;
    if (propias.isEmpty())
        return alturaDefecto;
    return propias.value(fila, alturaDefecto);
}

void ModeloGrid::setAltura(int fila, double twips) {
    // The name search walks every row at each keystroke and writes most of them; a write
    // that changes nothing must stay a few instructions long and schedule nothing.
    if (twips == 0) {
        if (!ocultas[size_t(fila)]) {
            ocultas[size_t(fila)] = 1;
            cambioDeEstructura();
        }
        if (!propias.isEmpty())
            propias.remove(fila);
        return;
    }
    if (ocultas[size_t(fila)]) {
        ocultas[size_t(fila)] = 0;
        cambioDeEstructura();
    }
    if (twips < 0 || twips == alturaDefecto) {
        if (!propias.isEmpty() && propias.remove(fila))
            cambioDeEstructura();
        return;
    }
    const auto it = propias.constFind(fila);
    if (it == propias.cend() || *it != twips) {
        propias.insert(fila, twips);
        cambioDeEstructura();
    }
}

void ModeloGrid::setAlturaPorOmision(double twips) {
    alturaDefecto = twips;
}

void ModeloGrid::setFondo(const QColor &c) {
    fondo = c;
    textosSucios = true;
    programar();
}

void ModeloGrid::setFondoFijo(const QColor &c) {
    fondoFijo = c;
    titulosSucios = true;
    programar();
}

void ModeloGrid::setTextoFijo(const QColor &c) {
    textoFijo = c;
    titulosSucios = true;
    programar();
}

int ModeloGrid::filaDeModelo(int fila) const {
    const auto it = std::lower_bound(visibles.begin(), visibles.end(), fila);
    return it != visibles.end() && *it == fila ? int(it - visibles.begin()) : -1;
}

int ModeloGrid::primeraDesde(int fila) const {
    const auto it = std::lower_bound(visibles.begin(), visibles.end(), fila);
    return it != visibles.end() ? int(it - visibles.begin()) : -1;
}

void ModeloGrid::programar() {
    if (programado)
        return;
    programado = true;
    QMetaObject::invokeMethod(this, &ModeloGrid::actualizar, Qt::QueuedConnection);
}

void ModeloGrid::actualizar() {
    programado = false;
    if (publicando || !pendiente())
        return;
    publicando = true;
    if (estructuraSucia) {
        // Rows, columns or hidden rows changed: one reset, whatever the number of rows. The
        // view then asks only for what it paints.
        beginResetModel();
        visibles.clear();
        visibles.reserve(size_t(nFilas));
        for (int f = 1; f < nFilas; ++f)
            if (!ocultas[size_t(f)])
                visibles.push_back(f);
        columnasPublicadas = nColumnas;
        estructuraSucia = textosSucios = titulosSucios = false;
        endResetModel();
    } else {
        const bool titulos = std::exchange(titulosSucios, false);
        const bool celdas = std::exchange(textosSucios, false);
        if (titulos && columnasPublicadas > 0)
            emit headerDataChanged(Qt::Horizontal, 0, columnasPublicadas - 1);
        if (celdas && !visibles.empty() && columnasPublicadas > 0)
            emit dataChanged(index(0, 0), index(int(visibles.size()) - 1, columnasPublicadas - 1));
    }
    publicando = false;
}
