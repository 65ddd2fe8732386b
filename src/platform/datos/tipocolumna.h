#pragma once

namespace ADODB {

/// The kinds of column the suite's tables hold. The schema names them, the record writer
/// converts values to them, and each dialect spells them in its DDL.
enum class TipoColumna {
    Entero,      ///< whole number, 32-bit
    EnteroCorto, ///< small whole number, 16-bit
    Texto,
    Fecha,   ///< a day, no time part
    Decimal, ///< an exact decimal: prices
    Real,    ///< a double: screen sizes
    Booleano,
};

} // namespace ADODB
