#pragma once

#include "platform/datos/conexion.h"

#include <QString>

/// The suite's options, from the first row of the table opciones:
///   tiponegocio (text), estiloaspecto (small whole number), indicadoropciones (small whole
///   number), anchopantalla and altopantalla (twips; Null or 0: the display's own size).
/// A missing row or a Null gives "", 0, 0 and the display's size. A stored size below half
/// the design's (7680 x 5542.5) or above ten times the display's, or not a finite number,
/// counts as not set; that is said once on stderr.
class SvcOpciones {
  public:
    qint16 LeerEstiloAspecto(ADODB::Connection &conexion);
    QString LeerTipoNegocio(ADODB::Connection &conexion);
    qint16 LeerIndicadorOpciones(ADODB::Connection &conexion);
    double LeerAnchoPantalla(ADODB::Connection &conexion);
    double LeerAltoPantalla(ADODB::Connection &conexion);

    /// The display's size in twips, for when the suite stores none. Set by the screen layer
    /// at start (this layer has no display); 15360 x 11085 until then.
    static void FijarTamanoPantalla(double anchoTwips, double altoTwips);
};
