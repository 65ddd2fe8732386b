#pragma once

#include "platform/datos/errorbd.h"

#include <QString>
#include <functional>

/// The text of the ErrorBD that `accion` raises; a null QString when it raises none.
inline QString ErrorDe(const std::function<void()> &accion) {
    try {
        accion();
    } catch (const ADODB::ErrorBD &e) {
        return e.Texto();
    }
    return {};
}
