#pragma once

#include <QString>

/// Between the message boxes and the error report: whether a test is answering the boxes,
/// and the record of what would have been shown.
namespace mensajes_prueba {
bool Interceptando();
void Registrar(const QString &texto, const QString &titulo = {});
} // namespace mensajes_prueba
