// Reading a spreadsheet's lines with libcsv: the bytes are split into fields first (the
// separators and quotes are plain ASCII in every encoding a shop's file comes in), and each
// field is then read as text in the file's encoding.
#include "csv.h"

#include <cstring>
#include <csv.h>

namespace {

constexpr QByteArrayView bom("\xEF\xBB\xBF");

/// The separator the header line uses most, among `;`, tab and `,` (in that order on a tie);
/// `;` when it uses none (a file of one column).
char SeparadorDeCabecera(QByteArrayView datos) {
    int puntoycoma = 0, tabulador = 0, coma = 0;
    bool entreComillas = false;
    for (const char c : datos) {
        if (c == '"')
            entreComillas = !entreComillas;
        else if (entreComillas)
            continue;
        else if (c == '\n' || c == '\r')
            break;
        else if (c == ';')
            ++puntoycoma;
        else if (c == '\t')
            ++tabulador;
        else if (c == ',')
            ++coma;
    }
    if (puntoycoma >= tabulador && puntoycoma >= coma)
        return ';';
    return tabulador >= coma ? '\t' : ',';
}

/// What libcsv's callbacks fill: the fields of the line being read and the lines read.
struct Lector {
    bool utf8 = true;
    std::function<bool(const QString &)> leerColumna; ///< none: every column is read
    QList<bool> leidas; ///< after the header, with `leerColumna`: which columns are read
    QStringList campos;
    QList<LineaCsv> lineas;
    int linea = 1;          ///< the file's line where the next line starts
    int saltosEnCampos = 0; ///< line breaks inside quoted fields of the current line
    bool trasRetorno = false;

    QString Texto(const char *s, size_t n) const {
        const QByteArrayView bytes(s, qsizetype(n));
        return utf8 ? QString::fromUtf8(bytes) : DesdeWindows1252(bytes);
    }
};

void AlCampo(void *s, size_t n, void *datos) {
    auto &lector = *static_cast<Lector *>(datos);
    const char *texto = static_cast<const char *>(s);
    // Nearly no field holds a line break: looked for at memchr's pace first.
    if (std::memchr(texto, '\n', n) || std::memchr(texto, '\r', n))
        for (size_t i = 0; i < n; ++i)
            if (texto[i] == '\n' || (texto[i] == '\r' && (i + 1 == n || texto[i + 1] != '\n')))
                ++lector.saltosEnCampos;
    const qsizetype columna = lector.campos.size();
    const bool dejada = !lector.lineas.isEmpty() && lector.leerColumna &&
                        (columna >= lector.leidas.size() || !lector.leidas[columna]);
    lector.campos.append(dejada ? QString() : lector.Texto(texto, n));
}

void AlFinDeLinea(int terminador, void *datos) {
    auto &lector = *static_cast<Lector *>(datos);
    const bool vacia = lector.campos.isEmpty();
    // A CRLF is reported as a line ended by CR and an empty one ended by LF: one line.
    const bool finDeCrlf = vacia && terminador == '\n' && lector.trasRetorno;
    lector.trasRetorno = terminador == '\r';
    if (finDeCrlf)
        return;
    if (!vacia) {
        if (lector.lineas.isEmpty() && lector.leerColumna)
            for (const QString &nombre : std::as_const(lector.campos))
                lector.leidas.append(lector.leerColumna(nombre.trimmed()));
        lector.lineas.append({lector.linea, std::move(lector.campos)});
    }
    lector.campos = QStringList();
    lector.campos.reserve(lector.lineas.isEmpty() ? 0 : lector.lineas.first().campos.size());
    lector.linea += 1 + lector.saltosEnCampos;
    lector.saltosEnCampos = 0;
}

int SoloEspacio(unsigned char c) {
    return c == ' ';
}

} // namespace

QString DesdeWindows1252(QByteArrayView bytes) {
    // 0x80–0x9F; 0 where the code page has no character (the byte stays as it is).
    static constexpr char16_t altos[32] = {
        0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
        0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
        0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};
    QString texto(bytes.size(), Qt::Uninitialized);
    QChar *destino = texto.data();
    for (const char c : bytes) {
        const auto b = static_cast<unsigned char>(c);
        *destino++ = QChar(b >= 0x80 && b < 0xA0 && altos[b - 0x80] ? altos[b - 0x80] : b);
    }
    return texto;
}

FicheroCsv LeerCsv(const QByteArray &bytes,
                   const std::function<bool(const QString &)> &leerColumna) {
    FicheroCsv fichero;
    QByteArrayView datos(bytes);
    if (datos.startsWith(bom))
        datos = datos.sliced(bom.size());
    if (datos.trimmed().isEmpty()) {
        fichero.error = QStringLiteral("El fichero está vacío.");
        return fichero;
    }
    // A picture, a zip or a spreadsheet's own format holds zero bytes; no text does.
    if (datos.contains('\0')) {
        fichero.error = QStringLiteral("El fichero no es de texto: guarde la hoja de cálculo como "
                                       "CSV (separado por punto y coma) e impórtelo de nuevo.");
        return fichero;
    }
    Lector lector;
    lector.utf8 = datos.isValidUtf8();
    lector.lineas.reserve(datos.count('\n') + 1);
    lector.leerColumna = leerColumna;
    fichero.windows1252 = !lector.utf8;
    fichero.separador = SeparadorDeCabecera(datos);

    csv_parser analizador;
    if (csv_init(&analizador, CSV_STRICT | CSV_REPALL_NL | CSV_STRICT_FINI) != 0)
        throw std::bad_alloc();
    csv_set_delim(&analizador, static_cast<unsigned char>(fichero.separador));
    csv_set_space_func(&analizador, SoloEspacio);
    const size_t leidos =
        csv_parse(&analizador, datos.data(), size_t(datos.size()), AlCampo, AlFinDeLinea, &lector);
    const bool completo = leidos == size_t(datos.size()) &&
                          csv_fini(&analizador, AlCampo, AlFinDeLinea, &lector) == 0;
    const int error = csv_error(&analizador);
    csv_free(&analizador);
    if (!completo) {
        fichero.error = error == CSV_EPARSE
                            ? QStringLiteral("El fichero tiene unas comillas mal puestas o sin "
                                             "cerrar en la línea %1.")
                                  .arg(lector.linea)
                            : QStringLiteral("No hay memoria para leer el fichero.");
        return fichero;
    }
    if (lector.lineas.isEmpty()) {
        fichero.error = QStringLiteral("El fichero está vacío.");
        return fichero;
    }
    fichero.cabecera = lector.lineas.takeFirst().campos;
    for (QString &nombre : fichero.cabecera)
        nombre = nombre.trimmed();
    fichero.lineas = std::move(lector.lineas);
    return fichero;
}
