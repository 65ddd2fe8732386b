// The single controls, driven as an operator would: keys, clicks and focus.
#include "apoyo/ejecucion.h"
#include "platform/datos/regional.h"
#include "platform/ui/controles.h"
#include "platform/ui/dtpicker.h"
#include "platform/ui/informeerror.h"
#include "platform/ui/mensajes.h"
#include "platform/ui/twips.h"
#include "platform/ui/visorayuda.h"

#include <QCalendarWidget>
#include <QDateEdit>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QProcess>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTextBrowser>
#include <QTextCharFormat>

#include <stdexcept>

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
        QTest::addColumn<QString>("inicial");
        QTest::addColumn<QString>("tecleado");   // "\r" stands for Enter, "\b" for Backspace
        QTest::addColumn<MapaTeclas>("cambios"); // code -> what the handler puts instead
        QTest::addColumn<QList<int>>("vistos");
        QTest::addColumn<QString>("resultado");
        QTest::addColumn<bool>("bloqueada");
        const auto caso = [](const char *n, const char *i, const QString &t, const MapaTeclas &c,
                             const QList<int> &v, const QString &r,
                             bool b = false) { QTest::newRow(n) << i << t << c << v << r << b; };
        caso("letra anulada", "", "1a2", {{'a', 0}}, {49, 97, 50}, "12");
        caso("coma por punto", "", "1,5", {{',', '.'}}, {49, 44, 53}, "1.5");
        caso("enter es 13", "12", "\r", {}, {13}, "12");
        caso("retroceso es 8", "12", "\b", {}, {8}, "1");
        caso("retroceso anulado", "12", "\b", {{8, 0}}, {8}, "12");
        caso("letra cambiada por retroceso", "12", "x", {{'x', 8}}, {120}, "1");
        caso("enie", "", QString::fromUtf8("ñ"), {}, {0xF1}, QString::fromUtf8("ñ"));
        // A locked box keeps its text, and still reports the keys.
        caso("bloqueada", "12", "7\b", {}, {55, 8}, "12", true);
    }

    void keyPress() {
        QFETCH(QString, inicial);
        QFETCH(QString, tecleado);
        QFETCH(MapaTeclas, cambios);
        QFETCH(QList<int>, vistos);
        QFETCH(QString, resultado);
        QFETCH(bool, bloqueada);
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
        QTest::addColumn<QDate>("fecha");
        QTest::addColumn<QString>("error"); // the exception raised, or empty
        QTest::newRow("la misma fecha no es un cambio") << QDate(2020, 2, 29) << "";
        QTest::newRow("ultimo dia") << QDate(9999, 12, 31) << "";
        QTest::newRow("dia antes del primero") << QDate(1600, 12, 31) << "out_of_range";
        QTest::newRow("fecha no valida") << QDate() << "invalid_argument";
    }
    void fechaValor() {
        QFETCH(QDate, fecha);
        QFETCH(QString, error);
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

    void botonClick() {
        // A picture button: its caption once, under the picture; a click anywhere on it,
        // on the picture or the caption too, reaches the button.
        Banco banco;
        CommandButton b(QStringLiteral("cmd"), &banco.marco, nullptr);
        b.Move(150, 150, 1605, 1155);
        QWidget *w = b.widget();
        QTemporaryDir dir;
        const QString ruta = dir.filePath(QStringLiteral("tick.png"));
        QPixmap px(44, 50);
        px.fill(Qt::green);
        QVERIFY(px.save(ruta));
        b.setPicture(ruta);
        b.setCaption(QStringLiteral("Nueva Tarifa"));
        QStringList textos{static_cast<QPushButton *>(w)->text()};
        textos.removeAll(QString());
        for (auto *l : w->findChildren<QLabel *>())
            textos << (l->pixmap().isNull() ? l->text()
                                            : QStringLiteral("%1x%2")
                                                  .arg(l->pixmap().width())
                                                  .arg(l->pixmap().height()));
        textos.sort();
        QCOMPARE(textos, (QStringList{"44x50", "Nueva Tarifa"}));
        QVERIFY(banco.activo());
        QSignalSpy clicks(&b, &CommandButton::Click);
        QTest::mouseClick(w, Qt::LeftButton);
        QTest::mouseClick(w, Qt::LeftButton, {}, QPoint(w->width() / 2, w->height() - 12));
        QTest::mouseClick(w, Qt::LeftButton, {}, QPoint(4, 4));
        QCOMPARE(clicks.count(), 3);
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
        QTest::addColumn<QString>("titulo");
        QTest::addColumn<bool>("sinIcono");
        QTest::addColumn<bool>("conIntro"); // Enter takes the default; otherwise No is clicked
        QTest::newRow("titulo propio y sin icono, Intro es Si")
            << "Eliminar Tarifa" << true << true;
        QTest::newRow("titulo del programa con icono, No") << "" << false << false;
    }
    void preguntaMostrada() {
        QFETCH(QString, titulo);
        QFETCH(bool, sinIcono);
        QFETCH(bool, conIntro);
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

    void informeError_data() {
        QTest::addColumn<QString>("caso");
        QTest::addColumn<QString>("texto");
        QTest::newRow("error en un click") << "click"
                                           << "Tabla cabecera_precio inexistente";
        QTest::newRow("error sin texto propio en un timer") << "timer"
                                                            << "Error no identificado.";
    }

    void informeError() {
        QFETCH(QString, caso);
        QFETCH(QString, texto);
        QProcess hijo;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("TARIFAS_PRUEBA_INFORME"), caso);
        env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        hijo.setProcessEnvironment(env);
        hijo.start(QCoreApplication::applicationFilePath(), {});
        QVERIFY(hijo.waitForFinished(60000));
        QCOMPARE(hijo.exitStatus(), QProcess::NormalExit);
        QCOMPARE(hijo.exitCode(), 1);
        const QString salida = QString::fromLocal8Bit(hijo.readAllStandardError());
        QVERIFY2(salida.contains(texto), qPrintable(salida));
        QCOMPARE(salida.count(texto), 1); // a timer that fails at every tick is reported once
    }
};

/// The child side of informeError: an event with no handler boundary of its own throws; the
/// application's last resort reports it and ends the program with status 1.
static int lanzarError(int argc, char **argv, const QString &caso) {
    AplicacionTarifas app(argc, argv);
    Frame marco(QStringLiteral("fr"), nullptr, nullptr, false);
    CommandButton boton(QStringLiteral("cmd"), &marco, nullptr);
    Timer reloj(QStringLiteral("tmr"), nullptr, nullptr);
    boton.Move(0, 0, 1500, 600);
    marco.widget()->show();
    QObject::connect(&boton, &CommandButton::Click,
                     [] { throw std::runtime_error("Tabla cabecera_precio inexistente"); });
    QObject::connect(&reloj, &Timer::Tick, [] { throw 42; });
    if (caso == QLatin1String("timer"))
        reloj.setInterval(1);
    else
        QTimer::singleShot(0, [&] { QTest::mouseClick(boton.widget(), Qt::LeftButton); });
    QTimer::singleShot(20000, &app, &QCoreApplication::quit);
    return app.exec();
}

int main(int argc, char **argv) {
    const QString caso = qEnvironmentVariable("TARIFAS_PRUEBA_INFORME");
    if (!caso.isEmpty())
        return lanzarError(argc, argv, caso);
    QApplication app(argc, argv);
    TstControles prueba;
    QTEST_SET_MAIN_SOURCE_PATH
    return Pruebas::EjecutarTodas(prueba, argc, argv);
}

#include "tst_controles.moc"
