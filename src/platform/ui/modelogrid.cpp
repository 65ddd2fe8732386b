#include "modelogrid.h"

#include "grid.h"

#include <algorithm>
#include <array>
#include <limits>
#include <utility>

namespace Pantalla {

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
      textos(size_t(filas), columnas), alineaciones(size_t(columnas), AlineacionColumna::Izquierda),
      anchos(size_t(columnas), AnchoColumnaPorOmision), ocultas(size_t(filas), 0),
      columnasPublicadas(columnas) {
    // Nothing is hidden yet: every data row is shown from the start.
    nVisibles = std::max(0, filas - 1);
}

ModeloGrid::~ModeloGrid() = default;

int ModeloGrid::rowCount(const QModelIndex &padre) const {
    return padre.isValid() ? 0 : nVisibles;
}

int ModeloGrid::columnCount(const QModelIndex &padre) const {
    return padre.isValid() ? 0 : columnasPublicadas;
}

QVariant ModeloGrid::data(const QModelIndex &indice, int rol) const {
    if (!indice.isValid() || indice.row() >= nVisibles || indice.column() >= columnasPublicadas)
        return {};
    const int fila = filaDeGrid(indice.row());
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
        if (seccion < 0 || seccion >= nVisibles || rol != Qt::DisplayRole)
            return {};
        return filaDeGrid(seccion);
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
    textos.redimensionar(size_t(n));
    ocultas.resize(size_t(n), 0);
    if (n < nFilas && !propias.isEmpty())
        propias.removeIf([n](QHash<int, double>::iterator it) { return it.key() >= n; });
    nFilas = n;
    columnaOrdenada = columnaEnCurso = -1;
    cambioDeEstructura();
}

void ModeloGrid::setColumnas(int n) {
    if (n == nColumnas)
        return;
    textos.setColumnas(n);
    alineaciones.resize(size_t(n), AlineacionColumna::Izquierda);
    anchos.resize(size_t(n), AnchoColumnaPorOmision);
    nColumnas = n;
    columnaOrdenada = columnaEnCurso = -1;
    cambioDeEstructura();
}

void ModeloGrid::setTexto(int fila, int columna, QStringView t) {
    textos.poner(size_t(fila), columna, t);
    escrito(fila, columna);
}

void ModeloGrid::setTexto(int fila, int columna, QLatin1StringView t) {
    textos.poner(size_t(fila), columna, t);
    escrito(fila, columna);
}

void ModeloGrid::escrito(int fila, int columna) {
    if (columna == columnaOrdenada)
        columnaOrdenada = -1;
    if (columna == columnaEnCurso)
        columnaEnCurso = -1;
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

namespace {

/// Case-folded code points of a text, as QString's case-insensitive comparisons fold them.
/// The text is a grid's (Latin-1 or UTF-16, as the column keeps it) or the operator's.
class Plegado {
  public:
    explicit Plegado(VistaTexto t)
        : latin1(!t.utf16), p(t.datos), fin(t.datos + t.largo * (t.utf16 ? 2 : 1)) {}
    explicit Plegado(QStringView t) : Plegado(VistaTexto::De(t)) {}
    /// The next folded code point, plus 1; 0 at the end of the text.
    quint32 siguiente() {
        if (p == fin)
            return 0;
        if (latin1)
            return quint32(QChar::toCaseFolded(char32_t(uchar(*p++)))) + 1;
        const auto *u = reinterpret_cast<const char16_t *>(p);
        const auto *ultimo = reinterpret_cast<const char16_t *>(fin);
        char32_t c = *u++;
        if (QChar::isHighSurrogate(c) && u != ultimo && QChar::isLowSurrogate(*u))
            c = QChar::surrogateToUcs4(char16_t(c), *u++);
        p = reinterpret_cast<const char *>(u);
        return quint32(QChar::toCaseFolded(c)) + 1;
    }

  private:
    bool latin1;
    const char *p;
    const char *fin;
};

/// The most code points a row's key holds, whatever the column.
constexpr int CorteMaximo = 21;

/// <0, 0, >0 as the folded `a` cut to `corte` code points sorts before, with, after the
/// folded `b` cut to as many.
int CompararCortados(VistaTexto a, QStringView b, int corte) {
    Plegado x(a), y(b);
    for (int n = 0; n < corte; ++n) {
        const quint32 i = x.siguiente(), j = y.siguiente();
        if (i != j)
            return i < j ? -1 : 1;
        if (i == 0)
            return 0;
    }
    return 0;
}

/// Whether the folded `t` starts with the folded `prefijo`, looking at no more than `hasta`
/// code points of the prefix.
bool Empieza(VistaTexto t, QStringView prefijo, int hasta = std::numeric_limits<int>::max()) {
    Plegado x(t), y(prefijo);
    for (int n = 0; n < hasta; ++n) {
        const quint32 j = y.siguiente();
        if (j == 0)
            return true;
        if (x.siguiente() != j)
            return false;
    }
    return true;
}

/// A row's key: its text's first folded code points, each replaced by its rank among the
/// code points the column holds (1 the smallest, 0 past the end), packed in order into one
/// number. Comparing keys compares the texts cut to that many code points, and a column of a
/// few dozen letters fits ten or more of them in the 63 bits.
/// The ranks of a column's folded code points, and how many fit in a key.
class Rangos {
  public:
    explicit Rangos(const TextosGrid &textos, int columna) {
        // Which code points occur among those a key may hold.
        std::vector<char> basicos(0x10000 + 1, 0);
        std::vector<quint32> otros;
        for (size_t f = 1; f < textos.filas(); ++f) {
            Plegado p(textos.vista(f, columna));
            for (int n = 0; n < CorteMaximo; ++n) {
                const quint32 c = p.siguiente();
                if (c == 0)
                    break;
                if (c <= 0x10000)
                    basicos[c] = 1;
                else
                    otros.push_back(c);
            }
        }
        std::sort(otros.begin(), otros.end());
        otros.erase(std::unique(otros.begin(), otros.end()), otros.end());
        rangoBasico.assign(basicos.size(), 0);
        quint32 siguiente = 1;
        for (size_t c = 0; c < basicos.size(); ++c)
            if (basicos[c])
                rangoBasico[c] = siguiente++;
        primerOtro = siguiente;
        mayores = std::move(otros);
        const quint32 ultimo = siguiente + quint32(mayores.size()) - 1;
        while (bits < 21 && (quint32(1) << bits) <= ultimo)
            ++bits;
        corte = std::min(CorteMaximo, 63 / bits);
    }
    int Corte() const { return corte; }
    quint64 ClaveDe(VistaTexto t) const {
        Plegado p(t);
        quint64 clave = 0;
        for (int n = 0; n < corte; ++n)
            clave = (clave << bits) | rango(p.siguiente());
        return clave;
    }

  private:
    quint32 rango(quint32 c) const {
        if (c <= 0x10000)
            return rangoBasico[c];
        return primerOtro +
               quint32(std::lower_bound(mayores.begin(), mayores.end(), c) - mayores.begin());
    }
    std::vector<quint32> rangoBasico; ///< by folded code point plus 1, up to the basic plane
    std::vector<quint32> mayores;     ///< the others that occur, in order
    quint32 primerOtro = 1;
    int bits = 1;
    int corte = 1;
};

/// The data rows of `textos` in the order of their text in `columna`, and the cut it looks at.
OrdenColumna Ordenar(const TextosGrid &textos, int columna) {
    const Rangos rangos(textos, columna);
    // Each row's key, read in the rows' own order (the texts lie in memory in that order),
    // then the rows sorted by them: a sort of plain numbers, which touches no text. Keys by
    // row and the rows apart take 12 bytes a row, not the 16 of the pairs.
    std::vector<quint64> claves(textos.filas());
    std::vector<int> filas;
    filas.reserve(textos.filas());
    for (size_t f = 1; f < textos.filas(); ++f) {
        claves[f] = rangos.ClaveDe(textos.vista(f, columna));
        filas.push_back(int(f));
    }
    std::sort(filas.begin(), filas.end(), [&claves](int a, int b) {
        const quint64 x = claves[size_t(a)], y = claves[size_t(b)];
        return x != y ? x < y : a < b;
    });
    return {std::move(filas), rangos.Corte()};
}

} // namespace

void ModeloGrid::ordenarColumna(int columna) {
    if (ordenEnCurso.valid()) {
        // A sort under way: its result, when it is of this column's present texts.
        OrdenColumna hecho = ordenEnCurso.get();
        if (columnaEnCurso == columna) {
            ordenadas = std::move(hecho.filas);
            corte = hecho.corte;
            columnaOrdenada = columna;
            columnaEnCurso = -1;
            return;
        }
    }
    columnaEnCurso = -1;
    OrdenColumna orden = Ordenar(textos, columna);
    ordenadas = std::move(orden.filas);
    corte = orden.corte;
    columnaOrdenada = columna;
}

void ModeloGrid::prepararOrden(int columna) {
    if (columnaOrdenada == columna || columnaEnCurso == columna)
        return;
    if (ordenEnCurso.valid())
        ordenEnCurso.wait(); // an older one, out of date: it goes before another starts
    // The whole sort runs there, on the texts as they are now: the copy shares their buffer,
    // which a write here meanwhile copies before it changes it, and lets it go when done.
    ordenEnCurso = std::async(std::launch::async, [copia = textos, columna]() mutable {
        const TextosGrid instantanea = std::move(copia);
        return Ordenar(instantanea, columna);
    });
    columnaEnCurso = columna;
}

std::pair<size_t, size_t> ModeloGrid::rangoEmpiezan(QStringView prefijo) const {
    // The rows whose cut text starts with the prefix's first `corte` code points.
    const auto desde = std::partition_point(ordenadas.begin(), ordenadas.end(), [&](int f) {
        return CompararCortados(vista(f, columnaOrdenada), prefijo, corte) < 0;
    });
    const auto hasta = std::partition_point(desde, ordenadas.end(), [&](int f) {
        return Empieza(vista(f, columnaOrdenada), prefijo, corte);
    });
    return {size_t(desde - ordenadas.begin()), size_t(hasta - ordenadas.begin())};
}

void ModeloGrid::mostrarEmpiezan(int columna, const QString &prefijo, double altura) {
    // Which rows show: every one for an empty prefix (no order needed), else those of a range
    // that start with the whole prefix (all of them, for a prefix no longer than the cut).
    std::vector<char> muestra(size_t(nFilas), prefijo.isEmpty() ? 1 : 0);
    if (!prefijo.isEmpty()) {
        if (columnaOrdenada != columna)
            ordenarColumna(columna);
        const auto [desde, hasta] = rangoEmpiezan(prefijo);
        // A prefix of more UTF-16 units than the cut may hold more code points than it.
        const bool largo = prefijo.size() > corte;
        for (size_t i = desde; i < hasta; ++i) {
            const int f = ordenadas[i];
            muestra[size_t(f)] = !largo || Empieza(vista(f, columna), prefijo);
        }
    }
    const bool alturaComun = altura < 0 || altura == alturaDefecto;
    if (!propias.isEmpty() || !alturaComun) {
        // Rows with heights of their own: each row as setAltura would have it.
        for (int f = 1; f < nFilas; ++f) {
            if (!muestra[size_t(f)])
                setAltura(f, 0);
            else if (ocultas[size_t(f)])
                setAltura(f, altura);
        }
        return;
    }
    // Every shown row has the default height: only the flags change (a hidden row's flag is
    // the opposite of its "shows"; the title row's is never set).
    bool cambio = false;
    for (size_t f = 1; f < size_t(nFilas); ++f) {
        const char oculta = char(!muestra[f]);
        cambio = cambio || ocultas[f] != oculta;
        ocultas[f] = oculta;
    }
    if (cambio)
        cambioDeEstructura();
}

int ModeloGrid::filaDeModelo(int fila) const {
    if (nVisibles == 0)
        return -1;
    if (visibles.empty()) // every data row shown
        return fila >= 1 && fila <= nVisibles ? fila - 1 : -1;
    const auto it = std::lower_bound(visibles.begin(), visibles.end(), fila);
    return it != visibles.end() && *it == fila ? int(it - visibles.begin()) : -1;
}

int ModeloGrid::primeraDesde(int fila) const {
    if (nVisibles == 0)
        return -1;
    if (visibles.empty()) // every data row shown
        return std::max(fila, 1) <= nVisibles ? std::max(fila, 1) - 1 : -1;
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
        // With every data row shown the map is kept as nothing at all (model row r shows grid
        // row r + 1): a million rows need no million entries.
        const auto primeraOculta = std::find(ocultas.begin() + std::min<ptrdiff_t>(1, nFilas),
                                             ocultas.begin() + nFilas, char(1));
        std::vector<int>().swap(visibles);
        if (primeraOculta == ocultas.begin() + nFilas) {
            nVisibles = std::max(0, nFilas - 1);
        } else {
            for (int f = 1; f < nFilas; ++f)
                if (!ocultas[size_t(f)])
                    visibles.push_back(f);
            // A filter that hides every row leaves an empty map, which must not read as all.
            nVisibles = int(visibles.size());
            if (visibles.empty())
                visibles.push_back(0);
        }
        columnasPublicadas = nColumnas;
        estructuraSucia = textosSucios = titulosSucios = false;
        endResetModel();
    } else {
        const bool titulos = std::exchange(titulosSucios, false);
        const bool celdas = std::exchange(textosSucios, false);
        if (titulos && columnasPublicadas > 0)
            emit headerDataChanged(Qt::Horizontal, 0, columnasPublicadas - 1);
        if (celdas && nVisibles > 0 && columnasPublicadas > 0)
            emit dataChanged(index(0, 0), index(nVisibles - 1, columnasPublicadas - 1));
    }
    publicando = false;
}

} // namespace Pantalla
