#include "indicadorespera.h"

#include "platform/datos/espera.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QEvent>
#include <QFileInfo>
#include <QLabel>
#include <QPointer>
#include <QScreen>
#include <QThread>

using namespace ADODB;

namespace Pantalla {

namespace {

bool EsEntrada(QEvent::Type tipo) {
    switch (tipo) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::Wheel:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::Shortcut:
    case QEvent::ShortcutOverride:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::ContextMenu:
        return true;
    default:
        return false;
    }
}

/// The indicator's state, and the filter that eats the input of a wait.
class Indicador : public QObject {
  public:
    QPointer<QLabel> linea;
    int descartadas = 0;
    bool mostrando = false;  ///< the cursor and the line are up
    bool repintando = false; ///< inside the pass that repaints them
    bool vaciando = false;   ///< eating what was queued during a wait that is over

    void Larga(const QString &motivo) {
        if (!mostrando) {
            mostrando = true;
            QGuiApplication::setOverrideCursor(Qt::WaitCursor);
            qApp->installEventFilter(this);
        }
        if (!linea) {
            linea = new QLabel;
            linea->setWindowFlags(Qt::ToolTip | Qt::FramelessWindowHint);
            linea->setMargin(6);
            linea->setAttribute(Qt::WA_ShowWithoutActivating);
        }
        linea->setText(motivo);
        linea->adjustSize();
        // Under the active window's middle, or the screen's.
        const QWidget *ventana = QApplication::activeWindow();
        const QRect zona = ventana ? ventana->frameGeometry()
                                   : QGuiApplication::primaryScreen()->availableGeometry();
        linea->move(zona.center().x() - linea->width() / 2, zona.bottom() - 2 * linea->height());
        linea->show();
        // One pass, so the line and the cursor reach the screen. Nothing of the program's
        // own runs in it: its timers and the operator's input are held off by the filter.
        repintando = true;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
        repintando = false;
    }

    void Acabada() {
        if (linea)
            linea->hide();
        if (mostrando) {
            mostrando = false;
            QGuiApplication::restoreOverrideCursor();
        } else {
            qApp->installEventFilter(this);
        }
        // What the operator did during the wait is still queued: it is eaten until the loop
        // has nothing left to handle, so that none of it lands on a control afterwards.
        vaciando = true;
        if (QAbstractEventDispatcher *d = QAbstractEventDispatcher::instance(thread()))
            connect(d, &QAbstractEventDispatcher::aboutToBlock, this, &Indicador::Vaciado,
                    Qt::UniqueConnection);
    }

    void Vaciado() {
        if (mostrando || !vaciando)
            return;
        vaciando = false;
        qApp->removeEventFilter(this);
        if (QAbstractEventDispatcher *d = QAbstractEventDispatcher::instance(thread()))
            disconnect(d, &QAbstractEventDispatcher::aboutToBlock, this, &Indicador::Vaciado);
    }

  protected:
    bool eventFilter(QObject *objeto, QEvent *evento) override {
        // The operator's own input only: what the program sends itself goes through.
        if (EsEntrada(evento->type()) && evento->spontaneous()) {
            if (objeto->isWidgetType())
                ++descartadas;
            return true;
        }
        // While the line is repainted, the program's timers and sockets wait for the next
        // pass (a timer comes again, a socket with data stays ready): no handler of the
        // program runs in the middle of a statement.
        return repintando && (evento->type() == QEvent::Timer || evento->type() == QEvent::SockAct);
    }
};

Indicador *IndicadorInstalado() {
    static QPointer<Indicador> i;
    if (!i)
        i = new Indicador;
    return i;
}

} // namespace

QRect VentanaEnEspera() {
    // Only the GUI thread's statements are shown; a test's second terminal waits unseen.
    if (!qobject_cast<QApplication *>(QCoreApplication::instance()) ||
        QThread::currentThread() != QCoreApplication::instance()->thread())
        return {};
    if (const QWidget *ventana = QApplication::activeWindow())
        return ventana->frameGeometry();
    const QScreen *pantalla = QGuiApplication::primaryScreen();
    return pantalla ? pantalla->availableGeometry() : QRect();
}

void InstalarIndicadorEspera() {
    Indicador *i = IndicadorInstalado();
    if (QCoreApplication::instance())
        i->setParent(QCoreApplication::instance());
    // A wait on a server blocks this thread where nothing can repaint: its notice is drawn by
    // the program beside this one, when it is there (see Espera::FijarAvisoExterno).
    const QFileInfo avisador(QCoreApplication::applicationDirPath() +
                             QStringLiteral("/tarifas-espera"));
    Espera::FijarAvisoExterno(avisador.isExecutable() ? avisador.filePath() : QString(),
                              VentanaEnEspera);
    Espera::FijarAviso([](Espera::Fase fase, const QString &motivo) {
        // Only the GUI thread shows anything; a test's second terminal waits unseen.
        if (!qobject_cast<QApplication *>(QCoreApplication::instance()) ||
            QThread::currentThread() != QCoreApplication::instance()->thread())
            return;
        if (fase == Espera::Fase::Larga)
            IndicadorInstalado()->Larga(motivo);
        else
            IndicadorInstalado()->Acabada();
    });
}

QString LineaEspera() {
    const Indicador *i = IndicadorInstalado();
    return i->linea && i->linea->isVisible() ? i->linea->text() : QString();
}

int EntradasDescartadas() {
    return IndicadorInstalado()->descartadas;
}

} // namespace Pantalla
