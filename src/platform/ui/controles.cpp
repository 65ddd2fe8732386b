#include "controles.h"

#include "twips.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QEvent>
#include <QFontMetrics>
#include <QKeyEvent>
#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPixmap>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

namespace Pantalla {

// ---- Frame -----------------------------------------------------------------------------

Frame::Frame(const QString &nombre, Control *padre, Form *pantalla, bool conBorde)
    : Control(nombre, padre, pantalla) {
    auto *marco = new QFrame;
    marco->setFrameShape(conBorde ? QFrame::StyledPanel : QFrame::NoFrame);
    // A frame is opaque: what lies behind it in the same container doesn't show through.
    marco->setAutoFillBackground(true);
    ponerWidget(marco);
}

// ---- Label -----------------------------------------------------------------------------

Label::Label(const QString &nombre, Control *padre, Form *pantalla)
    : Control(nombre, padre, pantalla), etiqueta(new QLabel) {
    etiqueta->setTextFormat(Qt::PlainText);
    etiqueta->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    // Labels break their text at words to fit their width, as the screens were drawn.
    etiqueta->setWordWrap(true);
    etiqueta->setAutoFillBackground(true);
    etiqueta->installEventFilter(this);
    ponerWidget(etiqueta);
}

QString Label::Caption() const {
    return etiqueta->text();
}

void Label::setCaption(const QString &texto) {
    etiqueta->setText(texto);
    if (autoSize)
        ajustarTamano();
}

void Label::setAlignment(Qt::Alignment a) {
    etiqueta->setAlignment(a);
}

void Label::setTransparente(bool t) {
    transparente = t;
    etiqueta->setAutoFillBackground(!t);
}

void Label::setBackColor(ColorOLE c) {
    Control::setBackColor(c);
    etiqueta->setAutoFillBackground(!transparente);
}

void Label::setAutoSize(bool a) {
    autoSize = a;
    etiqueta->setWordWrap(!a);
    if (a)
        ajustarTamano();
}

void Label::ajustarTamano() {
    // The extent of the text in whole pixels, rounded up so that no stroke is cut.
    const QFontMetricsF fm(etiqueta->font());
    const QStringList lineas = etiqueta->text().split(QLatin1Char('\n'));
    qreal ancho = 0;
    for (const QString &linea : lineas)
        ancho = std::max(ancho, fm.horizontalAdvance(linea));
    const qreal alto = fm.height() + (lineas.size() - 1) * fm.lineSpacing();
    setWidth(ATwips(int(std::ceil(ancho))));
    setHeight(ATwips(int(std::ceil(alto))));
}

bool Label::eventFilter(QObject *obj, QEvent *ev) {
    if (obj == etiqueta && ev->type() == QEvent::FontChange && autoSize)
        ajustarTamano();
    return Control::eventFilter(obj, ev);
}

// ---- TextBox ---------------------------------------------------------------------------

namespace {

/// The character code of a key as the key press handlers see it; 0 for a key that types
/// nothing (arrows, function keys, Delete), which is not announced.
int CodigoTecla(const QKeyEvent *tecla) {
    switch (tecla->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return 13;
    case Qt::Key_Backspace:
        return 8;
    case Qt::Key_Escape:
        return 27;
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
        return 0; // moves the focus; never typed into a box
    default:
        break;
    }
    const QString texto = tecla->text();
    if (texto.size() != 1)
        return 0;
    return texto.at(0).unicode();
}

/// The paste of a text box's standard menu: the item that shows the paste shortcut after its
/// text (the one sure mark, whatever the language), named "edit-paste" here once found.
QAction *AccionPegar(QMenu &menu) {
    const QString atajo =
        QLatin1Char('\t') + QKeySequence(QKeySequence::Paste).toString(QKeySequence::NativeText);
    for (QAction *accion : menu.actions())
        if (accion->objectName() == QLatin1String("edit-paste") || accion->text().endsWith(atajo)) {
            accion->setObjectName(QStringLiteral("edit-paste"));
            return accion;
        }
    return nullptr;
}

int TeclaDeCodigo(int codigo) {
    switch (codigo) {
    case 8:
        return Qt::Key_Backspace;
    case 13:
        return Qt::Key_Return;
    case 27:
        return Qt::Key_Escape;
    default:
        break;
    }
    const QChar c{char16_t(codigo)};
    if (c.isLetter() && codigo < 128)
        return c.toUpper().unicode();
    return codigo < 128 ? codigo : int(Qt::Key_unknown);
}

} // namespace

TextBox::TextBox(const QString &nombre, Control *padre, Form *pantalla)
    : Control(nombre, padre, pantalla), caja(new QLineEdit) {
    caja->installEventFilter(this);
    connect(caja, &QLineEdit::textChanged, this, &TextBox::Change);
    ponerWidget(caja);
}

QString TextBox::Text() const {
    return caja->text();
}

void TextBox::setText(const QString &t) {
    caja->setText(t);
}

int TextBox::SelStart() const {
    return caja->hasSelectedText() ? caja->selectionStart() : caja->cursorPosition();
}

void TextBox::setSelStart(int v) {
    // Setting the start collapses the selection, as it always has.
    caja->setCursorPosition(qBound(0, v, int(caja->text().size())));
}

int TextBox::SelLength() const {
    return int(caja->selectedText().size());
}

void TextBox::setSelLength(int v) {
    const int inicio = SelStart();
    const int largo = qBound(0, v, int(caja->text().size()) - inicio);
    if (largo == 0)
        caja->setCursorPosition(inicio);
    else
        caja->setSelection(inicio, largo);
}

bool TextBox::Locked() const {
    return caja->isReadOnly();
}

void TextBox::setLocked(bool v) {
    caja->setReadOnly(v);
}

void TextBox::setAlignment(Qt::Alignment a) {
    caja->setAlignment(a);
}

void TextBox::setTabStop(bool v) {
    caja->setFocusPolicy(v ? Qt::StrongFocus : Qt::ClickFocus);
}

bool TextBox::eventFilter(QObject *obj, QEvent *ev) {
    if (obj != caja)
        return Control::eventFilter(obj, ev);
    switch (ev->type()) {
    case QEvent::FocusIn:
        if (static_cast<QFocusEvent *>(ev)->reason() != Qt::PopupFocusReason)
            emit GotFocus();
        break;
    case QEvent::FocusOut:
        if (static_cast<QFocusEvent *>(ev)->reason() != Qt::PopupFocusReason)
            emit LostFocus();
        break;
    case QEvent::ContextMenu: {
        // Qt's own menu (in the program's language), with its paste typed as Ctrl+V is.
        QMenu *menu = caja->createStandardContextMenu();
        menu->setAttribute(Qt::WA_DeleteOnClose);
        if (QAction *pegar = AccionPegar(*menu)) {
            disconnect(pegar, &QAction::triggered, nullptr, nullptr);
            connect(pegar, &QAction::triggered, this, &TextBox::Pegar);
        }
        menu->popup(static_cast<QContextMenuEvent *>(ev)->globalPos());
        return true;
    }
    case QEvent::KeyPress: {
        if (reenviando)
            break;
        auto *tecla = static_cast<QKeyEvent *>(ev);
        if (tecla->matches(QKeySequence::Paste)) {
            Pegar();
            return true;
        }
        const int original = CodigoTecla(tecla);
        if (original == 0)
            break;
        int codigo = original;
        emit KeyPress(codigo);
        if (codigo == 0)
            return true; // the handler dropped the key
        if (codigo == original)
            break;
        // The handler put another character in the key's place: the box gets that one.
        QKeyEvent otra(QEvent::KeyPress, TeclaDeCodigo(codigo), Qt::NoModifier,
                       codigo == 8 || codigo == 13 || codigo == 27
                           ? QString()
                           : QString(QChar(char16_t(codigo))));
        reenviando = true;
        QCoreApplication::sendEvent(caja, &otra);
        reenviando = false;
        return true;
    }
    default:
        break;
    }
    return Control::eventFilter(obj, ev);
}

void TextBox::Pegar() {
    if (caja->isReadOnly())
        return;
    const QString texto = QGuiApplication::clipboard()->text();
    for (const QChar c : texto) {
        // A cell copied from a spreadsheet ends in a line end: nothing a one-line box holds,
        // and an Enter here would accept the half-pasted text.
        if (c.unicode() < 32 || c.isSurrogate())
            continue;
        int codigo = c.unicode();
        emit KeyPress(codigo);
        if (codigo == 8)
            caja->backspace();
        else if (codigo >= 32)
            caja->insert(QString(QChar(char16_t(codigo))));
    }
}

// ---- CommandButton ---------------------------------------------------------------------

CommandButton::CommandButton(const QString &nombre, Control *padre, Form *pantalla)
    : Control(nombre, padre, pantalla), boton(new QPushButton) {
    connect(boton, &QPushButton::clicked, this, &CommandButton::Click);
    ponerWidget(boton);
}

QString CommandButton::Caption() const {
    return texto ? texto->text() : boton->text();
}

void CommandButton::setCaption(const QString &t) {
    if (!texto) {
        boton->setText(t);
        return;
    }
    texto->setText(t);
    colocarImagen();
}

void CommandButton::colocarImagen() {
    // With no caption the picture takes the middle of the button.
    const bool conTexto = !texto->text().isEmpty();
    texto->setVisible(conTexto);
    etiquetaImagen->setAlignment(conTexto ? Qt::AlignHCenter | Qt::AlignBottom : Qt::AlignCenter);
}

void CommandButton::setPicture(const QString &recurso) {
    const QPixmap imagen(recurso);
    if (!etiquetaImagen) {
        // The graphical style: the picture above the caption, both centred. A push button
        // puts its icon beside the text, so two labels inside it do the drawing; they let
        // the mouse through to the button.
        const QString caption = boton->text();
        boton->setText(QString());
        auto *capa = new QVBoxLayout(boton);
        capa->setContentsMargins(3, 3, 3, 3);
        capa->setSpacing(2);
        etiquetaImagen = new QLabel(boton);
        texto = new QLabel(caption, boton);
        texto->setTextFormat(Qt::PlainText);
        texto->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
        texto->setWordWrap(true);
        for (QLabel *l : {etiquetaImagen, texto})
            l->setAttribute(Qt::WA_TransparentForMouseEvents);
        capa->addWidget(etiquetaImagen, 1);
        capa->addWidget(texto, 0);
    }
    etiquetaImagen->setPixmap(imagen);
    colocarImagen();
}

// ---- PictureBox ------------------------------------------------------------------------

PictureBox::PictureBox(const QString &nombre, Control *padre, Form *pantalla)
    : Control(nombre, padre, pantalla) {
    auto *cuadro = new QLabel;
    cuadro->setAlignment(Qt::AlignLeft | Qt::AlignTop); // the picture at its natural size
    cuadro->setAutoFillBackground(true);
    ponerWidget(cuadro);
}

void PictureBox::setPicture(const QString &recurso) {
    static_cast<QLabel *>(widget())->setPixmap(QPixmap(recurso));
}

// ---- Timer -----------------------------------------------------------------------------

Timer::Timer(const QString &nombre, Control *padre, Form *pantalla)
    : Control(nombre, padre, pantalla), reloj(new QTimer(this)) {
    reloj->setSingleShot(false);
    reloj->setTimerType(Qt::PreciseTimer);
    connect(reloj, &QTimer::timeout, this, &Timer::Tick);
}

int Timer::Interval() const {
    return intervalo;
}

void Timer::setInterval(int ms) {
    intervalo = qMax(0, ms);
    reloj->setInterval(intervalo);
    actualizar();
}

bool Timer::Enabled() const {
    return activo;
}

void Timer::setEnabled(bool v) {
    activo = v;
    actualizar();
}

void Timer::actualizar() {
    // An Interval of 0 keeps the timer still, whatever Enabled says. Enabling a running
    // timer starts its count again.
    if (activo && intervalo > 0)
        reloj->start(intervalo);
    else
        reloj->stop();
}

} // namespace Pantalla
