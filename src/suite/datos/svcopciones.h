#pragma once

#include "platform/datos/conexion.h"

#include <QString>

/// The size the two screens are designed for, in twips: every control of their design tables
/// is placed within it, and SvcEscala fits it to the size the session gives.
inline constexpr double AnchoDisenoTwips = 15360.0;
inline constexpr double AltoDisenoTwips = 11085.0;

/// The suite's options, from the first row of the table opciones:
///   tiponegocio (text), estiloaspecto (small whole number), indicadoropciones (small whole
///   number), anchopantalla and altopantalla (twips; Null or 0: the display's own size).
/// A missing row or a Null gives "", 0, 0 and the display's size. A stored size below half
/// the design's or above ten times the display's, or not a finite number, counts as not set;
/// that is said once on stderr.
class SvcOpciones {
  public:
    qint16 LeerEstiloAspecto(ADODB::Connection &conexion);
    QString LeerTipoNegocio(ADODB::Connection &conexion);
    qint16 LeerIndicadorOpciones(ADODB::Connection &conexion);
    double LeerAnchoPantalla(ADODB::Connection &conexion);
    double LeerAltoPantalla(ADODB::Connection &conexion);

    /// The display's size in twips, for when the suite stores none. Set by the screen layer
    /// at start (this layer has no display); the design's size until then.
    static void FijarTamanoPantalla(double anchoTwips, double altoTwips);
};
