// Writing a spreadsheet's lines: the quotes come from libcsv, applied only where a field needs
// them, so that a plain file stays plain to read.
#include "csv.h"

#include <csv.h>

namespace {

/// A field needs quotes when it holds the separator, a quote or a line break, or begins or
/// ends with a space (which a reader may trim from a bare field).
bool NecesitaComillas(QByteArrayView campo, char separador) {
    if (!campo.isEmpty() && (campo.front() == ' ' || campo.back() == ' '))
        return true;
    for (const char c : campo)
        if (c == separador || c == '"' || c == '\r' || c == '\n')
            return true;
    return false;
}

} // namespace

EscritorCsv::EscritorCsv(QIODevice &dispositivo, char separadorCampos)
    : destino(dispositivo), separador(separadorCampos) {
    linea.reserve(256);
    if (destino.pos() == 0)
        linea.append("\xEF\xBB\xBF");
}

bool EscritorCsv::Linea(const QStringList &campos) {
    for (qsizetype i = 0; i < campos.size(); ++i) {
        if (i > 0)
            linea.append(separador);
        const QByteArray campo = campos[i].toUtf8();
        if (!NecesitaComillas(campo, separador)) {
            linea.append(campo);
            continue;
        }
        // Every quote doubled and two around: at most twice the field and two.
        const qsizetype inicio = linea.size();
        const size_t hueco = size_t(campo.size()) * 2 + 2;
        linea.resize(inicio + qsizetype(hueco));
        const size_t escritos =
            csv_write2(linea.data() + inicio, hueco, campo.constData(), size_t(campo.size()), '"');
        linea.resize(inicio + qsizetype(escritos));
    }
    linea.append("\r\n");
    const bool bien = destino.write(linea) == linea.size();
    linea.clear();
    return bien;
}
