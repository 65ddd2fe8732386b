#include "svcgrid.h"

#include "platform/datos/recordset.h"
#include "platform/datos/regional.h"

#include <QLocale>
#include <stdexcept>
#include <vector>

using namespace Pantalla;

namespace {

struct Columna {
    double ancho;
    AlineacionColumna alineacion;
};

AlineacionColumna LeerAlineacion(const QString &palabra, const QString &entrada) {
    if (palabra == QLatin1String("centrado"))
        return AlineacionColumna::Centrado;
    if (palabra == QLatin1String("Izquierda"))
        return AlineacionColumna::Izquierda;
    if (palabra == QLatin1String("derecha"))
        return AlineacionColumna::Derecha;
    throw std::invalid_argument(
        QStringLiteral("Formato de rejilla: alineación desconocida en \"%1\"")
            .arg(entrada)
            .toStdString());
}

} // namespace

void SvcGrid::FormatearGrid(Grid &grid, const QString &titulos, const QString &formato, int) {
    const QStringList listaTitulos = titulos.split(QLatin1Char(';'));
    const QStringList entradas = formato.split(QLatin1Char(';'));
    if (entradas.size() != listaTitulos.size())
        throw std::invalid_argument(
            QStringLiteral("Formato de rejilla: %1 títulos y %2 formatos (\"%3\")")
                .arg(listaTitulos.size())
                .arg(entradas.size())
                .arg(formato)
                .toStdString());
    // Read everything before touching the grid, so a bad format leaves it as it was.
    std::vector<Columna> columnas;
    columnas.reserve(entradas.size());
    const QLocale regional;
    for (const QString &entrada : entradas) {
        const int barra = entrada.indexOf(QLatin1Char('/'));
        bool ok = barra > 0;
        const double ancho = ok ? regional.toDouble(entrada.left(barra), &ok) : 0;
        if (!ok || ancho < 0)
            throw std::invalid_argument(
                QStringLiteral("Formato de rejilla: ancho no válido en \"%1\"")
                    .arg(entrada)
                    .toStdString());
        columnas.push_back({ancho, LeerAlineacion(entrada.mid(barra + 1), entrada)});
    }
    grid.setCols(int(listaTitulos.size()));
    for (int c = 0; c < listaTitulos.size(); ++c) {
        grid.setTextMatrix(0, c, listaTitulos[c]);
        grid.setColWidth(c, columnas[c].ancho);
        grid.setColAlignment(c, columnas[c].alineacion);
    }
}

void SvcGrid::CargarGrid(ADODB::Connection &conexion, const QString &consulta, Grid &grid, int,
                         int) {
    ADODB::Recordset rs;
    rs.Open(consulta, conexion, ADODB::adOpenStatic, ADODB::adLockOptimistic,
            ADODB::adCmdUnspecified);
    const int columnas = std::min(rs.ColumnCount(), grid.Cols());
    grid.setRows(1);
    grid.setRows(rs.RecordCount() + 1);
    for (int fila = 1; !rs.Eof(); ++fila, rs.MoveNext())
        for (int c = 0; c < columnas; ++c)
            grid.setTextMatrix(fila, c, rs.Fields(c).Texto());
    rs.Close();
}
