// The single controls, driven as an operator would: keys, clicks and focus.
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
#include <QProcess>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTextBlock>
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
    Banco()
    {
        marco.Move(0, 0, 6000, 3000);
        marco.widget()->show();
        marco.widget()->activateWindow();
    }
    bool activo() { return QTest::qWaitForWindowActive(marco.widget()); }
};

bool escribirFichero(const QString &ruta, const QByteArray &contenido)
{
    QFile f(ruta);
    if (!f.open(QIODevice::WriteOnly))
        return false;
    return f.write(contenido) == contenido.size();
}

} // namespace

class TstControles : public QObject {
    Q_OBJECT
private slots:
    // ---- colours ----
    void colores_data();
    void colores();
    void coloresSistema_data();
    void coloresSistema();
    void colorDeControl();

    // ---- TextBox ----
    void keyPress_data();
    void keyPress();
    void foco();
    void seleccion_data();
    void seleccion();
    void lockedYChange();

    // ---- DTPicker ----
    void fechaLimites_data();
    void fechaLimites();
    void fechaChange();
    void fechaFormato();
    void fechaCalendario();

    // ---- Label ----
    void labelAutoSize_data();
    void labelAutoSize();
    void labelTransparente();

    // ---- CommandButton, Timer ----
    void botonClick_data();
    void botonClick();
    void timer();
    void timerSinIntervalo();

    // ---- VisorAyuda ----
    void visorCerrar();
    void visorEnlace();
    void visorSinPagina();

    // ---- message boxes and the error report ----
    void respuestas();
    void informeError_data();
    void informeError();
};

// ---- colours ----------------------------------------------------------------------------

void TstControles::colores_data()
{
    QTest::addColumn<int>("ole");
    QTest::addColumn<QColor>("color");
    QTest::newRow("negro") << int(RGB(0, 0, 0)) << QColor(0, 0, 0);
    QTest::newRow("blanco") << int(RGB(255, 255, 255)) << QColor(255, 255, 255);
    QTest::newRow("rojo en el byte bajo") << 0x0000FF << QColor(255, 0, 0);
    QTest::newRow("azul en el byte alto") << 0xFF0000 << QColor(0, 0, 255);
    QTest::newRow("gris claro") << int(RGB(217, 231, 247)) << QColor(217, 231, 247);
    QTest::newRow("decimal de una pantalla") << 14737632 << QColor(224, 224, 224);
}

void TstControles::colores()
{
    QFETCH(int, ole);
    QFETCH(QColor, color);
    QCOMPARE(AColor(ole), color);
    QCOMPARE(DeColor(color), ole);
}

void TstControles::coloresSistema_data()
{
    QTest::addColumn<int>("indice");
    QTest::addColumn<int>("rol");
    QTest::newRow("5 fondo de ventana") << 5 << int(QPalette::Base);
    QTest::newRow("7 texto de menu") << 7 << int(QPalette::WindowText);
    QTest::newRow("8 texto de ventana") << 8 << int(QPalette::Text);
    QTest::newRow("13 resaltado") << 13 << int(QPalette::Highlight);
    QTest::newRow("14 texto resaltado") << 14 << int(QPalette::HighlightedText);
    QTest::newRow("15 cara de boton") << 15 << int(QPalette::Button);
    QTest::newRow("18 texto de boton") << 18 << int(QPalette::ButtonText);
}

void TstControles::coloresSistema()
{
    QFETCH(int, indice);
    QFETCH(int, rol);
    const ColorOLE c = ColorSistema(indice);
    QVERIFY(c < 0); // bit 31: a decimal text of it is negative
    QCOMPARE(AColor(c), QGuiApplication::palette().color(QPalette::Active, QPalette::ColorRole(rol)));
}

void TstControles::colorDeControl()
{
    TextBox caja(QStringLiteral("txt"), nullptr, nullptr);
    const QColor porOmision = caja.widget()->palette().color(caja.widget()->backgroundRole());
    QCOMPARE(caja.BackColor(), DeColor(porOmision));

    caja.setBackColor(RGB(255, 255, 0));
    QCOMPARE(caja.BackColor(), RGB(255, 255, 0));
    QCOMPARE(caja.widget()->palette().color(QPalette::Base), QColor(255, 255, 0));
    QVERIFY(caja.widget()->autoFillBackground());

    // A system colour is kept as such, so it reads back as the same number.
    caja.setForeColor(ColorSistema(8));
    QCOMPARE(caja.ForeColor(), ColorSistema(8));
    QCOMPARE(caja.widget()->palette().color(QPalette::Text), AColor(ColorSistema(8)));
}

// ---- TextBox ----------------------------------------------------------------------------

void TstControles::keyPress_data()
{
    QTest::addColumn<QString>("inicial");
    QTest::addColumn<QString>("tecleado"); // "\r" stands for Enter, "\b" for Backspace
    QTest::addColumn<MapaTeclas>("cambios"); // code -> what the handler puts instead
    QTest::addColumn<QList<int>>("vistos");
    QTest::addColumn<QString>("resultado");

    QTest::newRow("sin cambios") << "" << "a1," << MapaTeclas{} << QList<int>{97, 49, 44} << "a1,";
    QTest::newRow("letra anulada") << "" << "1a2" << MapaTeclas{{'a', 0}} << QList<int>{49, 97, 50}
                                   << "12";
    QTest::newRow("coma por punto") << "" << "1,5" << MapaTeclas{{',', '.'}} << QList<int>{49, 44, 53}
                                    << "1.5";
    QTest::newRow("a mayusculas") << "" << "ab" << MapaTeclas{{'a', 'A'}, {'b', 'B'}}
                                  << QList<int>{97, 98} << "AB";
    QTest::newRow("enter es 13") << "12" << "\r" << MapaTeclas{} << QList<int>{13} << "12";
    QTest::newRow("retroceso es 8") << "12" << "\b" << MapaTeclas{} << QList<int>{8} << "1";
    QTest::newRow("retroceso anulado") << "12" << "\b" << MapaTeclas{{8, 0}} << QList<int>{8} << "12";
    QTest::newRow("letra cambiada por retroceso")
        << "12" << "x" << MapaTeclas{{'x', 8}} << QList<int>{120} << "1";
    QTest::newRow("enie") << "" << QString::fromUtf8("ñ") << MapaTeclas{} << QList<int>{0xF1}
                          << QString::fromUtf8("ñ");
}

void TstControles::keyPress()
{
    QFETCH(QString, inicial);
    QFETCH(QString, tecleado);
    QFETCH(MapaTeclas, cambios);
    QFETCH(QList<int>, vistos);
    QFETCH(QString, resultado);

    Banco banco;
    TextBox caja(QStringLiteral("txt"), &banco.marco, nullptr);
    caja.Move(0, 0, 3000, 300);
    QVERIFY(banco.activo());
    caja.setText(inicial);
    caja.setSelStart(int(inicial.size()));
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
            QTest::sendKeyEvent(QTest::Click, caja.widget(), Qt::Key(c.toUpper().unicode()), QString(c),
                                Qt::NoModifier);
    }
    QCOMPARE(codigos, vistos);
    QCOMPARE(caja.Text(), resultado);
}

void TstControles::foco()
{
    Banco banco;
    TextBox uno(QStringLiteral("txtUno"), &banco.marco, nullptr);
    TextBox dos(QStringLiteral("txtDos"), &banco.marco, nullptr);
    uno.Move(0, 0, 3000, 300);
    dos.Move(0, 600, 3000, 300);
    QVERIFY(banco.activo());
    dos.SetFocus();
    QTRY_VERIFY(dos.widget()->hasFocus());
    QSignalSpy ganaUno(&uno, &TextBox::GotFocus), pierdeUno(&uno, &TextBox::LostFocus);
    QSignalSpy ganaDos(&dos, &TextBox::GotFocus), pierdeDos(&dos, &TextBox::LostFocus);

    uno.SetFocus();
    QTRY_COMPARE(ganaUno.count(), 1);
    QCOMPARE(pierdeDos.count(), 1);
    QCOMPARE(pierdeUno.count(), 0);

    // The mouse takes the focus to the other box.
    QTest::mouseClick(dos.widget(), Qt::LeftButton, {}, QPoint(5, 5));
    QTRY_COMPARE(ganaDos.count(), 1);
    QCOMPARE(pierdeUno.count(), 1);

    // Tab goes back to the first one.
    QTest::keyClick(dos.widget(), Qt::Key_Tab);
    QTRY_COMPARE(ganaUno.count(), 2);
    QCOMPARE(pierdeDos.count(), 2);
}

void TstControles::seleccion_data()
{
    QTest::addColumn<QString>("texto");
    QTest::addColumn<int>("inicio");
    QTest::addColumn<int>("largo");
    QTest::addColumn<int>("inicioLeido");
    QTest::addColumn<int>("largoLeido");
    QTest::addColumn<QString>("seleccionado");
    QTest::newRow("todo") << "Tarifa" << 0 << 6 << 0 << 6 << "Tarifa";
    QTest::newRow("en medio") << "Tarifa" << 2 << 3 << 2 << 3 << "rif";
    QTest::newRow("sin largo") << "Tarifa" << 4 << 0 << 4 << 0 << "";
    QTest::newRow("largo de mas") << "Tarifa" << 4 << 50 << 4 << 2 << "fa";
    QTest::newRow("inicio de mas") << "Tarifa" << 50 << 2 << 6 << 0 << "";
    QTest::newRow("caja vacia") << "" << 0 << 5 << 0 << 0 << "";
}

void TstControles::seleccion()
{
    QFETCH(QString, texto);
    QFETCH(int, inicio);
    QFETCH(int, largo);
    QFETCH(int, inicioLeido);
    QFETCH(int, largoLeido);
    QFETCH(QString, seleccionado);
    TextBox caja(QStringLiteral("txt"), nullptr, nullptr);
    caja.setText(texto);
    caja.setSelStart(inicio);
    caja.setSelLength(largo);
    QCOMPARE(caja.SelStart(), inicioLeido);
    QCOMPARE(caja.SelLength(), largoLeido);
    QCOMPARE(static_cast<QLineEdit *>(caja.widget())->selectedText(), seleccionado);

    // A new start drops the selection.
    caja.setSelStart(0);
    QCOMPARE(caja.SelLength(), 0);
}

void TstControles::lockedYChange()
{
    Banco banco;
    TextBox caja(QStringLiteral("txt"), &banco.marco, nullptr);
    caja.Move(0, 0, 3000, 300);
    QVERIFY(banco.activo());
    QSignalSpy cambios(&caja, &TextBox::Change);

    caja.setText(QStringLiteral("12,50")); // by code
    QCOMPARE(cambios.count(), 1);
    caja.SetFocus();
    QTRY_VERIFY(caja.widget()->hasFocus());
    QTest::keyClicks(caja.widget(), QStringLiteral("9")); // by the operator
    QCOMPARE(cambios.count(), 2);
    QCOMPARE(caja.Text(), QStringLiteral("12,509"));

    caja.setLocked(true);
    QVERIFY(caja.Locked());
    int teclas = 0;
    connect(&caja, &TextBox::KeyPress, this, [&](int &) { ++teclas; });
    QTest::keyClicks(caja.widget(), QStringLiteral("7"));
    QCOMPARE(caja.Text(), QStringLiteral("12,509"));
    QCOMPARE(cambios.count(), 2);
    QCOMPARE(teclas, 1); // a locked box still reports the key
}

// ---- DTPicker ---------------------------------------------------------------------------

void TstControles::fechaLimites_data()
{
    QTest::addColumn<QDate>("fecha");
    QTest::addColumn<bool>("valida");
    QTest::newRow("primer dia") << QDate(1601, 1, 1) << true;
    QTest::newRow("ultimo dia") << QDate(9999, 12, 31) << true;
    QTest::newRow("dia antes del primero") << QDate(1600, 12, 31) << false;
    QTest::newRow("siglo dieciseis") << QDate(1500, 6, 1) << false;
    QTest::newRow("corriente") << QDate(2001, 11, 28) << true;
}

void TstControles::fechaLimites()
{
    QFETCH(QDate, fecha);
    QFETCH(bool, valida);
    DTPicker dt(QStringLiteral("desde"), nullptr, nullptr);
    const QDate antes(2020, 2, 29);
    dt.setValue(antes);
    QSignalSpy cambios(&dt, &DTPicker::Change);
    if (valida) {
        dt.setValue(fecha);
        QCOMPARE(dt.Value(), fecha);
        QCOMPARE(cambios.count(), 1);
    } else {
        QVERIFY_THROWS_EXCEPTION(std::out_of_range, dt.setValue(fecha));
        QCOMPARE(dt.Value(), antes);
        QCOMPARE(cambios.count(), 0);
    }
    QCOMPARE(static_cast<QDateEdit *>(dt.widget())->minimumDate(), QDate(1601, 1, 1));
    QCOMPARE(static_cast<QDateEdit *>(dt.widget())->maximumDate(), QDate(9999, 12, 31));
}

void TstControles::fechaChange()
{
    Banco banco;
    DTPicker dt(QStringLiteral("desde"), &banco.marco, nullptr);
    dt.Move(0, 0, 2040, 420);
    QVERIFY(banco.activo());
    dt.setValue(QDate(2024, 3, 10));
    QSignalSpy cambios(&dt, &DTPicker::Change);

    dt.setValue(QDate(2024, 3, 10)); // the same date is no change
    QCOMPARE(cambios.count(), 0);
    dt.setValue(QDate(2024, 3, 11));
    QCOMPARE(cambios.count(), 1);

    QVERIFY_THROWS_EXCEPTION(std::invalid_argument, dt.setValue(QDate()));
    QCOMPARE(dt.Value(), QDate(2024, 3, 11));

    // The operator steps the date with the arrow keys.
    auto *editor = static_cast<QDateEdit *>(dt.widget());
    dt.SetFocus();
    QTRY_VERIFY(editor->hasFocus());
    QTest::keyClick(editor, Qt::Key_Up);
    QCOMPARE(cambios.count(), 2);
    QVERIFY(dt.Value() != QDate(2024, 3, 11));
}

void TstControles::fechaFormato()
{
    DTPicker dt(QStringLiteral("desde"), nullptr, nullptr);
    auto *editor = static_cast<QDateEdit *>(dt.widget());
    QCOMPARE(editor->displayFormat(), FormatoFechaRegional());
    QVERIFY(editor->calendarPopup());
    dt.setValue(QDate(1601, 1, 1));
    QVERIFY2(editor->text().contains(QLatin1String("1601")), qPrintable(editor->text()));
    dt.setValue(QDate(2001, 11, 28));
    QVERIFY2(editor->text().contains(QLatin1String("2001")), qPrintable(editor->text()));
}

void TstControles::fechaCalendario()
{
    DTPicker dt(QStringLiteral("desde"), nullptr, nullptr);
    dt.setCalendarBackColor(RGB(224, 224, 224));
    dt.setCalendarTitleBackColor(RGB(192, 192, 192));
    dt.setCalendarForeColor(RGB(0, 0, 128));
    dt.setCalendarTitleForeColor(RGB(128, 0, 0));
    QCOMPARE(dt.CalendarBackColor(), RGB(224, 224, 224));
    QCOMPARE(dt.CalendarTitleBackColor(), RGB(192, 192, 192));
    QCOMPARE(dt.CalendarForeColor(), RGB(0, 0, 128));
    QCOMPARE(dt.CalendarTitleForeColor(), RGB(128, 0, 0));

    QCalendarWidget *cal = static_cast<QDateEdit *>(dt.widget())->calendarWidget();
    QVERIFY(cal);
    QCOMPARE(cal->palette().color(QPalette::Base), QColor(224, 224, 224));
    QCOMPARE(cal->palette().color(QPalette::Text), QColor(0, 0, 128));
    QCOMPARE(cal->headerTextFormat().background().color(), QColor(192, 192, 192));
    QCOMPARE(cal->headerTextFormat().foreground().color(), QColor(128, 0, 0));
    // Weekends in the days' colour too, not the calendar's red.
    QCOMPARE(cal->weekdayTextFormat(Qt::Sunday).foreground().color(), QColor(0, 0, 128));
}

// ---- Label ------------------------------------------------------------------------------

void TstControles::labelAutoSize_data()
{
    QTest::addColumn<QString>("texto");
    QTest::addColumn<double>("puntos");
    QTest::addColumn<bool>("negrita");
    QTest::newRow("corto") << "Fec. Desde:" << 9.75 << false;
    QTest::newRow("largo") << "Precios validos en este intervalo de fechas:" << 9.75 << false;
    QTest::newRow("grande y negrita") << "Nuevo precio:" << 18.0 << true;
}

void TstControles::labelAutoSize()
{
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
    QVERIFY2(ancho >= fm.horizontalAdvance(texto) && ancho <= fm.horizontalAdvance(texto) + 2,
             qPrintable(QStringLiteral("%1 px for %2").arg(ancho).arg(fm.horizontalAdvance(texto))));
    QVERIFY2(alto >= fm.height() && alto <= fm.height() + 2,
             qPrintable(QStringLiteral("%1 px for %2").arg(alto).arg(fm.height())));
    QCOMPARE(l.Width(), ATwips(ancho)); // whole pixels, in twips
    QCOMPARE(l.Height(), ATwips(alto));
    QCOMPARE(l.Left(), 360.0); // it grows to the right and down, from where it stands

    // A longer text and a bigger font size it again.
    const double antes = l.Width();
    l.setCaption(texto + texto);
    QVERIFY(l.Width() > antes);
    const double anchoLargo = l.Width(), altoLargo = l.Height();
    f.setPointSizeF(puntos * 2);
    l.setFont(f);
    QVERIFY(l.Width() > anchoLargo);
    QVERIFY(l.Height() > altoLargo);
}

void TstControles::labelTransparente()
{
    Label l(QStringLiteral("lbl"), nullptr, nullptr);
    QVERIFY(l.widget()->autoFillBackground()); // opaque by default
    l.setTransparente(true);
    l.setBackColor(RGB(255, 255, 0));
    QVERIFY(!l.widget()->autoFillBackground());
    l.setTransparente(false);
    QVERIFY(l.widget()->autoFillBackground());
    QCOMPARE(l.BackColor(), RGB(255, 255, 0));
    l.setCaption(QStringLiteral("<b>no es html</b>"));
    QCOMPARE(static_cast<QLabel *>(l.widget())->textFormat(), Qt::PlainText);
}

// ---- CommandButton, Timer ---------------------------------------------------------------

void TstControles::botonClick_data()
{
    QTest::addColumn<bool>("grafico");
    QTest::addColumn<QString>("caption");
    QTest::newRow("texto") << false << "Aceptar";
    QTest::newRow("grafico con caption") << true << "Aceptar";
    QTest::newRow("grafico sin caption") << true << "";
}

void TstControles::botonClick()
{
    QFETCH(bool, grafico);
    QFETCH(QString, caption);
    Banco banco;
    CommandButton b(QStringLiteral("cmd"), &banco.marco, nullptr);
    b.Move(150, 150, 1605, 1155);
    b.setCaption(caption);
    if (grafico) {
        QTemporaryDir dir;
        const QString ruta = dir.filePath(QStringLiteral("tick.png"));
        QPixmap px(44, 50);
        px.fill(Qt::green);
        QVERIFY(px.save(ruta));
        b.setPicture(ruta);
        QLabel *imagen = nullptr;
        for (auto *l : b.widget()->findChildren<QLabel *>())
            if (!l->pixmap().isNull())
                imagen = l;
        QVERIFY(imagen);
        QCOMPARE(imagen->pixmap().size(), QSize(44, 50));
    }
    QCOMPARE(b.Caption(), caption);
    // The caption shows where it should: on the button, or under the picture.
    if (grafico) {
        QVERIFY(static_cast<QPushButton *>(b.widget())->text().isEmpty());
        bool visto = false;
        for (auto *l : b.widget()->findChildren<QLabel *>())
            visto = visto || (l->text() == caption && !l->isHidden());
        QCOMPARE(visto, !caption.isEmpty());
        b.setCaption(QStringLiteral("Nueva Tarifa")); // a caption given later shows too
        for (auto *l : b.widget()->findChildren<QLabel *>())
            visto = visto || (l->text() == QLatin1String("Nueva Tarifa") && !l->isHidden());
        QVERIFY(visto);
        b.setCaption(caption);
    } else {
        QCOMPARE(static_cast<QPushButton *>(b.widget())->text(), caption);
    }
    QVERIFY(banco.activo());
    QSignalSpy clicks(&b, &CommandButton::Click);
    // A click in the middle, where the picture or the caption lies, reaches the button, and
    // so does one near its edge.
    QTest::mouseClick(b.widget(), Qt::LeftButton);
    QTest::mouseClick(b.widget(), Qt::LeftButton, {}, QPoint(b.widget()->width() / 2, b.widget()->height() - 12));
    QTest::mouseClick(b.widget(), Qt::LeftButton, {}, QPoint(4, 4));
    QCOMPARE(clicks.count(), 3);
}

void TstControles::timer()
{
    Timer t(QStringLiteral("tmr"), nullptr, nullptr);
    QVERIFY(!t.widget());
    QSignalSpy ticks(&t, &Timer::Tick);
    t.setEnabled(false);
    t.setInterval(1);
    QCOMPARE(t.Interval(), 1);
    QVERIFY(!t.Enabled());
    t.setEnabled(true);
    QVERIFY(t.Enabled());
    QTRY_VERIFY(ticks.count() >= 5);

    t.setEnabled(false);
    const auto parado = ticks.count();
    QTest::qWait(30);
    QCOMPARE(ticks.count(), parado);

    // Enabled again: it goes on ticking.
    t.setEnabled(true);
    QTRY_VERIFY(ticks.count() > parado);
}

void TstControles::timerSinIntervalo()
{
    Timer t(QStringLiteral("tmr"), nullptr, nullptr);
    QSignalSpy ticks(&t, &Timer::Tick);
    QVERIFY(t.Enabled()); // a new timer is enabled, with no Interval yet
    QCOMPARE(t.Interval(), 0);
    QTest::qWait(30);
    QCOMPARE(ticks.count(), 0);
    t.setInterval(2);
    QTRY_VERIFY(ticks.count() >= 2);
    t.setInterval(0);
    const auto parado = ticks.count();
    QTest::qWait(30);
    QCOMPARE(ticks.count(), parado);
    QVERIFY(t.Enabled());
}

// ---- VisorAyuda -------------------------------------------------------------------------

void TstControles::visorCerrar()
{
    QTemporaryDir dir;
    const QString ruta = dir.filePath(QStringLiteral("tartpv.html"));
    QVERIFY(escribirFichero(ruta, "<html><body><h1>Ayuda de tarifas</h1></body></html>"));
    Banco banco;
    VisorAyuda visor(QStringLiteral("Open1"), &banco.marco, nullptr);
    visor.Move(0, 0, 6000, 3000);
    QVERIFY(banco.activo());
    visor.RutaPagina = ruta;
    visor.MostrarPagina();
    auto *pagina = visor.widget()->findChild<QTextBrowser *>();
    QVERIFY(pagina);
    QVERIFY(pagina->toPlainText().contains(QStringLiteral("Ayuda de tarifas")));

    // Shown again after the file changed: read afresh.
    QVERIFY(escribirFichero(ruta, "<html><body><h1>Ayuda nueva</h1></body></html>"));
    visor.MostrarPagina();
    QVERIFY(pagina->toPlainText().contains(QStringLiteral("Ayuda nueva")));

    QSignalSpy avisos(&visor, &VisorAyuda::Aviso);
    QPushButton *cerrar = nullptr;
    for (auto *b : visor.widget()->findChildren<QPushButton *>())
        if (b->text() == QLatin1String("Cerrar"))
            cerrar = b;
    QVERIFY(cerrar);
    bool pedidoEnElAviso = false;
    connect(&visor, &VisorAyuda::Aviso, this, [&] { pedidoEnElAviso = visor.PedidoCierre(); });
    QTest::mouseClick(cerrar, Qt::LeftButton);
    QCOMPARE(avisos.count(), 1);
    QVERIFY(pedidoEnElAviso);
    QVERIFY(visor.PedidoCierre());
}

void TstControles::visorEnlace()
{
    QTemporaryDir dir;
    const QString ruta = dir.filePath(QStringLiteral("tartpv.html"));
    QVERIFY(escribirFichero(ruta, "<html><body><p><a href=\"otra.html\">Siguiente</a></p></body></html>"));
    QVERIFY(escribirFichero(dir.filePath(QStringLiteral("otra.html")),
                            "<html><body><p>Pagina enlazada</p></body></html>"));
    Banco banco;
    VisorAyuda visor(QStringLiteral("Open1"), &banco.marco, nullptr);
    visor.Move(0, 0, 6000, 3000);
    QVERIFY(banco.activo());
    visor.RutaPagina = ruta;
    visor.MostrarPagina();
    auto *pagina = visor.widget()->findChild<QTextBrowser *>();
    QVERIFY(pagina);

    // First the close button, so the link is seen to set PedidoCierre back.
    for (auto *b : visor.widget()->findChildren<QPushButton *>())
        if (b->text() == QLatin1String("Cerrar"))
            QTest::mouseClick(b, Qt::LeftButton);
    QVERIFY(visor.PedidoCierre());

    QSignalSpy avisos(&visor, &VisorAyuda::Aviso);
    QTextCursor enlace = pagina->document()->find(QStringLiteral("Siguiente"));
    QVERIFY(!enlace.isNull());
    enlace.setPosition(enlace.selectionStart() + 2);
    const QPoint donde = pagina->cursorRect(enlace).center();
    QTest::mouseClick(pagina->viewport(), Qt::LeftButton, {}, donde);
    QTRY_COMPARE(avisos.count(), 1);
    QVERIFY(!visor.PedidoCierre());
    QVERIFY(pagina->toPlainText().contains(QStringLiteral("Pagina enlazada")));
}

void TstControles::visorSinPagina()
{
    VisorAyuda visor(QStringLiteral("Open1"), nullptr, nullptr);
    QSignalSpy avisos(&visor, &VisorAyuda::Aviso);
    visor.RutaPagina = QStringLiteral("/no/existe\\ayudas\\tartpv.html");
    visor.MostrarPagina();
    auto *pagina = visor.widget()->findChild<QTextBrowser *>();
    QVERIFY(pagina->toPlainText().contains(QStringLiteral("No se encuentra")));
    QVERIFY(pagina->toPlainText().contains(QStringLiteral("tartpv.html")));
    QCOMPARE(avisos.count(), 0);
    QVERIFY(!visor.PedidoCierre());

    // A path written with backslashes finds its file all the same.
    QTemporaryDir dir;
    QVERIFY(QDir(dir.path()).mkdir(QStringLiteral("ayudas")));
    QVERIFY(escribirFichero(dir.filePath(QStringLiteral("ayudas/tartpv.html")), "<p>Con barras</p>"));
    visor.RutaPagina = dir.path() + QStringLiteral("\\ayudas\\tartpv.html");
    visor.MostrarPagina();
    QVERIFY(pagina->toPlainText().contains(QStringLiteral("Con barras")));
}

// ---- message boxes and the error report -------------------------------------------------

void TstControles::respuestas()
{
    {
        RespuestasMensajes r;
        r.Responder(false);
        r.Responder(true);
        r.Responder(false);
        MsgBoxInformacion(QStringLiteral("Guardado"));
        QCOMPARE(MsgBoxPregunta(QStringLiteral("¿Borrar?")), false);
        QCOMPARE(MsgBoxPregunta(QStringLiteral("¿Seguro?")), true);
        QCOMPARE(MsgBoxPregunta(QStringLiteral("¿Del todo?")), false);
        QCOMPARE(MsgBoxPregunta(QStringLiteral("¿Otra vez?")), true); // the queue ran dry: Yes
        QCOMPARE(r.Mostrados(),
                 (QStringList{QStringLiteral("Guardado"), QStringLiteral("¿Borrar?"), QStringLiteral("¿Seguro?"),
                              QStringLiteral("¿Del todo?"), QStringLiteral("¿Otra vez?")}));
    }
    RespuestasMensajes otra; // a new one starts with an empty record and an empty queue
    QVERIFY(otra.Mostrados().isEmpty());
    QCOMPARE(MsgBoxPregunta(QStringLiteral("¿Seguro?")), true);
}

void TstControles::informeError_data()
{
    QTest::addColumn<QString>("caso");
    QTest::addColumn<QString>("texto");
    QTest::newRow("error en un click") << "click" << "Tabla cabecera_precio inexistente";
    QTest::newRow("error en un timer") << "timer" << "Fallo en el temporizador";
    QTest::newRow("error sin texto propio") << "entero" << "Error no identificado.";
}

void TstControles::informeError()
{
    QFETCH(QString, caso);
    QFETCH(QString, texto);
    QProcess hijo;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("TARIFAS_PRUEBA_INFORME"), caso + QLatin1Char('|') + texto);
    env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    hijo.setProcessEnvironment(env);
    hijo.start(QCoreApplication::applicationFilePath(), {});
    QVERIFY(hijo.waitForFinished(60000));
    QCOMPARE(hijo.exitStatus(), QProcess::NormalExit);
    QCOMPARE(hijo.exitCode(), 1);
    const QString salida = QString::fromLocal8Bit(hijo.readAllStandardError());
    QVERIFY2(salida.contains(texto), qPrintable(salida));
    QVERIFY2(!QString::fromLocal8Bit(hijo.readAllStandardOutput()).contains(QLatin1String("no debe llegar")),
             "the handler's caller went on after the error");
}

/// The child side of informeError: a handler throws, and the program must end there.
static int lanzarError(int argc, char **argv, const QString &orden)
{
    AplicacionTarifas app(argc, argv);
    const QString caso = orden.section(QLatin1Char('|'), 0, 0);
    const std::string texto = orden.section(QLatin1Char('|'), 1).toStdString();
    Frame marco(QStringLiteral("fr"), nullptr, nullptr, false);
    CommandButton boton(QStringLiteral("cmd"), &marco, nullptr);
    Timer reloj(QStringLiteral("tmr"), nullptr, nullptr);
    boton.Move(0, 0, 1500, 600);
    marco.widget()->show();
    QObject::connect(&boton, &CommandButton::Click, [&] {
        if (caso == QLatin1String("entero"))
            throw 42;
        throw std::runtime_error(texto);
    });
    QObject::connect(&reloj, &Timer::Tick, [&] { throw std::logic_error(texto); });
    if (caso == QLatin1String("timer"))
        reloj.setInterval(1);
    else
        QTimer::singleShot(0, [&] { QTest::mouseClick(boton.widget(), Qt::LeftButton); });
    QTimer::singleShot(20000, &app, &QCoreApplication::quit);
    app.exec();
    std::printf("no debe llegar\n");
    return 0;
}

int main(int argc, char **argv)
{
    const QString orden = qEnvironmentVariable("TARIFAS_PRUEBA_INFORME");
    if (!orden.isEmpty())
        return lanzarError(argc, argv, orden);
    QApplication app(argc, argv);
    TstControles prueba;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&prueba, argc, argv);
}

#include "tst_controles.moc"
