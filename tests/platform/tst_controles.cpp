// The single controls, driven as an operator would: keys, dates, the help page and the
// message boxes.
#include "apoyo/ejecucion.h"
#include "apoyo/respuestas.h"
#include "platform/datos/regional.h"
#include "platform/ui/controles.h"
#include "platform/ui/dtpicker.h"
#include "platform/ui/visorayuda.h"

#include <QDateEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QTextBrowser>

#include <stdexcept>

using namespace Pantalla;
using namespace Sistema;

Q_DECLARE_METATYPE(QList<int>)

using MapaTeclas = QHash<int, int>;
Q_DECLARE_METATYPE(MapaTeclas)

namespace {

/// A frame standing alone as a window, to hold the controls under test.
struct Banco {
    Frame marco{QStringLiteral("frBanco"), nullptr, nullptr, false};
    Banco() {
        marco.Move(0, 0, 6000, 3000);
        marco.widget()->show();
        marco.widget()->activateWindow();
    }
    bool activo() { return QTest::qWaitForWindowActive(marco.widget()); }
};

bool escribirFichero(const QString &ruta, const QByteArray &contenido) {
    QFile f(ruta);
    return f.open(QIODevice::WriteOnly) && f.write(contenido) == contenido.size();
}

} // namespace

class TstControles : public QObject {
    Q_OBJECT
  private slots:
    // ---- TextBox ----

    void keyPress_data() {
        // tecleado: "\r" stands for Enter, "\b" for Backspace; cambios: code -> what the handler
        // puts instead
        const auto caso = Pruebas::Tabla<QString, QString, MapaTeclas, QList<int>, QString, bool>();
        caso("letra anulada", "", "1a2", {{'a', 0}}, {49, 97, 50}, "12", false);
        caso("coma por punto", "", "1,5", {{',', '.'}}, {49, 44, 53}, "1.5", false);
        caso("enter es 13", "12", "\r", {}, {13}, "12", false);
        caso("retroceso es 8", "12", "\b", {}, {8}, "1", false);
        caso("retroceso anulado", "12", "\b", {{8, 0}}, {8}, "12", false);
        caso("letra cambiada por retroceso", "12", "x", {{'x', 8}}, {120}, "1", false);
        caso("enie", "", QString::fromUtf8("ñ"), {}, {0xF1}, QString::fromUtf8("ñ"), false);
        // A locked box keeps its text, and still reports the keys.
        caso("bloqueada", "12", "7\b", {}, {55, 8}, "12", true);
    }

    void keyPress() {
        const auto [inicial, tecleado, cambios, vistos, resultado, bloqueada] =
            Pruebas::Fila<QString, QString, MapaTeclas, QList<int>, QString, bool>();
        Banco banco;
        TextBox caja(QStringLiteral("txt"), &banco.marco, nullptr);
        caja.Move(0, 0, 3000, 300);
        QVERIFY(banco.activo());
        // Change follows the text, whether code or the operator changes it.
        QSignalSpy change(&caja, &TextBox::Change);
        caja.setText(inicial);
        QCOMPARE(change.count(), inicial.isEmpty() ? 0 : 1);
        caja.setSelStart(int(inicial.size()));
        caja.setLocked(bloqueada);
        QCOMPARE(caja.Locked(), bloqueada);
        caja.SetFocus();
        QTRY_VERIFY(caja.widget()->hasFocus());
        QList<int> codigos;
        connect(&caja, &TextBox::KeyPress, this, [&](int &k) {
            codigos << k;
            k = cambios.value(k, k);
        });
        for (QChar c : tecleado) {
            if (c == QLatin1Char('\r'))
                QTest::keyClick(caja.widget(), Qt::Key_Return);
            else if (c == QLatin1Char('\b'))
                QTest::keyClick(caja.widget(), Qt::Key_Backspace);
            else if (c.unicode() < 128)
                QTest::keyClicks(caja.widget(), QString(c));
            else // beyond ASCII, as a Spanish keyboard sends it
                QTest::sendKeyEvent(QTest::Click, caja.widget(), Qt::Key(c.toUpper().unicode()),
                                    QString(c), Qt::NoModifier);
        }
        QCOMPARE(codigos, vistos);
        QCOMPARE(caja.Text(), resultado);
        QCOMPARE(change.count() > (inicial.isEmpty() ? 0 : 1), resultado != inicial);
    }

    // ---- DTPicker ----

    void fechaValor_data() {
        // error: the exception raised, or empty
        const auto caso = Pruebas::Tabla<QDate, QString>();
        caso("la misma fecha no es un cambio", QDate(2020, 2, 29), "");
        caso("ultimo dia", QDate(9999, 12, 31), "");
        caso("dia antes del primero", QDate(1600, 12, 31), "out_of_range");
        caso("fecha no valida", QDate(), "invalid_argument");
    }
    void fechaValor() {
        const auto [fecha, error] = Pruebas::Fila<QDate, QString>();
        DTPicker dt(QStringLiteral("desde"), nullptr, nullptr);
        auto *editor = static_cast<QDateEdit *>(dt.widget());
        const QDate antes(2020, 2, 29);
        dt.setValue(antes);
        QSignalSpy cambios(&dt, &DTPicker::Change);
        if (error == QLatin1String("out_of_range"))
            QVERIFY_THROWS_EXCEPTION(std::out_of_range, dt.setValue(fecha));
        else if (!error.isEmpty())
            QVERIFY_THROWS_EXCEPTION(std::invalid_argument, dt.setValue(fecha));
        else
            dt.setValue(fecha);
        QCOMPARE(dt.Value(), error.isEmpty() ? fecha : antes);
        QCOMPARE(cambios.count(), dt.Value() != antes ? 1 : 0);
        // Shown in the regional format, whatever the century.
        QCOMPARE(editor->displayFormat(), FormatoFechaRegional());
        QVERIFY2(editor->text().contains(QString::number(dt.Value().year())),
                 qPrintable(editor->text()));
    }

    void fechaAcotada() {
        // A stored date the control can't show is brought to its nearest edge; an invalid
        // one stays invalid.
        for (const auto &[fecha, mostrable] : {std::pair{QDate(2026, 3, 4), QDate(2026, 3, 4)},
                                               {QDate(26, 5, 1), QDate(1601, 1, 1)},
                                               {QDate(10000, 1, 1), QDate(9999, 12, 31)},
                                               {QDate(), QDate()}}) {
            QCOMPARE(DTPicker::Acotar(fecha), mostrable);
            if (!mostrable.isValid())
                continue;
            DTPicker dt(QStringLiteral("desde"), nullptr, nullptr);
            dt.setValue(DTPicker::Acotar(fecha));
            QCOMPARE(dt.Value(), mostrable);
        }
    }

    // ---- Label, CommandButton, Timer ----

    // A screen's code often holds a timer as a plain Control (the form's Controls, a loop
    // that disables a whole frame): Enabled must reach the timer's clock that way too, or a
    // disabled timer keeps firing.
    void timerPorControl_data() {
        // intervalo in ms; habilitar: what is set through the Control; activo: the clock runs
        const auto caso = Pruebas::Tabla<int, bool, bool>();
        caso("apagado", 10, false, false);
        caso("encendido", 10, true, true);
        caso("encendido sin intervalo sigue quieto", 0, true, false);
    }
    void timerPorControl() {
        const auto [intervalo, habilitar, activo] = Pruebas::Fila<int, bool, bool>();
        Timer reloj(QStringLiteral("Timer1"), nullptr, nullptr);
        reloj.setInterval(intervalo);
        reloj.setEnabled(!habilitar);
        Control &comoControl = reloj;
        comoControl.setEnabled(habilitar);
        QCOMPARE(comoControl.Enabled(), habilitar);
        QCOMPARE(reloj.Enabled(), habilitar);
        auto *qtimer = reloj.findChild<QTimer *>();
        QVERIFY(qtimer);
        QCOMPARE(qtimer->isActive(), activo);
        if (activo) {
            QSignalSpy ticks(&reloj, &Timer::Tick);
            QVERIFY(ticks.wait());
        }
    }

    // ---- VisorAyuda ----

    void visor() {
        // The help page, by a path written with backslashes; a missing one says so; the close
        // button raises Aviso asking to close.
        Banco banco;
        VisorAyuda visor(QStringLiteral("Open1"), &banco.marco, nullptr);
        visor.Move(0, 0, 6000, 3000);
        QVERIFY(banco.activo());
        auto *pagina = visor.widget()->findChild<QTextBrowser *>();
        QList<bool> avisos; // PedidoCierre at each Aviso
        connect(&visor, &VisorAyuda::Aviso, this, [&] { avisos << visor.PedidoCierre(); });
        visor.RutaPagina = QStringLiteral("/no/existe/tartpv.html");
        visor.MostrarPagina();
        QVERIFY(pagina->toPlainText().contains("No se encuentra"));
        QTemporaryDir dir;
        QVERIFY(QDir(dir.path()).mkdir(QStringLiteral("ayudas")));
        QVERIFY(escribirFichero(dir.filePath(QStringLiteral("ayudas/tartpv.html")),
                                "<html><body><h1>Ayuda de tarifas</h1></body></html>"));
        visor.RutaPagina = dir.path() + QStringLiteral("\\ayudas\\tartpv.html");
        visor.MostrarPagina();
        QVERIFY(pagina->toPlainText().contains("Ayuda de tarifas"));
        for (auto *b : visor.widget()->findChildren<QPushButton *>())
            if (b->text() == QLatin1String("Cerrar"))
                QTest::mouseClick(b, Qt::LeftButton);
        QCOMPARE(avisos, QList<bool>{true});
    }

    // ---- message boxes and the error report ----

    // The real box, as the operator meets it: title, icon, buttons, the default one.
    void preguntaMostrada_data() {
        // conIntro: Enter takes the default; otherwise No is clicked
        const auto caso = Pruebas::Tabla<QString, bool, bool>();
        caso("titulo propio y sin icono, Intro es Si", "Eliminar Tarifa", true, true);
        caso("titulo del programa con icono, No", "", false, false);
    }
    void preguntaMostrada() {
        const auto [titulo, sinIcono, conIntro] = Pruebas::Fila<QString, bool, bool>();
        QApplication::setApplicationDisplayName(QStringLiteral("Tarifas"));
        QString tituloVisto;
        QMessageBox::Icon iconoVisto = QMessageBox::Warning;
        QMessageBox::StandardButtons botones;
        bool siPorOmision = false;
        QTimer::singleShot(0, [&] {
            auto *caja = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
            if (!caja)
                return;
            tituloVisto = caja->windowTitle();
            iconoVisto = caja->icon();
            botones = caja->standardButtons();
            siPorOmision = caja->defaultButton() == caja->button(QMessageBox::Yes);
            if (conIntro)
                QTest::keyClick(caja, Qt::Key_Return);
            else
                caja->button(QMessageBox::No)->click();
        });
        const bool si = MsgBoxPregunta(QStringLiteral("¿Desea eliminar la tarifa General?"), titulo,
                                       sinIcono ? IconoPregunta::Ninguno : IconoPregunta::Pregunta);
        QCOMPARE(tituloVisto, titulo.isEmpty() ? QStringLiteral("Tarifas") : titulo);
        QCOMPARE(iconoVisto, sinIcono ? QMessageBox::NoIcon : QMessageBox::Question);
        QCOMPARE(botones, QMessageBox::Yes | QMessageBox::No);
        QVERIFY(siPorOmision);
        QCOMPARE(si, conIntro);
    }
};

TARIFAS_PRUEBAS(TstControles)
#include "tst_controles.moc"
