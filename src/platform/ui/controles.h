#pragma once

#include "control.h"

#include <QDate>

class QLabel;
class QLineEdit;
class QFrame;
class QPushButton;
class QTimer;

namespace Pantalla {

/// A container: its children are placed relative to it.
class Frame : public Control {
    Q_OBJECT
  public:
    Frame(const QString &nombre, Control *contenedor, Form *form, bool conBorde);
};

class Label : public Control {
    Q_OBJECT
  public:
    Label(const QString &nombre, Control *contenedor, Form *form);
    QString Caption() const override;
    void setCaption(const QString &texto) override;
    bool TieneCaption() const override { return true; }
    void setAlignment(Qt::Alignment a);
    void setTransparente(bool t);
    /// AutoSize: the label takes the size of its text whenever the text or font changes.
    void setAutoSize(bool a);
    void setBackColor(ColorOLE c) override;

  private:
    bool eventFilter(QObject *obj, QEvent *ev) override;
    void ajustarTamano();
    QLabel *etiqueta;
    bool autoSize = false;
    bool transparente = false;
};

/// A one-line text box. KeyPress is raised before the key reaches the box, with the
/// character's code; a handler that sets it to 0 drops the key (Enter is 13). A paste (Ctrl+V,
/// Shift+Insert, the context menu's) is typed: each character of the clipboard's text goes
/// through KeyPress as if keyed in, so a filter on the keys filters what is pasted too; line
/// ends and tabs in the pasted text are left out.
class TextBox : public Control {
    Q_OBJECT
  public:
    TextBox(const QString &nombre, Control *contenedor, Form *form);
    QString Text() const;
    void setText(const QString &t);
    int SelStart() const;
    void setSelStart(int v);
    int SelLength() const;
    void setSelLength(int v);
    bool Locked() const;
    void setLocked(bool v);
    void setAlignment(Qt::Alignment a);
    void setTabStop(bool v);
    /// Types the clipboard's text at the caret, over the selection, as a paste does.
    void Pegar();

  signals:
    void GotFocus();
    void LostFocus();
    void KeyPress(int &keyAscii);
    void Change();

  protected:
    bool eventFilter(QObject *obj, QEvent *ev) override;

  private:
    QLineEdit *caja;
    bool reenviando = false;
};

/// A push button; with a picture it is the graphical style, picture above the caption.
class CommandButton : public Control {
    Q_OBJECT
  public:
    CommandButton(const QString &nombre, Control *contenedor, Form *form);
    QString Caption() const override;
    void setCaption(const QString &texto) override;
    bool TieneCaption() const override { return true; }
    void setPicture(const QString &recurso);

  signals:
    void Click();

  private:
    void colocarImagen();
    QPushButton *boton;
    QLabel *etiquetaImagen = nullptr; ///< graphical style only
    QLabel *texto = nullptr;          ///< graphical style only: the caption under the picture
};

class PictureBox : public Control {
    Q_OBJECT
  public:
    PictureBox(const QString &nombre, Control *contenedor, Form *form);
    void setPicture(const QString &recurso);
};

/// A timer of the screen: Timer is raised every Interval ms while Enabled. It is not seen.
class Timer : public Control {
    Q_OBJECT
  public:
    Timer(const QString &nombre, Control *contenedor, Form *form);
    int Interval() const;
    void setInterval(int ms);
    bool Enabled() const override;
    void setEnabled(bool v) override;

  signals:
    void Tick(); // the Timer event

  private:
    void actualizar();
    QTimer *reloj;
    int intervalo = 0;
    bool activo = true; // a new timer is enabled, and still until it has an Interval
};

} // namespace Pantalla
