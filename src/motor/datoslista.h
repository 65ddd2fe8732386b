#pragma once

#include <QDate>
#include <QString>
#include <optional>

/// The checks of a new list's name and period, the same for the new-list panel and a copy.
struct FalloDatosLista {
    enum Campo { Nombre, Periodo };
    Campo campo;     ///< where the face puts the focus: the name, or the period's start
    QString mensaje; ///< the sentence shown as it is
};

/// Empty when `nombre` and the period fit a new list: a name, without "|" (the record writer's
/// separator), and `desde` not after `hasta`.
std::optional<FalloDatosLista> ComprobarDatosLista(const QString &nombre, const QDate &desde,
                                                   const QDate &hasta);
