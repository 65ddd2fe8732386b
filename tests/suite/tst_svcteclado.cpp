// What a price box lets through.
#include "apoyo/ejecucion.h"
#include "platform/ui/controles.h"
#include "suite/ui/svcteclado.h"

#include <QtTest>

class TstSvcTeclado : public QObject {
    Q_OBJECT
private slots:
    void filtro_data() {
        QTest::addColumn<QString>("texto");
        QTest::addColumn<int>("cursor");
        QTest::addColumn<int>("seleccion");
        QTest::addColumn<int>("decimales");
        QTest::addColumn<QChar>("tecla");
        QTest::addColumn<bool>("pasa");
        QTest::newRow("digito") << "12" << 2 << 0 << 2 << QChar('5') << true;
        QTest::newRow("letra") << "12" << 2 << 0 << 2 << QChar('a') << false;
        QTest::newRow("coma") << "12" << 2 << 0 << 2 << QChar(',') << true;
        QTest::newRow("punto") << "12" << 2 << 0 << 2 << QChar('.') << true;
        QTest::newRow("segunda coma") << "12,5" << 4 << 0 << 2 << QChar(',') << false;
        QTest::newRow("punto tras coma") << "12,5" << 4 << 0 << 2 << QChar('.') << false;
        QTest::newRow("coma sin decimales") << "12" << 2 << 0 << 0 << QChar(',') << false;
        QTest::newRow("tercer decimal") << "12,50" << 5 << 0 << 2 << QChar('1') << false;
        QTest::newRow("digito entero con decimales llenos") << "12,50" << 0 << 0 << 2 << QChar('1') << true;
        QTest::newRow("coma que dejaria tres decimales") << "12345" << 2 << 0 << 2 << QChar(',') << false;
        QTest::newRow("coma que deja dos decimales") << "12345" << 3 << 0 << 2 << QChar(',') << true;
        QTest::newRow("seleccion reemplazada") << "12,50" << 3 << 2 << 2 << QChar('9') << true;
        QTest::newRow("coma sobre la coma seleccionada") << "12,50" << 2 << 1 << 2 << QChar(',') << true;
        QTest::newRow("menos al principio") << "12" << 0 << 0 << 2 << QChar('-') << true;
        QTest::newRow("menos en medio") << "12" << 1 << 0 << 2 << QChar('-') << false;
        QTest::newRow("segundo menos") << "-12" << 0 << 0 << 2 << QChar('-') << false;
        QTest::newRow("retroceso") << "12" << 2 << 0 << 2 << QChar(8) << true;
        QTest::newRow("espacio") << "12" << 2 << 0 << 2 << QChar(' ') << false;
    }
    void filtro() {
        QFETCH(QString, texto);
        QFETCH(int, cursor);
        QFETCH(int, seleccion);
        QFETCH(int, decimales);
        QFETCH(QChar, tecla);
        QFETCH(bool, pasa);
        TextBox caja(QStringLiteral("txt_NuevoPrecio"), nullptr, nullptr);
        caja.setText(texto);
        caja.setSelStart(cursor);
        caja.setSelLength(seleccion);
        const qint16 codigo = qint16(tecla.unicode());
        const qint16 r = SvcTeclado().FiltrarTeclaPrecio(codigo, caja, qint16(decimales));
        QCOMPARE(r, pasa ? codigo : qint16(0));
    }
};

TARIFAS_PRUEBAS(TstSvcTeclado)
#include "tst_svcteclado.moc"
