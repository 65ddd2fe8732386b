#include "errorbd.h"

ErrorBD::ErrorBD(const QString &texto) : std::runtime_error(texto.toStdString()) {}
