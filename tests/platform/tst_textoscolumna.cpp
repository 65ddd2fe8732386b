// A grid column's texts kept compactly: every text comes back as it went in, in Latin-1 when
// it fits and UTF-16 when not, whatever was written before or around it; texts written again
// don't make the column grow without end; rows added are empty, rows taken away are gone.
#include "apoyo/ejecucion.h"
#include "platform/ui/textoscolumna.h"

namespace {

/// Whether every character of `t` fits in one Latin-1 byte.
bool CabeEnLatin1(const QString &t) {
    return std::all_of(t.cbegin(), t.cend(), [](QChar c) { return c.unicode() < 0x100; });
}

/// Checks that `columna` holds `esperados`, row by row, each in the form it fits.
void Comprobar(const TextosColumna &columna, const QStringList &esperados) {
    QCOMPARE(columna.filas(), size_t(esperados.size()));
    for (qsizetype f = 0; f < esperados.size(); ++f) {
        const VistaTexto vista = columna.vista(size_t(f));
        QCOMPARE(columna.texto(size_t(f)), esperados[f]);
        QCOMPARE(vista.largo, esperados[f].size());
        QCOMPARE(vista.utf16, !CabeEnLatin1(esperados[f]));
        if (vista.utf16) // UTF-16 units are read in place: they must lie on an even byte
            QCOMPARE(reinterpret_cast<quintptr>(vista.datos) % 2, quintptr(0));
    }
}

QString Repetido(const QString &trozo, int veces) {
    QString t;
    for (int i = 0; i < veces; ++i)
        t += trozo;
    return t;
}

} // namespace

class TstTextosColumna : public QObject {
    Q_OBJECT
  private slots:
    // Texts written one a row, then the same texts again in reverse order over them.
    void guardaLosTextos_data() {
        const auto caso = Pruebas::Tabla<QStringList>();
        caso("códigos y nombres", QStringList{"C1", "Producto 0000001", "0,25", "S3", ""});
        caso("acentos y eñes en Latin-1", QStringList{"Ñandú", "camión", "ÿ", "µ", "Ça"});
        caso("fuera de Latin-1", QStringList{"5 €", "Ωmega", "ŒUVRE", "日本"});
        caso("UTF-16 tras un texto de largo impar",
             QStringList{"a", "€", "abc", "Ω", "", "x€y", "ab"});
        caso("fuera del plano básico", QStringList{"\U00010428x", "a\U0001F600", "b"});
        caso("un carácter nulo dentro", QStringList{QString(QChar(0)) + "a", QString(QChar(0))});
        caso("largos de más de un byte de longitud",
             QStringList{Repetido("a", 127), Repetido("b", 128), Repetido("€", 200),
                         Repetido("c", 20000), "d"});
        caso("todos vacíos", QStringList{"", "", ""});
    }
    void guardaLosTextos() {
        const auto [textos] = Pruebas::Fila<QStringList>();
        TextosColumna columna{size_t(textos.size())};
        Comprobar(columna, QStringList(textos.size()));
        for (qsizetype f = 0; f < textos.size(); ++f)
            columna.poner(size_t(f), textos[f]);
        Comprobar(columna, textos);
        QStringList inversos(textos.crbegin(), textos.crend());
        for (qsizetype f = 0; f < inversos.size(); ++f)
            columna.poner(size_t(f), inversos[f]);
        Comprobar(columna, inversos);
    }

    // One cell written again and again beside others that stay: the others keep their texts,
    // and the column holds at most about twice what is live, not every text ever written.
    void reescrituraAcotada_data() {
        const auto caso = Pruebas::Tabla<QString, QString, int>();
        caso("un precio en Latin-1", "12,50", "Producto fijo", 20000);
        caso("un texto en UTF-16", "Precio €", "Ωmega fijo", 20000);
        caso("un texto largo", Repetido("x", 3000), "corto", 500);
        caso("alternando formas", "€", "ñ", 20000);
    }
    void reescrituraAcotada() {
        const auto [escrito, fijo, veces] = Pruebas::Fila<QString, QString, int>();
        constexpr int Filas = 200;
        TextosColumna columna(Filas);
        for (int f = 1; f < Filas; ++f)
            columna.poner(size_t(f), QString(fijo + QString::number(f)));
        size_t mayor = 0;
        for (int i = 0; i < veces; ++i) {
            columna.poner(0, QString(escrito + QString::number(i % 10)));
            mayor = std::max(mayor, columna.bytes());
        }
        QStringList esperados{escrito + QString::number((veces - 1) % 10)};
        for (int f = 1; f < Filas; ++f)
            esperados << fijo + QString::number(f);
        Comprobar(columna, esperados);
        size_t vivos = 0;
        for (const QString &t : esperados)
            vivos += size_t(t.size()) * 2 + 4;
        QVERIFY2(mayor <= 2 * vivos + 8192,
                 qPrintable(QStringLiteral("%1 bytes para %2 vivos").arg(mayor).arg(vivos)));
    }

    // Rows taken away and added again: those that remain keep their texts, the new ones are
    // empty, and what the rows taken away held is given back.
    void redimensionar_data() {
        const auto caso = Pruebas::Tabla<int, int, int>();
        caso("crece", 5, 9, 9);
        caso("mengua", 9, 3, 3);
        caso("mengua hasta nada y vuelve", 9, 0, 4);
        caso("mengua y vuelve a crecer", 2000, 1, 2000);
    }
    void redimensionar() {
        const auto [antes, menor, despues] = Pruebas::Fila<int, int, int>();
        TextosColumna columna{size_t(antes)};
        for (int f = 0; f < antes; ++f)
            columna.poner(size_t(f), QStringLiteral("fila %1 €").arg(f));
        const size_t llena = columna.bytes();
        columna.redimensionar(size_t(menor));
        columna.redimensionar(size_t(despues));
        QStringList esperados;
        for (int f = 0; f < despues; ++f)
            esperados << (f < std::min(antes, menor) ? QStringLiteral("fila %1 €").arg(f)
                                                     : QString());
        Comprobar(columna, esperados);
        if (llena > 8192 && menor * 2 < antes)
            QVERIFY2(columna.bytes() < llena / 2,
                     qPrintable(QStringLiteral("%1 de %2 bytes").arg(columna.bytes()).arg(llena)));
    }
};

TARIFAS_PRUEBAS_SIN_VENTANAS(TstTextosColumna)
#include "tst_textoscolumna.moc"
