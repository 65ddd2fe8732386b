// The exact amounts and the rule of a bulk change: reading a price's text, the new price of a
// base by percentage, amount, step and ending, and the operator's slips in the rule's texts.
#include "apoyo/ejecucion.h"
#include "motor/aritmetica.h"
#include "motor/importe.h"
#include "motor/redondeo.h"

namespace {

Importe I(const char *texto) {
    const std::optional<Importe> i = Importe::Leer(QString::fromUtf8(texto));
    if (!i)
        qFatal("Not an amount in the test's own table: %s", texto);
    return *i;
}

} // namespace

class TstRedondeo : public QObject {
    Q_OBJECT

  private slots:
    void leer_data() {
        // text, what the database is given ("" when refused), the text at 2 decimals
        const auto caso = Pruebas::Tabla<QString, QString, QString>();
        caso("coma", "12,5", "12.5", "12,50");
        caso("punto", "19.95", "19.95", "19,95");
        caso("sin unidades", ",75", "0.75", "0,75");
        caso("negativo", "-3", "-3", "-3,00");
        caso("signo y ceros delante", "+007", "7", "7,00");
        caso("espacios alrededor", " 19,95 ", "19.95", "19,95");
        caso("ceros detrás", "21,9500", "21.95", "21,95");
        caso("cero negativo", "-0,00", "0", "0,00");
        caso("quince cifras", "1234567890123,45", "1234567890123.45", "1234567890123,45");
        caso("tres decimales se redondean al mostrar", "21,945", "21.945", "21,95");
        caso("mitad negativa al mostrar", "-2,345", "-2.345", "-2,35");
        caso("dieciséis cifras", "12345678901234,56", "", "");
        caso("dos separadores", "1.234,56", "", "");
        caso("exponente", "1e5", "", "");
        caso("letras", "doce", "", "");
        caso("vacío", "", "", "");
        caso("solo el separador", ",", "", "");
        caso("signo solo", "-", "", "");
        caso("espacio dentro", "1 234", "", "");
        caso("separador al final", "7,", "7", "7,00");
        caso("dos signos", "+-5", "", "");
        caso("signo detrás", "5-", "", "");
        caso("quince decimales", "0,000000000000001", "0.000000000000001", "0,00");
        caso("dieciséis decimales", "0,0000000000000001", "", "");
        caso("ceros de más tras quince decimales", "1,5000000000000000000", "1.5", "1,50");
        caso("ceros delante no cuentan como cifras", "0000000000000000012,5", "12.5", "12,50");
        caso("cifras de otra escritura", QStringLiteral("\u0661\u0662"), "", "");
    }
    void leer() {
        const auto [texto, sql, mostrado] = Pruebas::Fila<QString, QString, QString>();
        const std::optional<Importe> i = Importe::Leer(texto);
        QCOMPARE(i.has_value(), !sql.isEmpty());
        if (!i)
            return;
        QCOMPARE(i->TextoSQL(), sql);
        QCOMPARE(i->Texto(2), mostrado);
    }

    void textoDeMuchasCifras() {
        // Past 64 bits the digits come from 128-bit arithmetic: the same text either way.
        QCOMPARE(Importe::Leer(u"999999999999999")->Texto(15),
                 QStringLiteral("999999999999999,000000000000000"));
        QCOMPARE(Importe::Leer(u"-0,5")->Texto(20), QStringLiteral("-0,50000000000000000000"));
        QCOMPARE(Importe::Leer(u"-123456789012345")->TextoSQL(),
                 QStringLiteral("-123456789012345"));
        QCOMPARE(Importe::Leer(u"0")->Texto(0), QStringLiteral("0"));
    }

    void comparar_data() {
        const auto caso = Pruebas::Tabla<QString, QString, int>();
        caso("ceros detrás no cuentan", "1,5", "1,50", 0);
        caso("escalas distintas", "0,1", "0,09", 1);
        caso("negativos", "-2", "-1,99", -1);
        caso("grandes", "999999999999,99", "1000000000000", -1);
    }
    void comparar() {
        const auto [a, b, orden] = Pruebas::Fila<QString, QString, int>();
        const Importe x = *Importe::Leer(a), y = *Importe::Leer(b);
        QCOMPARE(x == y, orden == 0);
        QCOMPARE(x < y, orden < 0);
        QCOMPARE(y<x, orden> 0);
    }

    void guardado_data() {
        // What a database gives back in text, exponents included.
        const auto caso = Pruebas::Tabla<QString, QString>();
        caso("llano", "21.95", "21.95");
        caso("entero", "3", "3");
        caso("exponente pequeño", "5.0e-05", "0.00005");
        caso("exponente grande", "1.5e+14", "150000000000000");
        caso("exponente de más", "1.0e+15", "");
        caso("texto vacío", "", "");
    }
    void guardado() {
        const auto [texto, sql] = Pruebas::Fila<QString, QString>();
        const std::optional<Importe> i = Aritmetica::LeerGuardado(texto);
        QCOMPARE(i ? i->TextoSQL() : QString(), sql);
    }

    void nuevoPrecio_data() {
        // base, percentage, amount, step, ending ("" none), new price ("" refused)
        const auto caso = Pruebas::Tabla<QString, QString, QString, QString, QString, QString>();
        caso("19,95 + 10 % a 0,01", "19,95", "10", "0", "0,01", "", "21.95");
        caso("0,10 + 0,20", "0,10", "0", "0,20", "0,01", "", "0.3");
        caso("mitad exacta sube", "2,345", "0", "0", "0,01", "", "2.35");
        caso("justo bajo la mitad", "2,3449", "0", "0", "0,01", "", "2.34");
        caso("mitad a 0,05", "1,025", "0", "0", "0,05", "", "1.05");
        caso("por debajo de la mitad a 0,05", "1,024", "0", "0", "0,05", "", "1");
        caso("-12,5 %", "80", "-12,5", "0", "0,01", "", "70");
        caso("porcentaje con decimales y mitad", "10", "0,05", "0", "0,01", "", "10.01");
        caso("-20 % con ,95", "100", "-20", "0", "0,01", "0,95", "80.95");
        caso("terminación por encima del siguiente múltiplo", "2,31", "0", "0", "0,10", "0,95",
             "2.95");
        caso("ya termina así", "2,95", "0", "0", "0,01", "0,95", "2.95");
        caso("pasada la terminación, la unidad siguiente", "2,96", "0", "0", "0,01", "0,95",
             "3.95");
        caso("a 0,50 y ,90", "12,26", "0", "0", "0,50", "0,9", "12.9");
        caso("terminación 0", "12,26", "0", "0", "0,01", "0", "13");
        caso("0 decimales, mitad", "19,5", "0", "0", "1", "", "20");
        caso("0 decimales, por debajo", "18,49", "0", "0", "1", "", "18");
        caso("3 decimales, mitad", "1,2345", "0", "0", "0,001", "", "1.235");
        caso("3 decimales + 10 %", "1,999", "10", "0", "0,001", "", "2.199");
        caso("12 cifras + 10 %", "123456789012,34", "10", "0", "0,01", "", "135802467913.57");
        caso("12 cifras + 50 %, mitad", "999999999999,99", "50", "0", "0,01", "",
             "1499999999999.99");
        caso("más de 15 cifras", "999999999999,99", "10000", "0", "0,01", "", "");
        caso("resta que deja negativo", "10", "0", "-12,345", "0,01", "", "");
        caso("redondeo a cero", "0,004", "0", "0", "0,01", "", "");
        caso("cero con terminación sigue rechazado", "0,004", "0", "0", "0,01", "0,95", "");
        caso("-99,99 % de un precio pequeño", "1", "-99,99", "0", "0,01", "", "");
        caso("porcentaje y suma", "10", "10", "-1", "0,01", "", "10");
    }
    void nuevoPrecio() {
        const auto [base, porcentaje, suma, paso, terminacion, esperado] =
            Pruebas::Fila<QString, QString, QString, QString, QString, QString>();
        ReglaCambio regla{I(qPrintable(porcentaje)), I(qPrintable(suma)), I(qPrintable(paso)),
                          terminacion.isEmpty()
                              ? std::nullopt
                              : std::optional<Importe>(I(qPrintable(terminacion)))};
        QString motivo;
        const std::optional<Importe> nuevo = NuevoPrecio(I(qPrintable(base)), regla, &motivo);
        QCOMPARE(nuevo ? nuevo->TextoSQL() : QString(), esperado);
        // A refusal always says why; an accepted price never carries a reason.
        QCOMPARE(motivo.isEmpty(), !esperado.isEmpty());
    }

    void redondearNegativos_data() {
        const auto caso = Pruebas::Tabla<QString, QString, QString>();
        caso("mitad negativa se aleja de cero", "-2,345", "0,01", "-2.35");
        caso("negativo bajo la mitad", "-2,344", "0,01", "-2.34");
        caso("negativo a 0,05", "-1,025", "0,05", "-1.05");
        caso("paso mayor que el valor", "0,4", "1", "0");
    }
    void redondearNegativos() {
        const auto [valor, paso, esperado] = Pruebas::Fila<QString, QString, QString>();
        const std::optional<Importe> r = RedondearAPaso(I(qPrintable(valor)), I(qPrintable(paso)));
        QVERIFY(r.has_value());
        QCOMPARE(r->TextoSQL(), esperado);
    }

    void leerRegla_data() {
        // percentage, amount, step, ending, decimals; the box at fault ("" none) and words of
        // its message
        const auto caso =
            Pruebas::Tabla<QString, QString, QString, QString, int, QString, QString>();
        caso("todo vacío", "", "", "", "", 2, "", "");
        caso("completa", "-12,5", "1,50", "0,05", ",95", 2, "", "");
        caso("porcentaje con letras", "diez", "", "", "", 2, "porcentaje",
             "El porcentaje \"diez\" no es un número");
        caso("-100 %", "-100", "", "", "", 2, "porcentaje", "-100 o menos");
        caso("-150 %", "-150", "", "", "", 2, "porcentaje", "-100 o menos");
        caso("importe con dos separadores", "", "1.234,5", "", "", 2, "suma",
             "El importe \"1.234,5\" no es un número");
        caso("paso cero", "", "", "0", "", 2, "paso", "tiene que ser mayor que 0");
        caso("paso negativo", "", "", "-0,05", "", 2, "paso", "tiene que ser mayor que 0");
        caso("paso con letras", "", "", "x", "", 2, "paso", "El redondeo \"x\" no es un número");
        caso("paso con más decimales", "", "", "0,005", "", 2, "paso",
             "más decimales de los que usa la tienda (2)");
        caso("terminación con más decimales", "", "", "", ",995", 2, "terminacion",
             "más decimales de los que usa la tienda (2)");
        caso("terminación en tienda sin decimales", "", "", "", ",95", 0, "terminacion",
             "más decimales de los que usa la tienda (0)");
        caso("terminación de 1 o más", "", "", "", "1,95", 2, "terminacion",
             "tiene que ser la parte decimal");
        caso("terminación negativa", "", "", "", "-,95", 2, "terminacion",
             "tiene que ser la parte decimal");
        caso("tres decimales admiten ,995", "", "", "0,005", ",995", 3, "", "");
    }
    void leerRegla() {
        const auto [porcentaje, suma, paso, terminacion, decimales, campo, mensaje] =
            Pruebas::Fila<QString, QString, QString, QString, int, QString, QString>();
        const ReglaCambio antes{I("7"), I("7"), I("7"), std::nullopt};
        ReglaCambio regla = antes;
        const std::optional<FalloRegla> fallo =
            LeerRegla({porcentaje, suma, paso, terminacion}, decimales, regla);
        if (campo.isEmpty()) {
            QVERIFY2(!fallo, fallo ? qPrintable(fallo->mensaje) : "");
            // Empty texts are 0, one unit of the last decimal, and no ending.
            QCOMPARE(regla.porcentaje, Importe::Leer(porcentaje.isEmpty() ? "0" : porcentaje));
            QCOMPARE(regla.paso,
                     paso.isEmpty() ? Importe::DeUnidades(1, decimales) : *Importe::Leer(paso));
            QCOMPARE(regla.terminacion.has_value(), !terminacion.isEmpty());
            return;
        }
        QVERIFY(fallo.has_value());
        const QStringList campos{"porcentaje", "suma", "paso", "terminacion"};
        QCOMPARE(campos.value(fallo->campo), campo);
        QVERIFY2(fallo->mensaje.contains(mensaje), qPrintable(fallo->mensaje));
        // A refused rule leaves the caller's as it was.
        QCOMPARE(regla.porcentaje, antes.porcentaje);
        QCOMPARE(regla.paso, antes.paso);
    }
};

TARIFAS_PRUEBAS(TstRedondeo)
#include "tst_redondeo.moc"
