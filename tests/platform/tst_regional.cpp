// Dates and numbers as text, by the regional settings.
#include "apoyo/ejecucion.h"
#include "platform/datos/regional.h"

using namespace Sistema;

class TstRegional : public QObject {
    Q_OBJECT

  private slots:
    void formato() {
        // The short date form of the region, always with a four-digit year.
        for (const auto &[idioma, formato] :
             {std::pair{"es_ES", "d/M/yyyy"}, {"en_US", "M/d/yyyy"}, {"sv_SE", "yyyy-MM-dd"}}) {
            QLocale::setDefault(QLocale(QString::fromLatin1(idioma)));
            QCOMPARE(FormatoFechaRegional(), QString::fromLatin1(formato));
        }
    }

    // A date as text, and a text as a date: the region's form, ISO as a fallback, and
    // nothing guessed (an empty text or an invalid date for what isn't one).
    void fechas_data() {
        // Region, text, date, and whether the date is written as that text.
        const auto caso = Pruebas::Tabla<QString, QString, QDate, bool>();
        caso("es first day", "es_ES", "1/1/1601", QDate(1601, 1, 1), true);
        caso("es last day", "es_ES", "31/12/9999", QDate(9999, 12, 31), true);
        caso("es 2001 keeps its century", "es_ES", "1/1/2001", QDate(2001, 1, 1), true);
        caso("us month first", "en_US", "12/31/2026", QDate(2026, 12, 31), true);
        caso("de", "de_DE", "04.03.2026", QDate(2026, 3, 4), true);
        caso("invalid date, empty text", "es_ES", "", QDate(), true);
        caso("es two-digit day and month", "es_ES", "05/03/2026", QDate(2026, 3, 5), false);
        caso("es blanks around", "es_ES", "  5/3/2026 ", QDate(2026, 3, 5), false);
        caso("es ISO", "es_ES", "2026-03-05", QDate(2026, 3, 5), false);
        caso("es 29 February of a leap year", "es_ES", "29/2/2028", QDate(2028, 2, 29), false);
        caso("es two-digit year is not guessed", "es_ES", "1/1/26", QDate(), false);
        caso("es letters", "es_ES", "mañana", QDate(), false);
        caso("es ISO with a bad day", "es_ES", "2026-02-30", QDate(), false);
        caso("us day first is refused", "en_US", "31/12/2026", QDate(), false);
        caso("de one-digit day", "de_DE", "4.3.2026", QDate(2026, 3, 4), false);
    }
    void fechas() {
        const auto [idioma, texto, fecha, escrita] = Pruebas::Fila<QString, QString, QDate, bool>();
        QLocale::setDefault(QLocale(idioma));
        QCOMPARE(TextoAFecha(texto), fecha);
        if (escrita)
            QCOMPARE(FechaATexto(fecha), texto);
    }

    // A number as the shop reads it: the region's decimal sign, no grouping, no exponent,
    // the shortest text that reads back as the same number.
    void numeroATexto_data() {
        const auto fila = Pruebas::Tabla<QString, double, QString>();
        const auto caso = [&](const char *idioma, double v, const QString &t) {
            fila(qPrintable(QStringLiteral("%1 %2").arg(QLatin1String(idioma), t)),
                 QLatin1String(idioma), v, t);
        };
        caso("es_ES", 12.5, "12,5");
        caso("es_ES", 1234567.25, "1234567,25");
        caso("es_ES", 0.1 + 0.2, "0,30000000000000004");
        caso("es_ES", 1e22, "10000000000000000000000");
        caso("en_US", 1234567.25, "1234567.25");
        caso("sv_SE", -2.5, QString::fromUtf8("−2,5"));
        caso("es_ES", -2.5, "-2,5");
    }
    void numeroATexto() {
        const auto [idioma, valor, texto] = Pruebas::Fila<QString, double, QString>();
        QLocale::setDefault(QLocale(idioma));
        QCOMPARE(NumeroATexto(valor), texto);
        bool ok = false;
        QCOMPARE(QLocale().toDouble(texto, &ok), valor);
        QVERIFY(ok);
    }

    // Any value a field holds, as a grid shows it.
    void valorATexto_data() {
        const auto caso = Pruebas::Tabla<QString, QVariant, QString>();
        caso("Null", "es_ES", QVariant(), "");
        caso("text", "es_ES", "Camiseta básica", "Camiseta básica");
        caso("date us", "en_US", QDate(2026, 1, 31), "1/31/2026");
        caso("midnight shows the date only", "es_ES", QDateTime(QDate(2026, 1, 31), QTime(0, 0)),
             "31/1/2026");
        caso("a time shows too", "es_ES", QDateTime(QDate(2026, 1, 31), QTime(9, 5, 7)),
             "31/1/2026 09:05:07");
        caso("big whole number", "es_ES", qlonglong(5000000000), "5000000000");
        caso("whole number has no grouping", "en_US", 1234567, "1234567");
        caso("double es", "es_ES", 12.5, "12,5");
        caso("true", "es_ES", true, "Verdadero");
        caso("false", "en_US", false, "Falso");
    }
    void valorATexto() {
        const auto [idioma, valor, texto] = Pruebas::Fila<QString, QVariant, QString>();
        QLocale::setDefault(QLocale(idioma));
        QCOMPARE(ValorATexto(valor), texto);
    }
};

TARIFAS_PRUEBAS_SIN_VENTANAS(TstRegional)
#include "tst_regional.moc"
