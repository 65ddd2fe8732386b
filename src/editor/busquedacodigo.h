#pragma once

#include "platform/datos/dialecto.h"

#include <QString>
#include <QVariantList>

/// The statement of the editor's code search and the values bound to it, for one typed code:
/// the shop code of a live product, or an extra code of any product as a like pattern (the
/// database's wildcards work there, case ignored as SQLite's like ignores it). Each branch is
/// answered by an index: productos(codigocliente), and productos_codigosextra(codigo_extra)
/// made on the dialect's IndiceSinMayusculas, which its ParecidoSinMayusculas reads.
struct BusquedaCodigo {
    QString sentencia;
    QVariantList valores;
};
BusquedaCodigo SentenciaBusquedaCodigo(const ADODB::Dialecto &dialecto, const QString &cod);
