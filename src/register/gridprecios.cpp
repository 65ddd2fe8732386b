// The grid of price lists: its format and its filling.
#include "frmlistas.h"

#include "columnaslistas.h"

#include "platform/datos/errorbd.h"
#include "platform/datos/recordset.h"
#include "platform/datos/regional.h"
#include "session/principal.h"
#include "session/sesionsuite.h"
#include "suite/ui/svcescala.h"
#include "suite/ui/svcgrid.h"

#include <QHash>
#include <algorithm>
#include <vector>

using namespace ADODB;
using namespace Pantalla;
using namespace Sistema;

void FrmListas::inicializarGridPrecios() {
    SvcGrid svcGrid;
    const QString titulos = QStringLiteral("Nombre;Desde;Hasta;Cod");
    const double f1 = Principal::svcEscala().FactorEscala();
    const double f2 = Principal::svcEscala().FactorEscala();
    const double f3 = Principal::svcEscala().FactorEscala();
    const QString formato = NumeroATexto(f1 * 5000.0) + QStringLiteral("/Izquierda;") +
                            NumeroATexto(f2 * 1500.0) + QStringLiteral("/centrado;") +
                            NumeroATexto(f3 * 1500.0) + QStringLiteral("/centrado;0/derecha");
    svcGrid.FormatearGrid(*grid_precios, titulos, formato, 0);
}

void FrmListas::cargarGridPrecios() {
    // One row per list, each column's text as the suite's grid loader gives it, the rows in
    // the database's order; with no list, the titles alone.
    ADODB::Recordset rs;
    rs.Open(QStringLiteral("Select descripcion,preciovalidodesde,preciovalidohasta,identificador "
                           "from cabecera_precio"),
            *SesionSuite.Conexion, ADODB::adOpenStatic, ADODB::adLockOptimistic,
            ADODB::adCmdUnspecified);
    Grid &grid = *grid_precios;
    const int columnas = std::min(rs.ColumnCount(), grid.Cols());
    grid.setRows(1);
    grid.setRows(rs.RecordCount() + 1);
    std::vector<ADODB::Field> campos;
    for (int c = 0; c < columnas; ++c)
        campos.push_back(rs.Fields(c));
    // The lists' dates repeat from one list to the next, and a date's regional text is slow
    // to make: each day's is made once. Anything stored that is not a date goes as it is.
    QHash<qint64, QString> dias;
    const auto texto = [&dias](const ADODB::Field &campo) {
        const QVariant valor = campo.Value();
        if (valor.typeId() != QMetaType::QDate)
            return campo.Texto();
        const qint64 dia = valor.toDate().toJulianDay();
        auto it = dias.constFind(dia);
        if (it == dias.cend())
            it = dias.insert(dia, campo.Texto());
        return *it;
    };
    for (int fila = 1; !rs.Eof(); ++fila, rs.MoveNext())
        for (int c = 0; c < columnas; ++c)
            grid.setTextMatrix(fila, c,
                               c == ColListas::Desde || c == ColListas::Hasta
                                   ? texto(campos[size_t(c)])
                                   : campos[size_t(c)].Texto());
    rs.Close();
}

qint64 FrmListas::VersionDatos() {
    if (SesionSuite.Conexion->Base().driverName() != QLatin1String("QSQLITE"))
        return -1;
    // Asked right before the editor shows: a failure here must not keep it from showing. The
    // listing afterwards meets the database's trouble, if it lasts, and says so.
    try {
        ADODB::Recordset rs;
        rs.Open(QStringLiteral("pragma data_version"), *SesionSuite.Conexion);
        return rs.Eof() ? -1 : rs.Fields(0).Value().toLongLong();
    } catch (const ErrorBD &) {
        return -1;
    }
}

void FrmListas::ReleerLista(const QString &codigo, qint64 version) {
    Grid &g = *grid_precios;
    // Another terminal, or another program of the suite, may have made, renamed or deleted
    // any list while the editor was open: then only a whole listing shows it.
    const bool soloEsta = version >= 0 && VersionDatos() == version;
    bool esCodigo = false;
    const qlonglong lista = codigo.toLongLong(&esCodigo);
    int fila = -1;
    if (soloEsta && esCodigo) {
        // Mostly the row the double click was on; else wherever the list lists.
        const int actual = g.Row();
        if (actual >= 1 && actual < g.Rows() && g.TextMatrix(actual, ColListas::Codigo) == codigo)
            fila = actual;
        for (int f = 1; fila < 0 && f < g.Rows(); ++f)
            if (g.TextMatrix(f, ColListas::Codigo) == codigo)
                fila = f;
    }
    ADODB::Recordset rs;
    if (fila > 0)
        rs.Open(QStringLiteral("Select descripcion,preciovalidodesde,preciovalidohasta,"
                               "identificador from cabecera_precio where identificador = ?"),
                {lista}, *SesionSuite.Conexion);
    if (fila <= 0 || rs.Eof()) {
        cargarGridPrecios();
        return;
    }
    const int columnas = std::min(rs.ColumnCount(), g.Cols());
    for (int c = 0; c < columnas; ++c)
        g.setTextMatrix(fila, c, rs.Fields(c).Texto());
    rs.Close();
    g.setRow(1);
    g.setTopRow(1);
}

void FrmListas::SeguirCambios() {
    if (!Loaded())
        return;
    // The list the operator had selected stays selected, wherever it now lists; a list gone
    // leaves the selection on the row that takes its place.
    Grid &g = *grid_precios;
    const int fila = g.Row();
    const QString codigo =
        fila >= 1 && fila < g.Rows() ? g.TextMatrix(fila, ColListas::Codigo) : QString();
    const int arriba = g.TopRow();
    cargarGridPrecios();
    if (arriba >= 1 && arriba < g.Rows())
        g.setTopRow(arriba);
    for (int f = 1; f < g.Rows(); ++f)
        if (!codigo.isEmpty() && g.TextMatrix(f, ColListas::Codigo) == codigo) {
            g.setRow(f);
            return;
        }
    if (fila >= 1)
        g.setRow(qMin(fila, g.Rows() - 1));
}
