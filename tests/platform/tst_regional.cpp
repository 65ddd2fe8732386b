// Dates and numbers as text, by the regional settings.
#include "apoyo/ejecucion.h"
#include "platform/datos/regional.h"

#include <QDateTime>
#include <QStandardPaths>
#include <QtTest>

class TstRegional : public QObject {
    Q_OBJECT

  private slots:
    void initTestCase() { QStandardPaths::setTestModeEnabled(true); }
    void cleanup() { QLocale::setDefault(QLocale::c()); }

    void formato_data() {
        QTest::addColumn<QString>("idioma");
        QTest::addColumn<QString>("formato");
        QTest::newRow("Spain") << "es_ES"
                               << "d/M/yyyy";
        QTest::newRow("United States") << "en_US"
                                       << "M/d/yyyy";
        QTest::newRow("Germany") << "de_DE"
                                 << "dd.MM.yyyy";
        QTest::newRow("France, already four digits") << "fr_FR"
                                                     << "dd/MM/yyyy";
        QTest::newRow("Sweden, year first") << "sv_SE"
                                            << "yyyy-MM-dd";
    }
    void formato() {
        QFETCH(QString, idioma);
        QFETCH(QString, formato);
        QLocale::setDefault(QLocale(idioma));
        QCOMPARE(FormatoFechaRegional(), formato);
    }

    void fechaATexto_data() {
        QTest::addColumn<QString>("idioma");
        QTest::addColumn<QDate>("fecha");
        QTest::addColumn<QString>("texto");
        QTest::newRow("es first day") << "es_ES" << QDate(1601, 1, 1) << "1/1/1601";
        QTest::newRow("es last day") << "es_ES" << QDate(9999, 12, 31) << "31/12/9999";
        QTest::newRow("es 2001 keeps its century") << "es_ES" << QDate(2001, 1, 1) << "1/1/2001";
        QTest::newRow("es 1901") << "es_ES" << QDate(1901, 1, 1) << "1/1/1901";
        QTest::newRow("us first day") << "en_US" << QDate(1601, 1, 1) << "1/1/1601";
        QTest::newRow("us last day") << "en_US" << QDate(9999, 12, 31) << "12/31/9999";
        QTest::newRow("us month first") << "en_US" << QDate(2026, 3, 4) << "3/4/2026";
        QTest::newRow("de") << "de_DE" << QDate(2026, 3, 4) << "04.03.2026";
        QTest::newRow("invalid date gives empty text") << "es_ES" << QDate() << "";
    }
    void fechaATexto() {
        QFETCH(QString, idioma);
        QFETCH(QDate, fecha);
        QFETCH(QString, texto);
        QLocale::setDefault(QLocale(idioma));
        QCOMPARE(FechaATexto(fecha), texto);
    }

    void idaYVuelta_data() {
        QTest::addColumn<QString>("idioma");
        QTest::addColumn<QDate>("fecha");
        const QList<QDate> fechas = {QDate(1601, 1, 1),  QDate(1601, 12, 31), QDate(1899, 12, 30),
                                     QDate(1900, 2, 28), QDate(1999, 12, 31), QDate(2000, 2, 29),
                                     QDate(2001, 1, 1),  QDate(2026, 11, 30), QDate(2029, 12, 31),
                                     QDate(2030, 1, 1),  QDate(9999, 12, 31)};
        for (const char *idioma : {"es_ES", "en_US", "de_DE", "fr_FR", "sv_SE", "ja_JP"})
            for (const QDate &f : fechas)
                QTest::addRow("%s %s", idioma, qPrintable(f.toString(Qt::ISODate)))
                    << QString::fromLatin1(idioma) << f;
    }
    void idaYVuelta() {
        QFETCH(QString, idioma);
        QFETCH(QDate, fecha);
        QLocale::setDefault(QLocale(idioma));
        const QString texto = FechaATexto(fecha);
        QCOMPARE(TextoAFecha(texto), fecha);
        QCOMPARE(TextoAFecha(fecha.toString(Qt::ISODate)), fecha);
    }

    void textoAFecha_data() {
        QTest::addColumn<QString>("idioma");
        QTest::addColumn<QString>("texto");
        QTest::addColumn<QDate>("fecha");
        QTest::newRow("es two-digit day and month") << "es_ES"
                                                    << "05/03/2026" << QDate(2026, 3, 5);
        QTest::newRow("es one-digit day and month") << "es_ES"
                                                    << "5/3/2026" << QDate(2026, 3, 5);
        QTest::newRow("es blanks around") << "es_ES"
                                          << "  5/3/2026 " << QDate(2026, 3, 5);
        QTest::newRow("es ISO") << "es_ES"
                                << "2026-03-05" << QDate(2026, 3, 5);
        QTest::newRow("es 29 February of a leap year") << "es_ES"
                                                       << "29/2/2028" << QDate(2028, 2, 29);
        QTest::newRow("es 29 February otherwise") << "es_ES"
                                                  << "29/2/2026" << QDate();
        QTest::newRow("es 31 April") << "es_ES"
                                     << "31/4/2026" << QDate();
        QTest::newRow("es month 13") << "es_ES"
                                     << "1/13/2026" << QDate();
        QTest::newRow("es two-digit year is not guessed") << "es_ES"
                                                          << "1/1/26" << QDate();
        QTest::newRow("es letters") << "es_ES"
                                    << "mañana" << QDate();
        QTest::newRow("es empty") << "es_ES"
                                  << "" << QDate();
        QTest::newRow("es ISO with a bad day") << "es_ES"
                                               << "2026-02-30" << QDate();
        QTest::newRow("us month first") << "en_US"
                                        << "12/31/2026" << QDate(2026, 12, 31);
        QTest::newRow("us day first is refused") << "en_US"
                                                 << "31/12/2026" << QDate();
        QTest::newRow("de one-digit day") << "de_DE"
                                          << "4.3.2026" << QDate(2026, 3, 4);
    }
    void textoAFecha() {
        QFETCH(QString, idioma);
        QFETCH(QString, texto);
        QFETCH(QDate, fecha);
        QLocale::setDefault(QLocale(idioma));
        const QDate leida = TextoAFecha(texto);
        QCOMPARE(leida.isValid(), fecha.isValid());
        if (fecha.isValid())
            QCOMPARE(leida, fecha);
    }

    void numeroATexto_data() {
        QTest::addColumn<QString>("idioma");
        QTest::addColumn<double>("valor");
        QTest::addColumn<QString>("texto");
        QTest::newRow("es decimal comma") << "es_ES" << 12.5 << "12,5";
        QTest::newRow("es whole") << "es_ES" << 15360.0 << "15360";
        QTest::newRow("es no grouping") << "es_ES" << 1234567.25 << "1234567,25";
        QTest::newRow("es negative") << "es_ES" << -3.0 << "-3";
        QTest::newRow("es negative zero") << "es_ES" << -0.0 << "0";
        QTest::newRow("es shortest that reads back")
            << "es_ES" << 0.1 + 0.2 << "0,30000000000000004";
        QTest::newRow("es small, no exponent") << "es_ES" << 0.0000001 << "0,0000001";
        QTest::newRow("es cents") << "es_ES" << 19.95 << "19,95";
        QTest::newRow("us decimal point") << "en_US" << 12.5 << "12.5";
        QTest::newRow("us no grouping") << "en_US" << 1234567.25 << "1234567.25";
        QTest::newRow("de no grouping") << "de_DE" << 1234567.25 << "1234567,25";
        QTest::newRow("es beyond 2^64, no exponent")
            << "es_ES" << 1e22 << "10000000000000000000000";
        QTest::newRow("sv its own minus sign") << "sv_SE" << -2.5 << QString::fromUtf8("−2,5");
        QTest::newRow("es back after another locale") << "es_ES" << -2.5 << "-2,5";
    }
    void numeroATexto() {
        QFETCH(QString, idioma);
        QFETCH(double, valor);
        QFETCH(QString, texto);
        QLocale::setDefault(QLocale(idioma));
        QCOMPARE(NumeroATexto(valor), texto);
        bool ok = false;
        QCOMPARE(QLocale().toDouble(texto, &ok), valor); // reads back as the same number
        QVERIFY(ok);
    }

    void valorATexto_data() {
        QTest::addColumn<QString>("idioma");
        QTest::addColumn<QVariant>("valor");
        QTest::addColumn<QString>("texto");
        QTest::newRow("Null") << "es_ES" << QVariant() << "";
        QTest::newRow("typed Null") << "es_ES" << QVariant(QMetaType::fromType<int>()) << "";
        QTest::newRow("typed Null text")
            << "es_ES" << QVariant(QMetaType::fromType<QString>()) << "";
        QTest::newRow("empty text") << "es_ES" << QVariant(QString()) << "";
        QTest::newRow("text") << "es_ES" << QVariant("Camiseta básica") << "Camiseta básica";
        QTest::newRow("date es") << "es_ES" << QVariant(QDate(2026, 1, 31)) << "31/1/2026";
        QTest::newRow("date us") << "en_US" << QVariant(QDate(2026, 1, 31)) << "1/31/2026";
        QTest::newRow("midnight shows the date only")
            << "es_ES" << QVariant(QDateTime(QDate(2026, 1, 31), QTime(0, 0))) << "31/1/2026";
        QTest::newRow("a time shows too")
            << "es_ES" << QVariant(QDateTime(QDate(2026, 1, 31), QTime(9, 5, 7)))
            << "31/1/2026 09:05:07";
        QTest::newRow("int") << "es_ES" << QVariant(42) << "42";
        QTest::newRow("negative int") << "es_ES" << QVariant(-7) << "-7";
        QTest::newRow("big whole number")
            << "es_ES" << QVariant(qlonglong(5000000000)) << "5000000000";
        QTest::newRow("unsigned") << "es_ES" << QVariant(uint(4000000000U)) << "4000000000";
        QTest::newRow("whole number has no grouping") << "en_US" << QVariant(1234567) << "1234567";
        QTest::newRow("double es") << "es_ES" << QVariant(12.5) << "12,5";
        QTest::newRow("double us") << "en_US" << QVariant(12.5) << "12.5";
        QTest::newRow("true") << "es_ES" << QVariant(true) << "Verdadero";
        QTest::newRow("false") << "en_US" << QVariant(false) << "Falso";
    }
    void valorATexto() {
        QFETCH(QString, idioma);
        QFETCH(QVariant, valor);
        QFETCH(QString, texto);
        QLocale::setDefault(QLocale(idioma));
        QCOMPARE(ValorATexto(valor), texto);
    }
};

TARIFAS_PRUEBAS_SIN_VENTANAS(TstRegional)
#include "tst_regional.moc"
