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
#include <QtTest>

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
    void initTestCase() {
        // A colour of its own for every role of the palette, so that a system colour shows
        // which role it was taken from.
        QPalette paleta = QGuiApplication::palette();
        for (int rol = 0; rol < QPalette::NColorRoles; ++rol)
            paleta.setColor(QPalette::ColorRole(rol), QColor::fromHsv(rol * 17, 200, 200));
        QGuiApplication::setPalette(paleta);
    }

    // ---- colours ----

    void colores_data() {
        QTest::addColumn<int>("ole");
        QTest::addColumn<int>("rol"); // the palette's, for a system colour
        QTest::addColumn<QColor>("color");
        const auto rgb = [](const char *nombre, int ole, const QColor &color) {
            QTest::newRow(nombre) << ole << -1 << color;
        };
        rgb("rojo en el byte bajo", 0x0000FF, QColor(255, 0, 0));
        rgb("azul en el byte alto", 0xFF0000, QColor(0, 0, 255));
        rgb("tres bytes distintos", RGB(217, 231, 247), QColor(217, 231, 247));
        rgb("decimal de una pantalla", 14737632, QColor(224, 224, 224));
        // Bit 31 set and the index in the low byte: negative in a decimal text.
        const auto sistema = [](const char *nombre, int indice, QPalette::ColorRole rol) {
            QTest::newRow(nombre) << int(0x80000000u | unsigned(indice)) << int(rol) << QColor();
        };
        sistema("5 fondo de ventana", 5, QPalette::Base);
        sistema("7 texto de menu", 7, QPalette::WindowText);
        sistema("8 texto de ventana", 8, QPalette::Text);
        sistema("13 resaltado", 13, QPalette::Highlight);
        sistema("14 texto resaltado", 14, QPalette::HighlightedText);
        sistema("15 cara de boton", 15, QPalette::Button);
        sistema("18 texto de boton", 18, QPalette::ButtonText);
    }

    void colores() {
        QFETCH(int, ole);
        QFETCH(int, rol);
        QFETCH(QColor, color);
        if (rol >= 0) {
            QCOMPARE(ole, ColorSistema(ole & 0xFF));
            QCOMPARE(AColor(ole), QGuiApplication::palette().color(QPalette::ColorRole(rol)));
        } else {
            QCOMPARE(AColor(ole), color);
            QCOMPARE(DeColor(color), ole);
        }
    }

    void colorDeControl() {
        TextBox caja(QStringLiteral("txt"), nullptr, nullptr);
        QWidget *w = caja.widget();
        QCOMPARE(caja.BackColor(), DeColor(w->palette().color(w->backgroundRole())));
        caja.setBackColor(RGB(255, 255, 0));
        QCOMPARE(caja.BackColor(), RGB(255, 255, 0));
        QCOMPARE(w->palette().color(QPalette::Base), QColor(255, 255, 0));
        QVERIFY(w->autoFillBackground());
        // A system colour is kept as such, so it reads back as the same number; the text is
        // painted in the colour it stands for (highlighted text: not the text's own).
        caja.setForeColor(ColorSistema(14));
        QCOMPARE(caja.ForeColor(), ColorSistema(14));
        QCOMPARE(w->palette().color(QPalette::Text), AColor(ColorSistema(14)));
    }

    // ---- TextBox ----

    void keyPress_data() {
        QTest::addColumn<QString>("inicial");
        QTest::addColumn<QString>("tecleado"); // "\r" stands for Enter, "\b" for Backspace
        QTest::addColumn<MapaTeclas>("cambios"); // code -> what the handler puts instead
        QTest::addColumn<QList<int>>("vistos");
        QTest::addColumn<QString>("resultado");
        QTest::addColumn<bool>("bloqueada");
        QTest::newRow("sin cambios")
            << "" << "a1," << MapaTeclas{} << QList<int>{97, 49, 44} << "a1," << false;
        QTest::newRow("letra anulada")
            << "" << "1a2" << MapaTeclas{{'a', 0}} << QList<int>{49, 97, 50} << "12" << false;
        QTest::newRow("coma por punto")
            << "" << "1,5" << MapaTeclas{{',', '.'}} << QList<int>{49, 44, 53} << "1.5" << false;
        QTest::newRow("a mayusculas") << "" << "ab" << MapaTeclas{{'a', 'A'}, {'b', 'B'}}
                                      << QList<int>{97, 98} << "AB" << false;
        QTest::newRow("enter es 13") << "12" << "\r" << MapaTeclas{} << QList<int>{13} << "12"
                                     << false;
        QTest::newRow("retroceso es 8") << "12" << "\b" << MapaTeclas{} << QList<int>{8} << "1"
                                        << false;
        QTest::newRow("retroceso anulado")
            << "12" << "\b" << MapaTeclas{{8, 0}} << QList<int>{8} << "12" << false;
        QTest::newRow("letra cambiada por retroceso")
            << "12" << "x" << MapaTeclas{{'x', 8}} << QList<int>{120} << "1" << false;
        QTest::newRow("enie") << "" << QString::fromUtf8("ñ") << MapaTeclas{} << QList<int>{0xF1}
                              << QString::fromUtf8("ñ") << false;
        // A locked box keeps its text, and still reports the keys.
        QTest::newRow("bloqueada") << "12" << "7\b" << MapaTeclas{} << QList<int>{55, 8} << "12"
                                   << true;
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

    void seleccion_data() {
        QTest::addColumn<QString>("texto");
        QTest::addColumn<int>("inicio");
        QTest::addColumn<int>("largo");
        QTest::addColumn<int>("inicioLeido");
        QTest::addColumn<int>("largoLeido");
        QTest::newRow("todo") << "Tarifa" << 0 << 6 << 0 << 6;
        QTest::newRow("en medio") << "Tarifa" << 2 << 3 << 2 << 3;
        QTest::newRow("sin largo") << "Tarifa" << 4 << 0 << 4 << 0;
        QTest::newRow("largo de mas") << "Tarifa" << 4 << 50 << 4 << 2;
        QTest::newRow("inicio de mas") << "Tarifa" << 50 << 2 << 6 << 0;
        QTest::newRow("caja vacia") << "" << 0 << 5 << 0 << 0;
    }

    void seleccion() {
        QFETCH(QString, texto);
        QFETCH(int, inicio);
        QFETCH(int, largo);
        QFETCH(int, inicioLeido);
        QFETCH(int, largoLeido);
        TextBox caja(QStringLiteral("txt"), nullptr, nullptr);
        caja.setText(texto);
        caja.setSelStart(inicio);
        caja.setSelLength(largo);
        QCOMPARE(caja.SelStart(), inicioLeido);
        QCOMPARE(caja.SelLength(), largoLeido);
        QCOMPARE(static_cast<QLineEdit *>(caja.widget())->selectedText(),
                 texto.mid(inicioLeido, largoLeido));
        caja.setSelStart(0); // a new start drops the selection
        QCOMPARE(caja.SelLength(), 0);
    }

    // ---- DTPicker ----

    void fechaValor_data() {
        QTest::addColumn<QDate>("fecha");
        QTest::addColumn<QString>("error"); // the exception raised, or empty
        QTest::newRow("otra fecha") << QDate(2020, 3, 1) << "";
        QTest::newRow("la misma fecha no es un cambio") << QDate(2020, 2, 29) << "";
        QTest::newRow("primer dia") << QDate(1601, 1, 1) << "";
        QTest::newRow("ultimo dia") << QDate(9999, 12, 31) << "";
        QTest::newRow("dia antes del primero") << QDate(1600, 12, 31) << "out_of_range";
        QTest::newRow("dia despues del ultimo") << QDate(10000, 1, 1) << "out_of_range";
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

    void fechaAcotada_data() {
        QTest::addColumn<QDate>("fecha");
        QTest::addColumn<QDate>("mostrable");
        QTest::newRow("dentro") << QDate(2026, 3, 4) << QDate(2026, 3, 4);
        QTest::newRow("primer dia") << QDate(1601, 1, 1) << QDate(1601, 1, 1);
        QTest::newRow("ultimo dia") << QDate(9999, 12, 31) << QDate(9999, 12, 31);
        QTest::newRow("dia antes del primero") << QDate(1600, 12, 31) << QDate(1601, 1, 1);
        QTest::newRow("año 0026") << QDate(26, 5, 1) << QDate(1601, 1, 1);
        QTest::newRow("dia despues del ultimo") << QDate(10000, 1, 1) << QDate(9999, 12, 31);
        QTest::newRow("no valida sigue sin valer") << QDate() << QDate();
    }
    void fechaAcotada() {
        QFETCH(QDate, fecha);
        QFETCH(QDate, mostrable);
        const QDate acotada = DTPicker::Acotar(fecha);
        QCOMPARE(acotada.isValid(), mostrable.isValid());
        if (!mostrable.isValid())
            return;
        QCOMPARE(acotada, mostrable);
        DTPicker dt(QStringLiteral("desde"), nullptr, nullptr);
        dt.setValue(acotada); // the control takes it
        QCOMPARE(dt.Value(), mostrable);
    }

    void fechaConTeclas() {
        Banco banco;
        DTPicker dt(QStringLiteral("desde"), &banco.marco, nullptr);
        dt.Move(0, 0, 2040, 420);
        QVERIFY(banco.activo());
        dt.setValue(QDate(2024, 3, 11));
        QSignalSpy cambios(&dt, &DTPicker::Change);
        // The operator steps the date with the arrow keys.
        auto *editor = static_cast<QDateEdit *>(dt.widget());
        QVERIFY(editor->calendarPopup());
        dt.SetFocus();
        QTRY_VERIFY(editor->hasFocus());
        QTest::keyClick(editor, Qt::Key_Up);
        QCOMPARE(cambios.count(), 1);
        QVERIFY(dt.Value() != QDate(2024, 3, 11));
    }

    void fechaCalendario() {
        DTPicker dt(QStringLiteral("desde"), nullptr, nullptr);
        QCalendarWidget *cal = static_cast<QDateEdit *>(dt.widget())->calendarWidget();
        QVERIFY(cal);
        // Each colour shows in the calendar as soon as it is set.
        dt.setCalendarBackColor(RGB(224, 224, 224));
        QCOMPARE(cal->palette().color(QPalette::Base), QColor(224, 224, 224));
        dt.setCalendarForeColor(RGB(0, 0, 128));
        QCOMPARE(cal->palette().color(QPalette::Text), QColor(0, 0, 128));
        // Weekends in the days' colour too, not the calendar's red.
        QCOMPARE(cal->weekdayTextFormat(Qt::Sunday).foreground().color(), QColor(0, 0, 128));
        dt.setCalendarTitleBackColor(RGB(192, 192, 192));
        QCOMPARE(cal->headerTextFormat().background().color(), QColor(192, 192, 192));
        dt.setCalendarTitleForeColor(RGB(128, 0, 0));
        QCOMPARE(cal->headerTextFormat().foreground().color(), QColor(128, 0, 0));
        QCOMPARE((QList<ColorOLE>{dt.CalendarBackColor(), dt.CalendarTitleBackColor(),
                                  dt.CalendarForeColor(), dt.CalendarTitleForeColor()}),
                 (QList<ColorOLE>{RGB(224, 224, 224), RGB(192, 192, 192), RGB(0, 0, 128),
                                  RGB(128, 0, 0)}));
    }

    // ---- Label, CommandButton, Timer ----

    void labelAutoSize_data() {
        QTest::addColumn<QString>("texto");
        QTest::addColumn<double>("puntos");
        QTest::addColumn<bool>("negrita");
        QTest::newRow("corto") << "Fec. Desde:" << 9.75 << false;
        QTest::newRow("largo") << "Precios validos en este intervalo de fechas:" << 9.75 << false;
        QTest::newRow("grande y negrita") << "Nuevo precio:" << 18.0 << true;
    }

    void labelAutoSize() {
        QFETCH(QString, texto);
        QFETCH(double, puntos);
        QFETCH(bool, negrita);
        Label l(QStringLiteral("lbl"), nullptr, nullptr);
        l.Move(360, 570, 100, 100);
        QFont f = l.Font();
        f.setPointSizeF(puntos);
        f.setBold(negrita);
        l.setFont(f);
        l.setCaption(texto);
        QCOMPARE(l.Width(), 100.0); // not sized until asked to
        l.setAutoSize(true);
        // The text just fits: not cut, and no more than a pixel or two to spare.
        const QFontMetrics fm(l.widget()->font());
        const int ancho = l.widget()->width(), alto = l.widget()->height();
        QCOMPARE_GE(ancho, fm.horizontalAdvance(texto));
        QCOMPARE_LE(ancho, fm.horizontalAdvance(texto) + 2);
        QCOMPARE_GE(alto, fm.height());
        QCOMPARE_LE(alto, fm.height() + 2);
        QCOMPARE(l.Width(), ATwips(ancho)); // whole pixels, in twips
        QCOMPARE(l.Height(), ATwips(alto));
        QCOMPARE(l.Left(), 360.0); // it grows to the right and down, from where it stands
        // A longer text and a bigger font size it again.
        l.setCaption(texto + texto);
        const double anchoLargo = l.Width(), altoLargo = l.Height();
        QVERIFY(anchoLargo > ATwips(ancho));
        f.setPointSizeF(puntos * 2);
        l.setFont(f);
        QVERIFY(l.Width() > anchoLargo);
        QVERIFY(l.Height() > altoLargo);
    }

    void labelTransparente() {
        Label l(QStringLiteral("lbl"), nullptr, nullptr);
        QVERIFY(l.widget()->autoFillBackground()); // opaque by default
        l.setTransparente(true);
        l.setBackColor(RGB(255, 255, 0)); // a colour doesn't make it opaque
        QVERIFY(!l.widget()->autoFillBackground());
        l.setTransparente(false);
        QVERIFY(l.widget()->autoFillBackground());
        QCOMPARE(l.BackColor(), RGB(255, 255, 0));
        l.setCaption(QStringLiteral("<b>no es html</b>"));
        QCOMPARE(static_cast<QLabel *>(l.widget())->textFormat(), Qt::PlainText);
    }

    void botonClick_data() {
        QTest::addColumn<bool>("grafico");
        QTest::addColumn<QString>("caption");
        QTest::newRow("texto") << false << "Aceptar";
        QTest::newRow("grafico con caption") << true << "Aceptar";
        QTest::newRow("grafico sin caption") << true << "";
    }

    void botonClick() {
        QFETCH(bool, grafico);
        QFETCH(QString, caption);
        Banco banco;
        CommandButton b(QStringLiteral("cmd"), &banco.marco, nullptr);
        b.Move(150, 150, 1605, 1155);
        b.setCaption(caption);
        QWidget *w = b.widget();
        QTemporaryDir dir;
        if (grafico) {
            const QString ruta = dir.filePath(QStringLiteral("tick.png"));
            QPixmap px(44, 50);
            px.fill(Qt::green);
            QVERIFY(px.save(ruta));
            b.setPicture(ruta);
            QSize imagen;
            for (auto *l : w->findChildren<QLabel *>())
                if (!l->pixmap().isNull())
                    imagen = l->pixmap().size();
            QCOMPARE(imagen, QSize(44, 50));
        }
        // The texts the button shows: its caption once, on it or under the picture (nothing
        // under the picture when there is no caption, so that it takes the middle).
        const auto mostrados = [w] {
            QStringList textos{static_cast<QPushButton *>(w)->text()};
            textos.removeAll(QString());
            for (auto *l : w->findChildren<QLabel *>())
                if (!l->isHidden() && l->pixmap().isNull())
                    textos << l->text();
            return textos;
        };
        QCOMPARE(b.Caption(), caption);
        QCOMPARE(mostrados(), caption.isEmpty() ? QStringList{} : QStringList{caption});
        b.setCaption(QStringLiteral("Nueva Tarifa")); // a caption given later shows too
        QCOMPARE(mostrados(), QStringList{QStringLiteral("Nueva Tarifa")});
        QVERIFY(banco.activo());
        // A click in the middle, where the picture or the caption lies, reaches the button,
        // and so does one near its edge.
        QSignalSpy clicks(&b, &CommandButton::Click);
        QTest::mouseClick(w, Qt::LeftButton);
        QTest::mouseClick(w, Qt::LeftButton, {}, QPoint(w->width() / 2, w->height() - 12));
        QTest::mouseClick(w, Qt::LeftButton, {}, QPoint(4, 4));
        QCOMPARE(clicks.count(), 3);
    }

    void timer() {
        Timer t(QStringLiteral("tmr"), nullptr, nullptr);
        QVERIFY(!t.widget()); // not seen
        QSignalSpy ticks(&t, &Timer::Tick);
        // Nothing may tick while it stands still (so waiting can't make this fail).
        const auto quieto = [&] {
            const auto antes = ticks.count();
            QTest::qWait(30);
            return ticks.count() == antes;
        };
        // A new timer is enabled, and still until it has an Interval.
        QVERIFY(t.Enabled());
        QCOMPARE(t.Interval(), 0);
        QVERIFY(quieto());
        t.setInterval(1);
        QTRY_VERIFY(ticks.count() >= 3);
        // Disabled, it stops, and a new Interval doesn't start it; enabled again, it ticks.
        t.setEnabled(false);
        QVERIFY(!t.Enabled());
        t.setInterval(2);
        QCOMPARE(t.Interval(), 2);
        QVERIFY(quieto());
        t.setEnabled(true);
        const auto reanudado = ticks.count();
        QTRY_VERIFY(ticks.count() > reanudado);
        // An Interval of 0 stops it, and leaves it Enabled.
        t.setInterval(0);
        QVERIFY(quieto());
        QVERIFY(t.Enabled());
    }

    // ---- VisorAyuda ----

    void visor() {
        Banco banco;
        VisorAyuda visor(QStringLiteral("Open1"), &banco.marco, nullptr);
        visor.Move(0, 0, 6000, 3000);
        QVERIFY(banco.activo());
        auto *pagina = visor.widget()->findChild<QTextBrowser *>();
        const auto muestra = [&](const char *texto) {
            return pagina->toPlainText().contains(QString::fromUtf8(texto));
        };
        QList<bool> avisos; // PedidoCierre at each Aviso
        connect(&visor, &VisorAyuda::Aviso, this, [&] { avisos << visor.PedidoCierre(); });
        // A page that isn't there says so.
        visor.RutaPagina = QStringLiteral("/no/existe/tartpv.html");
        visor.MostrarPagina();
        QVERIFY(muestra("No se encuentra") && muestra("/no/existe/tartpv.html"));
        // A path written with backslashes finds its file all the same; shown again after the
        // file changed, the page is read afresh.
        QTemporaryDir dir;
        QVERIFY(QDir(dir.path()).mkdir(QStringLiteral("ayudas")));
        const QByteArray enlace = "<p><a href=\"otra.html\">Siguiente</a></p></body></html>";
        QVERIFY(escribirFichero(dir.filePath(QStringLiteral("ayudas/otra.html")),
                                "<html><body><p>Pagina enlazada</p></body></html>"));
        const QString ruta = dir.filePath(QStringLiteral("ayudas/tartpv.html"));
        QVERIFY(escribirFichero(ruta, "<html><body><h1>Ayuda de tarifas</h1>" + enlace));
        visor.RutaPagina = dir.path() + QStringLiteral("\\ayudas\\tartpv.html");
        visor.MostrarPagina();
        QVERIFY(muestra("Ayuda de tarifas"));
        QVERIFY(escribirFichero(ruta, "<html><body><h1>Ayuda nueva</h1>" + enlace));
        visor.MostrarPagina();
        QVERIFY(muestra("Ayuda nueva"));
        QCOMPARE(avisos, QList<bool>{});
        // The close button, then a link: each raises Aviso, PedidoCierre telling which.
        QPushButton *cerrar = nullptr;
        for (auto *b : visor.widget()->findChildren<QPushButton *>())
            if (b->text() == QLatin1String("Cerrar"))
                cerrar = b;
        QVERIFY(cerrar);
        QTest::mouseClick(cerrar, Qt::LeftButton);
        QCOMPARE(avisos, QList<bool>{true});
        QTextCursor cursor = pagina->document()->find(QStringLiteral("Siguiente"));
        cursor.setPosition(cursor.selectionStart() + 2);
        const QPoint enlaceEnPantalla = pagina->cursorRect(cursor).center();
        QTest::mouseClick(pagina->viewport(), Qt::LeftButton, {}, enlaceEnPantalla);
        QTRY_COMPARE(avisos, (QList<bool>{true, false}));
        QVERIFY(muestra("Pagina enlazada"));
    }

    // ---- message boxes and the error report ----

    void respuestas() {
        {
            RespuestasMensajes r;
            r.Responder(false);
            r.Responder(true);
            MsgBoxInformacion(QStringLiteral("Guardado"));
            QCOMPARE(MsgBoxPregunta(QStringLiteral("¿Borrar?")), false);
            QCOMPARE(MsgBoxPregunta(QStringLiteral("¿Seguro?")), true);
            QCOMPARE(MsgBoxPregunta(QStringLiteral("¿Otra vez?")), true); // the queue ran dry: Yes
            QCOMPARE(MsgBoxPregunta(QStringLiteral("¿Eliminar?"), QStringLiteral("Eliminar Tarifa"),
                                    IconoPregunta::Ninguno),
                     true);
            QCOMPARE(r.Mostrados(),
                     (QStringList{"Guardado", "¿Borrar?", "¿Seguro?", "¿Otra vez?", "¿Eliminar?"}));
            QCOMPARE(r.Titulos(), (QStringList{"", "", "", "", "Eliminar Tarifa"}));
            r.Responder(false); // left over when it goes
        }
        RespuestasMensajes otra; // a new one starts with an empty record and an empty queue
        QVERIFY(otra.Mostrados().isEmpty());
        QCOMPARE(MsgBoxPregunta(QStringLiteral("¿Seguro?")), true);
    }

    // The real box, as the operator meets it: title, icon, buttons, the default one.
    void preguntaMostrada_data() {
        QTest::addColumn<QString>("titulo");
        QTest::addColumn<bool>("sinIcono");
        QTest::addColumn<bool>("conIntro"); // Enter takes the default; otherwise No is clicked
        QTest::newRow("titulo propio y sin icono, Intro es Si")
            << "Eliminar Tarifa" << true << true;
        QTest::newRow("titulo propio y sin icono, No") << "Eliminar Tarifa" << true << false;
        QTest::newRow("titulo del programa con icono") << "" << false << true;
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
        QTest::newRow("error en un click") << "click" << "Tabla cabecera_precio inexistente";
        QTest::newRow("error sin texto propio en un timer") << "timer" << "Error no identificado.";
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
