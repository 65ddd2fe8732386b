#include "codigo.h"

std::optional<qint64> CodigoDeTexto(QStringView texto) {
    // Asked once per row of a listing, so it reads the characters itself.
    const bool negativo = texto.startsWith(u'-');
    const QStringView digitos = negativo ? texto.mid(1) : texto;
    if (digitos.isEmpty() || digitos.size() > 18)
        return std::nullopt;
    qint64 n = 0;
    for (const QChar c : digitos) {
        if (c < u'0' || c > u'9')
            return std::nullopt;
        n = n * 10 + (c.unicode() - u'0');
    }
    return negativo ? -n : n;
}
