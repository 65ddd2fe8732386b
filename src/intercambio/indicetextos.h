#pragma once

#include <QHashFunctions>
#include <QString>
#include <QStringView>
#include <utility>
#include <vector>

/// Values found by a text, for the catalogue an import searches: a hundred thousand codes
/// read once and looked up once for each line of the file. A QHash of QString keys keeps
/// every key in an allocation of its own, and comparing a probed key reads it from wherever
/// it lies. Here the texts lie one after another in one buffer, their values beside them in
/// the order they came, and the table itself is of small slots (a part of the text's hash and
/// where its entry is): a probe reads a text only when the hashes agree, and a file in the
/// catalogue's order reads texts and values in order. Texts are compared exactly (case and
/// all); nothing is ever removed.
template <class Valor> class IndiceTextos {
  public:
    /// The value of `texto`, and true, when `texto` is new (`valor` is then its value); the
    /// value already there, and false, when it is not (`valor` is left aside). The pointer
    /// holds until the next Insertar.
    std::pair<Valor *, bool> Insertar(QStringView texto, const Valor &valor) {
        if (2 * (entradas.size() + 1) > ranuras.size())
            Redimensionar(2 * (entradas.size() + 1));
        const size_t hash = qHash(texto, semilla);
        Ranura &r = ranuras[Sitio(texto, hash)];
        if (r.entrada > 0)
            return {&entradas[r.entrada - 1].valor, false};
        entradas.push_back({qsizetype(textos.size()), qsizetype(texto.size()), valor});
        textos.append(texto);
        r = Ranura{Etiqueta(hash), quint32(entradas.size())};
        return {&entradas.back().valor, true};
    }

    /// The value of `texto`; null when the index doesn't have it.
    const Valor *Hallar(QStringView texto) const {
        if (ranuras.empty())
            return nullptr;
        const Ranura &r = ranuras[Sitio(texto, qHash(texto, semilla))];
        return r.entrada > 0 ? &entradas[r.entrada - 1].valor : nullptr;
    }

    qsizetype size() const { return qsizetype(entradas.size()); }

  private:
    struct Ranura {
        quint32 etiqueta = 0; ///< the hash's high bits (its low bits chose the slot)
        quint32 entrada = 0;  ///< 1 + the index of the entry; 0: free
    };
    struct Entrada {
        qsizetype inicio;
        qsizetype largo;
        Valor valor;
    };

    static quint32 Etiqueta(size_t hash) { return quint32(quint64(hash) >> 32); }

    QStringView Texto(const Entrada &e) const {
        return QStringView(textos).sliced(e.inicio, e.largo);
    }

    /// The slot of `texto`: its own, or the free one where it would go (open addressing,
    /// linear probing over a power-of-two table kept at most half full).
    size_t Sitio(QStringView texto, size_t hash) const {
        const size_t mascara = ranuras.size() - 1;
        const quint32 etiqueta = Etiqueta(hash);
        for (size_t i = hash & mascara;; i = (i + 1) & mascara) {
            const Ranura &r = ranuras[i];
            if (r.entrada == 0 ||
                (r.etiqueta == etiqueta && Texto(entradas[r.entrada - 1]) == texto))
                return i;
        }
    }

    void Redimensionar(size_t ranurasAlMenos) {
        size_t tamano = 16;
        while (tamano < ranurasAlMenos)
            tamano *= 2;
        ranuras.assign(tamano, Ranura{});
        const size_t mascara = tamano - 1;
        for (size_t n = 0; n < entradas.size(); ++n) {
            const size_t hash = qHash(Texto(entradas[n]), semilla);
            size_t i = hash & mascara;
            while (ranuras[i].entrada != 0)
                i = (i + 1) & mascara;
            ranuras[i] = Ranura{Etiqueta(hash), quint32(n + 1)};
        }
    }

    size_t semilla = QHashSeed::globalSeed();
    QString textos;
    std::vector<Entrada> entradas;
    std::vector<Ranura> ranuras;
};
