// A grid's texts kept compactly: every text comes back as it went in, in Latin-1 when it fits
// and UTF-16 when not, whatever was written before, after or beside it; texts written again
// don't make the buffer grow without end; rows and columns added are empty, those taken away
// are gone.
#include "apoyo/ejecucion.h"
#include "platform/ui/textosgrid.h"

using namespace Pantalla;

namespace {

bool CabeEnLatin1(const QString &t) {
    return std::all_of(t.cbegin(), t.cend(), [](QChar c) { return c.unicode() < 0x100; });
}

/// Checks that `textos` holds `esperados`, row-major, each text in the form it fits.
void Comprobar(const TextosGrid &textos, const QStringList &esperados) {
    const int columnas = textos.columnas();
    QCOMPARE(qsizetype(textos.filas()) * columnas, esperados.size());
    for (qsizetype i = 0; i < esperados.size(); ++i) {
        const size_t f = size_t(i / columnas);
        const int c = int(i % columnas);
        const VistaTexto vista = textos.vista(f, c);
        QCOMPARE(textos.texto(f, c), esperados[i]);
        QCOMPARE(vista.largo, esperados[i].size());
        QCOMPARE(vista.utf16, !CabeEnLatin1(esperados[i]));
        if (vista.utf16) // UTF-16 units are read in place: they must lie on an even byte
            QCOMPARE(reinterpret_cast<quintptr>(vista.datos) % 2, quintptr(0));
    }
}

/// Writes `textos` row-major into `grid`, in the order of `orden` (cell indexes); every other
/// text that fits goes in as Latin-1 bytes, the rest as UTF-16.
void Escribir(TextosGrid &grid, const QStringList &textos, const QList<int> &orden) {
    for (int i : orden) {
        const size_t f = size_t(i / grid.columnas());
        const int c = i % grid.columnas();
        if (i % 2 != 0 && CabeEnLatin1(textos[i])) {
            const QByteArray latin1 = textos[i].toLatin1();
            grid.poner(f, c, QLatin1StringView(latin1));
        } else {
            grid.poner(f, c, textos[i]);
        }
    }
}

QList<int> Indices(qsizetype n, bool alReves) {
    QList<int> orden;
    for (int i = 0; i < n; ++i)
        orden << (alReves ? int(n) - 1 - i : i);
    return orden;
}

QString Repetido(const QString &trozo, int veces) {
    QString t;
    for (int i = 0; i < veces; ++i)
        t += trozo;
    return t;
}

} // namespace

class TstTextosGrid : public QObject {
    Q_OBJECT
  private slots:
    // Texts written into a grid of three columns cell by cell, in order and backwards, then
    // each written again with its mirror's text.
    void guardaLosTextos_data() {
        const auto caso = Pruebas::Tabla<QStringList>();
        caso("códigos y nombres", QStringList{"C1", "Producto 0000001", "0,25", "S3", "", "x"});
        caso("acentos y eñes en Latin-1", QStringList{"Ñandú", "camión", "ÿ", "µ", "Ça", "ü"});
        caso("fuera de Latin-1", QStringList{"5 €", "Ωmega", "ŒUVRE", "日本", "€", "Ω"});
        caso("UTF-16 tras textos de largo impar",
             QStringList{"a", "€", "abc", "Ω", "", "x€y", "ab", "", "€€"});
        caso("fuera del plano básico", QStringList{"\U00010428x", "a\U0001F600", "b"});
        caso("un carácter nulo dentro",
             QStringList{QString(QChar(0)) + "a", QString(QChar(0)), ""});
        caso("largos de más de un byte de longitud",
             QStringList{Repetido("a", 127), Repetido("b", 128), Repetido("€", 200),
                         Repetido("c", 20000), "d", ""});
        caso("vacíos al final de la fila", QStringList{"a", "", "", "€", "", ""});
        caso("vacíos antes de un texto", QStringList{"a", "", "c€", "", "", "z", "ab", "", "Ω"});
        caso("todos vacíos", QStringList{"", "", ""});
    }
    void guardaLosTextos() {
        const auto [textos] = Pruebas::Fila<QStringList>();
        for (const bool alReves : {false, true}) {
            TextosGrid grid{size_t(textos.size() / 3), 3};
            Comprobar(grid, QStringList(textos.size()));
            Escribir(grid, textos, Indices(textos.size(), alReves));
            Comprobar(grid, textos);
            const QStringList inversos(textos.crbegin(), textos.crend());
            Escribir(grid, inversos, Indices(textos.size(), !alReves));
            Comprobar(grid, inversos);
        }
    }

    // One cell written again and again beside others that stay: the others keep their texts,
    // and the buffer holds at most about twice what is live, not every text ever written.
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
        TextosGrid grid(Filas, 2);
        QStringList esperados;
        for (int f = 0; f < Filas; ++f) {
            esperados << fijo + QString::number(f) << QString::number(f);
            grid.poner(size_t(f), 0, esperados[2 * f]);
            grid.poner(size_t(f), 1, esperados[2 * f + 1]);
        }
        size_t mayor = 0;
        for (int i = 0; i < veces; ++i) {
            // The first row, then one in the middle: neither is always the last one written.
            const size_t fila = i % 2 == 0 ? 0 : Filas / 2;
            grid.poner(fila, 1, QString(escrito + QString::number(i)));
            mayor = std::max(mayor, grid.bytes());
        }
        esperados[1] = escrito + QString::number(veces - 2);
        esperados[Filas + 1] = escrito + QString::number(veces - 1);
        Comprobar(grid, esperados);
        size_t vivos = 0;
        for (const QString &t : esperados)
            vivos += size_t(t.size()) * 2 + 4;
        QVERIFY2(mayor <= 2 * vivos + 8192,
                 qPrintable(QStringLiteral("%1 bytes para %2 vivos").arg(mayor).arg(vivos)));
    }

    // Rows and columns taken away and added again: what remains keeps its texts, what is new
    // is empty, and what went is given back.
    void redimensionar_data() {
        // filas, columnas: before, after the cut, at the end
        const auto caso = Pruebas::Tabla<QList<int>, QList<int>>();
        caso("crecen", {5, 9, 9}, {3, 3, 4});
        caso("menguan las filas", {9, 3, 3}, {3, 3, 3});
        caso("filas a ninguna y vuelven", {9, 0, 4}, {3, 3, 3});
        caso("muchas filas a una y vuelven", {2000, 1, 2000}, {3, 3, 3});
        caso("menguan las columnas y vuelven", {50, 50, 50}, {4, 2, 5});
        caso("una columna sola, luego ninguna y vuelven", {50, 50, 50}, {3, 0, 3});
    }
    void redimensionar() {
        const auto [filas, columnas] = Pruebas::Fila<QList<int>, QList<int>>();
        const auto texto = [](int f, int c) {
            return c % 2 == 0 ? QStringLiteral("fila %1 €").arg(f) : QStringLiteral("c%1").arg(c);
        };
        TextosGrid grid(size_t(filas[0]), columnas[0]);
        for (int f = 0; f < filas[0]; ++f)
            for (int c = 0; c < columnas[0]; ++c)
                grid.poner(size_t(f), c, texto(f, c));
        const size_t llena = grid.bytes();
        grid.redimensionar(size_t(filas[1]));
        grid.setColumnas(columnas[1]);
        grid.redimensionar(size_t(filas[2]));
        grid.setColumnas(columnas[2]);
        QStringList esperados;
        for (int f = 0; f < filas[2]; ++f)
            for (int c = 0; c < columnas[2]; ++c)
                esperados << (f < std::min(filas[0], filas[1]) &&
                                      c < std::min(columnas[0], columnas[1])
                                  ? texto(f, c)
                                  : QString());
        Comprobar(grid, esperados);
        if (llena > 8192 && filas[1] * 2 < filas[0])
            QVERIFY2(grid.bytes() < llena / 2,
                     qPrintable(QStringLiteral("%1 de %2 bytes").arg(grid.bytes()).arg(llena)));
    }
};

TARIFAS_PRUEBAS_SIN_VENTANAS(TstTextosGrid)
#include "tst_textosgrid.moc"
