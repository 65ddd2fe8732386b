// The one reading of a list's or a product's code from its text: what it takes for a code
// decides what may ever be written into a statement.
#include "apoyo/ejecucion.h"
#include "editor/codigo.h"

#include <optional>

class TstCodigo : public QObject {
    Q_OBJECT

  private slots:
    void leer_data() {
        // The text, and the code read (-1 with esCodigo false: no code).
        const auto caso = Pruebas::Tabla<QString, bool, qint64>();
        caso("zeros in front", "007", true, 7);
        caso("negative", "-12", true, -12);
        caso("18 digits, the most", "999999999999999999", true, 999999999999999999);
        caso("19 digits", "1000000000000000000", false, -1);
        caso("empty", "", false, -1);
        caso("a sign alone", "-", false, -1);
        caso("plus sign", "+7", false, -1);
        caso("blank in front", " 7", false, -1);
        caso("decimal point", "2.5", false, -1);
        caso("letters after digits", "12a", false, -1);
        caso("SQL after a number", "1 or 1=1", false, -1);
        caso("digits of another script", QStringLiteral("\u0661\u0662"), false, -1);
    }
    void leer() {
        const auto [texto, esCodigo, codigo] = Pruebas::Fila<QString, bool, qint64>();
        const std::optional<qint64> leido = CodigoDeTexto(texto);
        QCOMPARE(leido.has_value(), esCodigo);
        if (esCodigo)
            QCOMPARE(*leido, codigo);
    }
};

TARIFAS_PRUEBAS_SIN_VENTANAS(TstCodigo)
#include "tst_codigo.moc"
