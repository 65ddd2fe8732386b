#include "errorbd.h"

namespace ADODB {

ErrorBD::ErrorBD(const QString &texto) : std::runtime_error(texto.toStdString()) {}

} // namespace ADODB
