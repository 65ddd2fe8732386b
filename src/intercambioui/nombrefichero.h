#pragma once

#include <QString>

/// A list's name as a file's, for the file dialogs to propose: what no file system takes (a
/// slash, a colon…) becomes "_"; "tarifa" when nothing is left.
inline QString NombreFichero(const QString &nombre) {
    QString limpio = nombre.trimmed();
    for (QChar &c : limpio)
        if (QStringLiteral("/\\:*?\"<>|").contains(c) || c.unicode() < 32)
            c = u'_';
    return limpio.isEmpty() ? QStringLiteral("tarifa") : limpio;
}
