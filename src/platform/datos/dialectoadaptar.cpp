// Dialecto::Adaptar: a statement reworded where a database reads its text otherwise.
// The statement is cut into pieces (words, texts between apostrophes, quoted names, comments,
// symbols, blanks) so that a rewrite never reaches into a literal or a comment.
#include "dialecto.h"

#include <vector>

namespace ADODB {

namespace {

enum class ClasePieza { Blanco, Palabra, Literal, Nombre, Comentario, Simbolo };

struct Pieza {
    ClasePieza clase;
    QString texto;
};

bool EsLetra(QChar c) {
    return c.isLetter() || c == QLatin1Char('_');
}

/// Cuts `sentencia` into pieces whose texts, joined, give it back unchanged. Runs of
/// comparison characters ("<>", "!=", "<=", "||") are one symbol.
std::vector<Pieza> Trocear(const QString &sentencia) {
    std::vector<Pieza> piezas;
    const qsizetype n = sentencia.size();
    qsizetype i = 0;
    const auto hasta = [&](qsizetype fin, ClasePieza clase) {
        piezas.push_back({clase, sentencia.mid(i, fin - i)});
        i = fin;
    };
    while (i < n) {
        const QChar c = sentencia.at(i);
        qsizetype fin = i + 1;
        if (c.isSpace()) {
            while (fin < n && sentencia.at(fin).isSpace())
                ++fin;
            hasta(fin, ClasePieza::Blanco);
        } else if (EsLetra(c)) {
            while (fin < n && (EsLetra(sentencia.at(fin)) || sentencia.at(fin).isDigit() ||
                               sentencia.at(fin) == QLatin1Char('$')))
                ++fin;
            hasta(fin, ClasePieza::Palabra);
        } else if (c == QLatin1Char('\'') || c == QLatin1Char('"')) {
            // A doubled quote inside stands for one; an unclosed one runs to the end.
            for (;;) {
                while (fin < n && sentencia.at(fin) != c)
                    ++fin;
                if (fin + 1 < n && sentencia.at(fin + 1) == c) {
                    fin += 2;
                    continue;
                }
                fin = qMin(fin + 1, n);
                break;
            }
            hasta(fin, c == QLatin1Char('\'') ? ClasePieza::Literal : ClasePieza::Nombre);
        } else if (c == QLatin1Char('-') && fin < n && sentencia.at(fin) == QLatin1Char('-')) {
            while (fin < n && sentencia.at(fin) != QLatin1Char('\n'))
                ++fin;
            hasta(fin, ClasePieza::Comentario);
        } else if (c == QLatin1Char('/') && fin < n && sentencia.at(fin) == QLatin1Char('*')) {
            const qsizetype cierre = sentencia.indexOf(QLatin1String("*/"), fin + 1);
            hasta(cierre < 0 ? n : cierre + 2, ClasePieza::Comentario);
        } else if (QStringView(u"<>=!|").contains(c)) {
            while (fin < n && QStringView(u"<>=!|").contains(sentencia.at(fin)))
                ++fin;
            hasta(fin, ClasePieza::Simbolo);
        } else {
            hasta(fin, ClasePieza::Simbolo);
        }
    }
    return piezas;
}

bool Es(const Pieza &p, const char *palabra) {
    return p.clase == ClasePieza::Palabra &&
           p.texto.compare(QLatin1String(palabra), Qt::CaseInsensitive) == 0;
}

bool EsSimbolo(const Pieza &p, const char *simbolo) {
    return p.clase == ClasePieza::Simbolo && p.texto == QLatin1String(simbolo);
}

bool EsPalabraDe(const Pieza &p, std::initializer_list<const char *> palabras) {
    for (const char *palabra : palabras)
        if (Es(p, palabra))
            return true;
    return false;
}

/// The next piece from `i` on that is neither a blank nor a comment; piezas.size() if none.
size_t Siguiente(const std::vector<Pieza> &piezas, size_t i) {
    while (i < piezas.size() &&
           (piezas[i].clase == ClasePieza::Blanco || piezas[i].clase == ClasePieza::Comentario))
        ++i;
    return i;
}

/// Where the expression that starts at `inicio` ends: the first piece, at its own depth of
/// parentheses, that closes it (a closing parenthesis, a comma or a semicolon, or one of
/// `fin` words), else the end of the statement. Gives that piece's index.
size_t FinDeExpresion(const std::vector<Pieza> &piezas, size_t inicio,
                      std::initializer_list<const char *> fin) {
    int profundidad = 0;
    for (size_t i = inicio; i < piezas.size(); ++i) {
        const Pieza &p = piezas[i];
        if (EsSimbolo(p, "(")) {
            ++profundidad;
        } else if (EsSimbolo(p, ")")) {
            if (profundidad-- == 0)
                return i;
        } else if (profundidad == 0 &&
                   (EsSimbolo(p, ",") || EsSimbolo(p, ";") || EsPalabraDe(p, fin))) {
            return i;
        }
    }
    return piezas.size();
}

/// Inserts `texto` right after the last piece before `fin` that is neither a blank nor a
/// comment, so that it stays within the expression that ends there.
void AnadirTrasExpresion(std::vector<Pieza> &piezas, size_t inicio, size_t fin,
                         const QString &texto) {
    size_t ultimo = fin;
    for (size_t i = inicio; i < fin; ++i)
        if (piezas[i].clase != ClasePieza::Blanco && piezas[i].clase != ClasePieza::Comentario)
            ultimo = i;
    if (ultimo != fin)
        piezas[ultimo].texto += texto;
}

/// "x <> null" and "x != null", which the suite means as "x has a value": "x is not null".
void DistintoDeNulo(std::vector<Pieza> &piezas) {
    for (size_t i = 0; i < piezas.size(); ++i) {
        if (!EsSimbolo(piezas[i], "<>") && !EsSimbolo(piezas[i], "!="))
            continue;
        const size_t siguiente = Siguiente(piezas, i + 1);
        if (siguiente < piezas.size() && Es(piezas[siguiente], "null")) {
            piezas[i].texto = QStringLiteral("is not");
            // "x<>null" has no blank before the operator.
            if (i > 0 && piezas[i - 1].clase != ClasePieza::Blanco)
                piezas[i].texto.prepend(QLatin1Char(' '));
            if (siguiente == i + 1)
                piezas[i].texto.append(QLatin1Char(' '));
        }
    }
}

/// The words that end a like pattern's expression.
const std::initializer_list<const char *> finDePatron = {
    "escape", "and",       "or",   "order", "group", "having", "limit", "offset", "union",
    "except", "intersect", "then", "when",  "else",  "end",    "from",  "where",  "as"};

void Like(std::vector<Pieza> &piezas, const Dialecto::Diferencias &d) {
    for (size_t i = 0; i < piezas.size(); ++i) {
        if (!Es(piezas[i], "like"))
            continue;
        if (d.likeDistingueMayusculas)
            piezas[i].texto = QStringLiteral("ilike");
        if (!d.likeEscapaConBarra)
            continue;
        const size_t fin = FinDeExpresion(piezas, i + 1, finDePatron);
        if (fin < piezas.size() && Es(piezas[fin], "escape"))
            continue; // the statement chose its own escape character
        AnadirTrasExpresion(piezas, i + 1, fin, QStringLiteral(" escape ''"));
    }
}

/// The words that end an "order by" list, besides a closing parenthesis or a semicolon.
const std::initializer_list<const char *> finDeOrden = {"limit", "offset", "fetch",    "for",
                                                        "union", "except", "intersect"};

void NulosPrimero(std::vector<Pieza> &piezas) {
    for (size_t i = 0; i < piezas.size(); ++i) {
        if (!Es(piezas[i], "order"))
            continue;
        const size_t by = Siguiente(piezas, i + 1);
        if (by >= piezas.size() || !Es(piezas[by], "by"))
            continue;
        size_t inicio = by + 1;
        for (;;) {
            const size_t fin = FinDeExpresion(piezas, inicio, finDeOrden);
            bool dice = false;
            bool descendente = false;
            int profundidad = 0;
            for (size_t j = inicio; j < fin; ++j) {
                if (EsSimbolo(piezas[j], "("))
                    ++profundidad;
                else if (EsSimbolo(piezas[j], ")"))
                    --profundidad;
                else if (profundidad == 0 && Es(piezas[j], "nulls"))
                    dice = true;
                else if (profundidad == 0 && piezas[j].clase == ClasePieza::Palabra)
                    descendente = Es(piezas[j], "desc");
            }
            if (!dice)
                AnadirTrasExpresion(piezas, inicio, fin,
                                    descendente ? QStringLiteral(" nulls last")
                                                : QStringLiteral(" nulls first"));
            if (fin >= piezas.size() || !EsSimbolo(piezas[fin], ","))
                break;
            inicio = fin + 1;
        }
    }
}

void NombresEnMinusculas(std::vector<Pieza> &piezas) {
    for (Pieza &p : piezas)
        if (p.clase == ClasePieza::Nombre)
            p.texto = p.texto.toLower();
}

} // namespace

QString Dialecto::Adaptar(const QString &sentencia) const {
    const Diferencias &d = diferencias;
    // Most statements have nothing to reword: they are given back without being cut up.
    const bool nulo = sentencia.contains(QLatin1String("null"), Qt::CaseInsensitive);
    const bool like = (d.likeDistingueMayusculas || d.likeEscapaConBarra) &&
                      sentencia.contains(QLatin1String("like"), Qt::CaseInsensitive);
    const bool orden =
        d.nuloOrdenaAlFinal && sentencia.contains(QLatin1String("order"), Qt::CaseInsensitive);
    const bool comillas = d.comillasDistinguenMayusculas && sentencia.contains(QLatin1Char('"'));
    if (!nulo && !like && !orden && !comillas)
        return sentencia;

    std::vector<Pieza> piezas = Trocear(sentencia);
    if (nulo)
        DistintoDeNulo(piezas);
    if (like)
        Like(piezas, d);
    if (orden)
        NulosPrimero(piezas);
    if (comillas)
        NombresEnMinusculas(piezas);
    QString adaptada;
    adaptada.reserve(sentencia.size() + 32);
    for (const Pieza &p : piezas)
        adaptada += p.texto;
    return adaptada;
}

} // namespace ADODB
